#!/usr/bin/env bash
# Runs every fuzzer of a build for a bounded time on its seed corpus.
#   scripts/run-fuzzers.sh BUILD_DIR SECONDS
# New inputs and crash artifacts go under BUILD_DIR, never into the tree.
# Prints one line per fuzzer (runs, new corpus entries) and exits non-zero if
# any of them found a crash, a leak or undefined behaviour.
set -uo pipefail
build=$1
seconds=$2
root=$(cd "$(dirname "$0")/.." && pwd)
status=0
for seeds in "$root"/fuzz/corpus/*/; do
    name=$(basename "$seeds")
    fuzzer="$build/fuzz/$name"
    if [[ ! -x "$fuzzer" ]]; then
        echo "fuzz: $name is not built" >&2
        status=1
        continue
    fi
    work="$build/fuzz-work/$name"
    mkdir -p "$work/corpus" "$work/artifacts"
    log="$work/last-run.log"
    if "$fuzzer" -max_total_time="$seconds" -timeout=10 -rss_limit_mb=2048 -print_final_stats=1 \
        -artifact_prefix="$work/artifacts/" "$work/corpus" "$seeds" >"$log" 2>&1; then
        runs=$(grep -o 'stat::number_of_executed_units: *[0-9]*' "$log" | grep -o '[0-9]*$')
        found=$(find "$work/corpus" -type f | wc -l)
        printf 'fuzz: %-26s %10s runs in %ss, corpus %s, nothing found\n' "$name" "${runs:-?}" "$seconds" "$found"
    else
        echo "fuzz: $name FOUND A PROBLEM; artifacts in $work/artifacts:" >&2
        found=$(grep -E 'ERROR|SUMMARY|runtime error|Test unit written' "$log" || true)
        sed -n 1,20p <<<"$found" >&2
        status=1
    fi
done
exit $status
