#!/usr/bin/env bash
# Builds the Windows programs on Linux, with MinGW-w64, and runs all tests under Wine.
#
#   scripts/windows.sh [--no-tests] [--package] [--compare] [CTEST ARGUMENT...]
#
#   --no-tests   builds only
#   --package    also packs build/windows-mingw/File_Process-<version>-win64.zip, and starts what is in it
#   --compare    also exports the sample on Linux and under Wine, and compares the files byte by byte
#
# The libraries for Windows are built once, into FILE_PROCESS_WINDOWS_DEPS (default: the user's cache folder).
set -euo pipefail
cd "$(dirname "$0")/.."

build=$PWD/build/windows-mingw

main() {
    local tests=yes package= compare= arguments=()
    for argument in "$@"; do
        case $argument in
        --no-tests) tests= ;;
        --package) package=yes ;;
        --compare) compare=yes ;;
        --help) sed -n '2,/^set /{/^set /d;s/^# \{0,1\}//;p}' "$0"; return ;;
        *) arguments+=("$argument") ;;
        esac
    done

    say "checking the packages"
    scripts/packages.sh windows
    scripts/windows/dependencies.sh
    build_programs
    [ -z "$tests" ] || run_tests "${arguments[@]}"
    [ -z "$package" ] || scripts/windows/package.sh "$build"
    [ -z "$compare" ] || scripts/windows/compare.sh "$build"
    [ -z "$tests" ] || grep -E 'tests passed|Total Test time' "$build/tests.txt" | sed 's/^/[windows] /'
}

build_programs() {
    say "configuring"
    mkdir -p build
    cmake --preset windows-mingw > "$build.configure.log" 2>&1 || { cat "$build.configure.log"; exit 1; }
    say "building"
    cmake --build --preset windows-mingw
}

# One X server and one Wine server for the whole run: starting them for each test would take longer than the tests.
run_tests() {
    say "testing under Wine"
    . scripts/windows/wine.sh
    wine_use "$build/wine"
    "$WINESERVER" -k || true # one that was started without the X server has no desktop
    trap '"$WINESERVER" -k || true' EXIT
    xvfb-run -a -s "-screen 0 1280x1024x24" \
        ctest --test-dir "$build" --output-on-failure --parallel "$(nproc)" "$@" | tee "$build/tests.txt"
}

say() { printf '[windows] %s\n' "$*"; }

main "$@"
