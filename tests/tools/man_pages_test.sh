#!/usr/bin/env bash
# The manual pages of vesk and vesk-emulator: they render without a warning
# from groff, and they carry every option and command of the programs' help,
# the usage of each of vesk's commands included.
#   man_pages_test.sh MAN1_DIR VESK VESK_EMULATOR
set -euo pipefail
man1=$1 vesk=$2 emulator=$3
failures=0
fail() {
    echo "FAIL: $*"
    failures=$((failures + 1))
}

# The page as text, rendered by man; groff's warnings go to warnings.
render() {
    local page=$1 warnings=$2
    MANWIDTH=80 LC_ALL=C.UTF-8 man --warnings -E UTF-8 -l "$page" 2>"$warnings" | col -b
}

# Every option named in a help text appears in the page.
covers_options() {
    local text=$1 help=$2 what=$3 options option
    options=$(grep -oE -- '(^|[ ,[])--?[a-z][a-z-]*' <<<"$help" | tr -d ' ,[' | sort -u)
    [[ -n "$options" ]] || fail "$what names no option"
    for option in $options; do
        grep -qF -- "$option" <<<"$text" || fail "$what: $option is not in the page"
    done
}

scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

for program in vesk vesk-emulator; do
    page=$man1/$program.1.gz
    [[ -f "$page" ]] || { fail "$page is missing"; continue; }
    text=$(render "$page" "$scratch/$program.warnings")
    if [[ -s "$scratch/$program.warnings" ]]; then
        fail "$program.1 renders with warnings:"
        cat "$scratch/$program.warnings"
    fi
    for section in NAME SYNOPSIS DESCRIPTION "SEE ALSO"; do
        grep -qx "$section" <<<"$text" || fail "$program.1 has no $section section"
    done
done

text=$(render "$man1/vesk.1.gz" /dev/null)
help=$("$vesk" --help)
covers_options "$text" "$help" "vesk --help"
grep -qF "MORVA_CONFIG" <<<"$text" || fail "vesk.1 does not name MORVA_CONFIG"
commands=$(sed -n '/^Commands:/,/^$/p' <<<"$help" | sed -nE 's/^  ([a-z][a-z-]*).*/\1/p')
[[ -n "$commands" ]] || fail "vesk --help lists no command"
for command in $commands; do
    usage=$("$vesk" help "$command")
    first=$(head -n 1 <<<"$usage" | sed 's/ \+/ /g')
    grep -qF -- "$first" <<<"$(sed 's/ \+/ /g' <<<"$text")" ||
        fail "vesk.1 lacks the usage of $command: $first"
    covers_options "$text" "$usage" "vesk help $command"
done

text=$(render "$man1/vesk-emulator.1.gz" /dev/null)
covers_options "$text" "$("$emulator" --help)" "vesk-emulator --help"

if ((failures > 0)); then
    echo "$failures problem(s) with the manual pages"
    exit 1
fi
echo "the manual pages of vesk (commands: $(echo $commands)) and vesk-emulator are whole"
