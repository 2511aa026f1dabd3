#!/usr/bin/env bash
# Builds the demo document of borehole BA-1 from the logs in data/demo with
# boreanalyst-cli, derives porosity, shale volume and elastic moduli from them, opens it
# again and describes it. Then imports the real well log in data/real into a document
# laid out for reading, derives its density porosity, and opens it in the desktop
# application; where no display is available (or QT_QPA_PLATFORM is offscreen) it says
# so and draws that document's log plot into a PNG file instead.
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
if [[ ! -x $1/bin/make_raw_data || ! -x $1/bin/make_spectral_log ]]; then
    echo "error: the demo's log generators make_raw_data and make_spectral_log are not built in $1" >&2
    exit 1
fi
"$cli" new "$doc" --title "Demo Borehole BA-1"
# Gamma ray in the left track (green), resistivity in the right track (red), caliper in
# the left half of the right track (blue, dashed). All depths are metres.
"$cli" add-trace "$doc" --name GR --units API --track 0 --pen 1,0,2 --scale 0,150 \
    --samples "$logs/gamma_ray.csv" -o "$doc"
"$cli" add-trace "$doc" --name RES --units "ohm·m" --track 1 --depth-unit 1 --pen 1,0,1 --scale 0,400 \
    --samples "$logs/resistivity.csv" -o "$doc"
"$cli" add-trace "$doc" --name CALI --units mm --track 2 --pen 1,1,3 --scale 150,350 \
    --samples "$logs/caliper.csv" -o "$doc"
# Bulk density (red) and compressional slowness (blue, fast to the right) in the left half
# of the right track; the shear slowness is kept but hidden.
"$cli" add-trace "$doc" --name RHOB --units g/cc --track 2 --pen 1,0,1 --scale 1.95,2.95 \
    --samples "$logs/density.csv" -o "$doc"
"$cli" add-trace "$doc" --name DTC --units us/ft --track 2 --pen 1,0,3 --scale 140,40 \
    --samples "$logs/dt_compressional.csv" -o "$doc"
"$cli" add-trace "$doc" --name DTS --units us/ft --track 2 --pen 1,0,4 --scale 240,40 \
    --samples "$logs/dt_shear.csv" -o "$doc"

# A full-waveform sonic log (three receivers 3, 4 and 5 ft from the transmitter) of the
# same formations, recorded as a logger raw-data file, and a spectral gamma log of 1024
# channels, both synthetic. The waveforms carry the logged slownesses; the Stoneley
# slowness follows from the shear slowness and the density in a water-filled hole
# (189 us/ft, 1 g/cc): DTST = sqrt(189^2 + DTS^2 / RHOB). Where the shear is slower than
# the water (the shales, the coal) there is no shear arrival.
sonic_rd="$out_dir/ba1_sonic.rd"
slowness_log="$out_dir/ba1_slowness.csv"
paste -d, "$logs/dt_compressional.csv" "$logs/dt_shear.csv" "$logs/density.csv" |
    awk -F, '/^[0-9]/ { printf "%s,%s,%s,%.1f\n", $1, $2, $4, sqrt(189 * 189 + $4 * $4 / $6) }' > "$slowness_log"
"$1/bin/make_raw_data" -o "$sonic_rd" --top 10 --bottom 150 --step 0.1 --offsets 3,4,5 --slowness-log "$slowness_log"
"$cli" import-rd "$doc" "$sonic_rd" -o "$doc" >/dev/null
"$1/bin/make_spectral_log" "$doc" --name "GR Spectrum" --spectra 1401 --channels 1024 --top 10 --step 0.1
# The curves share the left track; the spectrum and the nearest receiver's waveforms get
# the two halves of the right track; the other two receivers are kept but hidden.
"$cli" set-trace "$doc" RES --track 0 -o "$doc"
"$cli" set-trace "$doc" CALI --track 0 -o "$doc"
"$cli" set-trace "$doc" "GR Spectrum" --track 2 -o "$doc"
"$cli" set-trace "$doc" "RX 1" --track 3 -o "$doc"
"$cli" set-trace "$doc" "RX 2" --hide -o "$doc"
"$cli" set-trace "$doc" "RX 3" --hide -o "$doc"

