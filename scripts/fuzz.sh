# Builds and runs the fuzzers, for ./test. Sourced after build.sh.

fuzzers=(library lister unsavedchanges payload body query)

# fuzz_one NAME SECONDS: what it finds goes to build/fuzz/findings, with the output beside it, and
# is printed, as the folder may be gone with the machine. The inputs that reached something new stay
# in build/fuzz/corpus, for the next run to start from. `fuzz_seed` makes the same inputs again.
fuzz_one() {
    local name=$1 seconds=$2 build=$root/build/fuzz
    local found=$build/findings/$name log=$build/findings/$name.log
    mkdir -p "$build/corpus/$name"
    # Leaks are looked for by the tests; a look after each input would take most of the time.
    ASAN_OPTIONS=malloc_context_size=8:quarantine_size_mb=16 UBSAN_OPTIONS=print_stacktrace=1 \
        "$build/fuzz/fuzz_$name" -max_total_time="$seconds" \
        -seed="${fuzz_seed:-0}" -max_len=8192 -timeout=30 \
        -rss_limit_mb=4000 -detect_leaks=0 -print_final_stats=1 -dict="$root/fuzz/fuzz.dict" \
        -artifact_prefix="$found-" "$build/corpus/$name" "$root/fuzz/corpus/$name" \
        >"$log" 2>&1 || {
        # The property, or the sanitizer's words, and where.
        grep -m 1 -A 25 -E '^Broken property|ERROR:|runtime error:' "$log" >&2 || tail -n 25 "$log" >&2
        echo "$name: found something; see $log and the input beside it, which is in base64:" >&2
        base64 -w 0 "$(ls -t "$found"-* | head -n 1)" >&2
        echo >&2
        return 1
    }
    echo "$name: $(sed -n 's/^stat::number_of_executed_units: *//p' "$log") inputs," \
        "$(grep -o 'cov: [0-9]*' "$log" | tail -n 1)"
}

# run_fuzzers SECONDS: all of them for so long each, two at a time.
run_fuzzers() {
    local seconds=$1 running=0 failed=0 name
    need_packages "${build_packages[@]}" "${fuzz_packages[@]}"
    build_preset fuzz
    mkdir -p "$root/build/fuzz/findings"
    # The fuzzers of folders write a lot of small files.
    TMPDIR=$(mktemp -d -p "$([ -w /dev/shm ] && echo /dev/shm || echo "${TMPDIR:-/tmp}")")
    export TMPDIR
    trap 'rm -rf "$TMPDIR"' EXIT
    for name in "${fuzzers[@]}"; do
        if [ "$running" = 2 ]; then
            wait -n || failed=1
            running=1
        fi
        fuzz_one "$name" "$seconds" &
        running=$((running + 1))
    done
    wait -n || failed=1
    wait -n || failed=1
    return $failed
}
