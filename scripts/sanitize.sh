#!/usr/bin/env bash
# Runs the tests under the sanitizers: address and undefined behaviour over everything, threads over the jobs.
#
#   scripts/sanitize.sh [address|thread]      without an argument both
#   scripts/sanitize.sh quick                 address and undefined behaviour over what hostile input reaches first
set -euo pipefail
cd "$(dirname "$0")/.."

suppressions=$PWD/tests/support
address() {
    # What the plug-in leaves to its host or to Qt is no leak of ours to find here; the leak tests count it.
    ASAN_OPTIONS=detect_leaks=0:detect_odr_violation=0 UBSAN_OPTIONS=print_stacktrace=1 \
        FILE_PROCESS_PRESET=linux-asan scripts/test.sh "$@"
}
quick() {
    local tests=(tst_archive tst_corruption tst_extractionplan tst_cam_featuresfile tst_sequence)
    FILE_PROCESS_TARGETS="${tests[*]}" address -R "^($(IFS='|'; echo "${tests[*]}"))\$"
}
thread() {
    # Qt's own libraries are not instrumented: their synchronisation is invisible and suppressed.
    TSAN_OPTIONS="suppressions=$suppressions/tsan.supp:halt_on_error=1:second_deadlock_stack=1" \
        FILE_PROCESS_PRESET=linux-tsan scripts/test.sh --label-regex jobs
}

case "${1:-both}" in
address) address ;;
quick) quick ;;
thread) thread ;;
both) address; thread ;;
*) echo "usage: scripts/sanitize.sh [address|thread|quick]" >&2; exit 2 ;;
esac
