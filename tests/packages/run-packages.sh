#!/usr/bin/env bash
# Makes the Debian packages of a build, unpacks them into a scratch root and
# uses that root alone: the tools run, pkg-config finds the library, and the
# example host program builds with find_package and calls the packaged
# emulator.
#
#   run-packages.sh BUILD_DIR EXAMPLE_SOURCE WORK_DIR
set -euo pipefail
build=$1 example=$2 work=$3
rm -rf "$work"
mkdir -p "$work/debs" "$work/root"

"${CPACK:-cpack}" -G DEB --config "$build/CPackConfig.cmake" -B "$work/debs" >"$work/cpack.log" 2>&1 || {
    cat "$work/cpack.log"
    exit 1
}
debs=("$work"/debs/*.deb)
echo "packages:"
for deb in "${debs[@]}"; do
    package=$(dpkg-deb -f "$deb" Package)
    echo "  $package $(dpkg-deb -f "$deb" Version): depends on $(dpkg-deb -f "$deb" Depends)"
    if [[ $package != *-dbgsym ]]; then dpkg-deb -x "$deb" "$work/root"; fi
done
[[ ${#debs[@]} -eq 7 ]] || { echo "expected 7 packages, got ${#debs[@]}"; exit 1; }
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
