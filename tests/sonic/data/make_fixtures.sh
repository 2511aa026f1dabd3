#!/usr/bin/env bash
# Writes the small raw-data fixtures of this folder from bytes worked out by hand (run it
# here; the files it writes are committed beside it).
#
# clp_two_receivers.rd: four records.
#   1. sonic record at depth 10.5 (00 00 28 41): length 63, TX 15 kHz, 50 ms, 2 receivers;
#      each block: 2 stacks (10), rate 1 8 us (40 00), rate 2 16 us (80 00), n1 4, n2 2,
#      gain exponent 5 (AGC), 6 samples, holdoff 12 (120 us). Rows: 4 + 2 x 2 = 8 words.
#   2. the same at depth 10.0 (00 00 20 41): shallower, goes in front.
#   3. the same at depth 10.25 (00 00 24 41): inside the range, dropped.
#   4. a record of type 3 with no body, passed over.
# clp_truncated.rd: record 1 of the above, then the first 20 bytes of record 2.
set -euo pipefail
cd "$(dirname "$0")"

hex() { printf "$(echo "$*" | sed 's/\([0-9a-f][0-9a-f]\) */\\x\1/g')"; }

station() { # $1: depth bytes
    hex 3f 00 $1 01 00 20 0f 32 00 00 02 00
    # receiver 1: 2047 2048 2560 1536 | 2047 2051
    hex 10 40 00 80 00 04 00 02 00 05 ff 07 00 08 00 0a 00 06 ff 07 03 08 0c 00
    # receiver 2: 2047 2047 2047 2047 | 4095 0 (high nibbles set: they are dropped)
    hex 10 40 00 80 00 04 00 02 00 05 ff f7 ff 07 ff 07 ff 07 ff ff 00 f0 0c 00
}

{
    station "00 00 28 41"
    station "00 00 20 41"
    station "00 00 24 41"
    hex 08 00 00 00 00 00 03 00
} >clp_two_receivers.rd

{
    station "00 00 28 41"
    station "00 00 20 41" | head -c 20
} >clp_truncated.rd
