#!/usr/bin/env bash
# Checks that the committed demo logs are what their generator writes, so that a change
# to one is not forgotten in the other.
#
# Usage: check_demo_data.sh DEMO_DIR SCRATCH_DIR
set -euo pipefail

if [[ $# -ne 2 ]]; then
    echo "usage: $0 DEMO_DIR SCRATCH_DIR" >&2
    exit 2
fi
demo_dir=$1
scratch=$2
rm -rf "$scratch"
bash "$demo_dir/make_demo.sh" "$scratch"

status=0
for log in gamma_ray.csv resistivity.csv caliper.csv density.csv dt_compressional.csv dt_shear.csv; do
    if cmp -s "$demo_dir/$log" "$scratch/$log"; then
        echo "same: $log"
    else
        echo "DIFFERENT: $log is not what make_demo.sh writes; rerun data/demo/make_demo.sh" >&2
        status=1
    fi
done
exit $status
