#!/usr/bin/env bash
# Builds the host of tests/layout/host against an installed Vesk alone and
# runs its tests.
#
#   run-layout-host.sh PREFIX WORK_DIR [CXX_FLAGS]
set -euo pipefail
prefix=$1 work=$2 flags=${3:-}
source=$(cd "$(dirname "$0")/host" && pwd)

cmake -S "$source" -B "$work/layout-host" -DCMAKE_PREFIX_PATH="$prefix" -DCMAKE_CXX_FLAGS="$flags" \
    --log-level=WARNING >"$work/layout-host.configure.log" 2>&1 || {
    cat "$work/layout-host.configure.log"
    exit 1
}
cmake --build "$work/layout-host" -j2 >"$work/layout-host.build.log" 2>&1 || {
    tail -60 "$work/layout-host.build.log"
    exit 1
}
"$work/layout-host/layout_host_test" --gtest_brief=1
