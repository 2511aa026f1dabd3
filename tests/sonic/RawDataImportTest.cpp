// What an import of CLP sonic records puts into a document.

#include "sonic/ProgressMessageLoop.h"
#include "sonic/RawDataImportProcess.h"
#include "sonic/SonicImportSupport.h"
#include "support/Bytes.h"

#include "model/LineTrace.h"

#include <gtest/gtest.h>

#include <random>

namespace ba {
namespace {

using test::AppendStation;
using test::FlatBlock;
using test::ImportBytes;
using test::SonicImport;

// One sonic record worked out by hand, between a data record of another block and a
// record of another type, which are passed over.
TEST(RawDataImport, HandBuiltRecordGivesOneTraceWithEverySetting)
{
    const auto bytes = test::Hex(
        "0a 00 | 00 00 80 3f | 01 00 | 05 00"                 // data record, block 5
        "21 00 | 00 00 00 40 | 01 00 | 20 0a 14 00 00 01 00"   // depth 2.0, 10 kHz, 20 ms, 1 receiver
        "30 | 40 00 | 40 00 | 03 00 | 00 00 | 15"              // 4 stacks, 8 us, 8 us, n1 3, n2 0, dipole, g 5
        "ff f7 | 00 08 | 34 12 | 0c 00"                        // 0x7ff, 0x800, 0x234 (high nibbles dropped), holdoff 12
        "08 00 | 00 00 80 3f | 03 00");                       // a record of type 3, header only
    const auto run = ImportBytes(bytes);

    ASSERT_TRUE(run.result.complete);
    EXPECT_EQ(run.result.records, 3u);
    EXPECT_EQ(run.result.waveformRecords, 1u);
    EXPECT_TRUE(run.sink.messages.empty());
    ASSERT_EQ(run.doc->TraceCount(), 1u);
    const CSonicTrace& rx = run.Sonic(0);
    EXPECT_EQ(rx.Name(), "RX 1");
    EXPECT_EQ(rx.Units(), "us");
    EXPECT_EQ(rx.DepthUnit(), kDepthMetres);
    EXPECT_EQ(run.Depths(0), std::vector<float>{static_cast<float>(2.0 - 0.578)});
    ASSERT_EQ(rx.RowCount(), 1u);
    EXPECT_EQ(rx.Row(0), (ImageRow{0x7ff, 0x800, 0x234}));
    EXPECT_EQ(rx.ToolType(), "2SAA-1000");
    SonicAcquisition expected;
    expected.txFrequency = 10;
    expected.txStackInterval = 20;
    expected.txNumStacks = 4;
    expected.rxMode = 1;
    expected.rxNumSamples1 = 3;
    expected.rxSampleRate1 = 8;
    expected.rxSampleRate2 = 8;
    expected.rxHoldoff = 12;
    expected.rxGain = 32;
    EXPECT_EQ(rx.Acquisition(), expected);
    EXPECT_FLOAT_EQ(rx.ScaleLeft(), 120.0f);
    EXPECT_FLOAT_EQ(rx.ScaleRight(), 144.0f);
    EXPECT_NE(SonicAcquisitionText(rx).find("RX Gain: AGC"), std::string::npos);
}

TEST(RawDataImport, EachReceiverGetsItsOwnTraceAfterTheDocumentsTraces)
{
    std::vector<std::uint8_t> bytes;
    for (int station = 0; station < 4; ++station) {
        std::vector<synth::ClpBlock> blocks;
        for (std::uint16_t r = 0; r < 3; ++r) blocks.push_back(FlatBlock(5, 0, static_cast<std::uint16_t>(100 * r + station)));
        AppendStation(bytes, 100.0f + static_cast<float>(station), blocks);
    }
    test::SonicImport run;
    run.doc->AddTrace(std::make_unique<CLineTrace>());
    RawMemorySource source(bytes);
    run.result = ImportRawData(*run.doc, source, "test.rd", run.sink);

    ASSERT_EQ(run.doc->TraceCount(), 4u);
    EXPECT_EQ(run.result.tracesAdded, 3u);
    for (std::size_t r = 0; r < 3; ++r) {
        const auto& rx = dynamic_cast<const CSonicTrace&>(run.doc->Trace(r + 1));
        EXPECT_EQ(rx.Name(), "RX " + std::to_string(r + 1));
        EXPECT_EQ(run.doc->TraceKindCode(r + 1), 2u);
        ASSERT_EQ(rx.RowCount(), 4u);
        for (std::size_t s = 0; s < 4; ++s) EXPECT_EQ(rx.Row(s)[0], 100 * r + s) << "receiver " << r << " station " << s;
    }
}

struct RateCase {
    const char* what;
    std::uint16_t rate1, rate2, n1, n2;
    std::size_t words;
    std::int32_t storedN2;
    float windowLength;
    bool message;
};

class RawDataRates : public testing::TestWithParam<RateCase> {};

TEST_P(RawDataRates, RowSizeWindowAndMessage)
{
    const RateCase& c = GetParam();
    synth::ClpBlock block = FlatBlock(c.n1, c.n2, 3000);
    block.sampleRate1 = c.rate1;
    block.sampleRate2 = c.rate2;
    block.holdoff = 30;
    std::vector<std::uint8_t> bytes;
    AppendStation(bytes, 10.0f, {block});
    AppendStation(bytes, 11.0f, {block});
    const auto run = ImportBytes(bytes);

    const CSonicTrace& rx = run.Sonic(0);
    ASSERT_EQ(rx.RowCount(), 2u);
    EXPECT_EQ(rx.Row(1).size(), c.words);
    EXPECT_EQ(rx.Acquisition().rxNumSamples2, c.storedN2);
    EXPECT_FLOAT_EQ(rx.ScaleLeft(), 300.0f);
    EXPECT_FLOAT_EQ(rx.ScaleRight(), 300.0f + c.windowLength);
    const std::vector<std::string> once{std::string(kRate2MultipleMessage)};
    EXPECT_EQ(run.sink.Texts(), c.message ? once : std::vector<std::string>{});
    if (c.message) {
        // The words the ignored samples would have filled stay 0.
        for (std::size_t i = c.n1; i < c.words; ++i) ASSERT_EQ(rx.Row(1)[i], 0) << i;
    }
}

INSTANTIATE_TEST_SUITE_P(
    Cases, RawDataRates,
    testing::Values(RateCase{"rate 2 three times rate 1", 8, 24, 100, 50, 250, 50, 2000.0f, false},
                    RateCase{"rate 2 not a multiple", 8, 20, 100, 50, 200, 0, 800.0f, true},
                    RateCase{"rate 2 below rate 1", 8, 4, 100, 50, 100, 0, 800.0f, true},
                    RateCase{"one rate", 8, 8, 120, 0, 120, 0, 960.0f, false},
                    RateCase{"no rate-2 samples, odd rate 2", 8, 20, 100, 0, 100, 0, 800.0f, false}));

struct FwsCase {
    std::uint8_t frequencyByte, intervalByte;
    std::uint16_t holdoff;
    bool fws;
    std::int32_t frequency, interval, storedHoldoff;
};

class RawDataFwsUpgrade : public testing::TestWithParam<FwsCase> {};

TEST_P(RawDataFwsUpgrade, OutOfRangeBytesMarkTheUpgradedProbe)
{
    const FwsCase& c = GetParam();
    synth::ClpBlock block = FlatBlock(4, 0);
    block.holdoff = c.holdoff;
    std::vector<std::uint8_t> bytes;
    synth::AppendSonicRecord(bytes, 5.0f, c.frequencyByte, c.intervalByte, std::vector{block});
    const auto run = ImportBytes(bytes);

    const CSonicTrace& rx = run.Sonic(0);
    EXPECT_EQ(rx.ToolType(), c.fws ? kClpFwsToolType : kClpToolType);
    EXPECT_EQ(rx.Acquisition().txFrequency, c.frequency);
    EXPECT_EQ(rx.Acquisition().txStackInterval, c.interval);
    EXPECT_EQ(rx.Acquisition().rxHoldoff, c.storedHoldoff);
    EXPECT_FLOAT_EQ(rx.ScaleLeft(), 10.0f * static_cast<float>(c.storedHoldoff));
}

INSTANTIATE_TEST_SUITE_P(Cases, RawDataFwsUpgrade,
                         testing::Values(FwsCase{10, 20, 12, false, 10, 20, 12},
                                         FwsCase{30, 250, 250, false, 30, 250, 250},
                                         FwsCase{0, 20, 12, true, 20, 0, 0},
                                         FwsCase{31, 20, 12, true, 20, 0, 0},
                                         FwsCase{10, 0, 12, true, 20, 0, 0},
                                         FwsCase{10, 251, 12, true, 20, 0, 0},
                                         // A holdoff out of range changes the tool type and the
                                         // holdoff, not the transmitter bytes already taken.
                                         FwsCase{10, 20, 0, true, 10, 20, 0},
                                         FwsCase{10, 20, 251, true, 10, 20, 0}));

TEST(RawDataImport, AnUpgradeSeenInOneBlockHoldsForTheRestOfTheRecord)
{
    synth::ClpBlock first = FlatBlock(4, 0);
    first.holdoff = 0;
    synth::ClpBlock second = FlatBlock(4, 0);
    second.holdoff = 40;
    std::vector<std::uint8_t> bytes;
    AppendStation(bytes, 5.0f, {second, first});
    AppendStation(bytes, 6.0f, {first, second});
    const auto run = ImportBytes(bytes);

    // Last record: receiver 1 marks the upgrade, so receiver 2's holdoff is stored as 0 too.
    EXPECT_EQ(run.Sonic(0).ToolType(), kClpFwsToolType);
    EXPECT_EQ(run.Sonic(1).ToolType(), kClpFwsToolType);
    EXPECT_EQ(run.Sonic(1).Acquisition().rxHoldoff, 0);
    EXPECT_EQ(run.Sonic(0).Acquisition().txFrequency, 10);
}

TEST(RawDataImport, GainNibbleIsAPowerOfTwoAndTheHighNibbleMeansDipole)
{
    const std::pair<std::uint8_t, std::int32_t> gains[] = {{0, 1}, {5, 32}, {6, 64}, {15, 32768}};
    for (const auto& [nibble, gain] : gains) {
        synth::ClpBlock block = FlatBlock(2, 0);
        block.gainExponent = nibble;
        block.dipole = nibble == 6;
        std::vector<std::uint8_t> bytes;
        AppendStation(bytes, 1.0f, {block});
        const auto run = ImportBytes(bytes);
        EXPECT_EQ(run.Sonic(0).Acquisition().rxGain, gain) << int{nibble};
        EXPECT_EQ(run.Sonic(0).Acquisition().rxMode, nibble == 6 ? 1 : 0) << int{nibble};
    }
}

struct StationCase {
    const char* what;
    std::vector<float> recordDepths;
    std::vector<int> keptStations; // indices into recordDepths, in the order the trace holds them
};

class RawDataStations : public testing::TestWithParam<StationCase> {};

TEST_P(RawDataStations, FrontBackOrDropped)
{
    const StationCase& c = GetParam();
    std::vector<std::uint8_t> bytes;
    for (std::size_t s = 0; s < c.recordDepths.size(); ++s) {
        AppendStation(bytes, c.recordDepths[s], {FlatBlock(3, 0, static_cast<std::uint16_t>(s))});
    }
    const auto run = ImportBytes(bytes);
    const CSonicTrace& rx = run.Sonic(0);
    ASSERT_EQ(rx.RowCount(), c.keptStations.size());
    EXPECT_EQ(run.result.stationsDropped, c.recordDepths.size() - c.keptStations.size());
    for (std::size_t i = 0; i < c.keptStations.size(); ++i) {
        const auto s = static_cast<std::size_t>(c.keptStations[i]);
        EXPECT_EQ(rx.Row(i)[0], s) << i;
        EXPECT_EQ(rx.StoredDepth(i), static_cast<float>(c.recordDepths[s] - 0.578)) << i;
    }
}

INSTANTIATE_TEST_SUITE_P(
    Cases, RawDataStations,
    testing::Values(StationCase{"descending", {10, 9, 8, 7}, {3, 2, 1, 0}},
                    StationCase{"ascending", {7, 8, 9}, {0, 1, 2}},
                    StationCase{"middle dropped", {10, 12, 11, 9}, {3, 0, 1}},
                    StationCase{"repeats dropped", {10, 10, 11, 11, 10}, {0, 2}},
                    StationCase{"both ends", {10, 11, 9, 12, 8}, {4, 2, 0, 1, 3}}));

TEST(RawDataImport, LongDescendingRunEndsInAscendingOrder)
{
    std::vector<std::uint8_t> bytes;
    const int stations = 3000;
    for (int s = 0; s < stations; ++s) {
        AppendStation(bytes, 500.0f - 0.1f * static_cast<float>(s), {FlatBlock(2, 0, static_cast<std::uint16_t>(s % 4096))});
    }
    const auto run = ImportBytes(bytes);
    const CSonicTrace& rx = run.Sonic(0);
    ASSERT_EQ(rx.RowCount(), static_cast<std::size_t>(stations));
    for (std::size_t i = 0; i < rx.RowCount(); ++i) {
        ASSERT_EQ(rx.Row(i)[0], (stations - 1 - static_cast<int>(i)) % 4096) << i;
        if (i > 0) {
            ASSERT_LT(rx.StoredDepth(i - 1), rx.StoredDepth(i)) << i;
        }
    }
}

TEST(RawDataImport, TimeDigitisedRecordingCountsStationsInMinutes)
{
    std::vector<std::uint8_t> bytes;
    synth::AppendTimeDigitisingRecord(bytes, 500); // bytes 16-19: f4 01 00 00
    synth::AppendTimeDigitisingRecord(bytes, 90000); // a second one changes nothing
    for (int s = 0; s < 3; ++s) AppendStation(bytes, 123.0f, {FlatBlock(2, 0)});
    const auto run = ImportBytes(bytes);

    EXPECT_TRUE(run.result.timeDigitised);
    EXPECT_EQ(run.sink.Texts(), std::vector<std::string>{std::string(kTimeDigitizingNote)});
    EXPECT_EQ(run.sink.messages[0].severity, Severity::Note);
    const CSonicTrace& rx = run.Sonic(0);
    EXPECT_EQ(rx.DepthUnit(), kTimeMinutes);
    const float step = static_cast<float>(244 * 1.6666667e-05 + 1 * 0.0042666667);
    EXPECT_EQ(run.Depths(0), (std::vector<float>{0.0f, step, static_cast<float>(2.0 * step)}));
}

TEST(RawDataImport, ReadingInSmallPiecesGivesTheSameDocument)
{
    std::mt19937 rng(7);
    synth::Formation formation;
    std::vector<std::uint8_t> bytes;
    synth::AppendTimeDigitisingRecord(bytes, 250);
    const std::uint8_t other[] = {7, 1, 2, 3};
    for (int s = 0; s < 40; ++s) {
        std::vector<synth::ClpBlock> blocks(2);
        for (std::size_t r = 0; r < 2; ++r) {
            blocks[r].n1 = 60;
            blocks[r].n2 = 20;
            blocks[r].sampleRate2 = 24;
            blocks[r].samples = synth::SynthesiseWaveform(formation, 3.0 + static_cast<double>(r), blocks[r], rng);
        }
        AppendStation(bytes, 20.0f - 0.25f * static_cast<float>(s), blocks);
        synth::AppendOtherRecord(bytes, 1.0f, 1, other);
    }
    const auto whole = ImportBytes(bytes);
    ASSERT_TRUE(whole.result.complete);
    ASSERT_EQ(whole.Sonic(1).RowCount(), 40u);
    for (const std::size_t chunk : {std::size_t{1}, std::size_t{7}, std::size_t{333}}) {
        RawDataImportOptions options;
        options.chunkBytes = chunk;
        const auto pieces = ImportBytes(bytes, options);
        EXPECT_EQ(WriteDocumentBytes(*pieces.doc), WriteDocumentBytes(*whole.doc)) << chunk;
        EXPECT_EQ(pieces.sink.Texts(), whole.sink.Texts()) << chunk;
    }
}

TEST(RawDataImport, ProgressCanStopTheImportKeepingTheStationsRead)
{
    std::vector<std::uint8_t> bytes;
    for (int s = 0; s < 10; ++s) AppendStation(bytes, static_cast<float>(s), {FlatBlock(100, 0)});
    const std::size_t recordBytes = bytes.size() / 10;
    std::vector<double> fractions;
    RawDataImportOptions options;
    options.progressIntervalBytes = 3 * recordBytes;
    options.progress = [&](double f) {
        fractions.push_back(f);
        return fractions.size() < 2;
    };
    const auto run = ImportBytes(bytes, options);

    EXPECT_TRUE(run.result.cancelled);
    EXPECT_FALSE(run.result.complete);
    EXPECT_EQ(fractions, (std::vector<double>{0.3, 0.6}));
    EXPECT_EQ(run.Sonic(0).RowCount(), 6u);
}

// Under the background processing each step reads the next hundredth of the file: run to
// the end it gives the document the plain import gives; stopped, the stations read so far.
TEST(RawDataImport, AsAJobEachStepReadsAHundredthAndAStopKeepsWhatWasRead)
{
    std::vector<std::uint8_t> bytes;
    for (int s = 0; s < 200; ++s) AppendStation(bytes, static_cast<float>(s) * 0.1f, {FlatBlock(100, 0)});
    const auto whole = ImportBytes(bytes);
    ASSERT_TRUE(whole.result.complete);

    struct Case {
        std::size_t stopAfter; // progress messages before the stop; 0: never
        std::size_t rows;
        bool complete;
    };
    // 200 equal records, two per step; a stop after p progress messages lets step p finish.
    const Case cases[] = {{0, 200, true}, {10, 20, false}, {1, 2, false}};
    for (const Case& c : cases) {
        SonicImport run;
        std::size_t calls = 0;
        CRawDataImportProcess job(*run.doc, std::make_unique<RawMemorySource>(bytes), "test.rd", run.sink,
                                  [&](const RawDataImportResult& r) {
                                      ++calls;
                                      run.result = r;
                                  });
        test::MessageLoop loop;
        loop.panel.Open();
        ASSERT_TRUE(loop.host.Start(job, loop));
        loop.Run([&] {
            if (c.stopAfter != 0 && loop.progress.size() == c.stopAfter) loop.panel.PressStop();
        });
        EXPECT_EQ(calls, 1u) << c.stopAfter;
        EXPECT_EQ(run.result.complete, c.complete) << c.stopAfter;
        EXPECT_EQ(run.result.cancelled, !c.complete) << c.stopAfter;
        ASSERT_EQ(run.doc->TraceCount(), 1u) << c.stopAfter;
        EXPECT_EQ(run.Sonic(0).RowCount(), c.rows) << c.stopAfter;
        if (c.complete) {
            EXPECT_EQ(WriteDocumentBytes(*run.doc), WriteDocumentBytes(*whole.doc));
            EXPECT_EQ(loop.progress.size(), CRawDataImportProcess::kSteps + 1);
            EXPECT_EQ(loop.progress.back(), 100);
        }
    }

    SonicImport quiet; // the command line's way: no panel
    CRawDataImportProcess job(*quiet.doc, std::make_unique<RawMemorySource>(bytes), "test.rd", quiet.sink);
    RunWithoutPanel(job);
    EXPECT_TRUE(job.Result().complete);
    EXPECT_EQ(WriteDocumentBytes(*quiet.doc), WriteDocumentBytes(*whole.doc));
}

} // namespace
} // namespace ba
