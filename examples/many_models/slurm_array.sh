#!/bin/sh
#SBATCH --job-name=variants
#SBATCH --array=1-6
#SBATCH --time=00:05:00
#SBATCH --output=variant-%a.log
# sbatch slurm_array.sh runs each variant of variants.csv as a job; by hand: sh slurm_array.sh 3 runs the third.
set -eu
index=${SLURM_ARRAY_TASK_ID:-$1}
row=$(sed -n "$((index + 1))p" variants.csv)
IFS=, read -r variant flow_scale rate <<ROW
${row:?variants.csv has no row $index}
ROW
mkdir -p "runs/$variant"
cat > "runs/$variant/changes.sql" <<SQL
UPDATE flow_field SET scale_factor = $flow_scale WHERE number = 1;
UPDATE constant SET value = $rate WHERE constant_type = 1 AND number = 1;
SQL
velm export base.db "runs/$variant/run.inp" --sql "runs/$variant/changes.sql" --quiet
velm check "runs/$variant/run.inp" --json --quiet --fail-on never > "runs/$variant/findings.json"
