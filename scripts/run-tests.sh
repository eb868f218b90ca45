#!/usr/bin/env bash
# Builds LmCom and runs every test: a release build (with the outside consumers of the
# installed package), then an address + undefined sanitizer build of the shared library, then
# the tests that use threads under ThreadSanitizer.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/install-deps.sh
jobs=$(nproc)

cmake -S . -B build/release -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DLMCOM_TEST_CONSUMERS=ON
cmake --build build/release -j "$jobs"
(cd build/release && ctest --output-on-failure -j "$jobs")

cmake -S . -B build/sanitize -G Ninja -DCMAKE_BUILD_TYPE=Debug -DLMCOM_SANITIZE=ON -DBUILD_SHARED_LIBS=ON \
    -DLMCOM_TEST_CONSUMERS=OFF -DCMAKE_CXX_FLAGS_DEBUG="-g -O1"
cmake --build build/sanitize -j "$jobs"
(cd build/sanitize && ASAN_OPTIONS=detect_leaks=1:abort_on_error=1 UBSAN_OPTIONS=print_stacktrace=1 \
    ctest --output-on-failure -j "$jobs")

# ThreadSanitizer sees a race only in code it instruments, so JUCE is built with it too (still
# once, in this build); only the tests that run threads (messaging, the framework) are built.
tsan="-fsanitize=thread"
threaded='/(Platform/Endpoint|Message/MsgSession|main/applicationapi/)[A-Za-z]*Test'
cmake -S . -B build/tsan -G Ninja -DCMAKE_BUILD_TYPE=Debug -DLMCOM_BUILD_TOOLS=OFF -DLMCOM_TEST_CONSUMERS=OFF \
    -DLMCOM_TEST_ONLY="$threaded" \
    -DCMAKE_CXX_FLAGS="$tsan" -DCMAKE_C_FLAGS="$tsan" -DCMAKE_CXX_FLAGS_DEBUG="-g -O1" \
    -DCMAKE_EXE_LINKER_FLAGS="$tsan" -DCMAKE_SHARED_LINKER_FLAGS="$tsan" -DCMAKE_MODULE_LINKER_FLAGS="$tsan"
cmake --build build/tsan -j "$jobs" --target LmComTests
(cd build/tsan && TSAN_OPTIONS=halt_on_error=1 ctest --output-on-failure -j "$jobs")
