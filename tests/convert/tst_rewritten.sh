#!/usr/bin/env bash
# Files of the sample that KLayout has read and written anew show the same to our reader.
#
#   tst_rewritten.sh CAMCONVERT PROJECT
set -euo pipefail

program=$(realpath "$1") project=$(realpath "$2")
strm2gds=$(command -v strm2gds || find /usr/lib/klayout /usr/lib/*/klayout -name strm2gds -type f 2>/dev/null | head -n 1)
[ -n "$strm2gds" ] || { echo "there is no strm2gds (package klayout)"; exit 77; }
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"

"$program" export "$project/samples/beacon" --out out --format gds --layers bottom,drill,gnd,mask_bot,paste_top,silk_bot >log 2>&1 ||
    { cat log; exit 1; }
count=0
for file in out/beacon/*.gds; do
    LD_LIBRARY_PATH=$(dirname "$strm2gds") "$strm2gds" "$file" rewritten.gds >log 2>&1 || { cat log; exit 1; }
    ! cmp -s "$file" rewritten.gds || { echo "FAILED: $file was copied, not rewritten"; exit 1; }
    "$program" diff "$file" rewritten.gds >log || { cat log; echo "FAILED: $file"; exit 1; }
    count=$((count + 1))
done
[ "$count" -eq 6 ] || { echo "FAILED: $count files of 6"; exit 1; }
# What it would find.
"$program" diff out/beacon/drill.gds out/beacon/gnd.gds >log && { echo "FAILED: two layers are the same"; exit 1; }
echo "$count files"
