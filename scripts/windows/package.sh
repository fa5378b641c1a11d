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
cmake --install "$build" --component windows --strip --prefix "$scratch/$name" > /dev/null
sed -i 's/$/\r/' "$scratch/$name/README.txt"
rm -f "$build/$name.zip"
(cd "$scratch" && zip -q -r -X "$build/$name.zip" "$name")

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
say "$build/$name.zip, $(du -h "$build/$name.zip" | cut -f 1)"
