#!/usr/bin/env bash
# Files of the sample that KLayout and gerbv have read and written anew show the same to our readers.
#
#   tst_rewritten.sh CAMCONVERT PROJECT
set -euo pipefail

program=$(realpath "$1") project=$(realpath "$2")
strm2gds=$(command -v strm2gds || find /usr/lib/klayout /usr/lib/*/klayout -name strm2gds -type f 2>/dev/null | head -n 1)
[ -n "$strm2gds" ] || { echo "there is no strm2gds (package klayout)"; exit 77; }
command -v gerbv >/dev/null || { echo "there is no gerbv"; exit 77; }
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"

"$program" export "$project/samples/beacon" --out out --layers bottom,drill,gnd,mask_bot,paste_top,silk_bot >log 2>&1 ||
    { cat log; exit 1; }
count=0
for file in out/beacon/*.gds; do
    LD_LIBRARY_PATH=$(dirname "$strm2gds") "$strm2gds" "$file" rewritten.gds >log 2>&1 || { cat log; exit 1; }
    ! cmp -s "$file" rewritten.gds || { echo "FAILED: $file was copied, not rewritten"; exit 1; }
    "$program" diff "$file" rewritten.gds >log || { cat log; echo "FAILED: $file"; exit 1; }
    count=$((count + 1))
done

# gerbv writes inches: sizes of apertures with four digits, so that an edge moves by up to half of a twenty-thousandth
# of an inch, 0.635 um, and coordinates with six, 0.025 um. The largest disc between two square corners that lie so far
# apart is 1.17 times as wide.
widest=850 # nanometres
width() { # of the widest place where two files differ
    "$program" diff "$1" "$2" --json diff.json >log 2>&1 || [ $? -eq 3 ] || { cat log >&2; echo "FAILED: $1" >&2; return 1; }
    python3 -c 'import json; print(max([int(p["width"]) for p in json.load(open("diff.json"))["layers"][0]["places"]] + [0]))'
}
for file in out/beacon/*.gerber; do
    gerbv -x rs274x -o rewritten.gerber "$file" >log 2>&1 || { cat log; exit 1; }
    grep -q 'exported by' rewritten.gerber || { echo "FAILED: $file was not rewritten"; exit 1; }
    found=$(width "$file" rewritten.gerber)
    [ "$found" -le $widest ] || { echo "FAILED: $file: $found nm"; exit 1; }
    count=$((count + 1))
done
[ "$count" -eq 12 ] || { echo "FAILED: $count files of 12"; exit 1; }

# What it would find.
"$program" diff out/beacon/drill.gds out/beacon/gnd.gds >log && { echo "FAILED: two layers are the same"; exit 1; }
# The last hole, two micrometres aside.
awk '{ line[NR] = $0 } /D03\*$/ { last = NR }
     END { for (i = 1; i <= NR; i++) {
               if (i == last && match(line[i], /^X-?[0-9]+/)) {
                   x = substr(line[i], 2, RLENGTH - 1) + 2000
                   line[i] = "X" x substr(line[i], RLENGTH + 1)
               }
               print line[i] } }' out/beacon/drill.gerber >moved.gerber
[ "$(width out/beacon/drill.gerber moved.gerber)" -gt $widest ] || { echo "FAILED: a hole aside is not seen"; exit 1; }
echo "$count files"
