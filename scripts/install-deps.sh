#!/usr/bin/env bash
# Installs the Debian packages that building and testing LmCom needs. Idempotent: apt runs only
# when something is missing.
set -euo pipefail

packages=(
    cmake ninja-build g++ pkg-config
    juce-modules-source zlib1g-dev
    libinih-dev nlohmann-json3-dev
    libfontconfig-dev fonts-dejavu-core
    libgpiod-dev socat
    libgtest-dev libbenchmark-dev
    clang-format clang libclang-rt-dev
    python3 unicode-data
)

missing=()
for package in "${packages[@]}"; do
    dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q "install ok installed" || missing+=("$package")
done

if [ "${#missing[@]}" -gt 0 ]; then
    echo "Installing: ${missing[*]}"
    export DEBIAN_FRONTEND=noninteractive
    apt-get update -qq
    apt-get install -y -qq --no-install-recommends "${missing[@]}"
fi
