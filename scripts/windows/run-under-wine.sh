#!/usr/bin/env bash
# Runs a Windows program of the build under Wine; ctest and CMake call it as the cross-compiling emulator.
#
#   run-under-wine.sh PROGRAM.exe [ARGUMENT...]
#
# Windows are not shown unless FILE_PROCESS_TEST_WINDOWS=1, which gives the program real ones, on $DISPLAY or on an X
# server of its own. What a Qt Test program reports does not come through Wine's standard output, so it writes a file,
# which is printed here; a test program that ends without its totals has crashed, whatever its exit code says.
set -euo pipefail

program=$1
shift
here=$(cd "$(dirname "$0")" && pwd)
. "$here/wine.sh"
folder=$(cd "$(dirname "$program")" && pwd)
wine_use "${FILE_PROCESS_WINEPREFIX:-$(wine_prefix_of "$folder")}"

# Temporary files of this run, on the drive that the build is on: paths without a drive letter, such as those that CMake
# compiles into tests, then mean the same in every folder.
temporary=$(mktemp -d "${TMPDIR:-/tmp}/file_process.XXXXXX")
trap 'rm -rf "$temporary"' EXIT
WINETEMP=$(windows_path "$temporary")
export WINETEMP WINETMP=$WINETEMP
export QTEST_FUNCTION_TIMEOUT=${QTEST_FUNCTION_TIMEOUT:-900000} # milliseconds; ctest has a limit of its own

runner=()
if [ "${FILE_PROCESS_TEST_WINDOWS:-0}" = 1 ]; then
    export WINEQT_QPA_PLATFORM=windows
    [ -n "${DISPLAY:-}" ] || runner=(xvfb-run -a)
fi

status=0
case $(basename "$program") in
tst_*)
    report=$temporary/report.txt
    # Not straight to this script's output: what Wine leaves running (its desktop, its server) would keep it open, and
    # ctest would wait for that.
    "${runner[@]}" "$WINE" "$program" "$@" -o "$(windows_path "$report"),txt" > "$temporary/output.txt" 2>&1 || status=$?
    [ -e "$report" ] || touch "$report"
    [ "$status" -eq 0 ] || cat "$temporary/output.txt"
    tr -d '\r' < "$report"
    if [ "$status" -eq 0 ] && ! grep -qE '^Totals: [0-9]+ passed, 0 failed' "$report"; then
        echo "run-under-wine.sh: $program ended with exit code 0 but without reporting its totals" >&2
        status=125
    fi
    ;;
*)
    "${runner[@]}" "$WINE" "$program" "$@" || status=$?
    ;;
esac
exit "$status"
