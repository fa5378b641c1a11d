#!/usr/bin/env bash
# Measures how long the Export dialog takes to open and its table commands to run, in milliseconds.
#
#   bench/dialog.sh BUILD_FOLDER [LAYERS...]          dialogs with so many layers: 20, 200 and 2000
#   bench/dialog.sh BUILD_FOLDER --exports N          N exports of one layer: memory and open files
#
# BUILD_FOLDER is a release build with -DFILE_PROCESS_BENCH=ON.
set -euo pipefail
bench=$(cd "$1" && pwd)/bin/dialogbench
shift
export QT_QPA_PLATFORM=${QT_QPA_PLATFORM:-offscreen}
exec "$bench" "$@" 2>/dev/null
