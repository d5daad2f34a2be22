#!/usr/bin/env bash
# The bash completion of vesk and vesk-emulator, driven as bash drives it:
# a line and a cursor in, the candidates out.
#   completion_test.sh COMPLETION_DIR VESK_DIR EMULATOR_DIR
set -euo pipefail
completion_dir=$1
PATH="$2:$3:$PATH"
# shellcheck source=/dev/null
source "$completion_dir/vesk.bash"
# shellcheck source=/dev/null
source "$completion_dir/vesk-emulator.bash"

failures=0

# The candidates for LINE with the cursor at its end, sorted, one line.
candidates() {
    COMP_LINE=$1
    COMP_POINT=${#1}
    read -ra COMP_WORDS <<<"$1"
    [[ "$1" == *" " ]] && COMP_WORDS+=("")
    COMP_CWORD=$((${#COMP_WORDS[@]} - 1))
    local function
    function=$(complete -p "${COMP_WORDS[0]}" | sed -E 's/.*-F ([^ ]+).*/\1/')
    COMPREPLY=()
    "$function"
    printf '%s\n' "${COMPREPLY[@]}" | sort | tr '\n' ' ' | sed 's/ $//'
}

expect() {
    local line=$1 expected=$2 got
    got=$(candidates "$line")
    if [[ "$got" != "$expected" ]]; then
        echo "FAIL: '$line' completes to '$got', expected '$expected'"
        failures=$((failures + 1))
    else
        echo "ok:   '$line' -> '$got'"
    fi
}

expect "vesk ca" "call"
expect "vesk " "bench call demo emulator help openapi ops record"
expect "vesk call s" "sales"
expect "vesk call " "disc loyalty sales"
expect "vesk call sales item" "itemInfo"
expect "vesk call disc disc" "discCalc discCalcPay"
expect "vesk --url sales=http://127.0.0.1:1/ call d" "disc"
expect "vesk --ur" "--url"
expect "vesk --url s" "sales="
expect "vesk call --stri" "--strict"
expect "vesk record vesk::sales::ItemInfoR" "ItemInfoRequest ItemInfoResponse"
expect "vesk emulator fa" "fault faults"
expect "vesk emulator j" "journal"
expect "vesk emulator journal " "clear count"
expect "vesk emulator journal --where '\$.x' --operation itemInfo c" "clear count"
expect "vesk emulator verify commit" "commitCheque"
expect "vesk emulator --wh" "--where"
expect "vesk help op" "openapi ops"
expect "vesk-emulator --li" "--listen"
expect "vesk-emulator --" "--db --fault --help --journal-bytes --journal-size --latency --listen --seed --strict-requests --version"

if ((failures > 0)); then
    echo "$failures completion(s) wrong"
    exit 1
fi
