#!/usr/bin/env bash
# Imports and exports the same jobs with the Linux and the Windows workbench, and compares the files byte by byte.
#
#   scripts/windows/compare.sh BUILD [ARCHIVE.tgz ...]       (the samples when no archive is given)
set -euo pipefail

build=$(cd "$1" && pwd)
shift
here=$(cd "$(dirname "$0")" && pwd)
project=$here/../..
say() { printf '[windows] %s\n' "$*"; }

archives=()
for archive in "$@"; do archives+=("$(cd "$(dirname "$archive")" && pwd)/$(basename "$archive")"); done
[ ${#archives[@]} -gt 0 ] || archives=("$build"/samples/*.tgz)
scratch=$(mktemp -d "${TMPDIR:-/tmp}/file_process_compare.XXXXXX")
trap 'rm -rf "$scratch"' EXIT

say "exporting on Linux"
"$project/scripts/run.sh" --batch --jobs "$scratch/linux/jobs" --out "$scratch/linux/out" "${archives[@]}" \
    > "$scratch/linux.txt" || { cat "$scratch/linux.txt"; exit 1; }
say "exporting under Wine"
"$here/run-under-wine.sh" "$build/bin/workbench.exe" --batch --jobs "$scratch/windows/jobs" --out "$scratch/windows/out" \
    "${archives[@]}" > "$scratch/windows.txt" || { cat "$scratch/windows.txt"; exit 1; }

for part in jobs out; do
    diff -rq "$scratch/linux/$part" "$scratch/windows/$part" || { say "error: the $part differ"; exit 1; }
done
count=$(find "$scratch/windows/out" -type f | wc -l)
[ "$count" -gt 0 ] || { say "error: nothing was exported"; exit 1; }
say "$count exported files are the same on Linux and under Wine, byte by byte"
