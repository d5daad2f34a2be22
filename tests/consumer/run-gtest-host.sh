#!/usr/bin/env bash
# Builds examples/gtest-host, a host's test with the back-office double,
# against an installed Vesk alone, and runs it.
#
#   run-gtest-host.sh PREFIX EXAMPLE_SOURCE WORK_DIR [CXX_FLAGS]
set -euo pipefail
prefix=$1 source=$2 work=$3 flags=${4:-}

cmake -S "$source" -B "$work/gtest-host" -DCMAKE_PREFIX_PATH="$prefix" -DCMAKE_CXX_FLAGS="$flags" \
    --log-level=WARNING >/dev/null
cmake --build "$work/gtest-host" -j2 >/dev/null
# Against the installed libraries only: the program finds them through its
# RUNPATH into the prefix. Captured first: under pipefail, grep -q stopping
# early would fail ldd.
loaded=$(ldd "$work/gtest-host/gtest-host")
if [[ "$loaded" != *"$prefix/lib/libVeskTesting.so"* ]]; then
    echo "gtest-host does not load libVeskTesting from $prefix:"
    echo "$loaded"
    exit 1
fi
ctest --test-dir "$work/gtest-host" --output-on-failure
