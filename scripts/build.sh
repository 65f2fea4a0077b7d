# What ./run and ./test share: the packages of this system, and building a preset.
# Sourced with `root` set to the source folder.

build_packages=(g++ cmake ninja-build pkg-config qtbase5-dev libboost-dev nlohmann-json3-dev
                libgit2-dev fonts-dejavu-core)
benchmark_packages=(libbenchmark-dev)
qt6_packages=(qt6-base-dev qt6-qpa-plugins libgl-dev)
window_packages=(xvfb openbox xdotool imagemagick x11-utils)

as_root() {
    if [ "$(id -u)" = 0 ]; then
        "$@"
    elif command -v sudo >/dev/null; then
        sudo "$@"
    else
        echo "Cannot install packages: neither root nor sudo." >&2
        return 1
    fi
}

# Installs those of the packages that are missing, and says which first.
need_packages() {
    local installed missing=() package
    installed=" $(dpkg-query -W -f '${Package}:${db:Status-Status} ' "$@" 2>/dev/null || true)"
    for package in "$@"; do
        [[ $installed == *" $package:installed "* ]] || missing+=("$package")
    done
    [ ${#missing[@]} = 0 ] && return
    echo "Installing: ${missing[*]}"
    as_root apt-get update -qq
    as_root env DEBIAN_FRONTEND=noninteractive \
        apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
}

# build_preset PRESET [TARGET...]: configures once, then builds what has changed.
build_preset() {
    local preset=$1 log
    shift
    cd "$root"
    [ -f "build/$preset/build.ninja" ] || cmake --preset "$preset" >/dev/null
    log=$(mktemp)
    if ! cmake --build --preset "$preset" ${1:+--target "$@"} >"$log" 2>&1; then
        tail -n 60 "$log" >&2
        rm -f "$log"
        echo "The build failed." >&2
        return 1
    fi
    rm -f "$log"
    cd - >/dev/null
}
