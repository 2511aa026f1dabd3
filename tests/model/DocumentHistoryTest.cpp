// Every change goes both ways exactly: undo gives back the document's bytes as they were,
// redo the bytes the change made; a group is one entry; the saved point decides
// "modified"; a new change drops what was undone.

#include "model/BoreAnalystDoc.h"
#include "model/DocumentChanges.h"
#include "model/ImageTrace.h"
#include "model/LineTrace.h"

#include <gtest/gtest.h>

#include <functional>

namespace ba {
namespace {

std::unique_ptr<CTrace> Line(const std::string& name, float first, std::int32_t track = 0)
{
    auto t = std::make_unique<CLineTrace>(1, kPenSolid, 2, 0.0f, 100.0f, name, "API");
    for (int i = 0; i < 5; ++i) t->AppendSample(first + static_cast<float>(i), 10.0f * static_cast<float>(i));
    t->SetTrackIndex(track);
    return t;
}

std::unique_ptr<CTrace> Image(const std::string& name)
{
    auto t = std::make_unique<CImageTrace>(name, 0.0f, 4095.0f, "cps");
    t->AppendRow(100.0f, {1, 2, 3});
    t->AppendRow(101.0f, {4, 5, 6});
    t->SetTrackIndex(1);
    return t;
}

// GR, an image and RES: three kinds of entry to change between.
struct Borehole {
    CBoreAnalystDoc doc;
    int viewUpdates = 0;
    Borehole()
    {
        doc.AddTrace(Line("GR", 100.0f));
        doc.AddTrace(Image("WAVE"));
        doc.AddTrace(Line("RES", 102.0f, 1));
        doc.AddViewUpdater([this] { ++viewUpdates; });
    }
    std::vector<std::uint8_t> Bytes() const { return WriteDocumentBytes(doc); }
    std::vector<std::string> Legend() const
    {
        std::vector<std::string> names;
        for (const CTrace* t : doc.Header().LegendTraces()) names.push_back(t->Name());
        return names;
    }
};

TEST(DocumentHistory, EachChangeUndoesToTheExactBytesAndRedoesAgain)
{
    const struct {
        const char* what;
        std::function<std::unique_ptr<CDocumentChange>(const CBoreAnalystDoc&)> make;
        std::vector<std::string> legendAfter;
    } cases[] = {
        {"add two", [](const CBoreAnalystDoc&) {
             std::vector<std::unique_ptr<CTrace>> t;
             t.push_back(Line("A", 50.0f));
             t.push_back(Image("B"));
             return MakeAddTracesChange("Add", std::move(t));
         }, {"GR", "WAVE", "RES", "A", "B"}},
        {"insert first", [](const CBoreAnalystDoc&) { return MakeInsertTraceChange("Insert", 0, Line("A", 1.0f)); },
         {"A", "GR", "WAVE", "RES"}},
        {"remove first and last", [](const CBoreAnalystDoc&) { return MakeRemoveTracesChange("Delete", {2, 0}); },
         {"WAVE"}},
        {"replace the image by a line", [](const CBoreAnalystDoc&) {
             return MakeReplaceTraceChange("Replace", 1, Line("WAVE", 7.0f, 3));
         }, {"GR", "WAVE", "RES"}},
        {"appearance", [](const CBoreAnalystDoc& doc) {
             TraceAppearance a = CaptureAppearance(doc.Trace(2));
             a.name = "ILD";
             a.trackIndex = 2;
             a.flags = 1;
             a.colourIndex = 4;
             a.colour = LineColourFromIndex(4);
             return MakeTraceAppearanceChange("Properties", 2, a);
         }, {"GR", "WAVE", "ILD"}},
        {"composite", [](const CBoreAnalystDoc&) {
             std::vector<std::unique_ptr<CDocumentChange>> parts;
             parts.push_back(MakeRemoveTracesChange("Delete", {1}));
             parts.push_back(MakeInsertTraceChange("Insert", 1, Line("MID", 3.0f)));
             return MakeCompositeChange("Both", std::move(parts));
         }, {"GR", "MID", "RES"}},
    };
    for (const auto& c : cases) {
        Borehole b;
        const auto before = b.Bytes();
        b.doc.Apply(c.make(b.doc));
        const auto after = b.Bytes();
        EXPECT_NE(after, before) << c.what;
        EXPECT_EQ(b.Legend(), c.legendAfter) << c.what;
        EXPECT_TRUE(b.doc.IsModified()) << c.what;
        for (std::size_t i = 0; i < b.doc.TraceCount(); ++i) {
            EXPECT_EQ(b.doc.Trace(i).Track(), b.doc.TrackAt(b.doc.Trace(i).TrackIndex())) << c.what;
        }

        b.doc.Undo();
        EXPECT_EQ(b.Bytes(), before) << c.what;
        EXPECT_EQ(b.Legend(), (std::vector<std::string>{"GR", "WAVE", "RES"})) << c.what;
        EXPECT_FALSE(b.doc.IsModified()) << c.what;
        b.doc.Redo();
        EXPECT_EQ(b.Bytes(), after) << c.what;
        b.doc.Undo();
        EXPECT_EQ(b.Bytes(), before) << c.what;
        EXPECT_EQ(b.viewUpdates, 4) << c.what; // once per apply, undo and redo
    }
}

TEST(DocumentHistory, NewChangesDropTheUndoneOnesAndTheSavedPointDecidesModified)
{
    Borehole b;
    b.doc.Apply(MakeRemoveTracesChange("Delete GR", {0}));
    b.doc.Apply(MakeRemoveTracesChange("Delete WAVE", {0}));
    EXPECT_EQ(b.doc.History().UndoDescription(), "Delete WAVE");
    b.doc.ReturnTo(0);
    EXPECT_EQ(b.doc.TraceCount(), 3u);
    EXPECT_EQ(b.viewUpdates, 3); // ReturnTo tells the views once
    EXPECT_EQ(b.doc.History().RedoDescription(), "Delete GR");
    b.doc.ReturnTo(1);
    EXPECT_EQ(b.doc.Trace(0).Name(), "WAVE");
    // A change made after undoing drops the undone entries.
    b.doc.Apply(MakeRemoveTracesChange("Delete RES", {1}));
    EXPECT_EQ(b.doc.History().Size(), 2u);
    EXPECT_FALSE(b.doc.CanRedo());
    EXPECT_EQ(b.doc.History().Entry(1).Description(), "Delete RES");
}

TEST(DocumentHistory, AGroupIsOneEntryAndAnAbandonedGroupLeavesNothing)
{
    Borehole b;
    const auto before = b.Bytes();
    {
        CChangeGroup group(b.doc, "Paste");
        b.doc.Apply(MakeInsertTraceChange("Paste", 3, Line("A", 1.0f)));
        EXPECT_EQ(b.doc.TraceCount(), 4u); // later steps see what earlier ones did
        b.doc.Apply(MakeRemoveTracesChange("Paste", {0}));
        EXPECT_EQ(b.viewUpdates, 0);
        group.Commit();
    }
    EXPECT_EQ(b.viewUpdates, 1);
    ASSERT_EQ(b.doc.History().Size(), 1u);
    EXPECT_EQ(b.doc.History().UndoDescription(), "Paste");
    b.doc.Undo();
    EXPECT_EQ(b.Bytes(), before);

    {
        CChangeGroup group(b.doc, "Import");
        b.doc.Apply(MakeRemoveTracesChange("Import", {1}));
    } // not committed: undone, nothing recorded
    EXPECT_EQ(b.Bytes(), before);
    EXPECT_EQ(b.doc.History().Size(), 1u);
    EXPECT_TRUE(b.doc.CanRedo());
}

} // namespace
} // namespace ba
