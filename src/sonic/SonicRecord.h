#pragma once
// The waveform block of a CLP sonic data record: the record-wide transmitter bytes and
// one block per receiver. Decoding checks that every block the record announces lies
// inside the record before anything of it is used, so a damaged record is refused whole.
//
// Layout (byte offsets in the record, o = 7 for the first receiver block):
//   8  block id (32 for sonic waveforms)     9  TX frequency, kHz
//   10 TX stack interval, ms                 13 number of receivers N
//   o+8      high nibble: TX num stacks - 1
//   o+9..10  RX sample rate 1 x 8            o+11..12 RX sample rate 2 x 8
//   o+13..14 n1                              o+15..16 n2
//   o+17     high nibble: dipole flag; low nibble g: gain 2^g
//   o+18..   n1 + n2 samples, 2 bytes each (12 bits: low byte, then bits 8-11)
//   then 2 bytes of holdoff in 10 us units; the next block starts at o + 12 + 2(n1 + n2).

#include "sonic/RawRecordReader.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace ba {

inline constexpr std::uint8_t kSonicWaveformBlockId = 32;

// The largest rate-2 to rate-1 interval ratio a block may ask for. Expansion writes that
// many words per rate-2 sample, so the ratio bounds how much memory a record can claim per
// byte it holds; sonic tools sample the late part of a waveform at most a few times more
// coarsely than the early part.
inline constexpr std::int32_t kMaxSampleRateRatio = 32;

struct SonicBlock {
    std::int32_t txNumStacks = 1;
    std::int32_t sampleRate1 = 0; // microseconds
    std::int32_t sampleRate2 = 0;
    std::int32_t n1 = 0;
    std::int32_t n2 = 0;
    std::int32_t rxMode = 0;      // 1 dipole, 0 monopole
    std::int32_t gainExponent = 0;
    std::int32_t holdoff = 0;     // 10 us units, as recorded
    std::span<const std::uint8_t> samples; // (n1 + n2) x 2 bytes
    std::size_t offset = 0;       // of the block's first byte (o + 8) in the record

    // The 12-bit value of sample i (0 <= i < n1 + n2).
    std::uint16_t Sample(std::size_t i) const
    {
        return static_cast<std::uint16_t>(samples[2 * i] | ((samples[2 * i + 1] & 0x0F) << 8));
    }
};

struct SonicRecord {
    std::uint8_t txFrequencyByte = 0;
    std::uint8_t txStackIntervalByte = 0;
    std::vector<SonicBlock> blocks; // one per receiver
};

// Whether a data record carries the sonic waveform block (byte 8 is 32).
bool IsSonicWaveformRecord(const RawRecord& record);

// Decodes the waveform block of `record` (a data record for which IsSonicWaveformRecord
// holds). Throws RawRecordError naming the offset of the fault when the record is too short
// for its receiver count, a block's samples or holdoff, or when a block's sample rates
// cannot be expanded (rate 1 of 0 with rate-2 samples, a ratio above kMaxSampleRateRatio).
// `blocks` is reused between calls to save allocations.
void DecodeSonicRecord(const RawRecord& record, SonicRecord& out);

} // namespace ba
