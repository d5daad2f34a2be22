#!/usr/bin/env bash
# Compiles and runs a program against an installed Vesk through pkg-config
# alone, and prints the library version it loaded.
#
#   run-pkg-config.sh LIBDIR WORK_DIR
set -euo pipefail
libdir=$1 work=$2
mkdir -p "$work"
cat >"$work/version.cpp" <<'PROGRAM'
#include <vesk/vesk.h>
#include <cstdio>
int main() { std::printf("%s\n", vesk::version()); }
PROGRAM
export PKG_CONFIG_PATH="$libdir/pkgconfig"
# shellcheck disable=SC2046
g++ -std=c++17 "$work/version.cpp" -o "$work/version" $(pkg-config --cflags --libs VeskIface) \
    -Wl,-rpath,"$libdir"
echo "pkg-config program: library $("$work/version")"
