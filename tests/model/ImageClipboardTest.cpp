#include "model/Archive.h"
#include "model/BoreAnalystDoc.h"
#include "model/ClipboardBlock.h"
#include "model/LineTrace.h"
#include "model/TraceClipboard.h"

#include "model/ImageTraceSamples.h"

#include <gtest/gtest.h>

#include <functional>

namespace ba {
namespace {

using test::ToHex;

// Image, sonic and spectral traces never ask: any question is a fault.
class NoQuestions final : public IYesNoQuestion {
public:
    bool AskYesNo(const std::string& text) override
    {
        ADD_FAILURE() << "unexpected question: " << text;
        return false;
    }
};

std::vector<std::uint8_t> BlockOf(std::initializer_list<const CTrace*> traces)
{
    CollectingMessageSink sink;
    auto block = CopyTraces(std::vector<const CTrace*>(traces), sink);
    EXPECT_TRUE(sink.messages.empty());
    return block.value();
}

std::vector<std::uint8_t> RecordOf(const CTrace& trace)
{
    CArchiveWriter w;
    trace.Serialize(w);
    return w.TakeBytes();
}

TEST(ImageClipboard, EntriesCarryTheKindAndTheImageOfEachKind)
{
    const auto image = test::SampleImage();
    const auto sonic = test::SampleSonic();
    const auto spectral = test::SampleSpectral();
    const auto block = BlockOf({image.get(), sonic.get(), spectral.get()});
    const auto entries = ReadClipboardEntries(block);
    ASSERT_EQ(entries.size(), 3u);
    const std::int32_t kinds[] = {1, 2, 3};
    const std::vector<std::uint8_t> images[] = {test::SampleImageRecord(), sonic->ClipboardImage(),
                                                test::SampleSpectralRecord()};
    for (std::size_t i = 0; i < 3; ++i) {
        EXPECT_EQ(entries[i].kind, kinds[i]) << i;
        EXPECT_EQ(ToHex({entries[i].image.begin(), entries[i].image.end()}), ToHex(images[i])) << i;
    }
}

TEST(ImageClipboard, CopyAndPasteIntoAFreshDocumentKeepsEveryKind)
{
    auto line = std::make_unique<CLineTrace>(1, kPenSolid, 0, 0.0f, 100.0f, "GR", "API");
    line->AppendSample(250.0f, 5.0f);
    const auto image = test::SampleImage();
    const auto sonic = test::SampleSonic();
    const auto spectral = test::SampleSpectral();
    const auto block = BlockOf({line.get(), image.get(), sonic.get(), spectral.get()});

    CBoreAnalystDoc doc;
    CollectingMessageSink sink;
    NoQuestions questions;
    const PasteResult result = PasteTraces(doc, block, "the clipboard", questions, sink);
    EXPECT_TRUE(sink.messages.empty());
    EXPECT_EQ(result.added, 4u);
    EXPECT_EQ(result.topDepth, 0.0); // the image traces start at 1 m
    EXPECT_EQ(doc.EntryKinds(), (std::vector<std::uint32_t>{0, 1, 2, 3}));
    EXPECT_EQ(ToHex(RecordOf(doc.Trace(1))), ToHex(RecordOf(*image)));
    EXPECT_EQ(ToHex(RecordOf(doc.Trace(3))), ToHex(RecordOf(*spectral)));
    // The sonic image has no room for RX mode: the pasted trace is monopole.
    const auto& pastedSonic = dynamic_cast<const CSonicTrace&>(doc.Trace(2));
    EXPECT_EQ(pastedSonic.Acquisition().rxMode, 0);
    EXPECT_EQ(pastedSonic.Acquisition().reserved, 12);
    EXPECT_EQ(pastedSonic.Rows(), sonic->Rows());
    EXPECT_EQ(doc.Trace(2).Track(), &doc.Track(1));
}

TEST(ImageClipboard, AxisRulesForImageKindsInADocumentThatHeldTraces)
{
    struct Case {
        const char* name;
        std::int32_t documentUnit;
        std::int32_t traceUnit;
        std::vector<std::string> messages;
        std::int32_t resultingUnit;
        float resultingScale;
    };
    const std::string warning = "Warning: Depth units in existing document are not the same as trace on clipboard.";
    const Case cases[] = {
        {"time trace into a depth document", kDepthMetres, kTimeSeconds, {warning}, kTimeSeconds, 10.0f},
        {"depth trace into a time document", kTimeHours, kDepthFeet, {warning}, kDepthFeet, 10.0f},
        {"feet trace into a metres document", kDepthMetres, kDepthFeet, {}, kDepthMetres, 25.0f},
        {"minutes trace into a days document", kTimeDays, kTimeMinutes, {}, kTimeDays, 25.0f},
    };
    const std::function<std::unique_ptr<CTrace>()> makers[] = {
        [] { return std::unique_ptr<CTrace>(test::SampleImage()); },
        [] { return std::unique_ptr<CTrace>(test::SampleSonic()); },
        [] { return std::unique_ptr<CTrace>(test::SampleSpectral()); },
    };
    for (const auto& make : makers) {
        for (const auto& c : cases) {
            auto trace = make();
            SCOPED_TRACE(std::string(trace->ClassName()) + ": " + c.name);
            trace->SetDepthUnit(c.traceUnit);
            const auto block = BlockOf({trace.get()});
            CBoreAnalystDoc doc;
            auto first = std::make_unique<CLineTrace>();
            first->SetDepthUnit(c.documentUnit);
            first->SetVerticalScale(25.0f);
            doc.AddTrace(std::move(first));
            CollectingMessageSink sink;
            NoQuestions questions;
            const PasteResult result = PasteTraces(doc, block, "the clipboard", questions, sink);
            EXPECT_EQ(result.added, 1u);
            EXPECT_EQ(sink.Texts(), c.messages);
            EXPECT_EQ(doc.Trace(1).DepthUnit(), c.resultingUnit);
            EXPECT_EQ(doc.Trace(1).VerticalScale(), c.resultingScale);
            EXPECT_EQ(doc.Trace(1).StoredDepth(1), 2.0f);
        }
    }
}

// A block of one entry of `kind` holding `image`.
std::vector<std::uint8_t> OneEntryBlock(std::int32_t kind, std::vector<std::uint8_t> image)
{
    const ClipboardImage entries[] = {{kind, std::move(image)}};
    return WriteClipboardBlock(entries);
}

TEST(ImageClipboard, DamagedImagesRefuseTheWholeBlockWithTheOffsetInIt)
{
    struct Case {
        const char* defect;
        std::vector<std::uint8_t> block;
        const char* message;
    };
    auto sonicImage = test::SampleSonic()->ClipboardImage();
    auto longImage = test::SampleImageRecord();
    longImage.push_back(0);
    auto shortSpectral = test::SampleSpectralRecord();
    shortSpectral.pop_back();
    const Case cases[] = {
        {"image record with a byte to spare", OneEntryBlock(1, longImage),
         "Error: cannot paste from the clipboard: clipboard entry at byte 4 (CImageTrace): the trace record ends 1 "
         "bytes before the image length 127 (byte offset 138)."},
        {"spectral record one byte short", OneEntryBlock(3, shortSpectral),
         "Error: cannot paste from the clipboard: clipboard entry at byte 4 (CSpectralTrace): count 2 for the "
         "spectrum acquisition values needs 32 bytes but only 31 bytes remain (byte offset 138)."},
        {"sonic image with its row count past the end", OneEntryBlock(2, [&] {
             auto bytes = sonicImage;
             bytes[0] = 0x40;
             return bytes;
         }()),
         "Error: cannot paste from the clipboard: a sonic trace clipboard image: count 64 for the waveform rows needs "
         "256 bytes but only 183 bytes remain (byte offset 12)."},
        {"sonic image one byte short", OneEntryBlock(2, {sonicImage.begin(), sonicImage.end() - 1}),
         "Error: cannot paste from the clipboard: a sonic trace clipboard image: the file ends inside a 32-bit "
         "field: 4 bytes needed, 3 bytes left (byte offset 195)."},
    };
    for (const auto& c : cases) {
        CBoreAnalystDoc doc;
        CollectingMessageSink sink;
        NoQuestions questions;
        const PasteResult result = PasteTraces(doc, c.block, "the clipboard", questions, sink);
        EXPECT_TRUE(result.refused) << c.defect;
        EXPECT_EQ(doc.TraceCount(), 0u) << c.defect;
        EXPECT_EQ(sink.Texts(), std::vector<std::string>{c.message}) << c.defect;
    }
}

} // namespace
} // namespace ba
