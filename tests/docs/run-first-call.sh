#!/usr/bin/env bash
# Runs the main page's first program with the configuration it describes: an
# INI file named by MORVA_CONFIG whose [Vesk.sales] url is port 1 of the
# loopback address, where nothing listens. The program must exit with 3 and
# say that nothing was sent.
#
#   run-first-call.sh PROGRAM WORK_DIR
set -euo pipefail
program=$1 work=$2
rm -rf "$work"
mkdir -p "$work"
cat >"$work/till.ini" <<'INI'
[Vesk.sales]
url=http://127.0.0.1:1/sales
INI

status=0
MORVA_CONFIG="$work/till.ini" "$program" 4601234000017 >"$work/out" 2>&1 || status=$?
expected="no answer (nothing was sent): Connection refused by http://127.0.0.1:1/sales/itemInfo"
if [[ $status -ne 3 ]] || [[ "$(head -1 "$work/out")" != "$expected"* ]]; then
    echo "exit $status, expected 3 and a line beginning \"$expected\"; the program printed:"
    cat "$work/out"
    exit 1
fi
cat "$work/out"
