// Expansion of rate-2 samples to the rate-1 spacing, values worked out by hand.

#include "sonic/SonicImportSupport.h"

#include "sonic/SonicRow.h"

#include <gtest/gtest.h>

namespace ba {
namespace {

struct ExpansionCase {
    const char* what;
    std::uint16_t rate1, rate2;
    std::vector<std::uint16_t> rate1Samples, rate2Samples;
    ImageRow row;
};

class SonicRowExpansion : public testing::TestWithParam<ExpansionCase> {};

TEST_P(SonicRowExpansion, ImportedRowHoldsTheExpandedWords)
{
    const ExpansionCase& c = GetParam();
    synth::ClpBlock block;
    block.sampleRate1 = c.rate1;
    block.sampleRate2 = c.rate2;
    block.n1 = static_cast<std::uint16_t>(c.rate1Samples.size());
    block.n2 = static_cast<std::uint16_t>(c.rate2Samples.size());
    block.samples = c.rate1Samples;
    block.samples.insert(block.samples.end(), c.rate2Samples.begin(), c.rate2Samples.end());
    std::vector<std::uint8_t> bytes;
    test::AppendStation(bytes, 3.0f, {block});
    const auto run = test::ImportBytes(bytes);
    ASSERT_EQ(run.Sonic(0).RowCount(), 1u);
    EXPECT_EQ(run.Sonic(0).Row(0), c.row);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, SonicRowExpansion,
    testing::Values(
        // k = 3. From 200 down to 100: 200 + trunc(-100/3) = 167 (truncated toward zero,
        // not 166), 200 + trunc(-200/3) = 134, 100; then up to 300: 166, 233, 300.
        ExpansionCase{"three words per sample", 4, 12, {100, 200}, {100, 300}, {100, 200, 167, 134, 100, 166, 233, 300}},
        // k = 2 from a flat start: each step halves.
        ExpansionCase{"two words per sample", 8, 16, {2047}, {2051, 2047}, {2047, 2049, 2051, 2049, 2047}},
        // k = 1: the rate-2 samples are copied.
        ExpansionCase{"equal rates", 8, 8, {5}, {4095, 0}, {5, 4095, 0}},
        // No rate-1 samples: the first step starts from the zero line.
        ExpansionCase{"no rate-1 samples", 5, 10, {}, {2051}, {2049, 2051}}));

TEST(SonicRow, WordsCountIsTakenBeforeRate2SamplesAreLeftOut)
{
    synth::ClpBlock b = test::FlatBlock(100, 50, 7);
    b.sampleRate2 = 20;
    std::vector<std::uint8_t> bytes;
    test::AppendStation(bytes, 3.0f, {b});
    RawMemorySource source(bytes);
    RawRecordReader reader(source);
    RawRecord record;
    ASSERT_TRUE(reader.Next(record));
    SonicRecord decoded;
    DecodeSonicRecord(record, decoded);
    ASSERT_EQ(decoded.blocks.size(), 1u);
    EXPECT_FALSE(Rate2SamplesUsable(decoded.blocks[0]));
    EXPECT_EQ(SonicRowWords(decoded.blocks[0]), 200u);
    ImageRow row;
    BuildSonicRow(decoded.blocks[0], false, row);
    ASSERT_EQ(row.size(), 200u);
    EXPECT_EQ(row[99], 7);
    EXPECT_EQ(row[100], 0);
}

} // namespace
} // namespace ba
