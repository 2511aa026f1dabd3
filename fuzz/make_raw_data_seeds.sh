#!/usr/bin/env bash
# Writes the seed corpus of fuzz_raw_data_reader into fuzz/corpus/raw_data/: the two
# raw-data fixtures of tests/sonic/data/ as they are, and small files derived from their
# record layout by hand, each reaching a path of the import the fixtures do not (see the
# table in fuzz/README.md). Run it from anywhere; it overwrites the seeds.
set -euo pipefail
repo_root="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
out="$repo_root/fuzz/corpus/raw_data"
mkdir -p "$out"

hex() { printf "$(echo "$*" | sed 's/\([0-9a-f][0-9a-f]\) */\\x\1/g')"; }

# A one-receiver sonic record: length 39 (27 00), $1 depth bytes, type 1, block id 32,
# $2 TX frequency byte, $3 stack interval byte; the receiver block takes 2 stacks, rate 1
# 8 us, $4 the rate-2 word (rate x 8), n1 4, n2 2, $5 the dipole/gain byte, six samples
# and $6 the holdoff word.
one_receiver() {
    hex 27 00 $1 01 00 20 $2 $3 00 00 01 00
    hex 10 40 00 $4 04 00 02 00 $5 ff 07 00 08 00 0a 00 06 ff 07 03 08 $6
}

cp "$repo_root/tests/sonic/data/clp_two_receivers.rd" "$repo_root/tests/sonic/data/clp_truncated.rd" "$out/"

# A time-digitising control record (kind 1 at byte 8, mode 3 at byte 12, a time step of
# 1000 ms in bytes 16 to 19), then two stations: they go to 0 and 1/60 minute whatever
# their depths say.
{
    hex 14 00 00 00 00 00 08 00 01 00 00 00 03 00 00 00 e8 03 00 00
    one_receiver "00 00 28 41" 0f 32 "80 00" 05 "0c 00"
    one_receiver "00 00 20 41" 0f 32 "80 00" 05 "0c 00"
} >"$out/time_digitised.rd"

# Rate 2 of 12 us (60 00) is no multiple of rate 1 (8 us): the rate-2 samples are dropped
# with one message, given once for two records.
{
    one_receiver "00 00 20 41" 0f 32 "60 00" 05 "0c 00"
    one_receiver "00 00 28 41" 0f 32 "60 00" 05 "0c 00"
} >"$out/rate2_not_multiple.rd"

# TX frequency byte 0, stack interval byte 0 and holdoff 512 (00 02): the bytes of a probe
# with the FWS upgrade; the dipole flag is set (high nibble of the gain byte).
one_receiver "00 00 20 41" 00 00 "80 00" 13 "00 02" >"$out/fws_dipole.rd"

# Records the import passes over around one waveform record: a data record of block id 7,
# a control record that is not time digitising, and a bare 8-byte record of type 5.
{
    hex 0c 00 00 00 20 41 01 00 07 00 00 00
    hex 14 00 00 00 00 00 08 00 02 00 00 00 01 00 00 00 00 00 00 00
    one_receiver "00 00 20 41" 0f 32 "80 00" 05 "0c 00"
    hex 08 00 00 00 00 00 05 00
} >"$out/passed_over_records.rd"
