#!/usr/bin/env bash
# Takes the pictures of the documents into docs/pictures, or, with --all, pictures of every window in every language, dark, at
# scale 2 and at 1024x600 into out/pictures, to be looked at.
#
#   scripts/pictures.sh [--all]
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/packages.sh build run test

cmake --preset linux-release > /dev/null
cmake --build --preset linux-release --target pictures
program=build/linux-release/bin/pictures
export QT_QPA_PLATFORM=offscreen

if [ "${1:-}" = --all ]; then
    $program out/pictures/en
    $program out/pictures/de --language de
    $program out/pictures/zh_CN --language zh_CN
    $program out/pictures/dark --dark
    $program out/pictures/small --size 1024x600
    QT_SCALE_FACTOR=2 $program out/pictures/scale2 --size 620x390
    echo "The pictures are in out/pictures."
    exit
fi
taken=$(mktemp -d)
trap 'rm -rf "$taken"' EXIT
$program "$taken"
for name in workbench viewing inspecting measuring components searching print export-dialog export-dialog-done results \
    differences history log settings; do
    cp "$taken/$name.png" docs/pictures/
done

# How Windows draws the dialog, where scripts/windows.sh has made the program.
windows=build/windows-mingw
if [ ! -e $windows/bin/workbench.exe ]; then
    echo "There is no $windows/bin/workbench.exe: export-dialog-windows.png stays as it is."
    exit
fi
. scripts/windows/wine.sh
FILE_PROCESS_TEST_WINDOWS=1 scripts/windows/run-under-wine.sh $windows/bin/workbench.exe --batch --format .gds \
    --settings "$(windows_path "$taken/settings")" --jobs 'C:\jobs' --out 'C:\exported' --overwrite \
    --screenshots "$(windows_path "$taken/windows")" "$(windows_path "$PWD/$windows/samples/beacon.tgz")"
cp "$taken/windows/03-beacon-export-gds-done.png" docs/pictures/export-dialog-windows.png
