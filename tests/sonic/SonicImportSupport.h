#pragma once
// Runs the raw-data import over bytes in memory and keeps what the tests look at.

#include "base/MessageSink.h"
#include "model/BoreAnalystDoc.h"
#include "model/SonicTrace.h"
#include "sonic/RawDataImport.h"
#include "sonic/RawDataSynth.h"

#include <memory>
#include <span>
#include <vector>

namespace ba::test {

struct SonicImport {
    std::unique_ptr<CBoreAnalystDoc> doc = std::make_unique<CBoreAnalystDoc>();
    CollectingMessageSink sink;
    RawDataImportResult result;

    const CSonicTrace& Sonic(std::size_t i) const { return dynamic_cast<const CSonicTrace&>(doc->Trace(i)); }
    std::vector<float> Depths(std::size_t i) const
    {
        const auto items = doc->Trace(i).StoredDepths().Items();
        return {items.begin(), items.end()};
    }
};

inline SonicImport ImportBytes(std::span<const std::uint8_t> bytes, RawDataImportOptions options = {})
{
    SonicImport out;
    RawMemorySource source(bytes);
    out.result = ImportRawData(*out.doc, source, "test.rd", out.sink, options);
    return out;
}

// A receiver block of n1 + n2 samples that all hold `value`.
inline synth::ClpBlock FlatBlock(std::uint16_t n1, std::uint16_t n2, std::uint16_t value = 2047)
{
    synth::ClpBlock b;
    b.n1 = n1;
    b.n2 = n2;
    b.samples.assign(std::size_t{n1} + n2, value);
    return b;
}

// One waveform record at `depth` with the given blocks, TX frequency 10 kHz and stack
// interval 20 ms (a plain CLP probe).
inline void AppendStation(std::vector<std::uint8_t>& out, float depth, const std::vector<synth::ClpBlock>& blocks)
{
    synth::AppendSonicRecord(out, depth, 10, 20, blocks);
}

} // namespace ba::test
