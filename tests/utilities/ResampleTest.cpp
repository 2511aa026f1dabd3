// Resampling: linear, block average and nearest against values worked by hand (and
// recomputed in Python: numpy.interp for the lines, the mean of each half-open block, the
// nearest sample), at nulls, at the ends and beyond them; the automatic choice of method;
// a result that keeps the trace's properties; the refusals and their messages. Values and
// display depths are compared within 1e-4.

#include "utilities/Resample.h"

#include "DepthUtilityFixtures.h"
#include "model/DocumentChanges.h"
#include "model/SonicTrace.h"

#include <array>
#include <functional>

namespace ba {
namespace {

using test::AddLine;
using test::ApplyAndCheckHistory;
using test::ExpectRefused;
using test::ExpectSamples;
using test::kNull;

constexpr double kTolerance = 1e-4;

const test::LineSetup kLog = {"LOG", "API", {10, 10.5f, 11, 11.5f, 12}, {2, 4, 8, kNull, 6}};
const test::LineSetup kFine = {"FINE", "API", {10, 10.25f, 10.5f, 10.75f, 11, 11.25f, 11.5f, 11.75f, 12},
                              {1, 2, 3, 4, kNull, 6, 7, 8, 9}};
const test::LineSetup kZones = {"ZONE", "", {10, 11, 12, 13}, {1, 2, kNull, 4}};

struct ResampleCase {
    const char* what;
    test::LineSetup trace;
    ResampleRequest request;
    std::vector<float> depths;
    std::vector<float> values;
};

const ResampleCase kCases[] = {
    // Refining picks the line: halfway values, an exact sample's own value, null next to
    // and at a null.
    {"refining, automatic: linear", kLog, {.step = 0.25f},
     {10, 10.25f, 10.5f, 10.75f, 11, 11.25f, 11.5f, 11.75f, 12}, {2, 3, 4, 6, 8, kNull, kNull, kNull, 6}},
    // Blocks 9.5-10.5, 10.5-11.5, 11.5-12.5: (1+2)/2, (3+4+6)/3 without the null, (7+8+9)/3.
    {"coarsening, automatic: block average", kFine, {.step = 1.0f}, {10, 11, 12}, {1.5f, 4.3333333f, 8}},
    {"nearest", kZones, {.step = 0.4f, .method = ResampleMethod::Nearest},
     {10, 10.4f, 10.8f, 11.2f, 11.6f, 12, 12.4f, 12.8f}, {1, 1, 2, 2, kNull, kNull, kNull, 4}},
    {"nearest: of two as near, the upper", kZones,
     {.step = 0.5f, .method = ResampleMethod::Nearest, .top = 10.5f, .bottom = 11.5f}, {10.5f, 11, 11.5f}, {1, 2, 2}},
    // Nothing beyond the first and last samples.
    {"an interval wider than the trace", kLog,
     {.step = 0.5f, .method = ResampleMethod::Linear, .top = 9.5f, .bottom = 12.5f},
     {9.5f, 10, 10.5f, 11, 11.5f, 12, 12.5f}, {kNull, 2, 4, 8, kNull, 6, kNull}},
    {"average asked for while refining: empty blocks are null", kLog,
     {.step = 0.25f, .method = ResampleMethod::Average, .top = 10, .bottom = 11}, {10, 10.25f, 10.5f, 10.75f, 11},
     {2, kNull, 4, kNull, 8}},
    // 0.1 is no float: the last new depth must still reach the last sample at 12.
    {"a step with no exact float reaches the end", kLog, {.step = 0.1f, .top = 11.5f},
     {11.5f, 11.6f, 11.7f, 11.8f, 11.9f, 12}, {kNull, kNull, kNull, kNull, kNull, 6}},
    {"feet shown over metres stored", {"GR", "API", {100, 101, 102}, {10, 20, 30}, kDepthFeet}, {.step = 0.5f},
     {100, 100.5f, 101, 101.5f, 102}, {10, 15, 20, 25, 30}},
};

TEST(Resample, ValuesAtTheNewDepths)
{
    for (const ResampleCase& c : kCases) {
        SCOPED_TRACE(c.what);
        CBoreAnalystDoc doc;
        AddLine(doc, c.trace).SetFlag(test::kIrregularAxisFlag, true);
        const TraceAppearance before = CaptureAppearance(doc.Trace(0));
        ApplyAndCheckHistory(
            doc, [&](IMessageSink& sink) { return ResampleTrace(doc, 0, c.request, sink); }, "Resample " + c.trace.name);
        ASSERT_EQ(doc.TraceCount(), 1u);
        ExpectSamples(doc.Trace(0), c.depths, c.values, kTolerance);
        // Everything but the samples stays, except that the axis is now regular.
        TraceAppearance after = CaptureAppearance(doc.Trace(0));
        EXPECT_FALSE(doc.Trace(0).IrregularAxis());
        after.flags |= 1 << test::kIrregularAxisFlag;
        EXPECT_EQ(after, before);
        EXPECT_EQ(doc.Trace(0).DepthUnit(), c.trace.depthUnit);
    }
}

TEST(Resample, OntoItsOwnDepthsGivesTheTraceBackBitForBit)
{
    CBoreAnalystDoc doc;
    CLineTrace& log = AddLine(doc, kLog);
    log.SetTrackIndex(2);
    log.SetFlag(kHiddenTraceFlag, true);
    log.SetHeaderBox({1, 2, 3, 4});
    log.SetViewParameter(0.5f);
    log.SetVerticalScale(20.0f);
    log.SetTopDepth(9.0f);
    log.SetLegendMark(1, true);
    log.ChangePen(3, kPenDot, 4, 0x123456);
    const auto before = WriteDocumentBytes(doc);
    CollectingMessageSink sink;
    doc.Apply(ResampleTrace(doc, 0, {.step = 0.5, .method = ResampleMethod::Linear}, sink));
    EXPECT_EQ(WriteDocumentBytes(doc), before);
    EXPECT_EQ(doc.Trace(0).LegendMarks(), (std::array<std::int32_t, 2>{0, 1}));
    EXPECT_EQ(doc.Trace(0).Track(), doc.TrackAt(2));
}

TEST(Resample, AutomaticMethodFollowsTheMeanSpacing)
{
    CBoreAnalystDoc doc;
    const auto& log = AddLine(doc, kLog); // mean spacing 0.5
    EXPECT_EQ(AutomaticResampleMethod(log, 0.25f), ResampleMethod::Linear);
    EXPECT_EQ(AutomaticResampleMethod(log, 0.5f), ResampleMethod::Linear);
    EXPECT_EQ(AutomaticResampleMethod(log, 0.51f), ResampleMethod::Average);
}

TEST(Resample, NewNameAddsTheResampledTraceAfterTheOthers)
{
    CBoreAnalystDoc doc;
    AddLine(doc, kLog);
    AddLine(doc, kZones);
    ApplyAndCheckHistory(
        doc,
        [&](IMessageSink& sink) { return ResampleTrace(doc, 0, {.step = 1.0f, .newName = "LOG_1M"}, sink); },
        "Resample LOG");
    ASSERT_EQ(doc.TraceCount(), 3u);
    ExpectSamples(doc.Trace(0), kLog.depths, kLog.values, 0.0);
    EXPECT_EQ(doc.Trace(2).Name(), "LOG_1M");
    // Blocks 9.5-10.5, 10.5-11.5, 11.5-12.5: 2, (4+8)/2, 6.
    ExpectSamples(doc.Trace(2), {10, 11, 12}, {2, 6, 6}, kTolerance);
}

TEST(Resample, RefusalsNameTheProblemAndTouchNothing)
{
    CBoreAnalystDoc doc;
    AddLine(doc, kLog);
    AddLine(doc, {"EMPTY", "API", {}, {}});
    auto sonic = std::make_unique<CSonicTrace>("RX 1", 0.0f, 1000.0f, "us");
    sonic->AppendRow(10.0f, {2047, 2047});
    doc.AddTrace(std::move(sonic));
    using Make = std::function<std::unique_ptr<CDocumentChange>(IMessageSink&)>;
    auto resample = [&](std::size_t i, ResampleRequest r) -> Make {
        return [&doc, i, r](IMessageSink& sink) { return ResampleTrace(doc, i, r, sink); };
    };
    const std::pair<Make, std::string> cases[] = {
        {resample(2, {.step = 1}), "Error: Cannot resample trace \"RX 1\": it is a sonic trace, not a line trace."},
        {resample(1, {.step = 1}), "Error: Nothing to resample: trace \"EMPTY\" has no samples."},
        {resample(0, {.step = 0}), "Error: The resampling step must be a number greater than 0, not 0."},
        {resample(0, {.step = -0.5f}), "Error: The resampling step must be a number greater than 0, not -0.5."},
        {resample(0, {.step = 1, .top = 12, .bottom = 11}),
         "Error: The top of the resampling interval (12 m) must lie above its bottom (11 m)."},
        {resample(0, {.step = 1, .top = 13, .bottom = 14}),
         "Error: The top of the resampling interval (13 m) lies below the last sample of trace \"LOG\" (12 m)."},
        {resample(0, {.step = 1, .bottom = 9}),
         "Error: The bottom of the resampling interval (9 m) lies above the first sample of trace \"LOG\" (10 m)."},
        {resample(0, {.step = 1e-8f}), "Error: Resampling trace \"LOG\" every 1e-08 m from 10 m to 12 m would make "
                                       "more than 100000000 samples."},
        {resample(0, {.step = 1, .newName = "EMPTY"}),
         "Error: A trace named \"EMPTY\" already exists; choose another name for the new trace."},
    };
    for (const auto& [make, message] : cases) {
        SCOPED_TRACE(message);
        ExpectRefused(doc, make, message);
    }
}

} // namespace
} // namespace ba
