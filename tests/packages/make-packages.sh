#!/usr/bin/env bash
# Makes the Debian packages of a build into WORK_DIR/debs and writes the
# list of each package's files (dpkg-deb -c) to WORK_DIR/lists/<package>.
# The other package tests check and use what this leaves.
#
#   make-packages.sh BUILD_DIR WORK_DIR
set -euo pipefail
build=$1 work=$2
rm -rf "$work"
mkdir -p "$work/debs" "$work/lists"

"${CPACK:-cpack}" -G DEB --config "$build/CPackConfig.cmake" -B "$work/debs" >"$work/cpack.log" 2>&1 || {
    cat "$work/cpack.log"
    exit 1
}
shopt -s nullglob
others=("$work"/debs/*.ddeb)
if [[ ${#others[@]} -gt 0 ]]; then
    echo "packages that are not .deb files: ${others[*]}"
    exit 1
fi
debs=("$work"/debs/*.deb)
[[ ${#debs[@]} -gt 0 ]] || { echo "cpack made no package"; cat "$work/cpack.log"; exit 1; }

printf '%-30s %-8s %14s %14s\n' package version "Installed-Size" "files (bytes)"
for deb in "${debs[@]}"; do
    package=$(dpkg-deb -f "$deb" Package)
    list="$work/lists/$package"
    dpkg-deb -c "$deb" >"$list"
    bytes=0
    while read -r mode _owner size _rest; do
        [[ $mode == -* ]] && bytes=$((bytes + size))
    done <"$list"
    printf '%-30s %-8s %11s KiB %14s\n' "$package" "$(dpkg-deb -f "$deb" Version)" \
        "$(dpkg-deb -f "$deb" Installed-Size)" "$bytes"
done
