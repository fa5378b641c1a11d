#!/usr/bin/env bash
# Builds and runs the benchmarks; what follows the name is passed on.
#
#   scripts/bench.sh convert [ROUNDS]    camconvert on whole archives against tar, KLayout and gerbv
#   scripts/bench.sh export [ROUNDS]     exports against KLayout and gerbv
#   scripts/bench.sh import [ROUNDS]     job unpacking against tar, bsdtar and 7z
#   scripts/bench.sh dialog [LAYERS...]  opening the Export dialog, and its table commands
#   scripts/bench.sh view                the workbench's view on a panel of a million features, KLayout beside it
set -euo pipefail
cd "$(dirname "$0")/.."

what=${1:-}
[ -f "bench/$what.sh" ] || { echo "usage: scripts/bench.sh convert|dialog|export|import|view [ARGUMENTS]" >&2; exit 2; }
shift
scripts/packages.sh build test bench

build=build/bench
echo "Configuring"
cmake -S . -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Release -DFILE_PROCESS_BENCH=ON >/dev/null
echo "Building"
cmake --build "$build" >/dev/null
echo "Measuring"
exec "bench/$what.sh" "$build" "$@"
