#!/usr/bin/env bash
# Sets formula logs beside numpy on this machine: runs bench_formula and numpy on the same
# sizes, data and expressions (float32 arrays, as the traces hold them) in alternating
# rounds, so that both see the machine in the same state, and prints each round's medians,
# their ratio, and the median ratio over the rounds for the five-operation formula and the
# Archie formula. numpy does less work than a formula log: it neither skips nulls nor
# counts domain problems, nor builds a trace.
#
#   bench/formula_vs_numpy.sh [BUILD_DIR] [--rounds N] [--runs N] [--samples N]
#
# BUILD_DIR defaults to build/; --rounds defaults to 5, --runs (per round) to 7. numpy
# comes from the Debian package python3-numpy.
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
rounds=5
runs=7
samples=10000000
while [[ $# -gt 0 ]]; do
    case $1 in
    --rounds) rounds=$2 ;;
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
if [[ -z $python ]]; then
    "$bench" --runs "$runs" --samples "$samples"
    echo
    echo "formula_vs_numpy: numpy is missing (install it with: apt-get install python3-numpy); no comparison made."
    exit 1
fi

"$python" - "$bench" "$samples" "$runs" "$rounds" <<'PYTHON'
import re, statistics, subprocess, sys, time
import numpy as np

bench, n, runs, rounds = sys.argv[1], int(sys.argv[2]), int(sys.argv[3]), int(sys.argv[4])
rows = (("five", "five operations", "(A - B) / (A + B) * 100 + 1"),
        ("archie", "SQRT(0.62/PHI^2.15*RW/RT) ", "SQRT(0.62/PHI^2.15*RW/RT)"))

i = np.arange(n, dtype=np.float64)
def log(base, swing):
    values = (base + swing * np.sin(i * 1e-3)).astype(np.float32)
    values[999::1000] = np.float32(-9999.99)
    return values
a, b = log(50.0, 20.0), log(20.0, 5.0)
phi, rw, rt = log(0.2, 0.1), log(0.05, 0.01), log(20.0, 15.0)
expressions = {
    "five": lambda: (a - b) / (a + b) * 100 + 1,
    "archie": lambda: np.sqrt(0.62 / phi ** 2.15 * rw / rt),
}

def numpy_median(expression):
    seconds = []
    with np.errstate(all="ignore"):
        for _ in range(runs):
            start = time.perf_counter()
            result = expression()
            seconds.append(time.perf_counter() - start)
            del result
    return statistics.median(seconds)

ours = {key: [] for key, _, _ in rows}
theirs = {key: [] for key, _, _ in rows}
for r in range(rounds):
    output = subprocess.run([bench, "--runs", str(runs), "--samples", str(n)], check=True,
                            capture_output=True, text=True).stdout
    if r == 0:
        print(output)
    for line in output.splitlines():
        for key, label, _ in rows:
            if line.strip().startswith(label):
                ours[key].append(float(re.split(r"\s{2,}", line.strip())[1].split()[0]))
    for key, _, _ in rows:
        theirs[key].append(numpy_median(expressions[key]))

print(f"  numpy {np.__version__} and the formula log on the same {n} float32 samples, "
      f"{rounds} alternating rounds of {runs} runs each (medians, seconds):")
for key, _, text in rows:
    if len(ours[key]) != rounds:
        print(f"  {text}: no bench_formula figure found")
        continue
    ratios = [o / t for o, t in zip(ours[key], theirs[key])]
    print(f"  {text}")
    for r in range(rounds):
        print(f"    round {r + 1}: formula log {ours[key][r]:.4f}, numpy {theirs[key][r]:.4f}, ratio {ratios[r]:.2f}")
    print(f"    median ratio {statistics.median(ratios):.2f}: the formula log takes "
          f"{statistics.median(ratios):.2f} x numpy's time")
PYTHON
