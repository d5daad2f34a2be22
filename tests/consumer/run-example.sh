#!/usr/bin/env bash
# Builds examples/typed-host against an installed Vesk alone and runs it: a
# typed call that cannot reach its service (a NetworkException, exit 3) and,
# when the installed tree has the emulator, a typed call that it answers.
#
#   run-example.sh PREFIX EXAMPLE_SOURCE WORK_DIR [CXX_FLAGS]
set -euo pipefail
prefix=$1 source=$2 work=$3 flags=${4:-}

cmake -S "$source" -B "$work/example" -DCMAKE_PREFIX_PATH="$prefix" -DCMAKE_CXX_FLAGS="$flags" \
    --log-level=WARNING >/dev/null
cmake --build "$work/example" -j2 >/dev/null
example="$work/example/typed-host"

# Port 1 of the loopback address: nothing listens there.
status=0
"$example" http://127.0.0.1:1/sales/ 4601234000017 >"$work/refused.out" 2>&1 || status=$?
if [[ $status -ne 3 ]] || ! grep -q '^no reply: Connection refused by' "$work/refused.out"; then
    echo "unreachable service: exit $status, expected 3 and 'no reply: Connection refused by':"
    cat "$work/refused.out"
    exit 1
fi
echo "unreachable service: $(tail -1 "$work/refused.out")"

emulator="$prefix/bin/vesk-emulator"
[[ -x "$emulator" ]] || exit 0
# Line-buffered: the address has to reach the file while the emulator runs.
stdbuf -oL "$emulator" --listen 127.0.0.1:0 >"$work/emulator.out" 2>&1 &
pid=$!
trap 'kill $pid 2>/dev/null; wait $pid 2>/dev/null || true' EXIT
# Bounded: the emulator prints its address once it listens.
url=""
for _ in $(seq 200); do
    url=$(sed -n 's/^  sales *//p;T;q' "$work/emulator.out")
    [[ -n "$url" ]] && break
    kill -0 $pid 2>/dev/null || break
    sleep 0.05
done
if [[ -z "$url" ]]; then
    echo "the installed emulator did not start:"
    cat "$work/emulator.out"
    exit 1
fi
output=$("$example" "$url" 4601234000017)
expected=$'scanned 4601234000017 x1\n4601234000017: Coffee beans, 1 kg, 1200.00'
if [[ "$output" != "$expected" ]]; then
    echo "typed call printed:"
    echo "$output"
    echo "expected:"
    echo "$expected"
    exit 1
fi
echo "typed call: $(tail -1 <<<"$output")"
