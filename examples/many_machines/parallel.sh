#!/usr/bin/env bash
# Exports many archives with GNU parallel (Debian's package parallel), here or on other machines.
#
#   examples/many_machines/parallel.sh OUT ARCHIVE.tgz... [-- OPTION...]
#
#   CONVERT_JOBS     how many at a time on this machine (2)
#   CONVERT_LOGINS   machines instead of this one, as --sshlogin of GNU parallel takes them
#   CAMCONVERT    the program (camconvert)
set -euo pipefail

[ $# -ge 2 ] || { echo "usage: examples/many_machines/parallel.sh OUT ARCHIVE.tgz... [-- OPTION...]" >&2; exit 2; }
out=$(realpath -m "$1")
shift
archives=()
while [ $# -gt 0 ] && [ "$1" != -- ]; do
    archives+=("$(realpath "$1")")
    shift
done
[ $# -eq 0 ] || shift # the --
mkdir -p "$out/reports"

where=(--jobs "${CONVERT_JOBS:-2}")
[ -z "${CONVERT_LOGINS:-}" ] || where=(--sshlogin "$CONVERT_LOGINS")

# Each job by one thread: jobs run side by side. {/.} is the archive's name without its folder and its ending.
parallel --will-cite --quote "${where[@]}" --joblog "$out/parallel.log" --retries 2 \
    "${CAMCONVERT:-camconvert}" export {} --out "$out" --resume --jobs 1 --json "$out/reports/{/.}.jsonl" "$@" \
    ::: "${archives[@]}"
