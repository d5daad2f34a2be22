#!/usr/bin/env bash
# Unpacks the Debian packages that make-packages.sh left in WORK_DIR (all
# but the debug symbols) into a scratch root and uses that root alone: the
# tools run, pkg-config finds the library, and the example host program
# builds with find_package and calls the packaged emulator.
#
#   run-packages.sh WORK_DIR EXAMPLE_SOURCE
set -euo pipefail
work=$1 example=$2
rm -rf "$work/root" "$work/pkg-config" "$work/example"
mkdir -p "$work/root"

echo "packages:"
for deb in "$work"/debs/*.deb; do
    package=$(dpkg-deb -f "$deb" Package)
    if [[ $package == *-dbgsym ]]; then continue; fi
    echo "  $package $(dpkg-deb -f "$deb" Version): depends on $(dpkg-deb -f "$deb" Depends)"
    dpkg-deb -x "$deb" "$work/root"
done
usr="$work/root/usr"

# The packaged programs and libraries carry no RUNPATH: under /usr they find
# each other on the system's search path, which here is the unpacked lib.
export LD_LIBRARY_PATH="$usr/lib${LD_LIBRARY_PATH:+:$LD_LIBRARY_PATH}"

# Every packaged shared object finds what it needs.
for lib in "$usr"/lib/libVeskIface.so.* "$usr"/lib/libMorva.so "$usr"/lib/libmorvanetwork.so; do
    # Captured first: under pipefail, grep -q stopping early would fail ldd.
    loaded=$(ldd "$lib")
    if [[ "$loaded" == *"not found"* ]]; then
        echo "$lib: unresolved libraries"; echo "$loaded"; exit 1
    fi
done
for tool in vesk vesk-emulator; do
    version=$("$usr/bin/$tool" --version)
    echo "$version"
    [[ "$version" == "$tool "*" (libVeskIface "*")" ]] || { echo "unexpected --version: $version"; exit 1; }
done

"$(dirname "$0")/../consumer/run-pkg-config.sh" "$usr/lib" "$work/pkg-config"
"$(dirname "$0")/../consumer/run-example.sh" "$usr" "$example" "$work"
