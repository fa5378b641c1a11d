#!/usr/bin/env bash
# Measures the import: the plug-in's unpacking of a large job archive, from call to return, against what people use
# instead. All of them alternate, so that a change of the machine's load meets all of them.
#
#   bench/import.sh BUILD_FOLDER [ROUNDS] [FOLDER]
#
# BUILD_FOLDER is a release build with -DFILE_PROCESS_BENCH=ON. The job (300 MB in 9 000 files, made from a sample job and
# the same every time) is made in FOLDER, which should be on an ordinary disk with 1.3 GB free for every round: the default
# is the build folder.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build=$(cd "$1" && pwd)
rounds=${2:-7}
work=$(realpath "${3:-$build}")/import-bench
bench=$build/bin/importbench
export QT_QPA_PLATFORM=offscreen

need() {
    command -v "$1" >/dev/null || { echo "bench/import.sh needs $1 (package $2)" >&2; exit 2; }
}
need bsdtar libarchive-tools
need 7z p7zip-full

# The real job beside the project where there is one, otherwise the project's own sample.
sample_archive() {
    local real=$root/../shared/data/sample_design.tgz
    if [ -f "$real" ]; then echo "$real"; else ls -S "$build"/samples/*.tgz | head -n 1; fi
}

make_archive() {
    local archive=$work/bigjob.tgz
    if [ ! -f "$archive" ]; then
        echo "making the job (300 MB in 9 000 files)" >&2
        rm -rf "$work"
        mkdir -p "$work/sample"
        tar xzf "$(sample_archive)" -C "$work/sample"
        "$bench" make "$work/sample" "$work/bigjob"
        tar --sort=name --mtime=@1700000000 --owner=0 --group=0 --numeric-owner -C "$work" -cf - bigjob |
            gzip -n >"$archive.part"
        mv "$archive.part" "$archive"
        rm -rf "$work/sample" "$work/bigjob"
    fi
    echo "$archive"
}

# A new folder for one run. What the last run left to the disk is not the next one's burden, and nothing is deleted
# between the runs: ext4 without a journal passes over every recently deleted inode whenever it makes a file, which took
# 5 times as long as the unpacking itself. For five minutes after this measurement the next one meets that too.
fresh_folder() {
    mkdir -p "$work/out"
    sync
    mktemp -d "$work/out/XXXXXX"
}

# Runs "$@" in such a folder, prints its seconds.
timed() {
    local from to
    cd "$(fresh_folder)"
    from=$(date +%s%N)
    "$@" >/dev/null
    to=$(date +%s%N)
    awk -v ns=$((to - from)) 'BEGIN { printf "%.3f\n", ns / 1e9 }'
}

with_7z() {
    7z x -y -bd "$1" && 7z x -y -bd bigjob.tar && rm bigjob.tar
}

with_plugin() {
    "$bench" unpack "$1" "$(fresh_folder)" 2>/dev/null | tail -n 1 # the import writes a member's name before it
}

median() { sort -n | awk '{ v[NR] = $1 } END { print (NR % 2) ? v[(NR + 1) / 2] : (v[NR / 2] + v[NR / 2 + 1]) / 2 }'; }

archive=$(make_archive)
echo "archive: $(stat -c %s "$archive") bytes; $rounds rounds; $(nproc) cores, load $(cut -d' ' -f1 /proc/loadavg)"
results=$work/results
: >"$results"
trap 'rm -rf "$work/out"' EXIT
for round in $(seq "$rounds"); do
    tar_s=$(timed tar xzf "$archive")
    read -r plugin_s peak gap < <(with_plugin "$archive")
    bsdtar_s=$(timed bsdtar xzf "$archive")
    sevenzip_s=$(timed with_7z "$archive")
    echo "$tar_s $bsdtar_s $sevenzip_s $plugin_s $peak $gap" >>"$results"
    echo "round $round: tar $tar_s s, bsdtar $bsdtar_s s, 7z $sevenzip_s s, plug-in $plugin_s s" \
        "(peak $peak MB, longest gap $gap ms)"
done

echo "median of plug-in / tar:    $(awk '{ print $4 / $1 }' "$results" | median)   (at most 0.8)"
echo "median of plug-in / bsdtar: $(awk '{ print $4 / $2 }' "$results" | median)"
echo "median of plug-in / 7z:     $(awk '{ print $4 / $3 }' "$results" | median)   (at most 0.6)"
echo "peak memory:                $(awk '{ print $5 }' "$results" | sort -n | tail -n 1) MB   (below 64)"
echo "longest event gap:          median $(awk '{ print $6 }' "$results" | median) ms," \
    "worst $(awk '{ print $6 }' "$results" | sort -n | tail -n 1) ms   (below 60)"

echo "one process, many imports of the sample job:"
mkdir -p "$work/repeat"
"$bench" repeat "${IMPORTS:-1000}" "$(sample_archive)" "$work/repeat" 2>/dev/null | grep imports
rm -rf "$work/repeat"
