# Sourced by the tests of what is installed: a scratch folder, and the workbench run out of an installed tree.

build=$(cd "$1" && pwd)
source=$(cd "$2" && pwd)
cmake=${CMAKE:-cmake}
scratch=$(mktemp -d "${TMPDIR:-/tmp}/file_process_package.XXXXXX")
trap 'rm -rf "$scratch"' EXIT

fail() { echo "FAIL: $*" >&2; exit 1; }

# run_workbench BIN SAMPLE: the program in BIN exports the job archive SAMPLE without help from the environment.
run_workbench() {
    local bin=$1 sample=$2 log=$scratch/workbench.log
    mkdir -p "$scratch/run"
    local -a clean=(env -i "HOME=$scratch" LC_ALL=C.UTF-8 "XDG_RUNTIME_DIR=$scratch")
    (cd "$scratch/run" && "${clean[@]}" "$bin/workbench" --batch --verbose --jobs "$scratch/run/jobs" --out "$scratch/run/out" \
        "$sample") > "$log" 2>&1 || { cat "$log"; fail "the installed workbench ended with $?"; }
    grep -q "^24 files, .*no failure" "$log" || { cat "$log"; fail "expected 24 exported files"; }
    grep -q "loaded the plug-in $(dirname "$bin")/" "$log" || { cat "$log"; fail "the plug-in is not that of the tree"; }
    ! grep -q "$build" "$log" || { grep "$build" "$log"; fail "the installed workbench uses the build folder"; }
    version=$("${clean[@]}" "$bin/workbench" --version)
    [ "$version" = "workbench $(project_version)" ] || fail "--version says \"$version\""
}

project_version() { sed -n 's/^CMAKE_PROJECT_VERSION:STATIC=//p' "$build/CMakeCache.txt"; }

# no_library_of_the_build TREE: no program or library of TREE looks for libraries below the build folder.
no_library_of_the_build() {
    local file
    while read -r file; do
        ! readelf -d "$file" 2>/dev/null | grep -E 'RPATH|RUNPATH' | grep -v '\[\$ORIGIN' ||
            fail "$file looks for libraries in a fixed folder"
    done < <(find "$1" -type f \( -name '*.so' -o -perm -u+x \))
}
