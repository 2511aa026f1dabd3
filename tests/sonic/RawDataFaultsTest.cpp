// Damaged raw-data files: the message names the file, the record, the byte offset and the
// fault; what was imported before the damaged record stays.

#include "sonic/SonicImportSupport.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace ba {
namespace {

using test::AppendStation;
using test::FlatBlock;

// Two receivers of 3 samples each: 15 + 2 x 18 = 51 bytes. A block starts with the stacks
// byte, then rate 1 (+1), rate 2 (+3), n1 (+5), n2 (+7), mode and gain (+9).
std::vector<std::uint8_t> GoodStation(float depth)
{
    std::vector<std::uint8_t> bytes;
    AppendStation(bytes, depth, {FlatBlock(3, 0), FlatBlock(3, 0)});
    return bytes;
}

void SetLength(std::vector<std::uint8_t>& bytes, std::size_t at, std::uint16_t length)
{
    bytes[at] = static_cast<std::uint8_t>(length & 0xFF);
    bytes[at + 1] = static_cast<std::uint8_t>(length >> 8);
}

struct FaultCase {
    const char* what;
    // Changes a file of two good stations (51 bytes each) into a damaged one.
    void (*damage)(std::vector<std::uint8_t>&);
    std::string message;
    std::size_t rowsKept; // per trace
};

class RawDataFaults : public testing::TestWithParam<FaultCase> {};

TEST_P(RawDataFaults, MessageAndWhatStays)
{
    const FaultCase& c = GetParam();
    std::vector<std::uint8_t> bytes = GoodStation(10.0f);
    const auto second = GoodStation(11.0f);
    bytes.insert(bytes.end(), second.begin(), second.end());
    ASSERT_EQ(bytes.size(), 102u);
    c.damage(bytes);
    const auto run = test::ImportBytes(bytes);

    EXPECT_FALSE(run.result.complete);
    EXPECT_EQ(run.sink.Texts(), std::vector<std::string>{c.message});
    ASSERT_EQ(run.doc->TraceCount(), 2u);
    EXPECT_EQ(run.Sonic(0).RowCount(), c.rowsKept);
    EXPECT_EQ(run.Sonic(1).RowCount(), c.rowsKept);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, RawDataFaults,
    testing::Values(
        FaultCase{"one byte after the last record", [](auto& b) { b.push_back(0x33); },
                  "Error: \"test.rd\" record 3 (byte offset 102): the file ends one byte into the record's 2-byte "
                  "length (a truncated file).",
                  2},
        FaultCase{"last record cut short", [](auto& b) { b.resize(90); },
                  "Error: \"test.rd\" record 2 (byte offset 51): the record length 51 runs past the end of the file "
                  "(39 bytes are left; a truncated file).",
                  1},
        FaultCase{"length shorter than a header", [](auto& b) { SetLength(b, 51, 7); },
                  "Error: \"test.rd\" record 2 (byte offset 51): the record length 7 is shorter than the 8 bytes of "
                  "length, depth and record type.",
                  1},
        FaultCase{"sonic record without its receiver count", [](auto& b) { SetLength(b, 51, 13); },
                  "Error: \"test.rd\" record 2 (byte offset 64): the sonic record is 13 bytes long, too short for "
                  "its transmitter settings and receiver count (14 bytes).",
                  1},
        // The record length is cut so that receiver 2 no longer fits; receiver 1's row
        // must not be added either.
        FaultCase{"more receivers than the record holds", [](auto& b) { b[51 + 13] = 3; },
                  "Error: \"test.rd\" record 2 (byte offset 102): the record announces 3 receivers but receiver 3 "
                  "would start at byte 51 of a 51-byte record.",
                  1},
        FaultCase{"more samples than the record holds", [](auto& b) { b[51 + 33 + 5] = 4; }, // receiver 2 n1
                  "Error: \"test.rd\" record 2 (byte offset 84): receiver 2 has 4 + 0 samples, which with its "
                  "holdoff need bytes 33 to 52 of a 51-byte record.",
                  1},
        FaultCase{"rate-2 samples without rate 1", [](auto& b) {
                      b[51 + 15 + 1] = 0; // receiver 1 rate 1 = 0
                      b[51 + 15 + 5] = 2; // n1 3 -> 2,
                      b[51 + 15 + 7] = 1; // n2 0 -> 1: the same 3 samples
                  },
                  "Error: \"test.rd\" record 2 (byte offset 67): receiver 1 has 1 samples at rate 2 but a sample "
                  "rate 1 of 0 us, so they cannot be expanded.",
                  1},
        FaultCase{"rate 2 too coarse", [](auto& b) {
                      b[51 + 15 + 3] = 0x08; // rate 2 = 0x908 / 8 = 289 us against 8 us
                      b[51 + 15 + 4] = 0x09;
                      b[51 + 15 + 5] = 2;
                      b[51 + 15 + 7] = 1;
                  },
                  "Error: \"test.rd\" record 2 (byte offset 69): receiver 1 has sample rates 8 us and 289 us; rate 2 "
                  "may be at most 32 times rate 1.",
                  1}));

TEST(RawDataFaults, ShortTimeDigitisingRecordIsRefused)
{
    std::vector<std::uint8_t> bytes = GoodStation(10.0f);
    const std::uint8_t body[] = {1, 0, 0, 0, 3, 0, 0};
    synth::AppendOtherRecord(bytes, 0.0f, 8, body);
    const auto run = test::ImportBytes(bytes);
    EXPECT_EQ(run.sink.Texts(), std::vector<std::string>{"Error: \"test.rd\" record 2 (byte offset 66): the "
                                                         "time-digitising control record is 15 bytes long, too short "
                                                         "for its time step (bytes 16 to 19)."});
    EXPECT_EQ(run.Sonic(0).RowCount(), 1u);
}

TEST(RawDataFaults, MissingFileIsReportedAndChangesNothing)
{
    CBoreAnalystDoc doc;
    CollectingMessageSink sink;
    const auto result = ImportRawData(doc, std::filesystem::path("/nonexistent/none.rd"), sink);
    EXPECT_FALSE(result.complete);
    EXPECT_EQ(doc.TraceCount(), 0u);
    EXPECT_EQ(sink.Texts(), std::vector<std::string>{"Error: \"/nonexistent/none.rd\": the raw-data file cannot be "
                                                     "opened (No such file or directory)."});
}

} // namespace
} // namespace ba
