# What a machine can say of the sources without running them: their format, what clang-tidy
# finds in them, whether they are those of a Windows program, too, and how many lines of tests there
# are for the code.
# Sourced with `root` set to the source folder, after build.sh.

check_packages=(clang clang-format clang-tidy g++-mingw-w64-x86-64-posix)

check_format() {
    git -C "$root" ls-files -z '*.cpp' '*.h' \
        | (cd "$root" && xargs -0 clang-format --dry-run -Werror)
    echo "All sources are formatted."
}

# The units of the panel and the host are read whole, so that each header is read a few times only.
check_tidy() {
    build_preset tidy nodebrowser_autogen embeddedhost_autogen embeddedhost_framework_autogen \
        embeddedhost_sourcecontrol_autogen embeddedhost_storage_autogen
    find "$root"/build/tidy/{nodebrowser,embeddedhost} -path '*/Unity/*.cxx' -print0 \
        | xargs -0 -n 1 -P "$(nproc)" clang-tidy --quiet --warnings-as-errors='*' \
            --config-file="$root/.clang-tidy" -p "$root/build/tidy" 2>/dev/null
    echo "clang-tidy finds nothing."
}

# The compiler only reads the sources: there are no libraries for Windows to link them with.
check_windows() {
    build_preset windows || return 1
    echo "The cross compiler for Windows takes all sources."
}

# Lines without blank ones and comments.
count_lines() {
    (cd "$root" && xargs -0 cat --) | grep -cvE '^[[:space:]]*(//.*)?$'
}

print_test_ratio() {
    local code tests
    tests=$(git -C "$root" ls-files -z 'tests/*.cpp' 'tests/*.h' | count_lines)
    code=$(git -C "$root" ls-files -z '*.cpp' '*.h' ':!tests' ':!benchmarks' ':!fuzz' | count_lines)
    echo "$tests lines of tests to $code of code: $((100 * tests / code)) to 100."
}
