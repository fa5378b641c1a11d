#!/usr/bin/env bash
# Jobs on two workers by examples/many_machines/parallel.sh; one worker is killed in the middle, then the engine itself; after a restart every
# job is done, none twice, and nothing is lost or half.
#
#   tst_manymachines.sh CAMCONVERT PROJECT [JOBS]
set -euo pipefail

program=$(realpath "$1") project=$(realpath "$2") jobs=${3:-8}
command -v parallel >/dev/null || { echo "there is no GNU parallel (package parallel)"; exit 77; }
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"
export TMPDIR=$work/temporary HOME=$work
mkdir temporary archives
die() { echo "FAILED: $*"; exit 1; }

# The same board under many names, each with something of its own.
for i in $(seq -w "$jobs"); do
    mkdir "board$i"
    cp -r "$project/samples/beacon/." "board$i"
    printf 'OP 2.5 %s' "$i" >"board$i/misc/revision"
    tar czf "archives/board$i.tgz" "board$i"
    rm -r "board$i"
done

# Notes each job that a worker has written to its end.
cat >worker <<END
#!/usr/bin/env bash
"$program" "\$@"
code=\$?
if [ \$code -eq 0 ]; then
    while [ "\$1" != --json ]; do shift; done
    grep -q '"status":"written"' "\$2" && basename "\$2" >>"$work/written"
fi
exit \$code
END
chmod +x worker
export CAMCONVERT=$work/worker
: >written
convertAll() { "$project/examples/many_machines/parallel.sh" out archives/*.tgz -- --layers top,gnd,drill; }
records() { find out/.camconvert -name '*.json' 2>/dev/null | wc -l; }
# The processes below one.
below() { local child; for child in $(ps -o pid= --ppid "$1"); do echo "$child"; below "$child"; done; }

convertAll >first.log 2>&1 &
engine=$!
until [ "$(records)" -ge $((jobs / 4)) ]; do
    kill -0 $engine 2>/dev/null || { cat first.log; die "the first run ended before anything could be killed"; }
    sleep 0.01
done
# One worker in the middle of its job...
victim=
while [ -z "$victim" ]; do
    kill -0 $engine 2>/dev/null || { cat first.log; die "the first run ended before a worker could be killed"; }
    for process in $(below $engine); do
        [ "$(readlink "/proc/$process/exe" 2>/dev/null)" != "$program" ] || victim=$process
    done
done
kill -9 "$victim"
# ...and then everything else.
until [ "$(records)" -ge $((jobs / 2)) ]; do
    kill -0 $engine 2>/dev/null || die "the first run ended too early"
    sleep 0.01
done
kill -9 $(below $engine) $engine 2>/dev/null || true
wait $engine 2>/dev/null || true
before=$(records)
echo "killed: one worker, then all, with $before of $jobs jobs done"
[ "$before" -lt "$jobs" ] || die "all jobs were done before the restart"

convertAll >second.log 2>&1 || { cat second.log; die "the second run"; }
[ "$(records)" -eq "$jobs" ] || die "$(records) records of $jobs"
kept=$(grep -l '"status":"kept"' out/reports/*.jsonl | wc -l)
[ "$kept" -ge "$before" ] || die "$kept jobs passed over of $before that were done"
# A worker that was killed between the record and its note has none: it may be missing, and nothing may be there twice.
[ -z "$(sort written | uniq -d)" ] || die "done twice: $(sort written | uniq -d)"
[ "$(wc -l <written)" -ge $((jobs - 3)) ] || die "only $(wc -l <written) notes"
[ -z "$(find out -name '*.part*')" ] || die "half: $(find out -name '*.part*')"
for archive in archives/*.tgz; do
    name=$(basename "$archive" .tgz)
    grep -q '"done":true' "out/reports/$name.jsonl" || die "$name is not done"
    # The same bytes as those of a run that nobody disturbed, but for the job's name in them.
    if [ "$name" = "board$(seq -w "$jobs" | head -1)" ]; then
        "$program" export "$archive" --out alone --layers top,gnd,drill >/dev/null 2>&1
        reference=$name
    fi
    for file in top.gds top.gerber gnd.gds gnd.gerber drill.gds drill.gerber; do
        cmp -s <(sed "s/$name/NAME/g" "out/$name/$file") <(sed "s/$reference/NAME/g" "alone/$reference/$file") ||
            die "out/$name/$file is not what it should be"
    done
done
convertAll >third.log 2>&1 || die "the third run"
[ "$(grep -l '"status":"written"' out/reports/*.jsonl | wc -l)" -eq 0 ] || die "a job was done again"
echo "$jobs jobs: $before before the kill, $((jobs - before)) after it, none twice"
