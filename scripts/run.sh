#!/usr/bin/env bash
# Builds the workbench and starts it on the sample job.
#
#   scripts/run.sh [--jobs DIR] [ARCHIVE.tgz ...]
#   scripts/run.sh --batch [--format .gds|.gerber] [--out DIR] [--jobs DIR] [--step NAME] [--overwrite]
#                  [--screenshots DIR] [--verbose] [ARCHIVE.tgz ...]
#
# Without a display, or with --batch, it imports the archives (the sample when none is given), exports every layer that
# the Export dialog offers, prints a line a file, and ends 0 only when every file was written and is not empty.
# Unless the options say otherwise, everything lands in the project's folder out/: jobs in job/, exported files in
# export/, pictures in screenshots/.
set -euo pipefail

project=$(cd "$(dirname "$0")/.." && pwd)
out="$project/out"
say() { echo "== $*"; }

batch=no
options=()  # as given, without --batch
archives=() # absolute
jobs=$out/job
given=" "   # the names of the options, for the defaults
while [ $# -gt 0 ]; do
    case "$1" in
        --batch) batch=yes ;;
        --overwrite | --verbose) options+=("$1") ;;
        --out=* | --jobs=* | --screenshots=* | --format=* | --step=*)
            set -- "${1%%=*}" "${1#*=}" "${@:2}"
            continue
            ;;
        --out | --jobs | --screenshots | --format | --step)
            [ $# -ge 2 ] || { echo "run.sh: $1 needs a value" >&2; exit 2; }
            value=$2
            # The workbench may be started in another folder.
            case "$1" in --format | --step) ;; *) [[ $value == /* ]] || value=$PWD/$value ;; esac
            [ "$1" != --jobs ] || jobs=$value
            options+=("$1" "$value")
            given+="$1 "
            shift
            ;;
        -h | --help)
            sed -n '2,/^set/{/^set/d;s/^# \{0,1\}//;p}' "$0"
            exit 0
            ;;
        -*)
            echo "run.sh: unknown option $1 (--help lists them)" >&2
            exit 2
            ;;
        *)
            [ -e "$1" ] || { echo "run.sh: there is no file $1" >&2; exit 2; }
            archives+=("$(cd "$(dirname "$1")" && pwd)/$(basename "$1")")
            ;;
    esac
    shift
done
if [ -z "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ] && [ $batch = no ]; then
    say "There is no display: running in batch mode"
    batch=yes
fi

"$project/scripts/packages.sh" build run
say "Building the workbench (build/linux-release)"
(
    cd "$project"
    cmake --preset linux-release >/dev/null
    cmake --build --preset linux-release --target workbench sample_jobs
)
workbench="$project/build/linux-release/bin/workbench"
samples=("$project"/build/linux-release/samples/*.tgz)

if [ $batch = yes ]; then
    [ ${#archives[@]} -gt 0 ] || archives=("${samples[@]}")
    [[ $given == *" --out "* ]] || options+=(--out "$out/export")
    [[ $given == *" --jobs "* ]] || options+=(--jobs "$jobs")
    [[ $given == *" --screenshots "* ]] || options+=(--screenshots "$out/screenshots")
    say "Importing and exporting without a person"
    exec "$workbench" --batch --settings "$out" "${options[@]}" "${archives[@]}"
fi

# The settings are the project's own, in out/, so that trying the program out leaves the user's alone. A sample that is
# there already is opened rather than imported again.
open=()
if [ ${#archives[@]} -eq 0 ]; then
    for sample in "${samples[@]}"; do
        name=$(basename "$sample" .tgz)
        if [ -d "$jobs/$name" ]; then open=(--open "$name"); else archives+=("$sample"); fi
    done
fi
say "Starting the workbench with the settings of $out"
exec "$workbench" --settings "$out" "${options[@]}" "${open[@]}" "${archives[@]}"
