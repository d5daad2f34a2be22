#!/usr/bin/env bash
# Installs the Debian packages the build, the tests and the tools need.
# Idempotent and quiet: it asks apt only for what is missing, and refreshes
# the package lists only when there is something to install.
set -euo pipefail

packages=(
    cmake make g++ pkg-config
    qt6-base-dev libqt6sql6-sqlite
    libcurl4-openssl-dev zlib1g-dev libsimdjson-dev
    libgtest-dev libgmock-dev libbenchmark-dev rapidjson-dev
    libcpp-httplib-dev
    clang-14 libclang-rt-14-dev
)

missing=()
for p in "${packages[@]}"; do
    status=$(dpkg-query -W -f='${Status}' "$p" 2>/dev/null || true)
    [[ "$status" == "install ok installed" ]] || missing+=("$p")
done
[[ ${#missing[@]} -eq 0 ]] && exit 0

sudo=""
[[ $(id -u) -eq 0 ]] || sudo="sudo"
echo "Installing: ${missing[*]}"
export DEBIAN_FRONTEND=noninteractive
$sudo apt-get update -qq
$sudo apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