# Derived logs: density porosity (sandstone matrix 2.65 g/cc, water 1.0 g/cc) and shale
# volume from the gamma ray (shale 120 API, clean sand 15 API) with the common-logs
# equations; Poisson's ratio, Young's modulus and Vp/Vs from the two slownesses and the
# density. The porosity joins the density; the others are kept but hidden (their legends
# stay, under the waveforms' in the right half), and so are the spectrum and the shear
# slowness, so that the right track stays readable.
"$cli" equation "$doc" --equation 11 --logs RHOB --coef 1.0,2.65 --name PHID -o "$doc" >/dev/null
"$cli" equation "$doc" --equation 1 --logs GR --coef 120,15 --name VSH -o "$doc" >/dev/null
"$cli" mechanical "$doc" --vp DTC --vs DTS --rho RHOB --outputs poisson,young,vp-vs -o "$doc" >/dev/null
"$cli" set-trace "$doc" PHID --track 2 --scale 0.45,-0.15 --pen 1,1,0 -o "$doc"
"$cli" set-trace "$doc" VSH --track 3 --scale 0,1 --hide -o "$doc"
"$cli" set-trace "$doc" "Poisson's Ratio" --track 3 --scale 0,0.5 --hide -o "$doc"
"$cli" set-trace "$doc" "Young's Modulus" --track 3 --scale 0,120 --hide -o "$doc"
"$cli" set-trace "$doc" "Vp/Vs" --track 3 --scale 1.5,2.5 --hide -o "$doc"
"$cli" set-trace "$doc" DTS --hide -o "$doc"
"$cli" set-trace "$doc" "GR Spectrum" --hide -o "$doc"
# Compressional, shear and Stoneley slowness from the waveforms themselves (slowness-time
# coherence over the three receivers), renamed DTC_WF, DTS_WF and DTST_WF so that they sit
# beside the logged DTC and DTS: DTC_WF on DTC's scale, dashed; the others kept but hidden.
first_new=$("$cli" info "$doc" | grep '"kinds"' | tr -d ' ' | sed 's/.*\[//; s/\].*//' | tr ',' '\n' | wc -l)
"$cli" semblance "$doc" --receivers "RX 1,RX 2,RX 3" --offsets 3,4,5 -o "$doc"
k=$first_new
for name in DTC_WF DTS_WF DTST_WF COHC COHS COHST TTC TTS TTST; do
    if [[ $name == DTC_WF ]]; then
        "$cli" set-trace "$doc" "#$k" --name "$name" --track 2 --scale 140,40 --pen 1,1,1 -o "$doc"
    else
        "$cli" set-trace "$doc" "#$k" --name "$name" --hide -o "$doc"
    fi
    k=$((k + 1))
done
echo "Derived PHID (density porosity), VSH (shale volume from GR), Poisson's Ratio, Young's Modulus and Vp/Vs"

echo
echo "== Slownesses logged and computed from the waveforms (us/ft; - where the shear is slower than the water)"
for depth in 15 30 45 60 75 95 110 130; do
    row="$(printf '%6s m' "$depth")"
    for log in DTC DTC_WF DTS DTS_WF DTST_WF; do
        v=$("$cli" value-at "$doc" "$log" "$depth")
        if [[ $v == -9999.99 ]]; then
            row+="$(printf '   %s %6s' "$log" -)"
        else
            row+="$(LC_NUMERIC=C printf '   %s %6.1f' "$log" "$v")"
        fi
    done
    echo "$row"
done

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

