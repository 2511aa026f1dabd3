// Depth shift: by a constant and by tie points, in every depth unit's factor, for line and
// image-kind traces, in place and into a new trace; the refusals and their messages.
// Expected depths are worked by hand (checked in Python with numpy.interp for the tie
// points); they are compared in display units within 1e-4, about ten float roundings at
// these depths. Values and rows must come through bit for bit.

#include "utilities/DepthShift.h"

#include "DepthUtilityFixtures.h"
#include "model/SonicTrace.h"

#include <cmath>
#include <functional>
#include <limits>
#include <optional>

namespace ba {
namespace {

using test::AddLine;
using test::ApplyAndCheckHistory;
using test::ExpectRefused;
using test::ExpectSamples;
using test::kNull;

constexpr double kDepthTolerance = 1e-4;

struct ShiftCase {
    const char* what;
    test::LineSetup trace;
    std::optional<double> by; // otherwise the tie points
    std::vector<DepthTie> ties;
    std::vector<float> expectedDepths;
};

const std::vector<float> kEleven = {100, 101, 102, 103, 104, 105, 106, 107, 108, 109, 110};

const ShiftCase kShiftCases[] = {
    {"constant, metres", {"GR", "API", {100, 100.5f, 101, 101.5f}, {1, kNull, 3, 4}}, 2.25f, {},
     {102.25f, 102.75f, 103.25f, 103.75f}},
    // 10 ft is 3.048 m of stored depth.
    {"constant, feet shown over metres stored", {"GR", "API", {100, 101, 102}, {5, 6, 7}, kDepthFeet}, -10.0f, {},
     {90, 91, 92}},
    {"constant, seconds shown over minutes stored", {"T", "C", {60, 120, 180}, {5, 6, 7}, kTimeSeconds}, 30.0f, {},
     {90, 150, 210}},
    // Shift 0 down to 102, growing to 2 at 106 (102..106 stretched to 102..108), back to 0
    // at 110 (106..110 squeezed into 108..110), 0 below.
    {"tie points stretch one interval and squeeze the next",
     {"GR", "API", kEleven, std::vector<float>(11, 1.0f)}, std::nullopt, {{102, 102}, {106, 108}, {110, 110}},
     {100, 101, 102, 103.5f, 105, 106.5f, 108, 108.5f, 109, 109.5f, 110}},
    // Shift 0 at 100 growing to 1 at 110; the end shifts hold beyond the tie points.
    {"tie points in any order, their shifts held beyond the ends",
     {"GR", "API", {95, 100, 105, 110, 115}, {1, 2, 3, 4, 5}}, std::nullopt, {{110, 111}, {100, 100}},
     {95, 100, 105.5f, 111, 116}},
    {"one tie point is a constant shift", {"GR", "API", {100, 110}, {1, 2}}, std::nullopt, {{105, 104}}, {99, 109}},
    {"tie points in feet", {"GR", "API", {100, 110, 120}, {1, 2, 3}, kDepthFeet}, std::nullopt,
     {{100, 100}, {120, 130}}, {100, 115, 130}},
};

TEST(DepthShift, MovesDepthsAndKeepsValues)
{
    for (const ShiftCase& c : kShiftCases) {
        SCOPED_TRACE(c.what);
        CBoreAnalystDoc doc;
        AddLine(doc, c.trace);
        ApplyAndCheckHistory(
            doc,
            [&](IMessageSink& sink) {
                return c.by ? ShiftDepthsBy(doc, 0, *c.by, "", sink) : ShiftDepthsByTies(doc, 0, c.ties, "", sink);
            },
            "Depth Shift " + c.trace.name);
        ASSERT_EQ(doc.TraceCount(), 1u);
        ExpectSamples(doc.Trace(0), c.expectedDepths, {}, kDepthTolerance);
        const auto& line = dynamic_cast<const CLineTrace&>(doc.Trace(0));
        EXPECT_EQ(std::vector<float>(line.Values().Items().begin(), line.Values().Items().end()), c.trace.values);
    }
}

TEST(DepthShift, ByZeroGivesBackTheSameFloats)
{
    CBoreAnalystDoc doc;
    AddLine(doc, {"GR", "API", {100.1f, 200.3f, 300.7f}, {1, 2, 3}, kDepthFeet});
    const CFloatArray before = doc.Trace(0).StoredDepths();
    CollectingMessageSink sink;
    doc.Apply(ShiftDepthsBy(doc, 0, 0.0f, "", sink));
    for (std::size_t i = 0; i < 3; ++i) EXPECT_EQ(doc.Trace(0).StoredDepth(i), before[i]);
}

TEST(DepthShift, SonicTraceKeepsItsRowsAndAcquisition)
{
    CBoreAnalystDoc doc;
    auto sonic = std::make_unique<CSonicTrace>("RX 1", 0.0f, 1000.0f, "us");
    sonic->Acquisition().txFrequency = 15;
    sonic->AppendRow(50.0f, {2047, 3000, 1000});
    sonic->AppendRow(50.5f, {2047, 100, 4000});
    doc.AddTrace(std::move(sonic));
    ApplyAndCheckHistory(
        doc, [&](IMessageSink& sink) { return ShiftDepthsBy(doc, 0, -1.5f, "", sink); }, "Depth Shift RX 1");
    const auto& shifted = dynamic_cast<const CSonicTrace&>(doc.Trace(0));
    ExpectSamples(shifted, {48.5f, 49.0f}, {}, kDepthTolerance);
    EXPECT_EQ(shifted.Rows(), (std::vector<ImageRow>{{2047, 3000, 1000}, {2047, 100, 4000}}));
    EXPECT_EQ(shifted.Acquisition().txFrequency, 15);
}

TEST(DepthShift, NewNameAddsAShiftedCopyAfterTheOthers)
{
    CBoreAnalystDoc doc;
    AddLine(doc, {"GR", "API", {100, 101}, {1, 2}});
    AddLine(doc, {"CAL", "in", {100, 101}, {8, 9}});
    ApplyAndCheckHistory(
        doc, [&](IMessageSink& sink) { return ShiftDepthsBy(doc, 0, 0.5f, "GR_SHIFTED", sink); }, "Depth Shift GR");
    ASSERT_EQ(doc.TraceCount(), 3u);
    ExpectSamples(doc.Trace(0), {100, 101}, {1, 2}, 0.0);
    EXPECT_EQ(doc.Trace(2).Name(), "GR_SHIFTED");
    EXPECT_EQ(doc.Trace(2).Units(), "API");
    ExpectSamples(doc.Trace(2), {100.5f, 101.5f}, {1, 2}, kDepthTolerance);
}

TEST(DepthShift, RefusalsNameTheProblemAndTouchNothing)
{
    CBoreAnalystDoc doc;
    AddLine(doc, {"GR", "API", kEleven, std::vector<float>(11, 1.0f)});
    AddLine(doc, {"EMPTY", "API", {}, {}});
    AddLine(doc, {"FLAT", "API", {100, 101, 101}, {1, 2, 3}});
    AddLine(doc, {"FAR", "API", {3e38f}, {1}});
    using Make = std::function<std::unique_ptr<CDocumentChange>(IMessageSink&)>;
    auto by = [&](std::size_t i, double d, const char* name = "") -> Make {
        return [&doc, i, d, name](IMessageSink& sink) { return ShiftDepthsBy(doc, i, d, name, sink); };
    };
    auto ties = [&](std::vector<DepthTie> t) -> Make {
        return [&doc, t](IMessageSink& sink) { return ShiftDepthsByTies(doc, 0, t, "", sink); };
    };
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const std::pair<Make, std::string> cases[] = {
        {by(0, nan), "Error: The depth shift must be a finite number."},
        {by(1, 1.0f), "Error: Nothing to shift: trace \"EMPTY\" has no samples."},
        {by(2, 1.0f), "Error: The depths of trace \"FLAT\" do not ascend strictly: sample 2 (101 m) follows sample 1 "
                      "(101 m)."},
        {by(0, 1.0f, "FLAT"), "Error: A trace named \"FLAT\" already exists; choose another name for the new trace."},
        {by(3, 3e38), "Error: The depth shift would move trace \"FAR\" beyond the depths a document can hold."},
        {ties({}), "Error: A depth shift by tie points needs at least one tie point."},
        {ties({{100, nan}}), "Error: The tie points of a depth shift must be finite numbers."},
        {ties({{100, 100}, {100, 101}}),
         "Error: Two tie points move the depth 100 m of trace \"GR\"; give each depth one tie point."},
        {ties({{100, 100}, {105, 99}}), "Error: The tie points 100:100 m and 105:99 m of trace \"GR\" cross: depths "
                                        "must keep their order after the shift."},
        // 100..110 squeezed into 100..100.00001: 101 moves 0.76 um below 100, less than
        // half a float step there, so samples 0 and 1 land on the same float.
        {ties({{100, 100}, {110, 100.00001f}}), "Error: The depth shift would leave the depths of trace \"GR\" out of "
                                                "order: sample 1 would lie at 100 m and sample 0 at 100 m."},
    };
    for (const auto& [make, message] : cases) {
        SCOPED_TRACE(message);
        ExpectRefused(doc, make, message);
    }
}

} // namespace
} // namespace ba
