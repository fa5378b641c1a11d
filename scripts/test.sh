#!/usr/bin/env bash
# Builds everything and runs all tests; arguments are passed on to ctest.
#
#   scripts/test.sh [CTEST ARGUMENT...]
#   FILE_PROCESS_PRESET=linux-asan scripts/test.sh       the same with another preset of CMakePresets.json
set -euo pipefail
cd "$(dirname "$0")/.."

preset=${FILE_PROCESS_PRESET:-linux-debug}
scripts/packages.sh build run test

echo "Configuring ($preset)"
cmake --preset "$preset" >"/tmp/file_process_configure.$$" 2>&1 || { cat "/tmp/file_process_configure.$$"; exit 1; }
rm -f "/tmp/file_process_configure.$$"
echo "Building"
# FILE_PROCESS_TARGETS: only these (then ctest has to be told, too)
cmake --build --preset "$preset" ${FILE_PROCESS_TARGETS:+--target $FILE_PROCESS_TARGETS}
echo "Testing"
ctest --preset "$preset" --parallel "$(nproc)" "$@" | tee "build/$preset/tests.txt"
