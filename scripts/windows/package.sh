#!/usr/bin/env bash
# Packs the Windows build for users, and starts the workbench out of the unpacked package.
#
#   scripts/windows/package.sh BUILD
set -euo pipefail

build=$(cd "$1" && pwd)
here=$(cd "$(dirname "$0")" && pwd)
say() { printf '[windows] %s\n' "$*"; }

version=$(sed -n 's/^CMAKE_PROJECT_VERSION:STATIC=//p' "$build/CMakeCache.txt")
name=File_Process-$version-win64
scratch=$(mktemp -d "${TMPDIR:-/tmp}/file_process_package.XXXXXX")
trap 'rm -rf "$scratch"' EXIT

say "packing $name.zip"
rm -f "$build/$name.zip"
cpack --config "$build/CPackConfig.cmake" -G ZIP -B "$scratch/packages" > "$scratch/cpack.log" ||
    { cat "$scratch/cpack.log"; exit 1; }
mv "$scratch/packages/$name.zip" "$build/$name.zip"

# A folder with a blank in its name, as users have them, and none of the build's libraries in reach.
say "starting the workbench out of the package"
mkdir "$scratch/a user"
unzip -q -d "$scratch/a user" "$build/$name.zip"
cd "$scratch/a user/$name"
status=0
FILE_PROCESS_WINEPREFIX=$build/wine "$here/run-under-wine.sh" ./workbench.exe --batch --jobs jobs --out exported \
    samples/*.tgz > "$scratch/output.txt" || status=$?
tr -d '\r' < "$scratch/output.txt"
[ "$status" -eq 0 ] || { echo "[windows] error: the packaged workbench ended with $status" >&2; exit 1; }
for ending in gds gerber; do
    count=$(find exported -name "*.$ending" -size +0 | wc -l)
    [ "$count" -gt 0 ] || { echo "[windows] error: the packaged workbench wrote no .$ending file" >&2; exit 1; }
    say "the packaged workbench wrote $count .$ending files"
done
# Each library is one that the notices name, and each licence that they name is there.
while read -r library; do
    grep -qF "$(basename "$library")" NOTICES.txt ||
        { echo "[windows] error: NOTICES.txt does not name $library" >&2; exit 1; }
done < <(find . -name '*.dll' -o -name '*.exe')
while read -r folder; do
    [ -n "$(find "$folder" -type f -size +0 2>/dev/null | head -n 1)" ] ||
        { echo "[windows] error: the package has no $folder" >&2; exit 1; }
done < <(grep -oE 'licences/[a-z0-9/-]+' NOTICES.txt | sort -u)
say "$build/$name.zip, $(du -h "$build/$name.zip" | cut -f 1)"
