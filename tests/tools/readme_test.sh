#!/usr/bin/env bash
# What the README promises a newcomer about the build: every program it
# names is where it says, and its sample of `make demo` is what a real run
# prints (the run on a free port, its port written as the default's).
#   readme_test.sh README BUILD_DIR
set -euo pipefail
readme=$1 build=$2
failures=0
fail() {
    echo "FAIL: $*"
    failures=$((failures + 1))
}

# The table of built programs: every `build/...` path in it exists.
table=$(sed -n '/^Where the built programs are/,/^$/p;/^| program | path/,/^$/p' "$readme")
paths=$(grep -oE '`build/[^`]+`' <<<"$table" | tr -d '`' | sort -u)
[[ -n "$paths" ]] || fail "the README names no built program"
for path in $paths; do
    [[ -e "$build/${path#build/}" ]] || fail "the README names $path, which the build has not made"
done

# The sample of the demo: the lines before "..." begin the real output, the
# lines after it end it.
sample=$(awk '/^output begins and ends like this:/ {found = 1; next}
              found && /^```/ {if (inside) exit; inside = 1; next}
              inside {print}' "$readme")
[[ -n "$sample" ]] || fail "the README shows no sample of the demo"
head_part=$(sed '/^\.\.\.$/,$d' <<<"$sample")
tail_part=$(sed '1,/^\.\.\.$/d' <<<"$sample")
[[ -n "$head_part" && -n "$tail_part" ]] || fail "the demo's sample has no '...' between its start and end"

output=$("$build/tools/cli/vesk" demo --listen 127.0.0.1:0)
port=$(sed -nE 's|^Emulator started in this process at http://127\.0\.0\.1:([0-9]+) .*|\1|p' <<<"$output")
[[ -n "$port" ]] || fail "the demo did not say where its emulator listens"
output=${output//127.0.0.1:$port/127.0.0.1:55555}
head_lines=$(wc -l <<<"$head_part")
tail_lines=$(wc -l <<<"$tail_part")
if [[ "$(head -n "$head_lines" <<<"$output")" != "$head_part" ]]; then
    fail "the demo's output does not begin as the README shows:"
    diff <(echo "$head_part") <(head -n "$head_lines" <<<"$output") || true
fi
if [[ "$(tail -n "$tail_lines" <<<"$output")" != "$tail_part" ]]; then
    fail "the demo's output does not end as the README shows:"
    diff <(echo "$tail_part") <(tail -n "$tail_lines" <<<"$output") || true
fi

if ((failures > 0)); then
    exit 1
fi
echo "the README's programs exist and its demo sample matches a real run" \
    "($head_lines lines at the start, $tail_lines at the end)"
