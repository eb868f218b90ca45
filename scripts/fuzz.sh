#!/usr/bin/env bash
# Builds the libFuzzer targets (clang, address + undefined sanitizers) and runs each for
# SECONDS (default 600) from its committed seed corpus in fuzz/corpus/<target>/. Prints one
# line per target and exits non-zero when any target crashed; a crashing input is kept in
# build/fuzz/ (add it to the target's corpus once fixed, as a regression input).
set -euo pipefail
cd "$(dirname "$0")/.."
seconds=${1:-600}

scripts/install-deps.sh
mkdir -p build
targets=$(sed -n 's/^foreach(name \(.*\))$/\1/p' fuzz/CMakeLists.txt)
cmake -S . -B build/fuzz -G Ninja -DCMAKE_BUILD_TYPE=Debug -DCMAKE_CXX_FLAGS_DEBUG="-g -O1" \
    -DCMAKE_C_COMPILER=clang -DCMAKE_CXX_COMPILER=clang++ -DLMCOM_SANITIZE=ON -DLMCOM_FUZZ=ON \
    -DLMCOM_BUILD_TESTS=OFF -DLMCOM_TEST_CONSUMERS=OFF >build/fuzz-configure.log 2>&1 ||
    { cat build/fuzz-configure.log; exit 1; }
# shellcheck disable=SC2086
cmake --build build/fuzz -j "$(nproc)" --target $targets >build/fuzz/build.log 2>&1 ||
    { tail -40 build/fuzz/build.log; exit 1; }

status=0
for target in $targets; do
    corpus=fuzz/corpus/$target
    found=build/fuzz/found/$target
    log=build/fuzz/$target.log
    mkdir -p "$corpus" "$found"
    # New inputs go to the first folder (outside the tree); the seeds are only read.
    if UBSAN_OPTIONS=halt_on_error=1:print_stacktrace=1 build/fuzz/fuzz/"$target" -max_total_time="$seconds" \
        -timeout=10 -rss_limit_mb=2048 -print_final_stats=1 -artifact_prefix="build/fuzz/$target-" \
        "$found" "$corpus" >"$log" 2>&1; then
        crashes=0
    else
        crashes=1
        status=1
    fi
    runs=$(sed -n 's/^stat::number_of_executed_units: *//p' "$log" | tail -1)
    printf '%-20s %12s executions in %ss, %d crashes%s\n' "$target" "${runs:-?}" "$seconds" "$crashes" \
        "$([ "$crashes" = 0 ] || echo " (see $log)")"
done
exit "$status"
