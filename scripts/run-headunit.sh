#!/usr/bin/env bash
# The main job: builds LmCom and runs a simulated head unit on the default bus: the reference
# main service and four applications (radio, main menu, USB player, car information). The radio
# starts first, so its requests wait for the main service; the car information receives the
# answer frames of scripts/carinfo-frames.txt; the main service powers everything off after a
# few seconds, tells the applications to quit, and the script ends when they have.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/install-deps.sh
cmake -S . -B build/release -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo
cmake --build build/release -j "$(nproc)" --target MainService DemoApp QN_Logcat

# The default bus and the real root: this is the head unit, not a test.
unset LMCOM_BUS LMCOM_ROOT
main=build/release/tools/mainservice/MainService
app=build/release/examples/DemoApp
# The logging library, found through the loader path: every process's errors show on standard
# error (its QN_Logcat.ini under the root can send them to syslog instead).
export LD_LIBRARY_PATH="$PWD/build/release/tools/logcat${LD_LIBRARY_PATH:+:$LD_LIBRARY_PATH}"

pids=()
cleanup() {
    for pid in "${pids[@]}"; do
        kill "$pid" 2>/dev/null || true
    done
}
trap cleanup EXIT

"$app" radio & pids+=($!)
sleep 1
"$main" --heartbeat-ms 1000 --run-ms 9000 --carinfo-script scripts/carinfo-frames.txt & main_pid=$!; pids+=($main_pid)
sleep 0.5
"$app" mainmenu & pids+=($!)
sleep 0.5
"$app" usb & pids+=($!)
sleep 0.5
"$app" carinfo & pids+=($!)

status=0
wait "$main_pid" || status=$?
for pid in "${pids[@]}"; do
    wait "$pid" || status=$?
done
pids=()
echo "head unit stopped (status $status)"
exit "$status"
