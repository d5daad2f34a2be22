#!/usr/bin/env bash
# Builds libVeskIface against a prefix that holds "the host's own" libMorva
# and libmorvanetwork (here: copies of this build's stand-ins, the only
# implementation at hand), installs it, and builds and runs a pkg-config
# program and the example host program against that installation and the
# host's prefix alone.
#
#   run-host-libraries.sh BUILD_DIR SOURCE_DIR WORK_DIR NM
set -euo pipefail
build=$1 source=$2 work=$3 nm=$4
rm -rf "$work"
host="$work/host"
mkdir -p "$host/include/morva" "$host/lib"

cp -L "$build"/include/morva/*.h "$host/include/morva/"
cp -L "$build/host/morva/libMorva.so" "$build/host/morvanetwork/libmorvanetwork.so" "$host/lib/"

cmake -S "$source" -B "$work/build" -DCMAKE_BUILD_TYPE=Release -DVESK_HOST_LIBRARIES="$host" \
    -DVESK_BUILD_DOCS=OFF --log-level=WARNING >"$work/configure.log" 2>&1 || {
    cat "$work/configure.log"
    exit 1
}
cmake --build "$work/build" -j2 >"$work/build.log" 2>&1 || { tail -50 "$work/build.log"; exit 1; }

# Nothing of the stand-ins was built: the library links the host's copies.
# (Each listing is captured before it is matched: under pipefail, a reader
# that stops early would kill the writer with SIGPIPE and fail at random.)
own=$(find "$work/build" -name 'libMorva.so*' -o -name 'libmorvanetwork.so*')
if [[ -n "$own" ]]; then
    echo "the build made stand-ins of its own:"
    echo "$own"
    exit 1
fi
library=$(find "$work/build/iface" -name 'libVeskIface.so.*.*.*' -print -quit)
needed=$(readelf -d "$library" | sed -n 's/.*(NEEDED).*\[\(.*\)\]/\1/p' | grep -E 'Morva|morvanetwork' | sort | tr '\n' ' ')
if [[ "$needed" != "libMorva.so libmorvanetwork.so " ]]; then
    echo "$library needs: $needed"
    exit 1
fi
echo "built $(basename "$library") against $host: needs $needed"
# It needs at run time nothing but what the README states for a till's build.
cmake -DREADELF="${READELF:-readelf}" -DLIBRARY="$library" -DREADME="$source/README.md" \
    "-DROW=built for a till" -P "$source/tests/abi/RuntimeNeeds.cmake"

# Its binary interface is the same as that of the build with the stand-ins,
# both what it exports and what it takes from the host's libraries.
cmake -DNM="$nm" -DLIBRARY="$library" -DLIST="$source/iface/VeskIface.symbols" -DMODE=check \
    -P "$source/tests/abi/SymbolList.cmake"
cmake -DNM="$nm" -DLIBRARY="$library" -DLIST="$source/iface/HostImports.symbols" -DMODE=check \
    "-DIMPORTS_FROM=$host/lib/libMorva.so;$host/lib/libmorvanetwork.so" \
    -P "$source/tests/abi/SymbolList.cmake"

cmake --install "$work/build" --prefix "$work/prefix" >/dev/null
own=$(find "$work/prefix" -name 'libMorva.so*' -o -name 'libmorvanetwork.so*' -o -path '*/include/morva')
if [[ -n "$own" ]]; then
    echo "the installation carries stand-ins of its own:"
    echo "$own"
    exit 1
fi
"$source/tests/consumer/run-pkg-config.sh" "$work/prefix/lib" "$work/pkg-config"
"$source/tests/consumer/run-example.sh" "$work/prefix" "$source/examples/typed-host" "$work"
"$source/tests/layout/run-layout-host.sh" "$work/prefix" "$work"
# The example found libMorva in the host's prefix, through the CMake package.
loaded=$(ldd "$work/example/typed-host")
if [[ "$loaded" != *"$host/lib/libMorva.so"* ]]; then
    echo "the example does not load the host's libMorva:"
    echo "$loaded"
    exit 1
fi
echo "example host: loads $host/lib/libMorva.so"
