#!/usr/bin/env bash
# Installs the development files of a build into a scratch prefix and checks
# that the documents there name only what is installed:
# - the documents and example programs are in share/doc/vesk, each at its
#   path in the tree (README.md beside tools/cli/README.md, as the README
#   names them);
# - every document (*.md) or example (examples/..., tools/example-host/...)
#   that an installed document or the reference's main page mentions, as
#   `path`, exists there. share/doc/vesk/ and /usr/share/doc/vesk/ in front
#   of a mention are the same place.
#
#   check-installed-docs.sh BUILD_DIR SOURCE_DIR WORK_DIR
set -euo pipefail
build=$1 source=$2 work=$3
rm -rf "$work"
cmake --install "$build" --prefix "$work/prefix" --component development >"$work.log" 2>&1 ||
    { cat "$work.log"; exit 1; }
docdir="$work/prefix/share/doc/vesk"

missing=""
for file in README.md CHANGELOG.md LICENSE tools/cli/README.md tools/emulator/README.md \
    bench/README.md examples/typed-host/CMakeLists.txt examples/typed-host/main.cpp \
    examples/typed-host/ScannedItem.h tools/example-host/main.cpp \
    examples/gtest-host/scan_item_test.cpp examples/qttest-host/cheque_reservation_test.cpp; do
    [[ -f "$docdir/$file" ]] || missing+="  $file"$'\n'
done
if [[ -n $missing ]]; then
    echo "not installed in share/doc/vesk:"
    echo -n "$missing"
    exit 1
fi

# The mentions of documents and examples in one document, one a line.
mentions() {
    grep -oE '`[^` ]+`' "$1" | tr -d '`' | sed -E 's#^(/usr/)?share/doc/vesk/##' |
        grep -E '^[A-Za-z][A-Za-z0-9_./-]*\.md$|^(examples|tools/example-host)(/|$)' || true
}
dangling=""
checked=0
while IFS= read -r document; do
    while IFS= read -r mention; do
        [[ -n $mention ]] || continue
        checked=$((checked + 1))
        [[ -e "$docdir/$mention" ]] || dangling+="  ${document#"$work/"}: $mention"$'\n'
    done < <(mentions "$document")
done < <(find "$docdir" -name '*.md'; echo "$source/docs/mainpage.md")
if [[ -n $dangling ]]; then
    echo "mentioned, and not installed in share/doc/vesk:"
    echo -n "$dangling"
    exit 1
fi
echo "share/doc/vesk holds every document and example; $checked mentions of them name installed files"
