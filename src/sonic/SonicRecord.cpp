#include "sonic/SonicRecord.h"

#include <string>

namespace ba {
namespace {

constexpr std::size_t kTxFrequencyByte = 9;
constexpr std::size_t kTxStackIntervalByte = 10;
constexpr std::size_t kReceiverCountByte = 13;
constexpr std::size_t kFirstBlockBase = 7;   // o of the first receiver block
constexpr std::size_t kBlockHeaderBytes = 10; // o+8 .. o+17
constexpr std::size_t kBlockFixedBytes = 12;  // header and holdoff

[[noreturn]] void Fail(const RawRecord& record, std::size_t at, const std::string& what)
{
    throw RawRecordError(record.number, record.offset + at, what);
}

std::string ReceiverText(std::size_t index) { return "receiver " + std::to_string(index + 1); }

} // namespace

bool IsSonicWaveformRecord(const RawRecord& record)
{
    return record.Length() > kRawRecordHeaderBytes && record.Byte(8) == kSonicWaveformBlockId;
}

void DecodeSonicRecord(const RawRecord& record, SonicRecord& out)
{
    const std::size_t length = record.Length();
    if (length <= kReceiverCountByte) {
        Fail(record, length,
             "the sonic record is " + std::to_string(length) +
                 " bytes long, too short for its transmitter settings and receiver count (14 bytes)");
    }
    out.txFrequencyByte = record.Byte(kTxFrequencyByte);
    out.txStackIntervalByte = record.Byte(kTxStackIntervalByte);
    const std::size_t receivers = record.Byte(kReceiverCountByte);
    out.blocks.resize(receivers);

    std::size_t base = kFirstBlockBase;
    for (std::size_t r = 0; r < receivers; ++r) {
        SonicBlock& block = out.blocks[r];
        const std::size_t start = base + 8;
        if (start + kBlockHeaderBytes > length) {
            Fail(record, start,
                 "the record announces " + std::to_string(receivers) + " receivers but " + ReceiverText(r) +
                     " would start at byte " + std::to_string(start) + " of a " + std::to_string(length) +
                     "-byte record");
        }
        block.offset = start;
        block.txNumStacks = 1 + (record.Byte(base + 8) >> 4);
        block.sampleRate1 = record.Word(base + 9) >> 3;
        block.sampleRate2 = record.Word(base + 11) >> 3;
        block.n1 = record.Word(base + 13);
        block.n2 = record.Word(base + 15);
        const std::uint8_t modeAndGain = record.Byte(base + 17);
        block.rxMode = (modeAndGain >> 4) != 0 ? 1 : 0;
        block.gainExponent = modeAndGain & 0x0F;

        const std::size_t sampleCount = static_cast<std::size_t>(block.n1) + static_cast<std::size_t>(block.n2);
        const std::size_t end = base + kBlockFixedBytes + 2 * sampleCount + 8; // one past the holdoff
        if (end > length) {
            Fail(record, start,
                 ReceiverText(r) + " has " + std::to_string(block.n1) + " + " + std::to_string(block.n2) +
                     " samples, which with its holdoff need bytes " + std::to_string(start) + " to " +
                     std::to_string(end - 1) + " of a " + std::to_string(length) + "-byte record");
        }
        if (block.n2 > 0 && block.sampleRate1 == 0) {
            Fail(record, start + 1,
                 ReceiverText(r) + " has " + std::to_string(block.n2) +
                     " samples at rate 2 but a sample rate 1 of 0 us, so they cannot be expanded");
        }
        if (block.n2 > 0 && block.sampleRate2 / block.sampleRate1 > kMaxSampleRateRatio) {
            Fail(record, start + 3,
                 ReceiverText(r) + " has sample rates " + std::to_string(block.sampleRate1) + " us and " +
                     std::to_string(block.sampleRate2) + " us; rate 2 may be at most " +
                     std::to_string(kMaxSampleRateRatio) + " times rate 1");
        }
        const std::size_t samplesAt = base + 18;
        block.samples = record.bytes.subspan(samplesAt, 2 * sampleCount);
        block.holdoff = record.Word(samplesAt + 2 * sampleCount);
        base += kBlockFixedBytes + 2 * sampleCount;
    }
}

} // namespace ba
