#include "model/Archive.h"
#include "model/BoreAnalystDoc.h"
#include "model/ClipboardBlock.h"
#include "model/LineTrace.h"
#include "model/TraceClipboard.h"

#include "support/Bytes.h"

#include <gtest/gtest.h>

namespace ba {
namespace {

using test::Concat;
using test::Fixed25;
using test::Hex;
using test::ToHex;

// GR, API, track 1, scale 0..150, red pen of width 2, samples (10 m, 1) and (10.5 m, 2).
CLineTrace SmallTrace()
{
    CLineTrace t(2, kPenSolid, 1, 0.0f, 150.0f, "GR", "API");
    t.SetTrackIndex(1);
    t.AppendSample(10.0f, 1.0f);
    t.AppendSample(10.5f, 2.0f);
    return t;
}

// Worked out by hand from the trace record layout: 138 bytes of image.
std::vector<std::uint8_t> SmallTraceBlock()
{
    return Concat({
        Hex("01 00 00 00 | 00 00 00 00 | 8a 00 00 00"), // one entry, kind 0, 138 bytes
        Fixed25("GR"), Fixed25("API"),
        Hex("02 00 00 00 |"                          // two depths
            "00 00 00 00 | 00 00 16 43 |"            // scale 0 .. 150
            "01 00 00 00 | 00 00 00 00 |"            // track 1, no flags
            "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 |" // header box
            "00 00 00 00 | 00 00 20 41 | 00 00 00 00 |"         // view parameter, vertical scale 10, top depth
            "01 00 00 00 |"                          // metres
            "00 00 20 41 | 00 00 28 41 |"            // 10.0, 10.5
            "02 00 00 00 | 02 00 00 00 | 00 00 00 00 | 01 00 00 00 | ff 00 00 00 |" // values, pen, red
            "00 00 80 3f | 00 00 00 40"),            // 1.0, 2.0
    });
}

class RefuseQuestions final : public IYesNoQuestion {
public:
    bool AskYesNo(const std::string& text) override
    {
        ADD_FAILURE() << "unexpected question: " << text;
        return false;
    }
};

std::vector<std::uint8_t> CopyOrFail(std::initializer_list<const CTrace*> traces)
{
    CollectingMessageSink sink;
    auto block = CopyTraces(std::vector<const CTrace*>(traces), sink);
    EXPECT_TRUE(block.has_value()) << ::testing::PrintToString(sink.Texts());
    return block.value_or(std::vector<std::uint8_t>{});
}

TEST(ClipboardBlock, OneSmallLineTraceHasTheHandComputedBytes)
{
    const CLineTrace trace = SmallTrace();
    const auto block = CopyOrFail({&trace});
    EXPECT_EQ(block.size(), 150u);
    EXPECT_EQ(ToHex(block), ToHex(SmallTraceBlock()));
}

TEST(ClipboardBlock, CopyPasteKeepsEveryStoredField)
{
    CLineTrace original(3, kPenDashDot, 4, -5.5f, 250.25f, "ABCDEFGHIJKLMNOPQRSTUVWXY", "ohm.m");
    original.SetTrackIndex(2);
    original.SetFlags(5);
    original.SetHeaderBox({10, -20, 240, -45});
    original.SetViewParameter(0.75f);
    original.SetVerticalScale(20.0f);
    original.SetTopDepth(123.5f);
    original.SetDepthUnit(kDepthFeet);
    original.AppendSample(1.0f, 7.5f);
    original.AppendSample(2.0f, kNullValue);
    original.AppendSample(3.5f, -1.25f);
    CLineTrace second = SmallTrace();

    const auto block = CopyOrFail({&original, &second});
    CBoreAnalystDoc doc;
    CollectingMessageSink sink;
    RefuseQuestions noQuestions;
    const PasteResult result = PasteTraces(doc, block, "the clipboard", noQuestions, sink);
    EXPECT_TRUE(sink.messages.empty()) << ::testing::PrintToString(sink.Texts());
    ASSERT_EQ(result.added, 2u);
    ASSERT_EQ(doc.TraceCount(), 2u);

    const std::pair<const CLineTrace*, std::size_t> pairs[] = {{&original, 0}, {&second, 1}};
    for (const auto& [expected, index] : pairs) {
        SCOPED_TRACE(expected->Name());
        const auto* pasted = dynamic_cast<const CLineTrace*>(&doc.Trace(index));
        ASSERT_NE(pasted, nullptr);
        EXPECT_EQ(doc.TraceKindCode(index), 0u);
        EXPECT_EQ(pasted->Name(), expected->Name());
        EXPECT_EQ(pasted->Units(), expected->Units());
        EXPECT_EQ(pasted->TrackIndex(), expected->TrackIndex());
        EXPECT_EQ(pasted->Track(), doc.TrackAt(expected->TrackIndex()));
        EXPECT_EQ(pasted->ScaleLeft(), expected->ScaleLeft());
        EXPECT_EQ(pasted->ScaleRight(), expected->ScaleRight());
        EXPECT_EQ(pasted->Flags(), expected->Flags());
        EXPECT_EQ(pasted->HeaderBox(), expected->HeaderBox());
        EXPECT_EQ(pasted->ViewParameter(), expected->ViewParameter());
        EXPECT_EQ(pasted->VerticalScale(), expected->VerticalScale());
        EXPECT_EQ(pasted->TopDepth(), expected->TopDepth());
        EXPECT_EQ(pasted->DepthUnit(), expected->DepthUnit());
        EXPECT_EQ(pasted->PenWidth(), expected->PenWidth());
        EXPECT_EQ(pasted->PenStyle(), expected->PenStyle());
        EXPECT_EQ(pasted->ColourIndex(), expected->ColourIndex());
        EXPECT_EQ(pasted->Colour(), expected->Colour());
        EXPECT_EQ(std::vector<float>(pasted->StoredDepths().Items().begin(), pasted->StoredDepths().Items().end()),
                  std::vector<float>(expected->StoredDepths().Items().begin(), expected->StoredDepths().Items().end()));
        EXPECT_EQ(std::vector<float>(pasted->Values().Items().begin(), pasted->Values().Items().end()),
                  std::vector<float>(expected->Values().Items().begin(), expected->Values().Items().end()));
    }
}

TEST(ClipboardBlock, TrailingSlackIsIgnored)
{
    auto block = SmallTraceBlock();
    block.resize(4096, 0xCD);
    const auto entries = ReadClipboardEntries(block);
    ASSERT_EQ(entries.size(), 1u);
    EXPECT_EQ(entries[0].imageOffset, 12u);
    EXPECT_EQ(entries[0].image.size(), 138u);
    EXPECT_EQ(ReadLineTraceImage(block, entries[0])->Name(), "GR");
}

// Decodes the whole block the way a paste does: framing, then each line trace's image.
void DecodeAll(std::span<const std::uint8_t> block)
{
    for (const auto& entry : ReadClipboardEntries(block)) {
        if (entry.kind == 0) ReadLineTraceImage(block, entry);
    }
}

TEST(ClipboardBlock, EveryTruncationIsRefused)
{
    const auto block = SmallTraceBlock();
    for (std::size_t size = 0; size < block.size(); ++size) {
        SCOPED_TRACE(size);
        EXPECT_THROW(DecodeAll(std::span(block).first(size)), ArchiveException);
    }
}

std::vector<std::uint8_t> WithInt32At(std::vector<std::uint8_t> block, std::size_t at, std::uint32_t value)
{
    for (std::size_t k = 0; k < 4; ++k) block.at(at + k) = static_cast<std::uint8_t>(value >> (8 * k));
    return block;
}

TEST(ClipboardBlock, HostileFramingIsRefusedAtItsOffset)
{
    const auto good = SmallTraceBlock();
    struct Case {
        const char* name;
        std::vector<std::uint8_t> block;
        std::uint64_t offset;
        const char* detail;
    };
    const Case cases[] = {
        {"huge count", WithInt32At(good, 0, 0x7FFFFFFF), 0, "count 2147483647 for the clipboard entries"},
        {"negative count", WithInt32At(good, 0, 0xFFFFFFFF), 0, "negative count -1"},
        {"count one too many", WithInt32At(good, 0, 2), 150, "clipboard entry 2 of 2: the file ends inside"},
        {"negative length", WithInt32At(good, 8, 0x80000000), 8, "negative image length -2147483648"},
        {"length past the end", WithInt32At(good, 8, 139), 8, "image length 139 runs past the end"},
        {"empty block", {}, 0, "the file ends inside"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        try {
            DecodeAll(c.block);
            ADD_FAILURE() << "accepted";
        } catch (const ArchiveException& e) {
            EXPECT_EQ(e.Offset(), c.offset);
            EXPECT_NE(std::string(e.what()).find(c.detail), std::string::npos) << e.what();
        }
    }
}

TEST(ClipboardBlock, ImageThatDoesNotFillItsLengthIsRefused)
{
    struct Case {
        const char* name;
        std::uint32_t length;
        std::uint64_t offset;
        const char* detail;
    };
    // The block keeps two spare bytes, so every length below is framed correctly and only
    // the record inside disagrees with it.
    const Case cases[] = {
        {"record longer than the image", 137, 122, "count 2 for the values needs 8 bytes but only 7 bytes remain"},
        {"record shorter than the image", 140, 150, "the trace record ends 2 bytes before the image length 140"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        auto block = WithInt32At(SmallTraceBlock(), 8, c.length);
        block.resize(152, 0);
        const auto entries = ReadClipboardEntries(block);
        ASSERT_EQ(entries.size(), 1u);
        try {
            ReadLineTraceImage(block, entries[0]);
            ADD_FAILURE() << "accepted";
        } catch (const ArchiveException& e) {
            EXPECT_EQ(e.Offset(), c.offset);
            EXPECT_NE(std::string(e.what()).find(c.detail), std::string::npos) << e.what();
        }
    }
}

TEST(ClipboardBlock, RefusedPasteLeavesTheDocumentUntouched)
{
    CBoreAnalystDoc doc;
    int updates = 0;
    doc.AddViewUpdater([&] { ++updates; });
    CollectingMessageSink sink;
    RefuseQuestions noQuestions;
    // A good first entry and a damaged second one: neither is added.
    auto block = Concat({SmallTraceBlock(), Hex("00 00 00 00 | 05 00 00 00 | 01 02 03 04 05")});
    block = WithInt32At(block, 0, 2);
    const PasteResult result = PasteTraces(doc, block, "\"b.bin\"", noQuestions, sink);
    EXPECT_TRUE(result.refused);
    EXPECT_EQ(doc.TraceCount(), 0u);
    EXPECT_FALSE(doc.IsModified());
    EXPECT_EQ(updates, 0);
    ASSERT_EQ(sink.messages.size(), 1u);
    EXPECT_EQ(sink.messages[0].text.rfind("Error: cannot paste from \"b.bin\": clipboard entry at byte 150", 0), 0u)
        << sink.messages[0].text;
}

TEST(ClipboardBlock, UnknownKindsAreLeftOutAndTheRestIsPasted)
{
    // Two entries of unknown kinds, each with a few bytes of image, around a line trace.
    const auto line = SmallTraceBlock();
    const auto block = Concat({Hex("03 00 00 00 | 07 00 00 00 | 03 00 00 00 | aa bb cc"),
                               std::vector<std::uint8_t>(line.begin() + 4, line.end()),
                               Hex("09 00 00 00 | 00 00 00 00")});
    CBoreAnalystDoc doc;
    CollectingMessageSink sink;
    RefuseQuestions noQuestions;
    const PasteResult result = PasteTraces(doc, block, "the clipboard", noQuestions, sink);
    EXPECT_FALSE(result.refused);
    EXPECT_EQ(result.added, 1u);
    EXPECT_EQ(result.skipped, 2u);
    ASSERT_EQ(doc.TraceCount(), 1u);
    EXPECT_EQ(doc.Trace(0).Name(), "GR");
    EXPECT_EQ(sink.Texts(), (std::vector<std::string>{
                                "Error: the clipboard: clipboard entry 1 of 3 (byte offset 4) has the unknown kind code "
                                "7; it is left out.",
                                "Error: the clipboard: clipboard entry 3 of 3 (byte offset 161) has the unknown kind "
                                "code 9; it is left out.",
                            }));
}

} // namespace
} // namespace ba
