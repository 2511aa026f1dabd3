#include "model/Archive.h"
#include "model/BoreAnalystDoc.h"
#include "model/LineTrace.h"

#include "model/ImageTraceSamples.h"

#include <gtest/gtest.h>

namespace ba {
namespace {

using test::ToHex;

// One trace of each kind, in kind order, each in its own track.
std::unique_ptr<CBoreAnalystDoc> FourKindDocument()
{
    auto doc = std::make_unique<CBoreAnalystDoc>();
    auto line = std::make_unique<CLineTrace>(1, kPenSolid, 2, 0.0f, 150.0f, "GR", "API");
    line->AppendSample(1.0f, 42.0f);
    doc->AddTrace(std::move(line));
    doc->AddTrace(test::SampleImage());
    auto sonic = test::SampleSonic();
    sonic->SetTrackIndex(2);
    doc->AddTrace(std::move(sonic));
    auto spectral = test::SampleSpectral();
    spectral->SetTrackIndex(3);
    doc->AddTrace(std::move(spectral));
    return doc;
}

TEST(ImageDocument, AllFourKindsRoundTripByteForByte)
{
    const auto doc = FourKindDocument();
    const auto bytes = WriteDocumentBytes(*doc);
    CollectingMessageSink sink;
    const auto read = ReadDocumentBytes(bytes, sink, "four.bal");
    EXPECT_TRUE(sink.messages.empty());
    EXPECT_EQ(read->EntryKinds(), (std::vector<std::uint32_t>{0, 1, 2, 3}));
    const std::string_view classes[] = {"CLineTrace", "CImageTrace", "CSonicTrace", "CSpectralTrace"};
    for (std::size_t i = 0; i < 4; ++i) {
        EXPECT_EQ(read->Trace(i).ClassName(), classes[i]);
        EXPECT_EQ(read->Trace(i).Track(), &read->Track(static_cast<std::size_t>(read->Trace(i).TrackIndex())));
    }
    EXPECT_EQ(ToHex(WriteDocumentBytes(*read)), ToHex(bytes));
    EXPECT_EQ(dynamic_cast<const CSonicTrace&>(read->Trace(2)).Acquisition().rxMode, 5);
    EXPECT_EQ(dynamic_cast<const CSpectralTrace&>(read->Trace(3)).HighVoltage(1), 1.0f);
}

TEST(ImageDocument, EachClassRecordIsWrittenOnceAndLaterTracesReferToIt)
{
    CBoreAnalystDoc doc;
    doc.AddTrace(test::SampleSonic());
    doc.AddTrace(test::SampleSonic());
    const auto bytes = WriteDocumentBytes(doc);
    const std::string text(bytes.begin(), bytes.end());
    EXPECT_EQ(text.find("CSonicTrace"), text.rfind("CSonicTrace"));
    NullMessageSink sink;
    EXPECT_EQ(ReadDocumentBytes(bytes, sink, "two.bal")->TraceCount(), 2u);
}

TEST(ImageDocument, EveryTruncatedPrefixIsRefusedWithAnOffsetInsideIt)
{
    const auto bytes = WriteDocumentBytes(*FourKindDocument());
    for (std::size_t n = 0; n < bytes.size(); ++n) {
        NullMessageSink sink;
        try {
            ReadDocumentBytes(std::span(bytes).first(n), sink, "cut.bal");
            ADD_FAILURE() << "prefix " << n << " accepted";
        } catch (const ArchiveException& e) {
            EXPECT_LE(e.Offset(), n) << "prefix " << n << ": " << e.what();
        }
    }
}

TEST(ImageDocument, RowsAndDepthsOfDifferentLengthsAreKeptWithAWarning)
{
    CBoreAnalystDoc doc;
    auto image = test::SampleImage();
    image->StoredDepths().Add(3.0f);
    doc.AddTrace(std::move(image));
    CollectingMessageSink sink;
    const auto read = ReadDocumentBytes(WriteDocumentBytes(doc), sink, "odd.bal");
    EXPECT_EQ(sink.Texts(), std::vector<std::string>{"Warning: \"odd.bal\": trace \"IMG\" has 3 depths but 2 rows; "
                                                     "it is kept as read."});
    EXPECT_EQ(read->Trace(0).SampleCount(), 3u);
    EXPECT_EQ(dynamic_cast<const CImageTrace&>(read->Trace(0)).RowCount(), 2u);
}

} // namespace
} // namespace ba
