#!/usr/bin/env bash
# Measures the export of large layers in both formats against programs that read and write the same files.
#
#   bench/export.sh BUILD_FOLDER [ROUNDS] [FOLDER]
#
# BUILD_FOLDER is a release build with -DFILE_PROCESS_BENCH=ON. The jobs and files go to FOLDER, by default into the
# build folder.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build=$(cd "$1" && pwd)
rounds=${2:-5}
work=${3:-$build}/export-bench

# KLayout's converters are not on the path; they stand beside its libraries.
strm2gds=$(command -v strm2gds || find /usr/lib/klayout /usr/lib/*/klayout -name strm2gds -type f 2>/dev/null | head -n 1)
[ -n "$strm2gds" ] || { echo "bench/export.sh needs strm2gds (package klayout)" >&2; exit 2; }
command -v gerbv >/dev/null || { echo "bench/export.sh needs gerbv (package gerbv)" >&2; exit 2; }

# The real job beside the project where there is one, otherwise the project's own sample.
mkdir -p "$work"
if [ -f "$root/../shared/data/sample_design.tgz" ]; then
    tar xzf "$root/../shared/data/sample_design.tgz" -C "$work"
    job=$work/sample_design step=step layers=(layer-1 layer-8 silkscreen-bottom layer-3)
else
    job=$root/samples/beacon step=pcb layers=(top bottom silk_top)
fi
"$build/bin/exportbench" compare "$work" "$job" "$step" "${layers[@]}" ROUNDS="$rounds" STRM2GDS="$strm2gds"
rm -rf "$work"
