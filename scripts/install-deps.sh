#!/usr/bin/env bash
# Installs the Debian packages the build, the tests and the tools need.
# Idempotent and quiet: it asks apt only for what is missing, and refreshes
# the package lists only when there is something to install.
#
#   scripts/install-deps.sh        everything: tests, benchmarks, fuzzers, docs, packages
#   scripts/install-deps.sh demo   only what the library and its tools need to build
set -euo pipefail

what="${1:-all}"
case "$what" in
all | demo) ;;
*)
    echo "install-deps.sh: unknown set '$what' (all or demo)" >&2
    exit 64
    ;;
esac

# The library, the host stand-ins, the emulator and the command-line client.
packages=(
    cmake make g++ pkg-config
    qt6-base-dev libqt6sql6-sqlite
    libcurl4-openssl-dev zlib1g-dev libsimdjson-dev
    libcpp-httplib-dev rapidjson-dev
)
if [[ "$what" == all ]]; then
    packages+=(
        libgtest-dev libgmock-dev libbenchmark-dev
        clang-14 libclang-rt-14-dev
        doxygen dpkg-dev lintian help2man man-db
        prometheus # promtool lints the emulator's metrics in a test
    )
    # Node.js runs the contract test's OpenAPI validator; any node will do.
    command -v node >/dev/null 2>&1 || packages+=(nodejs npm)
fi

missing=()
for p in "${packages[@]}"; do
    status=$(dpkg-query -W -f='${Status}' "$p" 2>/dev/null || true)
    [[ "$status" == "install ok installed" ]] || missing+=("$p")
done
if [[ ${#missing[@]} -gt 0 ]]; then
    sudo=""
    [[ $(id -u) -eq 0 ]] || sudo="sudo"
    echo "Installing: ${missing[*]}"
    export DEBIAN_FRONTEND=noninteractive
    $sudo apt-get update -qq
    $sudo apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
fi

[[ "$what" == all ]] || exit 0

# The npm packages of the contract test, at fixed versions, outside the tree.
npm_prefix="${VESK_NPM_PREFIX:-$HOME/.cache/vesk/npm}"
npm_packages=(@seriousme/openapi-schema-validator@2.11.0 ajv@8.20.0 ajv-formats@3.0.1)
stamp="$npm_prefix/installed"
if [[ "$(cat "$stamp" 2>/dev/null)" != "${npm_packages[*]}" ]]; then
    echo "Installing from npm: ${npm_packages[*]}"
    mkdir -p "$npm_prefix"
    npm install --prefix "$npm_prefix" --no-audit --no-fund --no-save --loglevel=error \
        "${npm_packages[@]}" >/dev/null
    echo "${npm_packages[*]}" > "$stamp"
fi
