#!/bin/sh
# Checks that the committed first-letter table is exactly what the generator makes from the
# Unihan database installed here. Exit 0: equal; 1: different; 77: skipped, with the reason.
# Usage: check-table.sh COMMITTED_TABLE [UNIHAN_READINGS]
set -u
here=$(cd "$(dirname "$0")" && pwd)
committed=$1
unihan=${2:-/usr/share/unicode/Unihan_Readings.txt.bz2}

if ! command -v python3 >/dev/null 2>&1; then
    echo "SKIPPED: python3 is not installed (Debian package python3)"
    exit 77
fi
if ! python3 -c 'import bz2' >/dev/null 2>&1; then
    echo "SKIPPED: python3 has no bz2 module"
    exit 77
fi
if [ ! -r "$unihan" ]; then
    echo "SKIPPED: $unihan is missing (Debian package unicode-data)"
    exit 77
fi

generated=$(mktemp) || exit 1
trap 'rm -f "$generated"' EXIT
python3 "$here/generate-pinyin-table.py" --unihan "$unihan" --output "$generated" || exit 1
if ! cmp -s "$generated" "$committed"; then
    echo "$committed differs from what tools/pinyin/generate-pinyin-table.py makes from $unihan:"
    diff "$committed" "$generated" | head -20
    exit 1
fi
echo "$committed matches the generator's output from $unihan"
