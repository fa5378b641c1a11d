#!/usr/bin/env bash
# `cmake --install` into an empty folder, which is then moved: the workbench runs out of it, and a host in a project of its own
# is built against it and opens the plug-in's Export dialog.
#
#   tst_install.sh BUILD SOURCE
set -euo pipefail
. "$(dirname "$0")/common.sh" "$@"

"$cmake" --install "$build" --prefix "$scratch/first" > "$scratch/install.log" || { cat "$scratch/install.log"; fail "install"; }
# A blank in the path, and not the folder that was named above.
tree="$scratch/some where"
mv "$scratch/first" "$tree"

run_workbench "$tree/bin" "$tree/share/file_process/samples/beacon.tgz"
no_library_of_the_build "$tree"
[ -f "$tree/share/man/man1/workbench.1" ] || fail "no manual page"
while read -r option; do
    grep -qF -- "${option//-/\\-}" "$tree/share/man/man1/workbench.1" || fail "the manual page does not tell of $option"
done < <("$tree/bin/workbench" --help | grep -oE -- '--[a-z]+' | sort -u)

host=$scratch/minimal_host
# The compiler's cache only: nothing else of the build is known to the host.
"$cmake" -S "$source/examples/minimal_host" -B "$host" "-DCMAKE_PREFIX_PATH=$tree" > "$scratch/host.log" 2>&1 &&
    "$cmake" --build "$host" >> "$scratch/host.log" 2>&1 || { cat "$scratch/host.log"; fail "the example is not built"; }
dialog=$(QT_QPA_PLATFORM=offscreen "$host/minimal_host" "$scratch/run/jobs/beacon" --check 2> "$scratch/host.err") ||
    { cat "$scratch/host.err"; fail "the example ended with $?"; }
[ "$dialog" = "Export: 12 layers" ] || { cat "$scratch/host.err"; fail "the example says \"$dialog\""; }

# Each installed header finds what it includes.
mkdir "$scratch/headers"
(cd "$tree/include/file_process" && find . -name '*.h' | sort | sed 's/.*/#include "&"/') > "$scratch/headers/all.cpp"
cat > "$scratch/headers/CMakeLists.txt" <<'END'
cmake_minimum_required(VERSION 3.18)
project(headers LANGUAGES CXX)
set(CMAKE_CXX_STANDARD 17)
find_package(FileProcess REQUIRED)
add_library(headers OBJECT all.cpp)
target_link_libraries(headers PRIVATE FileProcess::Interface FileProcess::PluginManager FileProcess::Cam)
END
"$cmake" -S "$scratch/headers" -B "$scratch/headers/build" "-DCMAKE_PREFIX_PATH=$tree" > "$scratch/headers.log" 2>&1 &&
    "$cmake" --build "$scratch/headers/build" >> "$scratch/headers.log" 2>&1 ||
    { cat "$scratch/headers.log"; fail "a header needs one that is not installed"; }
echo "PASS: the installed tree works, and the example with it"
