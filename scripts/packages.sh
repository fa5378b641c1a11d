#!/usr/bin/env bash
# Installs what the project needs from Debian's or Ubuntu's packages, by name, and only what is missing.
#
#   scripts/packages.sh SET...      sets: build run test check crosscheck bench fuzz windows
set -euo pipefail

declare -A packages=(
    [build]="g++ ccache cmake ninja-build qtbase5-dev libgoogle-glog-dev libsqlite3-dev zlib1g-dev libpolyclipping-dev
            libutfcpp-dev qttools5-dev-tools qttranslations5-l10n"
    [run]="p7zip-full fonts-dejavu-core fonts-wqy-microhei qtbase5-dev"
    [test]="p7zip-full fonts-dejavu-core dpkg-dev file parallel procps"
    [check]="clang-format clang-tidy python3 qttools5-dev-tools"
    [crosscheck]="gerbv klayout"
    [bench]="gerbv klayout libarchive-tools"
    [fuzz]="clang libclang-rt-dev"
    [windows]="libutfcpp-dev g++ make cmake ninja-build perl tcl xz-utils g++-mingw-w64-x86-64-posix libz-mingw-w64-dev
               qttools5-dev-tools qttranslations5-l10n wine wine64 xvfb xauth unzip fonts-dejavu-core"
)

wanted=()
for set in "$@"; do
    [ -n "${packages[$set]+known}" ] || { echo "packages.sh: no set '$set'" >&2; exit 2; }
    read -ra names <<<"${packages[$set]//$'\n'/ }"
    wanted+=("${names[@]}")
done

missing=()
for name in "${wanted[@]}"; do
    [ "$(dpkg-query -W -f '${db:Status-Status}' "$name" 2>/dev/null)" = installed ] || missing+=("$name")
done
[ ${#missing[@]} -eq 0 ] && exit 0

as_root=()
[ "$(id -u)" -eq 0 ] || as_root=(sudo)
echo "Installing: ${missing[*]}"
"${as_root[@]}" apt-get -qq update
"${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -qq install -y --no-install-recommends "${missing[@]}" >/dev/null
