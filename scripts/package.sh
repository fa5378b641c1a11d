#!/usr/bin/env bash
# Builds the packages for users: file-process and file-process-dev for this Debian or Ubuntu, or the Windows zip.
#
#   scripts/package.sh             build/linux-release/*.deb
#   scripts/package.sh --windows   build/windows-mingw/File_Process-<version>-win64.zip
set -euo pipefail
cd "$(dirname "$0")/.."

case "${1:-}" in
--windows) exec scripts/windows.sh --no-tests --package ;;
"") ;;
*) echo "usage: scripts/package.sh [--windows]" >&2; exit 2 ;;
esac
scripts/packages.sh build test
echo "Building (build/linux-release)"
cmake --preset linux-release -DBUILD_TESTING=OFF >/dev/null
cmake --build --preset linux-release
echo "Packing"
(cd build/linux-release && cpack -G DEB)
tests/package/tst_debianpackage.sh build/linux-release .
