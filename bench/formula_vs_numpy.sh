#!/usr/bin/env bash
# Sets formula logs beside numpy on this machine: runs bench_formula, then numpy on the
# same sizes, data and expressions (float32 arrays, as the traces hold them), and prints
# both medians and their ratio for the five-operation formula and the Archie formula.
# numpy does less work than a formula log: it neither skips nulls nor counts domain
# problems, nor builds a trace.
#
#   bench/formula_vs_numpy.sh [BUILD_DIR] [--runs N] [--samples N]
#
# BUILD_DIR defaults to build/. numpy comes from the Debian package python3-numpy.
set -euo pipefail

build=build
if [[ $# -gt 0 && $1 != --* ]]; then
    build=$1
    shift
fi
bench="$build/bin/bench_formula"
if [[ ! -x $bench ]]; then
    echo "formula_vs_numpy: $bench is missing; build the bench_formula target first" >&2
    exit 2
fi
runs=7
samples=10000000
args=("$@")
while [[ $# -gt 0 ]]; do
    case $1 in
    --runs) runs=$2 ;;
    --samples) samples=$2 ;;
    *) echo "formula_vs_numpy: unknown option $1" >&2; exit 2 ;;
    esac
    shift 2
done

python=""
for candidate in python3 /usr/bin/python3; do
    if command -v "$candidate" >/dev/null 2>&1 && "$candidate" -c 'import numpy' 2>/dev/null; then
        python=$candidate
        break
    fi
done

figures=$(mktemp)
trap 'rm -f "$figures"' EXIT
"$bench" "${args[@]}" | tee "$figures"

if [[ -z $python ]]; then
    echo
    echo "formula_vs_numpy: numpy is missing (install it with: apt-get install python3-numpy); no comparison made."
    exit 1
fi

"$python" - "$figures" "$samples" "$runs" <<'EOF'
import re, statistics, sys, time
import numpy as np

figures, n, runs = sys.argv[1], int(sys.argv[2]), int(sys.argv[3])
medians = {}
for line in open(figures):
    for key, label in (("five", "five operations"), ("archie", "SQRT(0.62/PHI^2.15*RW/RT) ")):
        if line.strip().startswith(label):
            medians[key] = float(re.split(r"\s{2,}", line.strip())[1].split()[0])

i = np.arange(n, dtype=np.float64)
def log(base, swing):
    values = (base + swing * np.sin(i * 1e-3)).astype(np.float32)
    values[999::1000] = np.float32(-9999.99)
    return values
a, b = log(50.0, 20.0), log(20.0, 5.0)
phi, rw, rt = log(0.2, 0.1), log(0.05, 0.01), log(20.0, 15.0)

def timed(expression):
    seconds = []
    with np.errstate(all="ignore"):
        for _ in range(runs):
            start = time.perf_counter()
            result = expression()
            seconds.append(time.perf_counter() - start)
            del result
    return statistics.median(seconds)

numpy = {
    "five": timed(lambda: (a - b) / (a + b) * 100 + 1),
    "archie": timed(lambda: np.sqrt(0.62 / phi ** 2.15 * rw / rt)),
}
print(f"\n  numpy {np.__version__} on the same {n} float32 samples, median of {runs} runs:")
for key, label in (("five", "(A - B) / (A + B) * 100 + 1"), ("archie", "SQRT(0.62/PHI^2.15*RW/RT)")):
    ours = medians.get(key)
    if ours is None:
        print(f"  {label:30s} numpy {numpy[key]:.4f} s; no bench_formula figure found")
        continue
    print(f"  {label:30s} numpy {numpy[key]:.4f} s, formula log {ours:.4f} s: "
          f"the formula log takes {ours / numpy[key]:.2f} x numpy's time")
EOF
