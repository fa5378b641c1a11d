#!/usr/bin/env bash
# Imports and exports the same jobs with the Linux and the Windows workbench, and compares the files byte by byte.
#
#   scripts/windows/compare.sh BUILD [ARCHIVE.tgz ...]
#
# Without an archive it takes the samples, and the archives in ../shared/data if there are any.
set -euo pipefail

build=$(cd "$1" && pwd)
shift
here=$(cd "$(dirname "$0")" && pwd)
project=$(cd "$here/../.." && pwd)
say() { printf '[windows] %s\n' "$*"; }

archives=()
for archive in "$@"; do archives+=("$(cd "$(dirname "$archive")" && pwd)/$(basename "$archive")"); done
if [ ${#archives[@]} -eq 0 ]; then
    shopt -s nullglob
    archives=("$build"/samples/*.tgz "$project"/../shared/data/{,unread/}*.tgz)
    shopt -u nullglob
fi
scratch=$(mktemp -d "${TMPDIR:-/tmp}/file_process_compare.XXXXXX")
trap 'rm -rf "$scratch"' EXIT

say "comparing the exports of ${archives[*]##*/}"
say "exporting on Linux"
"$project/scripts/run.sh" --batch --jobs "$scratch/linux/jobs" --out "$scratch/linux/out" "${archives[@]}" \
    > "$scratch/linux.txt" || { cat "$scratch/linux.txt"; exit 1; }
say "exporting under Wine"
"$here/run-under-wine.sh" "$build/bin/workbench.exe" --batch --jobs "$scratch/windows/jobs" --out "$scratch/windows/out" \
    "${archives[@]}" > "$scratch/windows.txt" || { cat "$scratch/windows.txt"; exit 1; }

for part in jobs out; do
    diff -rq "$scratch/linux/$part" "$scratch/windows/$part" || { say "error: the $part differ"; exit 1; }
done
for ending in gds gerber; do
    count=$(find "$scratch/windows/out" -name "*.$ending" -size +0 | wc -l)
    [ "$count" -gt 0 ] || { say "error: no .$ending file was exported"; exit 1; }
    say "$count .$ending files of ${#archives[@]} archives are the same on Linux and under Wine, byte by byte"
done
