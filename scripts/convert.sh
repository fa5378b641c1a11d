#!/usr/bin/env bash
# Builds camconvert and runs it with the arguments given here: scripts/convert.sh --help
set -euo pipefail

project=$(cd "$(dirname "$0")/.." && pwd)
# What the program says goes to the standard output; only what is written there is a result.
{
    "$project/scripts/packages.sh" build run
    cd "$project"
    [ -f build/linux-release/build.ninja ] || echo "== Configuring (build/linux-release)"
    cmake --preset linux-release >/dev/null
    [ -x build/linux-release/bin/camconvert ] || echo "== Building camconvert"
    cmake --build --preset linux-release --target camconvert >"/tmp/camconvert_build.$$" ||
        { cat "/tmp/camconvert_build.$$"; rm -f "/tmp/camconvert_build.$$"; exit 1; }
    rm -f "/tmp/camconvert_build.$$"
    cd - >/dev/null
} >&2
exec "$project/build/linux-release/bin/camconvert" "$@"
