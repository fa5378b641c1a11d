#!/usr/bin/env bash
# Measures the workbench's view on a panel of more than a million features.
#
#   bench/view.sh BUILD_FOLDER
#
# BUILD_FOLDER is a release build with -DFILE_PROCESS_BENCH=ON.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build=$(cd "$1" && pwd)
work=$build/view-bench
export QT_QPA_PLATFORM=offscreen

# The real job beside the project where there is one, otherwise the project's own sample.
rm -rf "$work"
mkdir -p "$work"
if [ -f "$root/../shared/data/sample_design.tgz" ]; then
    tar xzf "$root/../shared/data/sample_design.tgz" -C "$work"
    job=$work/sample_design step=step layer=layer-1
else
    job=$root/samples/beacon step=pcb layer=top
fi
"$build/bin/viewbench" panel "$work" "$job" "$step" "$layer"
"$build/bin/viewbench" "$work/panel" panel "$layer"
rm -rf "$work"
