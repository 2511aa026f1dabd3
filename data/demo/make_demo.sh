#!/usr/bin/env bash
# Writes the synthetic logs of the demo borehole BA-1 (see README.md) as "depth,value" CSV
# files: gamma_ray.csv, resistivity.csv, caliper.csv, density.csv, dt_compressional.csv
# and dt_shear.csv, 10.0 m to 150.0 m every 0.1 m.
#
# Usage: make_demo.sh [OUT_DIR]   (default: the folder of this script)
#
# Only +, -, * and / on doubles and integer pseudo-random sequences (Park-Miller, exact
# in double arithmetic) are used, so every awk on every machine writes the same bytes.
# The density and sonic logs draw their noise from a sequence of their own, so adding
# them left the first three files exactly as they were.
set -euo pipefail

out_dir=${1:-$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)}
mkdir -p "$out_dir"

awk -v out_dir="$out_dir" '
BEGIN {
    # Layers from the top: base depth (m), lithology, gamma ray (API), resistivity (ohm.m),
    # caliper (mm; the bit is 216 mm, shales wash out).
    n = 0
    n++; base[n] = 22.0;  lith[n] = "sand";           gr[n] = 45;  res[n] = 60;  cal[n] = 235
    n++; base[n] = 38.5;  lith[n] = "shale";          gr[n] = 115; res[n] = 3.5; cal[n] = 248
    n++; base[n] = 55.0;  lith[n] = "limestone";      gr[n] = 18;  res[n] = 350; cal[n] = 217
    n++; base[n] = 63.0;  lith[n] = "shale";          gr[n] = 105; res[n] = 4.5; cal[n] = 240
    n++; base[n] = 84.0;  lith[n] = "water sand";     gr[n] = 38;  res[n] = 9;   cal[n] = 220
    n++; base[n] = 86.0;  lith[n] = "coal";           gr[n] = 22;  res[n] = 900; cal[n] = 228
    n++; base[n] = 104.0; lith[n] = "shale";          gr[n] = 120; res[n] = 3;   cal[n] = 252
    n++; base[n] = 121.0; lith[n] = "oil sandstone";  gr[n] = 30;  res[n] = 120; cal[n] = 218
    n++; base[n] = 150.0; lith[n] = "dolomite";       gr[n] = 15;  res[n] = 500; cal[n] = 216
    # The same layers: bulk density (g/cc), compressional and shear slowness (us/ft). Shales
    # compact with depth; the oil sandstone has the lowest Vp/Vs (about 1.7), the shales
    # the highest (about 2.1); coal is light and slow.
    k = 0
    k++; rhob[k] = 2.20; dtc[k] = 92;  dts[k] = 170
    k++; rhob[k] = 2.40; dtc[k] = 105; dts[k] = 220
    k++; rhob[k] = 2.58; dtc[k] = 60;  dts[k] = 110
    k++; rhob[k] = 2.45; dtc[k] = 100; dts[k] = 205
    k++; rhob[k] = 2.22; dtc[k] = 95;  dts[k] = 180
    k++; rhob[k] = 1.40; dtc[k] = 130; dts[k] = 250
    k++; rhob[k] = 2.52; dtc[k] = 95;  dts[k] = 195
    k++; rhob[k] = 2.28; dtc[k] = 88;  dts[k] = 150
    k++; rhob[k] = 2.80; dtc[k] = 48;  dts[k] = 86
    shoulder = 0.3   # half-width (m) of the ramp across a bed boundary
    gap_top = 70.0; gap_base = 71.5   # resistivity tool fault: null samples

    # Two noise sequences: "tools" for gamma ray, resistivity and caliper, "rock" for
    # density and the slownesses.
    state["tools"] = 20240601
    state["rock"] = 20241122
    gr_file = out_dir "/gamma_ray.csv"
    res_file = out_dir "/resistivity.csv"
    cal_file = out_dir "/caliper.csv"
    rhob_file = out_dir "/density.csv"
    dtc_file = out_dir "/dt_compressional.csv"
    dts_file = out_dir "/dt_shear.csv"
    note = "# Synthetic log of the demo borehole BA-1, written by make_demo.sh (see README.md)."
    print note > gr_file;   print "depth_m,gr_api" > gr_file
    print note > res_file;  print "depth_m,res_ohmm" > res_file
    print note > cal_file;  print "depth_m,cal_mm" > cal_file
    print note > rhob_file; print "depth_m,rhob_gcc" > rhob_file
    print note > dtc_file;  print "depth_m,dtc_usft" > dtc_file
    print note > dts_file;  print "depth_m,dts_usft" > dts_file

    for (i = 100; i <= 1500; i++) {
        d = i / 10
        g = property(gr, d) + 6 * noise("tools")
        r = property(res, d) * (1 + 0.08 * noise("tools"))
        c = property(cal, d) + 1.5 * noise("tools")
        printf "%.1f,%.1f\n", d, g > gr_file
        if (d >= gap_top && d <= gap_base) printf "%.1f,-9999.99\n", d > res_file
        else printf "%.1f,%.2f\n", d, r > res_file
        printf "%.1f,%.1f\n", d, c > cal_file

        # Noise of at most 0.018 g/cc, 1.5 us/ft and 3 us/ft (1.5 times each factor).
        b = property(rhob, d) + 0.012 * noise("rock")
        p = property(dtc, d) + 1.0 * noise("rock")
        s = property(dts, d) + 2.0 * noise("rock")
        printf "%.1f,%.3f\n", d, b > rhob_file
        printf "%.1f,%.1f\n", d, p > dtc_file
        printf "%.1f,%.1f\n", d, s > dts_file
    }
}

# The value of a layer property at depth d, ramped linearly across each bed boundary:
# layer k is the first whose base (plus the ramp) is not above d.
function property(values, d,    k, t) {
    for (k = 1; k < n && d > base[k] + shoulder; k++) {}
    if (k < n && d > base[k] - shoulder) {
        t = (d - (base[k] - shoulder)) / (2 * shoulder)
        return (1 - t) * values[k] + t * values[k + 1]
    }
    return values[k]
}

# Roughly normal noise in -1.5..1.5: the sum of three uniform draws of one sequence, centred.
function noise(sequence) { return uniform(sequence) + uniform(sequence) + uniform(sequence) - 1.5 }

function uniform(sequence) {
    state[sequence] = (16807 * state[sequence]) % 2147483647
    return state[sequence] / 2147483647
}
'
