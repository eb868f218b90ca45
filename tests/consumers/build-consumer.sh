#!/usr/bin/env bash
# build-consumer.sh SOURCE BINARY_DIR PREFIX BUILD_TYPE: configures, builds and runs one outside
# consumer against the installed package.
set -euo pipefail
source_dir=$1 binary_dir=$2 prefix=$3 build_type=$4

# The package carries the logging library that the log bridge loads at run time.
[ -n "$(find "$prefix" -name libQN_Logcat.so)" ] || { echo "the package has no libQN_Logcat.so" >&2; exit 1; }

rm -rf "$binary_dir"
cmake -S "$source_dir" -B "$binary_dir" -G Ninja -DCMAKE_PREFIX_PATH="$prefix" -DCMAKE_BUILD_TYPE="$build_type"
cmake --build "$binary_dir"

# The JUCE application compiles JUCE itself: the package's JUCE library must not be linked in.
if [ "$(basename "$source_dir")" = juceapp ] && grep -q "libLmComJuce" "$binary_dir/build.ninja"; then
    echo "the JUCE application links a second JUCE (libLmComJuce)" >&2
    exit 1
fi
program=$(find "$binary_dir" -type f -name consumer -perm -u+x | head -n 1)
[ -n "$program" ] || { echo "no consumer program was built" >&2; exit 1; }
"$program"
