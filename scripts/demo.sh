#!/usr/bin/env bash
# Builds the demo document of borehole BA-1 from the logs in data/demo with
# boreanalyst-cli, opens it again and describes it.
#
# Usage: scripts/demo.sh BUILD_DIR [OUT_DIR]
#   BUILD_DIR  a CMake build folder in which boreanalyst-cli was built
#   OUT_DIR    where demo.bal is written (default: out/ at the top of the checkout)
set -euo pipefail

if [[ $# -lt 1 || $# -gt 2 ]]; then
    echo "usage: $0 BUILD_DIR [OUT_DIR]" >&2
    exit 2
fi
repo=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
cli="$1/bin/boreanalyst-cli"
out_dir=${2:-$repo/out}
logs="$repo/data/demo"
doc="$out_dir/demo.bal"

if [[ ! -x $cli ]]; then
    echo "error: $cli does not exist; build it first:" >&2
    echo "  cmake -S $repo -B $1 -G Ninja && ninja -C $1 -j2 boreanalyst-cli" >&2
    exit 1
fi
mkdir -p "$out_dir"

echo "== Creating $doc"
"$cli" new "$doc" --title "Demo Borehole BA-1"
# Gamma ray in the left track (green), resistivity in the right track (red), caliper in
# the left half of the right track (blue, dashed). All depths are metres.
"$cli" add-trace "$doc" --name GR --units API --track 0 --pen 1,0,2 --scale 0,150 \
    --samples "$logs/gamma_ray.csv" -o "$doc"
"$cli" add-trace "$doc" --name RES --units "ohm·m" --track 1 --depth-unit 1 --pen 1,0,1 --scale 0,400 \
    --samples "$logs/resistivity.csv" -o "$doc"
"$cli" add-trace "$doc" --name CALI --units mm --track 2 --pen 1,1,3 --scale 150,350 \
    --samples "$logs/caliper.csv" -o "$doc"

echo
echo "== $doc opened again"
"$cli" info "$doc"

echo
echo "== Values at a few depths (70.5 m lies in the resistivity null gap)"
for depth in 30 45 70.5 110; do
    gr=$("$cli" value-at "$doc" GR "$depth")
    res=$("$cli" value-at "$doc" RES "$depth")
    cali=$("$cli" value-at "$doc" CALI "$depth")
    printf '%6s m   GR %-8s API   RES %-9s ohm·m   CALI %-6s mm\n' "$depth" "$gr" "$res" "$cali"
done
