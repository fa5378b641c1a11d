#!/usr/bin/env bash
# Measures camconvert: a whole archive to both formats, unpacking included, against `tar xzf` followed by programs that read and write
# the same files (KLayout's strm2gds, gerbv -x rs274x). All of them alternate.
#
#   bench/convert.sh BUILD_FOLDER [ROUNDS] [FOLDER]
#
# BUILD_FOLDER is a release build. The files go to FOLDER, by default into the build folder.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build=$(cd "$1" && pwd)
rounds=${2:-3}
work=$(realpath -m "${3:-$build}")/convert-bench
program=$build/bin/camconvert

strm2gds=$(command -v strm2gds || find /usr/lib/klayout /usr/lib/*/klayout -name strm2gds -type f 2>/dev/null | head -n 1)
[ -n "$strm2gds" ] || { echo "bench/convert.sh needs strm2gds (package klayout)" >&2; exit 2; }
command -v gerbv >/dev/null || { echo "bench/convert.sh needs gerbv (package gerbv)" >&2; exit 2; }
export LD_LIBRARY_PATH=$(dirname "$strm2gds")${LD_LIBRARY_PATH:+:$LD_LIBRARY_PATH}

# The real archives beside the project where there are some, otherwise the project's own sample.
mkdir -p "$work"
trap 'rm -rf "$work"' EXIT
archives=()
for name in sample_design altium_praxis; do
    [ ! -f "$root/../shared/data/$name.tgz" ] || archives+=("$(realpath "$root/../shared/data/$name.tgz")")
done
if [ ${#archives[@]} -eq 0 ]; then
    tar czf "$work/beacon.tgz" -C "$root/samples" beacon
    archives=("$work/beacon.tgz")
fi

# Runs "$@"; prints its seconds by the clock, its seconds of processor time, its peak memory in MB, and its exit code.
measured() {
    python3 - "$@" <<'END'
import os, resource, subprocess, sys, time
start = time.monotonic()
code = subprocess.run(sys.argv[1:], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL).returncode
used = resource.getrusage(resource.RUSAGE_CHILDREN)
print(f"{time.monotonic() - start:.3f} {used.ru_utime + used.ru_stime:.3f} {used.ru_maxrss / 1024:.0f} {code}")
END
}
median() { sort -n | awk '{ v[NR] = $1 } END { print (NR % 2) ? v[(NR + 1) / 2] : (v[NR / 2] + v[NR / 2 + 1]) / 2 }'; }

# What people do with other programs, one after the other: unpack, then read and write each file.
cat >"$work/others.sh" <<END
rm -rf "$work/unpacked" "$work/rewritten"
mkdir -p "$work/unpacked" "$work/rewritten"
tar xzf "\$1" -C "$work/unpacked"
for file in "$work"/reference/*/*.gds; do "$strm2gds" "\$file" "$work/rewritten/\$(basename "\$file")"; done
for file in "$work"/reference/*/*.gerber; do gerbv -x rs274x -o "$work/rewritten/\$(basename "\$file")" "\$file"; done
END

echo "$rounds rounds; $(nproc) cores, load $(cut -d' ' -f1-3 /proc/loadavg)"
for archive in "${archives[@]}"; do
    name=$(basename "$archive" .tgz)
    rm -rf "$work/reference"
    "$program" export "$archive" --out "$work/reference" >/dev/null 2>&1 || true
    echo "$name: $(stat -c %s "$archive") bytes, $(find "$work/reference" -name '*.g*' | wc -l) files of $(du -cb "$work"/reference/*/* | tail -1 | cut -f1) bytes"
    for way in others export one verify; do : >"$work/$way"; done
    for _ in $(seq "$rounds"); do
        rm -rf "$work/out"
        measured bash "$work/others.sh" "$archive" >>"$work/others"
        measured "$program" export "$archive" --out "$work/out/a" >>"$work/export"
        measured "$program" export "$archive" --out "$work/out/b" --jobs 1 >>"$work/one"
        measured "$program" export "$archive" --out "$work/out/c" --verify >>"$work/verify"
    done
    seconds() { cut -d' ' -f1 "$work/$1" | median; }
    processor() { cut -d' ' -f2 "$work/$1" | median; }
    for way in others export one verify; do
        printf '  %-8s %s s, %s s of processor time, %s MB, exit code %s\n' $way "$(seconds $way)" "$(processor $way)" \
            "$(cut -d' ' -f3 "$work/$way" | sort -n | tail -1)" "$(cut -d' ' -f4 "$work/$way" | sort -u | paste -sd,)"
    done
    ratio() { awk -v a="$1" -v b="$2" 'BEGIN { printf "%.2f", a / b }'; }
    echo "  export / others             $(ratio "$(seconds export)" "$(seconds others)")   (at most 0.3; of processor time $(ratio "$(processor export)" "$(processor others)"))"
    echo "  export --verify / others    $(ratio "$(seconds verify)" "$(seconds others)")   (at most 1.0; of processor time $(ratio "$(processor verify)" "$(processor others)"))"
    echo "  one core / all              $(ratio "$(seconds one)" "$(seconds export)")   (at least 1.7 with two)"
done
