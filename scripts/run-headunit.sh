#!/usr/bin/env bash
# The main job: builds LmCom and runs a simulated head unit on the default bus.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/install-deps.sh
cmake -S . -B build/release -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo
cmake --build build/release -j "$(nproc)" --target ParcelDemo
build/release/examples/ParcelDemo
