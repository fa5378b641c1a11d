#!/usr/bin/env bash
# Exports every layer of the sample, and of the archives in ../shared/data, in both formats, and compares pictures that
# gerbv and KLayout make of the files with each other and with the source.
#
#   scripts/crosscheck.sh [--full] [TEST ARGUMENT...]
#       --full   looks at all of the boards (hours), not at one window a layer and transform (minutes)
set -euo pipefail
cd "$(dirname "$0")/.."

if [ "${1:-}" = --full ]; then
    export FILE_PROCESS_CROSSCHECK=full
    shift
fi
scripts/packages.sh build test crosscheck

build=build/crosscheck
echo "Configuring"
cmake -S . -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Release -DFILE_PROCESS_CROSSCHECK=ON >/dev/null
echo "Building"
cmake --build "$build" --target tst_crosscheck
echo "Comparing"
test=$(find "$build" -name tst_crosscheck -type f -perm -u+x | head -1)
QT_QPA_PLATFORM=offscreen LC_ALL=C.UTF-8 "$test" -maxwarnings 0 "$@"
