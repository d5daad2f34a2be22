#!/usr/bin/env bash
# Checks the Debian packages that make-packages.sh left in WORK_DIR:
# - the run-time package holds libVeskIface and its soname link and nothing
#   else but its documents: a till's own libMorva and libmorvanetwork are
#   never replaced by it, and it does not depend on the stand-ins;
# - the stand-ins package holds libMorva.so and libmorvanetwork.so, and the
#   tools and the development package depend on it and on the library;
# - the test double's package holds libVeskTesting and its soname link, and
#   the development package its header, link and pkg-config file;
# - every shipped program and library is stripped and has no RUNPATH, and
#   its debug symbols are in <package>-dbgsym under /usr/lib/debug/.build-id;
# - lintian reports no error on any package.
#
#   check-packages.sh WORK_DIR
set -euo pipefail
work=$1
debs=("$work"/debs/*.deb)
fail() {
    echo "$*"
    exit 1
}

# The package names, from the files: the run-time package is named for the
# soname (libveskiface0.1).
declare -A deb_of
runtime=""
for deb in "${debs[@]}"; do
    package=$(dpkg-deb -f "$deb" Package)
    deb_of[$package]=$deb
    if [[ $package =~ ^libveskiface[0-9.]+$ ]]; then
        runtime=$package
    fi
done
[[ -n $runtime ]] || fail "no run-time package among: ${!deb_of[*]}"
standins=libvesk-host-standins
testing=libvesktesting${runtime#libveskiface}
expected=("$runtime" "$standins" "$testing" libveskiface-dev vesk-tools
    "$runtime-dbgsym" "$standins-dbgsym" "$testing-dbgsym" vesk-tools-dbgsym)
for package in "${expected[@]}"; do
    [[ -n ${deb_of[$package]:-} ]] || fail "no package $package among: ${!deb_of[*]}"
done
[[ ${#debs[@]} -eq ${#expected[@]} ]] ||
    fail "expected ${#expected[@]} packages (${expected[*]}), got ${#debs[@]}: ${!deb_of[*]}"

# files PACKAGE: the package's files and links, one a line ("./usr/lib/x",
# links as "./usr/lib/x -> target"), from the list make-packages.sh wrote.
files() {
    local mode _owner _size _date _time path
    while read -r mode _owner _size _date _time path; do
        [[ $mode == d* ]] || echo "$path"
    done <"$work/lists/$1"
}

# only PACKAGE PATTERN...: every file of the package matches one of the
# extended regular expressions, and each expression matches some file.
only() {
    local package=$1 listing pattern file matched
    shift
    listing=$(files "$package")
    while IFS= read -r file; do
        matched=""
        for pattern in "$@"; do
            [[ $file =~ ^$pattern$ ]] && matched=1
        done
        [[ -n $matched ]] || fail "$package holds $file, which it should not:"$'\n'"$listing"
    done <<<"$listing"
    for pattern in "$@"; do
        matched=""
        while IFS= read -r file; do
            [[ $file =~ ^$pattern$ ]] && matched=1
        done <<<"$listing"
        [[ -n $matched ]] || fail "$package holds no file like $pattern:"$'\n'"$listing"
    done
    echo "$package: $(wc -l <<<"$listing") files, as expected"
}

docs() { echo "\./usr/share/doc/${1//./\\.}/(copyright|changelog(\.Debian)?\.gz)"; }

version=$(dpkg-deb -f "${deb_of[$runtime]}" Version)
only "$runtime" \
    '\./usr/lib/libVeskIface\.so\.[0-9]+\.[0-9]+\.[0-9]+' \
    '\./usr/lib/libVeskIface\.so\.[0-9.]+ -> libVeskIface\.so\.[0-9.]+' \
    "$(docs "$runtime")"
only "$standins" '\./usr/lib/libMorva\.so' '\./usr/lib/libmorvanetwork\.so' "$(docs "$standins")"
only "$testing" \
    '\./usr/lib/libVeskTesting\.so\.[0-9]+\.[0-9]+\.[0-9]+' \
    '\./usr/lib/libVeskTesting\.so\.[0-9.]+ -> libVeskTesting\.so\.[0-9.]+' \
    "$(docs "$testing")"
only libveskiface-dev \
    '\./usr/include/vesk/vesk\.h' '\./usr/include/vesk/version\.h' '\./usr/include/vesk/.+\.h' \
    '\./usr/include/morva/(Config|RestClient|Tr)\.h' '\./usr/include/morva/.+\.h' \
    '\./usr/lib/cmake/VeskIface/VeskIfaceConfig\.cmake' '\./usr/lib/cmake/VeskIface/.+\.cmake' \
    '\./usr/include/vesk/testing/FakeBackOffice\.h' \
    '\./usr/lib/pkgconfig/VeskIface\.pc' '\./usr/lib/pkgconfig/VeskTesting\.pc' \
    '\./usr/lib/libVeskIface\.so -> libVeskIface\.so\.[0-9.]+' \
    '\./usr/lib/libVeskTesting\.so -> libVeskTesting\.so\.[0-9.]+' \
    '\./usr/share/doc/vesk/(README\.md|CHANGELOG\.md|LICENSE)' \
    '\./usr/share/doc/vesk/tools/(cli|emulator)/README\.md' '\./usr/share/doc/vesk/bench/README\.md' \
    '\./usr/share/doc/vesk/examples/typed-host/(CMakeLists\.txt|main\.cpp|ScannedItem\.h)' \
    '\./usr/share/doc/vesk/tools/example-host/main\.cpp' \
    '\./usr/share/doc/vesk/examples/(gtest|qttest)-host/[A-Za-z_]+\.(txt|h|cpp)' \
    '\./usr/share/lintian/overrides/libveskiface-dev' \
    "$(docs libveskiface-dev)"
only vesk-tools '\./usr/bin/vesk' '\./usr/bin/vesk-emulator' \
    '\./usr/share/vesk/(seed\.json|seed\.schema\.json|openapi\.json)' \
    '\./usr/share/man/man1/vesk(-emulator)?\.1\.gz' \
    '\./usr/share/bash-completion/completions/vesk(-emulator)?' "$(docs vesk-tools)"
for package in "$runtime" "$standins" "$testing" vesk-tools; do
    only "$package-dbgsym" '\./usr/lib/debug/\.build-id/[0-9a-f]{2}/[0-9a-f]+\.debug' \
        "\./usr/share/doc/${package//./\\.}-dbgsym -> ${package//./\\.}"
done

# depends PACKAGE: its Depends field, each relation on a line of its own.
depends() {
    local field
    field=$(dpkg-deb -f "${deb_of[$1]}" Depends)
    echo "${field//, /$'\n'}"
}
requires() {
    local package=$1 relation=$2 relations
    relations=$(depends "$package")
    [[ $'\n'$relations$'\n' == *$'\n'"$relation"$'\n'* ]] ||
        fail "$package does not depend on $relation: $(dpkg-deb -f "${deb_of[$package]}" Depends)"
}
for package in libveskiface-dev vesk-tools; do
    requires "$package" "$runtime (= $version)"
    requires "$package" "$standins (= $version)"
done
requires "$testing" "$runtime (= $version)"
requires libveskiface-dev "$testing (= $version)"
for package in "$runtime" "$standins" "$testing" vesk-tools; do
    requires "$package-dbgsym" "$package (= $version)"
done
requires "$runtime" "libqt6core6 (>= 6.4.0)"
runtime_depends=$(depends "$runtime")
[[ $runtime_depends != *"$standins"* ]] || fail "$runtime depends on $standins: a till has its own"
echo "dependencies: as expected"

# Every ELF file of the packages proper: stripped, no RUNPATH, its debug
# symbols in the dbgsym package, found by its build ID.
root="$work/check-root"
rm -rf "$root"
for package in "$runtime" "$standins" "$testing" libveskiface-dev vesk-tools; do
    mkdir -p "$root/$package"
    dpkg-deb -x "${deb_of[$package]}" "$root/$package"
    dbgsym_files=""
    if [[ -n ${deb_of[$package-dbgsym]:-} ]]; then
        dbgsym_files=$(files "$package-dbgsym")
    fi
    elves=0
    while IFS= read -r file; do
        path="$root/$package/${file%% -> *}"
        [[ -f $path && ! -L $path ]] || continue
        magic=$(od -An -tx1 -N4 -- "$path")
        [[ $magic == " 7f 45 4c 46" ]] || continue
        elves=$((elves + 1))
        sections=$(readelf -S -W -- "$path")
        unstripped=""
        while IFS= read -r line; do
            [[ $line == *" .debug_"* || $line == *" .symtab "* ]] && unstripped+="$line"$'\n'
        done <<<"$sections"
        [[ -z $unstripped ]] || fail "$package: $file is not stripped:"$'\n'"$unstripped"
        dynamic=$(readelf -d -- "$path")
        [[ $dynamic != *"(RUNPATH)"* && $dynamic != *"(RPATH)"* ]] ||
            fail "$package: $file has a search path:"$'\n'"$dynamic"
        notes=$(readelf -n -- "$path")
        [[ $notes =~ Build\ ID:\ ([0-9a-f]{2})([0-9a-f]+) ]] || fail "$package: $file has no build ID"
        debug="./usr/lib/debug/.build-id/${BASH_REMATCH[1]}/${BASH_REMATCH[2]}.debug"
        [[ $'\n'$dbgsym_files$'\n' == *$'\n'"$debug"$'\n'* ]] ||
            fail "$package: the debug symbols of $file ($debug) are not in $package-dbgsym"
    done < <(files "$package")
    if [[ $package == libveskiface-dev ]]; then
        [[ $elves -eq 0 ]] || fail "libveskiface-dev holds programs or libraries"
    else
        [[ $elves -gt 0 ]] || fail "$package holds no program or library"
        echo "$package: $elves ELF files, stripped, no RUNPATH, debug symbols in $package-dbgsym"
    fi
done

# lintian: no error on any package. Its warnings are printed for the log.
command -v lintian >/dev/null || fail "lintian is not installed: scripts/install-deps.sh installs it"
status=0
report=$(lintian --no-cfg --fail-on error "${debs[@]}" 2>"$work/lintian.err") || status=$?
echo "$report" >"$work/lintian.txt"
echo "lintian:"
[[ -z $report ]] || echo "$report"
errors=""
while IFS= read -r line; do
    [[ $line == E:* ]] && errors+="$line"$'\n'
done <<<"$report"
if [[ -n $errors || $status -ne 0 ]]; then
    echo "lintian reports errors (exit $status):"
    echo -n "$errors"
    cat "$work/lintian.err"
    exit 1
fi
echo "lintian: no error"
