#!/usr/bin/env bash
# One task a sample, for clusters without a workflow engine. From the folder that holds samples/:
#
#   sbatch --array=1-$(ls -d samples/*/ | wc -l) slurm-array.sh
#
# and when all tasks are done:   ./slurm-array.sh summary
#
#SBATCH --job-name=orvel
#SBATCH --cpus-per-task=2
#SBATCH --mem=2G
#SBATCH --time=00:10:00
set -eu
export LC_ALL=C # the same order of samples in every task

if [ "${1:-}" = summary ]; then
    first=1
    for table in results/*.csv; do
        [ "$table" != results/summary.csv ] || continue
        tail -n +$first "$table" # the head of the first alone: all have the same columns
        first=2
    done >results/summary.new
    mv results/summary.new results/summary.csv
    exit
fi

samples=(samples/*/)
sample=${samples[$((SLURM_ARRAY_TASK_ID - 1))]%/}
mkdir -p results
template=session.ini
[ ! -e "$sample/own.ini" ] || template=$sample/own.ini # a sample that needs another analysis
cp "$template" "$sample/session.ini"
exec "${ORVEL_BATCH:-orvel-batch}" --quiet --threads "${SLURM_CPUS_PER_TASK:-1}" \
    --table "results/${sample#samples/}.csv" "$sample/session.ini"
