#!/usr/bin/env bash
# Measures the workbench's view on a panel of more than a million features, and KLayout on the same panel as GDSII.
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
trap 'rm -rf "$work"' EXIT
if [ -f "$root/../shared/data/sample_design.tgz" ]; then
    tar xzf "$root/../shared/data/sample_design.tgz" -C "$work"
    job=$work/sample_design step=step layer=layer-1
else
    job=$root/samples/beacon step=pcb layer=top
fi
"$build/bin/viewbench" panel "$work" "$job" "$step" "$layer"
"$build/bin/viewbench" "$work/panel" panel "$layer"

if ! command -v klayout >/dev/null; then
    echo "KLayout is not installed (package klayout): it was not measured."
    exit
fi
"$build/bin/camconvert" export "$work/panel" --format gds --layers "$layer" --out "$work/gds" >/dev/null
file=$(find "$work/gds" -name '*.gds')
echo "KLayout on the same as GDSII, $(($(stat -c %s "$file") / 1000000)) MB"
klayout -z -nc -rx -rd file="$file" -r "$root/bench/view/klayout.py"
