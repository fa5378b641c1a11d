#!/usr/bin/env bash
# Exports every layer of the samples, and of the archives in ../shared/data, in both formats. KLayout reads both files and
# compares them; pictures that gerbv and KLayout make of them are compared with the source. gerbv's
# pictures of a few drill files are compared with the library's reading of them.
#
#   scripts/crosscheck.sh [--full] [--job NAME] [--transform NAME] [--layer NAME] [TEST ARGUMENT...]
#       --full        pictures of all of the boards (minutes a job and transform), not of one window a layer and transform
#       --job         only this sample or archive, without its ending
#       --transform   only this: "as it is", "rotated by 90", "mirrored", "scaled by 1.25 and 2", "negated",
#                     "mirrored, rotated by 30, negated"
#       --layer       only layers of this name
set -euo pipefail
cd "$(dirname "$0")/.."

while [ $# -gt 0 ]; do
    case $1 in
        --full) export FILE_PROCESS_CROSSCHECK=full ;;
        --job) export FILE_PROCESS_CROSSCHECK_JOB=$2; shift ;;
        --transform) export FILE_PROCESS_CROSSCHECK_TRANSFORM=$2; shift ;;
        --layer) export FILE_PROCESS_CROSSCHECK_LAYER=$2; shift ;;
        *) break ;;
    esac
    shift
done
scripts/packages.sh build test crosscheck

build=build/crosscheck
echo "Configuring"
cmake -S . -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Release -DFILE_PROCESS_CROSSCHECK=ON >/dev/null
echo "Building"
cmake --build "$build" --target tst_crosscheck tst_drillpictures
echo "Comparing"
run() {
    local test
    test=$(find "$build" -name "$1" -type f -perm -u+x | head -1)
    QT_QPA_PLATFORM=offscreen LC_ALL=C.UTF-8 "$test" -maxwarnings 0 "${@:2}"
}
run tst_drillpictures
run tst_crosscheck "$@"
