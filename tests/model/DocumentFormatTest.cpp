// The document file format, pinned by byte sequences worked out by hand.

#include "model/Archive.h"
#include "model/BoreAnalystDoc.h"
#include "model/LineTrace.h"

#include "support/Bytes.h"

#include <gtest/gtest.h>

namespace ba {
namespace {

using test::Concat;
using test::Fixed25;
using test::Hex;
using test::ToHex;

std::vector<std::uint8_t> Signature() { return Hex("'BoreAnalyst Document V.1.0'"); }

// Extent 850 x 1100, S0 = 7, S1 = 0, S2 = 1, grid 100, top -60, S3 = 3, S0 again, S4..S6 = 4, 5, 6,
// vertical scale 10.0.
std::vector<std::uint8_t> Settings()
{
    return Hex("52 03 00 00 4c 04 00 00 | 07 00 00 00 | 00 00 00 00 | 01 00 00 00 | 64 00 00 00 | c4 ff ff ff |"
               "03 00 00 00 | 07 00 00 00 | 04 00 00 00 | 05 00 00 00 | 06 00 00 00 | 00 00 20 41");
}

// Title "BH-1", area 0, 0, 800, -61, H1 = 2, H2 = 0.
std::vector<std::uint8_t> HeaderBytes()
{
    return Concat({Fixed25("BH-1"), Hex("04 'BH-1' | 00 00 00 00 00 00 00 00 20 03 00 00 c3 ff ff ff | 02 00 | 00 00")});
}

void FillSettings(CBoreAnalystDoc& doc)
{
    doc.SetSetting(0, 7);
    doc.SetSetting(3, 3);
    doc.SetSetting(4, 4);
    doc.SetSetting(5, 5);
    doc.SetSetting(6, 6);
    doc.Header().SetTitle("BH-1");
    doc.Header().SetH1(2);
}

TEST(DocumentFormat, EmptyDocumentBytes)
{
    CBoreAnalystDoc doc;
    FillSettings(doc);
    const auto expected = Concat({Signature(), Settings(), Hex("00 00 00 00"), HeaderBytes()});
    EXPECT_EQ(ToHex(WriteDocumentBytes(doc)), ToHex(expected));

    NullMessageSink sink;
    const auto read = ReadDocumentBytes(expected, sink, "empty.bal");
    EXPECT_EQ(read->TraceCount(), 0u);
    EXPECT_EQ(read->Setting(0), 7);
    EXPECT_EQ(read->Setting(6), 6);
    EXPECT_EQ(read->Header().Title(), "BH-1");
    EXPECT_EQ(read->Header().H1(), 2);
    EXPECT_EQ(read->TrackCount(), 4u);
    EXPECT_EQ(ToHex(WriteDocumentBytes(*read)), ToHex(expected));
}

// GR: units API, track 1, scale 0..150, flags 5, header box 1, 2, 3, 4, view parameter 0.5,
// vertical scale 10, top depth 9, metres, depths 10 and 10.5, values 50 and null, pen 2,
// dash, red. SP: a second line trace with no samples, written with the class tag 8001.
std::vector<std::uint8_t> TwoTraceBytes()
{
    return Concat({
        Signature(), Settings(), Hex("02 00 00 00"),
        Hex("00 00 00 00 | ff ff 01 00 0a 00 'CLineTrace'"), Fixed25("GR"), Fixed25("API"),
        Hex("02 00 00 00 | 00 00 00 00 | 00 00 16 43 | 01 00 00 00 | 05 00 00 00 |"
            "01 00 00 00 02 00 00 00 03 00 00 00 04 00 00 00 | 00 00 00 3f | 00 00 20 41 | 00 00 10 41 |"
            "01 00 00 00 | 00 00 20 41 00 00 28 41 |"
            "02 00 00 00 | 02 00 00 00 | 01 00 00 00 | 01 00 00 00 | ff 00 00 00 | 00 00 48 42 f6 3f 1c c6"),
        Hex("00 00 00 00 | 01 80"), Fixed25("SP"), Fixed25("mV"),
        Hex("00 00 00 00 | 00 00 00 00 | 00 00 c8 42 | 00 00 00 00 | 00 00 00 00 |"
            "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 | 00 00 00 00 | 00 00 20 41 | 00 00 00 00 |"
            "01 00 00 00 |"
            "00 00 00 00 | 01 00 00 00 | 00 00 00 00 | 00 00 00 00 | 00 00 00 00"),
        HeaderBytes(),
    });
}

TEST(DocumentFormat, TwoLineTracesBytes)
{
    CBoreAnalystDoc doc;
    FillSettings(doc);
    auto gr = std::make_unique<CLineTrace>(2, kPenDash, 1, 0.0f, 150.0f, "GR", "API");
    gr->SetTrackIndex(1);
    gr->SetFlags(5);
    gr->SetHeaderBox({1, 2, 3, 4});
    gr->SetViewParameter(0.5f);
    gr->SetTopDepth(9.0f);
    gr->AppendSample(10.0f, 50.0f);
    gr->AppendSample(10.5f, kNullValue);
    doc.AddTrace(std::move(gr));
    doc.AddTrace(std::make_unique<CLineTrace>(1, kPenSolid, 0, 0.0f, 100.0f, "SP", "mV"));
    EXPECT_EQ(ToHex(WriteDocumentBytes(doc)), ToHex(TwoTraceBytes()));
}

TEST(DocumentFormat, TwoLineTracesRead)
{
    NullMessageSink sink;
    const auto doc = ReadDocumentBytes(TwoTraceBytes(), sink, "two.bal");
    ASSERT_EQ(doc->TraceCount(), 2u);
    EXPECT_EQ(doc->EntryKinds(), (std::vector<std::uint32_t>{0, 0}));
    const auto& gr = dynamic_cast<const CLineTrace&>(doc->Trace(0));
    EXPECT_EQ(gr.Name(), "GR");
    EXPECT_EQ(gr.Units(), "API");
    EXPECT_EQ(gr.ScaleRight(), 150.0f);
    EXPECT_EQ(gr.Track(), &doc->Track(1));
    EXPECT_TRUE(gr.Flag(0));
    EXPECT_FALSE(gr.Flag(1));
    EXPECT_TRUE(gr.Flag(2));
    EXPECT_EQ(gr.HeaderBox(), (CRect32{1, 2, 3, 4}));
    EXPECT_EQ(gr.ViewParameter(), 0.5f);
    EXPECT_EQ(gr.TopDepth(), 9.0f);
    ASSERT_EQ(gr.SampleCount(), 2u);
    EXPECT_EQ(gr.StoredDepth(1), 10.5f);
    EXPECT_EQ(gr.Value(0), 50.0f);
    EXPECT_TRUE(IsNullSample(gr.Value(1)));
    EXPECT_EQ(gr.PenWidth(), 2);
    EXPECT_EQ(gr.PenStyle(), kPenDash);
    EXPECT_EQ(gr.Colour(), 0xFFu);
    EXPECT_EQ(doc->Trace(1).Name(), "SP");
    EXPECT_EQ(doc->Header().LegendTraces().size(), 2u);
    EXPECT_EQ(ToHex(WriteDocumentBytes(*doc)), ToHex(TwoTraceBytes()));
}

TEST(DocumentFormat, SecondCopyOfS0IsKept)
{
    auto bytes = Concat({Signature(), Settings(), Hex("00 00 00 00"), HeaderBytes()});
    bytes[26 + 8] = 0x11;      // first S0
    bytes[26 + 8 + 24] = 0x22; // second S0
    NullMessageSink sink;
    EXPECT_EQ(ReadDocumentBytes(bytes, sink, "s0.bal")->Setting(0), 0x22);
}

TEST(DocumentFormat, UnknownKindCodesAreRecordedSkippedAndWrittenBack)
{
    // Entries: kind 9 (no object), the SP line trace, kind -1 (no object).
    CBoreAnalystDoc source;
    source.AddTrace(std::make_unique<CLineTrace>(1, kPenSolid, 0, 0.0f, 100.0f, "SP", "mV"));
    auto bytes = WriteDocumentBytes(source);
    // Splice: count 3, then 09 00 00 00, the trace entry, ff ff ff ff.
    const std::size_t countAt = 26 + 52;
    std::vector<std::uint8_t> traceEntry(bytes.begin() + countAt + 4, bytes.end() - (25 + 1 + 16 + 4));
    std::vector<std::uint8_t> header(bytes.end() - (25 + 1 + 16 + 4), bytes.end());
    const auto spliced = Concat({std::vector<std::uint8_t>(bytes.begin(), bytes.begin() + countAt), Hex("03 00 00 00"),
                                 Hex("09 00 00 00"), traceEntry, Hex("ff ff ff ff"), header});

    CollectingMessageSink sink;
    const auto doc = ReadDocumentBytes(spliced, sink, "kinds.bal");
    EXPECT_EQ(doc->EntryKinds(), (std::vector<std::uint32_t>{9, 0, 0xFFFFFFFF}));
    ASSERT_EQ(doc->TraceCount(), 1u);
    EXPECT_EQ(doc->Trace(0).Name(), "SP");
    EXPECT_EQ(doc->TraceKindCode(0), 0u);
    EXPECT_EQ(sink.Texts(),
              (std::vector<std::string>{
                  "Warning: \"kinds.bal\": trace entry 1 has the unknown kind code 9 (byte offset 82); it holds no "
                  "trace and was skipped.",
                  "Warning: \"kinds.bal\": trace entry 3 has the unknown kind code 4294967295 (byte offset " +
                      std::to_string(86 + traceEntry.size()) + "); it holds no trace and was skipped."}));
    EXPECT_EQ(ToHex(WriteDocumentBytes(*doc)), ToHex(spliced));
}

TEST(DocumentFormat, TrackPointersAreRebuiltFromTheIndex)
{
    CBoreAnalystDoc source;
    auto trace = std::make_unique<CLineTrace>();
    trace->SetTrackIndex(2);
    source.AddTrace(std::move(trace));
    auto orphan = std::make_unique<CLineTrace>();
    orphan->SetName("Orphan");
    orphan->SetTrackIndex(9);
    source.AddTrace(std::move(orphan));
    EXPECT_EQ(source.Trace(1).Track(), nullptr);

    CollectingMessageSink sink;
    const auto doc = ReadDocumentBytes(WriteDocumentBytes(source), sink, "tracks.bal");
    ASSERT_NE(doc->Trace(0).Track(), nullptr);
    EXPECT_EQ(doc->Trace(0).Track()->Name(), "RLeft Track");
    EXPECT_EQ(doc->Trace(1).Track(), nullptr);
    EXPECT_EQ(doc->Trace(1).TrackIndex(), 9);
    EXPECT_EQ(sink.Texts(), (std::vector<std::string>{"Warning: \"tracks.bal\": trace \"Orphan\" names track 9, which "
                                                      "does not exist; it is not drawn until it is given a track."}));
}

TEST(DocumentFormat, ValueCountsThatDifferFromTheDepthCountAreKeptAndReported)
{
    CBoreAnalystDoc source;
    auto t = std::make_unique<CLineTrace>();
    t->SetName("GR");
    t->AppendSample(1.0f, 5.0f);
    t->AppendSample(2.0f, 6.0f);
    t->Values().RemoveAt(1);
    source.AddTrace(std::move(t));
    const auto bytes = WriteDocumentBytes(source);
    CollectingMessageSink sink;
    const auto doc = ReadDocumentBytes(bytes, sink, "short.bal");
    const auto& gr = dynamic_cast<const CLineTrace&>(doc->Trace(0));
    EXPECT_EQ(gr.SampleCount(), 2u);
    EXPECT_EQ(gr.Values().Size(), 1u);
    EXPECT_EQ(gr.ValueAt(2.0f), kNullValue);
    EXPECT_EQ(sink.Texts(), (std::vector<std::string>{"Warning: \"short.bal\": trace \"GR\" has 2 depths but 1 values; "
                                                      "depths without a value read as null and values without a "
                                                      "depth are not used."}));
    EXPECT_EQ(ToHex(WriteDocumentBytes(*doc)), ToHex(bytes));
}

TEST(DocumentFormat, LongTitlesSurviveThroughTheSecondCopy)
{
    for (const std::string& title : {std::string(25, 'T'), std::string("Borehole BA-7, Quartzline Geodata survey 2026"),
                                    std::string(300, 'x')}) {
        CBoreAnalystDoc doc;
        doc.Header().SetTitle(title);
        NullMessageSink sink;
        EXPECT_EQ(ReadDocumentBytes(WriteDocumentBytes(doc), sink, "t.bal")->Header().Title(), title);
    }
}

TEST(DocumentFormat, NamesAreCutToTwentyFiveBytes)
{
    CBoreAnalystDoc doc;
    auto t = std::make_unique<CLineTrace>();
    t->SetName("Neutron porosity (limestone matrix)");
    t->SetUnits("\xC2\xB5s/ft");
    doc.AddTrace(std::move(t));
    NullMessageSink sink;
    const auto read = ReadDocumentBytes(WriteDocumentBytes(doc), sink, "n.bal");
    EXPECT_EQ(read->Trace(0).Name(), "Neutron porosity (limesto");
    EXPECT_EQ(read->Trace(0).Units(), "\xC2\xB5s/ft");
}

TEST(DocumentFormat, SixteenBitSettingsKeepTheirHighBitsOnReading)
{
    // Settings are written as 16-bit words and a reader replaces only the low half of the
    // field, so values outside 16 bits do not survive a round trip.
    CBoreAnalystDoc doc;
    doc.Header().SetH1(-1);
    doc.Header().SetH2(0x12345);
    NullMessageSink sink;
    const auto read = ReadDocumentBytes(WriteDocumentBytes(doc), sink, "h.bal");
    EXPECT_EQ(read->Header().H1(), 0xFFFF);
    EXPECT_EQ(read->Header().H2(), 0x2345);
}

} // namespace
} // namespace ba
