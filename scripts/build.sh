# What ./run, ./test and .ci/run share: the packages of this system, and building a preset.
# Sourced with `root` set to the source folder.

build_packages=(g++ lld cmake ninja-build pkg-config ccache qtbase5-dev libboost-dev
                nlohmann-json3-dev libsimdjson-dev libgit2-dev fonts-dejavu-core)
test_packages=(git python3-jsonschema doxygen)
window_packages=(xvfb openbox xdotool imagemagick dbus at-spi2-core python3-pyatspi)
qt6_packages=(qt6-base-dev qt6-qpa-plugins libgl-dev)
fuzz_packages=(clang libclang-rt-14-dev)

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

# Waits for another process that holds the package lock, as there often is on a fresh machine.
install_packages() {
    as_root env DEBIAN_FRONTEND=noninteractive \
        apt-get -o DPkg::Lock::Timeout=600 install -y -qq --no-install-recommends "$@" \
        </dev/null >/dev/null
}

# Installs those of the packages that are missing, and says which first. Where there is no
# apt-get, configuring says what is missing.
need_packages() {
    command -v apt-get >/dev/null || return 0
    local installed missing=() package
    installed=" $(dpkg-query -W -f '${Package}:${db:Status-Status} ' "$@" 2>/dev/null || true)"
    for package in "$@"; do
        [[ $installed == *" $package:installed "* ]] || missing+=("$package")
    done
    [ ${#missing[@]} != 0 ] || return 0
    echo "Installing with apt-get: ${missing[*]}"
    # The package lists may be missing or too old; fetching them takes a while.
    install_packages "${missing[@]}" 2>/dev/null && return
    as_root apt-get -o DPkg::Lock::Timeout=600 update -qq
    install_packages "${missing[@]}"
}

need_programs() {
    local program
    for program in "$@"; do
        command -v "$program" >/dev/null || { echo "There is no $program." >&2; return 1; }
    done
}

# build_preset PRESET [TARGET...]: configures once, in large units if `build_whole` is set, then
# builds what has changed. Shows how far it is on a terminal, otherwise only what went wrong.
build_preset() {
    local preset=$1 started=$SECONDS log
    shift
    cd "$root"
    if [ ! "build/$preset/build.ninja" -nt CMakePresets.json ]; then
        cmake --preset "$preset" ${build_whole:+-DCMAKE_UNITY_BUILD=ON} >/dev/null
    fi
    local build=(cmake --build --preset "$preset" ${1:+--target "$@"})
    if [ -t 1 ]; then
        "${build[@]}" || return 1
    else
        log=$(mktemp)
        "${build[@]}" >"$log" 2>&1 || { tail -n 60 "$log" >&2; rm "$log"; return 1; }
        rm "$log"
    fi
    cd - >/dev/null
    [ $((SECONDS - started)) -lt 2 ] || echo "Built $preset in $((SECONDS - started)) s."
}
