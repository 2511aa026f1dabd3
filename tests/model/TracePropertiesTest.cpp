#include "model/TraceProperties.h"

#include "model/LineTrace.h"

#include <gtest/gtest.h>

#include <memory>

namespace ba {
namespace {

struct Sheet {
    CBoreAnalystDoc doc;
    CLineTrace* line = nullptr;
    CollectingMessageSink sink;

    Sheet()
    {
        auto trace = std::make_unique<CLineTrace>(1, kPenSolid, 1, 0.0f, 100.0f, "GR", "API");
        trace->AppendSample(10.0f, 50.0f);
        line = &static_cast<CLineTrace&>(doc.AddTrace(std::move(trace)));
    }
};

TEST(TraceProperties, RefusedEntriesChangeNothingAndSayWhy)
{
    const struct {
        const char* what;
        TracePropertyEdit edit;
        const char* message;
    } cases[] = {
        {"blank name", {.name = "   "}, "Error: The trace name must not be empty."},
        {"equal ends", {.scaleLeft = 100.0f}, "Error: The left and right scale values must differ."},
        {"no such track", {.trackIndex = 4}, "Error: There is no track 4 in this document."},
        {"negative track", {.trackIndex = -1}, "Error: There is no track -1 in this document."},
        {"pen too thin", {.penWidth = 0}, "Error: The pen width must lie between 1 and 20."},
        {"pen style", {.penStyle = 6}, "Error: The pen style must lie between 0 and 5."},
        {"colour", {.colourIndex = 7}, "Error: The colour must lie between 0 and 6."},
    };
    for (const auto& c : cases) {
        Sheet sheet;
        // A valid entry before the refused one must not be written either.
        TracePropertyEdit edit = c.edit;
        edit.units = "gAPI";
        EXPECT_FALSE(ApplyTraceProperties(sheet.doc, *sheet.line, edit, sheet.sink)) << c.what;
        EXPECT_EQ(sheet.sink.Texts(), std::vector<std::string>{c.message}) << c.what;
        EXPECT_EQ(sheet.line->Units(), "API") << c.what;
        EXPECT_FALSE(sheet.doc.IsModified()) << c.what;
    }
}

TEST(TraceProperties, AcceptedEntriesAreWrittenAndTheRestKept)
{
    Sheet sheet;
    TracePropertyEdit edit;
    edit.name = "  Gamma Ray ";
    edit.scaleLeft = 150.0f; // reversed against the kept right end 100
    edit.trackIndex = 3;
    edit.hidden = true;
    edit.penStyle = kPenDot;
    ASSERT_TRUE(ApplyTraceProperties(sheet.doc, *sheet.line, edit, sheet.sink));
    EXPECT_TRUE(sheet.sink.messages.empty());
    EXPECT_EQ(sheet.line->Name(), "Gamma Ray");
    EXPECT_EQ(sheet.line->Units(), "API");
    EXPECT_EQ(sheet.line->ScaleLeft(), 150.0f);
    EXPECT_EQ(sheet.line->ScaleRight(), 100.0f);
    EXPECT_EQ(sheet.line->TrackIndex(), 3);
    EXPECT_EQ(sheet.line->Track(), sheet.doc.TrackAt(3));
    EXPECT_TRUE(sheet.line->IsHidden());
    EXPECT_EQ(sheet.line->PenWidth(), 1);
    EXPECT_EQ(sheet.line->PenStyle(), kPenDot);
    EXPECT_EQ(sheet.line->Colour(), LineColourFromIndex(1));
    EXPECT_TRUE(sheet.doc.IsModified());
    EXPECT_EQ(sheet.doc.History().UndoDescription(), "Properties of GR");

    sheet.doc.Undo();
    EXPECT_EQ(sheet.line->Name(), "GR");
    EXPECT_EQ(sheet.line->ScaleLeft(), 0.0f);
    EXPECT_EQ(sheet.line->Track(), sheet.doc.TrackAt(0));
    EXPECT_FALSE(sheet.line->IsHidden());
    EXPECT_EQ(sheet.line->PenStyle(), kPenSolid);
    EXPECT_FALSE(sheet.doc.IsModified());
}

TEST(TraceProperties, KeepingTheColourKeepsAnOffTableColourValue)
{
    Sheet sheet;
    sheet.line->ChangePen(1, kPenSolid, 2, 0x00123456u); // as a document may hold it
    TracePropertyEdit edit;
    edit.colourIndex = 2;
    edit.penWidth = 3;
    ASSERT_TRUE(ApplyTraceProperties(sheet.doc, *sheet.line, edit, sheet.sink));
    EXPECT_EQ(sheet.line->Colour(), 0x00123456u);
    edit.colourIndex = 4;
    ASSERT_TRUE(ApplyTraceProperties(sheet.doc, *sheet.line, edit, sheet.sink));
    EXPECT_EQ(sheet.line->Colour(), LineColourFromIndex(4));
}

} // namespace
} // namespace ba
