#!/usr/bin/env bash
# A Slurm array job: the task N exports the archive in the line N of a list.
#
#   sbatch --array=1-$(wc -l <archives.txt) examples/many_machines/slurm.sh OUT archives.txt [OPTION...]
#
#SBATCH --job-name=camconvert
#SBATCH --requeue
#SBATCH --cpus-per-task=1
#SBATCH --output=camconvert-%A_%a.log
set -euo pipefail

out=$1 list=$2
shift 2
archive=$(sed -n "${SLURM_ARRAY_TASK_ID}p" "$list")
[ -n "$archive" ] || { echo "$list has no line $SLURM_ARRAY_TASK_ID" >&2; exit 2; }
mkdir -p "$out/reports"
name=$(basename "$archive")
exec "${CAMCONVERT:-camconvert}" export "$archive" --out "$out" --resume --jobs "${SLURM_CPUS_PER_TASK:-1}" \
    --json "$out/reports/${name%.*}.jsonl" "$@"
