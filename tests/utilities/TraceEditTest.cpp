// Edit, clip and cut: values worked by hand over intervals that start and end at samples
// (in metres, and in feet, where a depth shown as 1000.5 ft has no exact stored form),
// next to nulls and at the ends; cuts of every trace kind with their rows and spectrum
// values; a copy that keeps every sample equal, byte for byte, to the trace; the changes,
// their names and their refusals. Depths and values are compared within 1e-4 (a float
// depth near 1000 ft moves in steps of 6e-5).

#include "utilities/ClipTrace.h"
#include "utilities/CutTrace.h"
#include "utilities/EditTrace.h"
#include "utilities/SampleSubset.h"

#include "DepthUtilityFixtures.h"
#include "model/SonicTrace.h"
#include "model/SpectralTrace.h"

#include <functional>

namespace ba {
namespace {

using test::AddLine;
using test::ApplyAndCheckHistory;
using test::ExpectRefused;
using test::ExpectSamples;
using test::kNull;

constexpr double kTolerance = 1e-4;

const test::LineSetup kLog = {"GR", "API", {100, 101, 102, 103, 104, 105, 106}, {1, 2, kNull, 4, 5, 6, 7}};
const test::LineSetup kFeet = {"GR", "API", {1000, 1000.5f, 1001, 1001.5f}, {1, 2, 3, 4}, kDepthFeet};
// The same with values off the straight lines that interpolation draws.
const test::LineSetup kBumpy = {"GR", "API", kLog.depths, {1, 2, kNull, 40, 5, 6, 7}};
const test::LineSetup kFeetBumpy = {"GR", "API", kFeet.depths, {1, 20, 30, 4}, kDepthFeet};

struct EditCase {
    const char* what;
    test::LineSetup trace;
    EditRequest request;
    std::vector<float> depths;
    std::vector<float> values;
};

const EditCase kEditCases[] = {
    {"set", kLog, {{102, 104}, EditAction::SetValue, 9}, kLog.depths, {1, 2, 9, 9, 9, 6, 7}},
    {"set in feet", kFeet, {{1000.5, 1001}, EditAction::SetValue, 9}, kFeet.depths, {1, 9, 9, 4}},
    {"null", kLog, {{100, 101}, EditAction::SetNull}, kLog.depths, {kNull, kNull, kNull, 4, 5, 6, 7}},
    // From (101, 2) to (105, 6): one per metre.
    {"interpolate", kBumpy, {{102, 104}, EditAction::Interpolate}, kLog.depths, {1, 2, 3, 4, 5, 6, 7}},
    // The null at 102 is passed over: from (101, 2) to (104, 5).
    {"interpolate past a null", kBumpy, {{103, 103}, EditAction::Interpolate}, kLog.depths,
     {1, 2, kNull, 4, 5, 6, 7}},
    // From (1000 ft, 1) to (1001.5 ft, 4): two per foot.
    {"interpolate in feet", kFeetBumpy, {{1000.5, 1001}, EditAction::Interpolate}, kFeet.depths, {1, 2, 3, 4}},
    {"delete", kLog, {{101.5, 104}, EditAction::Delete}, {100, 101, 105, 106}, {1, 2, 6, 7}},
    {"delete at the end", kLog, {{106, 200}, EditAction::Delete}, {100, 101, 102, 103, 104, 105},
     {1, 2, kNull, 4, 5, 6}},
};

TEST(TraceEdit, EditsTheSamplesOfTheInterval)
{
    for (const EditCase& c : kEditCases) {
        SCOPED_TRACE(c.what);
        CBoreAnalystDoc doc;
        AddLine(doc, c.trace);
        ApplyAndCheckHistory(doc, [&](IMessageSink& sink) { return MakeEditChange(doc, 0, c.request, sink); },
                             "Edit GR");
        ASSERT_EQ(doc.TraceCount(), 1u);
        ExpectSamples(doc.Trace(0), c.depths, c.values, kTolerance);
    }
}

TEST(TraceEdit, ClipHoldsValuesWithinTheLimitsOrNullsThem)
{
    const test::LineSetup spiky = {"GR", "API", {1, 2, 3, 4, 5, 6}, {-5, 0, 5, kNull, 15, 10}};
    struct Case {
        ClipRequest request;
        std::vector<float> values;
    };
    const Case cases[] = {
        {{0, 10, false, ""}, {0, 0, 5, kNull, 10, 10}},
        {{0, 10, true, ""}, {kNull, 0, 5, kNull, kNull, 10}},
        {{0, 10, false, "GR clipped"}, {0, 0, 5, kNull, 10, 10}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.request.newName + (c.request.toNull ? " to null" : ""));
        CBoreAnalystDoc doc;
        AddLine(doc, spiky);
        ApplyAndCheckHistory(doc, [&](IMessageSink& sink) { return MakeClipChange(doc, 0, c.request, sink); },
                             "Clip GR");
        const std::size_t result = c.request.newName.empty() ? 0 : 1;
        ASSERT_EQ(doc.TraceCount(), result + 1);
        ExpectSamples(doc.Trace(result), spiky.depths, c.values, kTolerance);
        if (result == 1) {
            EXPECT_EQ(doc.Trace(1).Name(), "GR clipped");
            ExpectSamples(doc.Trace(0), spiky.depths, spiky.values, 0.0);
        }
    }
}

TEST(TraceEdit, CutKeepsOrRemovesTheInterval)
{
    struct Case {
        CutRequest request;
        std::vector<float> depths;
        std::vector<float> values;
    };
    const Case cases[] = {
        {{{101, 103}, CutMode::Keep, ""}, {101, 102, 103}, {2, kNull, 4}},
        {{{101, 103}, CutMode::Remove, ""}, {100, 104, 105, 106}, {1, 5, 6, 7}},
        {{{99, 100}, CutMode::Keep, "GR top"}, {100}, {1}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.depths.size());
        CBoreAnalystDoc doc;
        AddLine(doc, kLog);
        ApplyAndCheckHistory(doc, [&](IMessageSink& sink) { return MakeCutChange(doc, 0, c.request, sink); },
                             "Cut GR");
        ExpectSamples(doc.Trace(doc.TraceCount() - 1), c.depths, c.values, kTolerance);
        EXPECT_EQ(doc.Trace(doc.TraceCount() - 1).Name(), c.request.newName.empty() ? "GR" : c.request.newName);
    }
}

// Rows 10.., 20.., 30.. at 1, 2 and 3 m; spectrum values that tell the samples apart.
void AddRows(CImageTrace& image)
{
    for (std::uint16_t k = 1; k <= 3; ++k) image.AppendRow(static_cast<float>(k), {std::uint16_t(10 * k), k});
}

std::vector<std::unique_ptr<CTrace>> EveryImageKind()
{
    std::vector<std::unique_ptr<CTrace>> traces;
    auto image = std::make_unique<CImageTrace>("IMG", 0.0f, 100.0f, "us");
    AddRows(*image);
    traces.push_back(std::move(image));
    auto sonic = std::make_unique<CSonicTrace>("RX 1", 0.0f, 1000.0f, "us");
    AddRows(*sonic);
    sonic->SetToolType("2SAA-1000");
    sonic->Acquisition() = SonicAcquisition{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12};
    traces.push_back(std::move(sonic));
    auto spectral = std::make_unique<CSpectralTrace>("GRSP", 0.0f, 100.0f, "cps");
    for (std::uint16_t k = 1; k <= 3; ++k) {
        const float f = k;
        spectral->AppendSpectrum(f, {std::uint16_t(10 * k), k}, f, 10 * f, 20 + f, 500 + f);
    }
    spectral->SetText("K");
    spectral->SetValue(7);
    traces.push_back(std::move(spectral));
    return traces;
}

TEST(TraceEdit, EveryKindIsCutWithItsRows)
{
    for (std::unique_ptr<CTrace>& trace : EveryImageKind()) {
        SCOPED_TRACE(trace->Name());
        // Keeping every sample gives a copy that writes the same bytes as the trace: no
        // field is lost on the way.
        CBoreAnalystDoc whole;
        whole.AddTrace(CopyKeepingSamples(*trace, std::vector<std::uint8_t>(3, 1)));
        CBoreAnalystDoc doc;
        doc.AddTrace(std::move(trace));
        EXPECT_EQ(WriteDocumentBytes(whole), WriteDocumentBytes(doc));

        const std::string name = doc.Trace(0).Name();
        ApplyAndCheckHistory(
            doc, [&](IMessageSink& sink) { return MakeCutChange(doc, 0, {{1.5, 2}, CutMode::Remove, ""}, sink); },
            "Cut " + name);
        const auto& cut = static_cast<const CImageTrace&>(doc.Trace(0));
        ExpectSamples(cut, {1, 3}, {}, 0.0);
        ASSERT_EQ(cut.RowCount(), 2u);
        EXPECT_EQ(cut.Row(0), (ImageRow{10, 1}));
        EXPECT_EQ(cut.Row(1), (ImageRow{30, 3}));
        if (const auto* spectral = dynamic_cast<const CSpectralTrace*>(&cut)) {
            EXPECT_EQ(spectral->AcquisitionTimes().Items()[1], 3.0f);
            EXPECT_EQ(spectral->TotalTimes().Items()[1], 30.0f);
            EXPECT_EQ(spectral->Temperatures().Items()[1], 23.0f);
            EXPECT_EQ(spectral->HighVoltages().Items()[1], 503.0f);
            EXPECT_EQ(spectral->Text(), "K");
        }
        if (const auto* sonic = dynamic_cast<const CSonicTrace*>(&cut)) {
            EXPECT_EQ(sonic->ToolType(), "2SAA-1000");
            EXPECT_EQ(sonic->Acquisition().reserved, 12);
        }
    }
}

TEST(TraceEdit, RefusalsNameWhatIsWrong)
{
    CBoreAnalystDoc doc;
    AddLine(doc, kLog);
    AddLine(doc, {"UP", "API", {100, 99}, {1, 2}});
    auto misaligned = std::make_unique<CLineTrace>(1, kPenSolid, 0, 0.0f, 1.0f, "BAD", "");
    misaligned->StoredDepths().Assign(std::vector<float>{1, 2, 3});
    misaligned->Values().Assign(std::vector<float>{1, 2});
    doc.AddTrace(std::move(misaligned));
    auto image = EveryImageKind();
    doc.AddTrace(std::move(image.front()));
    const auto edit = [&](std::size_t index, DepthInterval interval, EditAction action) {
        return [&doc, index, interval, action](IMessageSink& s) {
            return MakeEditChange(doc, index, {interval, action, 9}, s);
        };
    };
    struct Case {
        const char* what;
        std::function<std::unique_ptr<CDocumentChange>(IMessageSink&)> make;
        std::string message;
    };
    const Case cases[] = {
        {"top below bottom", edit(0, {104, 102}, EditAction::SetValue),
         "Error: The top depth 104 m lies below the bottom depth 102 m."},
        {"no samples", edit(0, {100.2, 100.8}, EditAction::SetNull),
         "Error: There are no samples of trace \"GR\" from 100.2 m to 100.8 m."},
        {"nothing to interpolate from", edit(0, {100, 101}, EditAction::Interpolate),
         "Error: Cannot interpolate trace \"GR\" from 100 m to 101 m: it has no value before 100 m."},
        {"depths out of order", edit(1, {99, 100}, EditAction::Interpolate),
         "Error: The depths of trace \"UP\" do not ascend strictly: sample 1 (99 m) follows sample 0 (100 m)."},
        {"values of an image", edit(3, {1, 2}, EditAction::SetValue),
         "Error: Cannot edit the values of trace \"IMG\": it is an image trace, not a line trace."},
        {"delete everything", edit(0, {0, 1000}, EditAction::Delete),
         "Error: Cannot delete samples of trace \"GR\" from 0 m to 1000 m: that is every sample it has; remove "
         "the trace instead."},
        {"cut everything", [&](IMessageSink& s) { return MakeCutChange(doc, 3, {{0, 5}, CutMode::Remove, ""}, s); },
         "Error: Cannot cut trace \"IMG\" from 0 m to 5 m: that is every sample it has; remove the trace instead."},
        {"cut out of range", [&](IMessageSink& s) { return MakeCutChange(doc, 0, {{0, 5}, CutMode::Keep, ""}, s); },
         "Error: There are no samples of trace \"GR\" from 0 m to 5 m."},
        {"misaligned values", [&](IMessageSink& s) { return MakeCutChange(doc, 2, {{0, 5}, CutMode::Keep, ""}, s); },
         "Error: Cannot cut trace \"BAD\": it has 3 depths but 2 values."},
        {"clip limits crossed", [&](IMessageSink& s) { return MakeClipChange(doc, 0, {5, 1, false, ""}, s); },
         "Error: The clip minimum 5 is above the maximum 1."},
        {"clip name taken", [&](IMessageSink& s) { return MakeClipChange(doc, 0, {0, 1, false, "UP"}, s); },
         "Error: A trace named \"UP\" already exists; choose another name for the new trace."},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        ExpectRefused(doc, c.make, c.message);
    }
}

} // namespace
} // namespace ba