echo
echo "== Derived values in the sand, the limestone, the water sand and the oil sandstone"
for depth in 15 45 75 110; do
    phid=$("$cli" value-at "$doc" PHID "$depth")
    vsh=$("$cli" value-at "$doc" VSH "$depth")
    poisson=$("$cli" value-at "$doc" "Poisson's Ratio" "$depth")
    young=$("$cli" value-at "$doc" "Young's Modulus" "$depth")
    # The tool writes a decimal point whatever the locale; printf must read it so.
    LC_NUMERIC=C printf '%6s m   PHID %6.3f   VSH %6.3f   Poisson %6.3f   Young %5.1f GPa\n' \
        "$depth" "$phid" "$vsh" "$poisson" "$young"
done

echo
real_las="$repo/data/real/42303347740000.las"
real_doc="$out_dir/university_6-17_no1.bal"
echo "== Importing the real well log $real_las"
"$cli" import-las "$real_las" -o "$real_doc" >/dev/null
# Keep the curves a petrophysicist reads first and give each its usual scale and colour:
# gamma ray, caliper and SP on the left; deep and medium induction in the right track's
# left half; density, neutron and photo-electric factor in its right half, joined there by
# a density porosity derived from the density.
for curve in DPHI PHIX C13 C24 SPHI GR3 SGRD DT; do
    "$cli" remove-trace "$real_doc" "$curve" -o "$real_doc"
done
"$cli" set-trace "$real_doc" GR --scale 0,150 --track 0 --pen 1,0,2 -o "$real_doc"
"$cli" set-trace "$real_doc" CALI --scale 6,16 --track 0 --pen 1,1,0 -o "$real_doc"
"$cli" set-trace "$real_doc" SP --scale -40,100 --track 0 --pen 1,0,3 -o "$real_doc"
"$cli" set-trace "$real_doc" ILD --scale 0,50 --track 2 --pen 1,0,1 -o "$real_doc"
"$cli" set-trace "$real_doc" ILM --scale 0,50 --track 2 --pen 1,1,4 -o "$real_doc"
"$cli" set-trace "$real_doc" RHOB --scale 1.95,2.95 --track 3 --pen 1,0,1 -o "$real_doc"
"$cli" set-trace "$real_doc" NPHI --scale 0.45,-0.15 --track 3 --pen 1,1,3 -o "$real_doc"
# Density porosity of our own (limestone matrix 2.71 g/cc, water 1.0 g/cc) in place of the
# log's DPHI, on the neutron's scale so the two porosities can be compared. That scale
# lays it almost exactly over the density curve, hence the broken black line.
"$cli" equation "$real_doc" --equation 11 --logs RHOB --coef 1.0,2.71 --name PHID -o "$real_doc" >/dev/null
"$cli" set-trace "$real_doc" PHID --scale 0.45,-0.15 --track 3 --pen 1,3,0 -o "$real_doc"
"$cli" set-trace "$real_doc" PE --scale 0,10 --track 3 --pen 1,2,4 -o "$real_doc"
"$cli" info "$real_doc" | sed -n '/"traces"/,$p' | grep -E '"(name|samples|first_depth|last_depth)"' | paste - - - - |
    sed -E 's/[",]//g; s/ +/ /g; s/^ //'

# The view opens at 3000 ft, where the full suite of logs has begun (only the sonic was
# recorded above), at 100 ft per centimetre.
app="$1/bin/boreanalyst"
echo
if [[ ! -x $app ]]; then
    echo "The desktop application was not built (configure with -DBA_BUILD_GUI=ON to build it)."
elif [[ ${QT_QPA_PLATFORM:-} == offscreen || (-z ${DISPLAY:-} && -z ${WAYLAND_DISPLAY:-}) ]]; then
    QT_QPA_PLATFORM=offscreen "$app" --top 3000 --scale 100 --demo-png "$out_dir/university_6-17_no1.png" "$real_doc"
    QT_QPA_PLATFORM=offscreen "$app" --demo-png "$out_dir/demo.png" "$doc"
else
    echo "== Opening $real_doc in the desktop application (close its window to finish)"
    "$app" --top 3000 --scale 100 "$real_doc" "$doc"
fi
