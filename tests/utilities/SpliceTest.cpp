// Splicing: the three ways of taking the overlap against values worked by hand (the
// average at depths of either trace, read on the straight line between samples, checked
// in Python with numpy.interp), nulls in the overlap, traces apart, one inside the other,
// unit conversion through the vocabulary, and the refusals with their messages. Values
// and depths are compared within 1e-4.

#include "utilities/Splice.h"

#include "DepthUtilityFixtures.h"
#include "model/SonicTrace.h"

#include <functional>

namespace ba {
namespace {

using test::AddLine;
using test::ApplyAndCheckHistory;
using test::ExpectRefused;
using test::ExpectSamples;
using test::kNull;

constexpr double kTolerance = 1e-4;

const test::LineSetup kUpper = {"UP", "API", {10, 10.5f, 11, 11.5f, 12}, {1, 2, 3, kNull, 5}};
const test::LineSetup kLower = {"DOWN", "API", {11, 11.5f, 12, 12.5f, 13}, {30, 40, kNull, 60, 70}};
const test::LineSetup kOffset = {"OFF", "API", {11.25f, 11.75f, 12.25f}, {10, 20, 30}};
const test::LineSetup kAbove = {"ABOVE", "API", {5, 6}, {50, 60}};
const test::LineSetup kCoarse = {"COARSE", "API", {10, 11, 12, 13}, {1, 2, 3, 4}};
const test::LineSetup kSingle = {"ONE", "API", {11.5f}, {100}};

struct SpliceCase {
    const char* what;
    test::LineSetup first;
    test::LineSetup second;
    SpliceOverlap overlap;
    std::vector<float> depths;
    std::vector<float> values;
};

const SpliceCase kCases[] = {
    {"overlap from the first, its null kept", kUpper, kLower, SpliceOverlap::First,
     {10, 10.5f, 11, 11.5f, 12, 12.5f, 13}, {1, 2, 3, kNull, 5, 60, 70}},
    {"overlap from the second, its null kept", kUpper, kLower, SpliceOverlap::Second,
     {10, 10.5f, 11, 11.5f, 12, 12.5f, 13}, {1, 2, 30, 40, kNull, 60, 70}},
    // (3+30)/2, then a null left out: at 11.5 the second trace's 40, at 12 the first's 5.
    {"overlap averaged, nulls left out", kUpper, kLower, SpliceOverlap::Average,
     {10, 10.5f, 11, 11.5f, 12, 12.5f, 13}, {1, 2, 16.5f, 40, 5, 60, 70}},
    // Overlap 11.25..12 at the depths of both. The first trace is null from 11 to 12 (a
    // line from its null at 11.5), so the second's 10, 15 (read between 10 and 20) and 20
    // stand alone; at 12, (5+25)/2.
    {"overlap averaged over the depths of both", kUpper, kOffset, SpliceOverlap::Average,
     {10, 10.5f, 11, 11.25f, 11.5f, 11.75f, 12, 12.25f}, {1, 2, 3, 10, 15, 20, 15, 30}},
    {"the second above the first, no overlap", kUpper, kAbove, SpliceOverlap::First,
     {5, 6, 10, 10.5f, 11, 11.5f, 12}, {50, 60, 1, 2, 3, kNull, 5}},
    {"the second inside the first, taken", kCoarse, kSingle, SpliceOverlap::Second, {10, 11, 11.5f, 12, 13},
     {1, 2, 100, 3, 4}},
    {"the second inside the first, left out", kCoarse, kSingle, SpliceOverlap::First, {10, 11, 12, 13},
     {1, 2, 3, 4}},
    // 2.5 read between 11 and 12, averaged with 100.
    {"the second inside the first, averaged", kCoarse, kSingle, SpliceOverlap::Average, {10, 11, 11.5f, 12, 13},
     {1, 2, 51.25f, 3, 4}},
    {"an empty first trace", {"NONE", "API", {}, {}}, kAbove, SpliceOverlap::First, {5, 6}, {50, 60}},
};

TEST(Splice, JoinsTwoTracesIntoANewOne)
{
    for (const SpliceCase& c : kCases) {
        SCOPED_TRACE(c.what);
        CBoreAnalystDoc doc;
        AddLine(doc, c.first);
        AddLine(doc, c.second);
        const auto messages = ApplyAndCheckHistory(
            doc, [&](IMessageSink& sink) { return SpliceTraces(doc, 0, 1, c.overlap, "SPLICED", sink); },
            "Splice SPLICED");
        EXPECT_TRUE(messages.empty());
        ASSERT_EQ(doc.TraceCount(), 3u);
        const CTrace& spliced = doc.Trace(2);
        EXPECT_EQ(spliced.Name(), "SPLICED");
        EXPECT_EQ(spliced.Units(), c.first.units);
        EXPECT_EQ(spliced.ScaleRight(), 50.0f);
        ExpectSamples(spliced, c.depths, c.values, kTolerance);
        ExpectSamples(doc.Trace(0), c.first.depths, c.first.values, 0.0);
    }
}

TEST(Splice, ConvertsTheSecondTraceIntoTheFirstOnesUnit)
{
    struct UnitCase {
        const char* first;
        const char* second;
        std::vector<float> values;
        std::vector<std::string> messages;
    };
    // 10 ft/s is 3.048 m/s, a null stays null; "M/SEC" already is m/s.
    const UnitCase cases[] = {
        {"m/s", "FEET/SECOND", {1, 2, 3.048f, kNull},
         {"Note: The values of trace \"B\" are converted from ft/s to m/s for the splice."}},
        {"m/s", "M/SEC", {1, 2, 10, kNull}, {}},
        {"Deg C", "DEGF", {1, 2, -12.222222f, kNull},
         {"Note: The values of trace \"B\" are converted from Deg F to Deg C for the splice."}},
    };
    for (const UnitCase& c : cases) {
        SCOPED_TRACE(c.second);
        CBoreAnalystDoc doc;
        AddLine(doc, {"A", c.first, {10, 11}, {1, 2}});
        AddLine(doc, {"B", c.second, {12, 13}, {10, kNull}});
        const auto messages = ApplyAndCheckHistory(
            doc, [&](IMessageSink& sink) { return SpliceTraces(doc, 0, 1, SpliceOverlap::First, "AB", sink); },
            "Splice AB");
        EXPECT_EQ(messages, c.messages);
        ExpectSamples(doc.Trace(2), {10, 11, 12, 13}, c.values, kTolerance);
        EXPECT_EQ(doc.Trace(2).Units(), c.first);
    }
}

TEST(Splice, RefusalsNameTheProblemAndTouchNothing)
{
    CBoreAnalystDoc doc;
    AddLine(doc, kUpper);                                     // 0
    AddLine(doc, {"V", "m/s", {10, 11}, {1, 2}});             // 1
    AddLine(doc, {"R", "ohm-m", {12, 13}, {1, 2}});           // 2
    AddLine(doc, {"CPS", "CPS", {12, 13}, {1, 2}});           // 3
    AddLine(doc, {"T", "API", {600, 660}, {1, 2}, kTimeSeconds}); // 4
    AddLine(doc, {"E1", "API", {}, {}});                      // 5
    AddLine(doc, {"E2", "API", {}, {}});                      // 6
    AddLine(doc, {"FLOW", "GAL/MIN", {12, 13}, {1, 2}});      // 7
    AddLine(doc, {"LFLOW", "L/MIN", {10, 11}, {1, 2}});       // 8
    auto sonic = std::make_unique<CSonicTrace>("RX 1", 0.0f, 1000.0f, "us");
    sonic->AppendRow(10.0f, {2047, 2047});
    doc.AddTrace(std::move(sonic));                           // 9
    using Make = std::function<std::unique_ptr<CDocumentChange>(IMessageSink&)>;
    auto splice = [&](std::size_t a, std::size_t b, const char* name = "NEW") -> Make {
        return [&doc, a, b, name](IMessageSink& sink) {
            return SpliceTraces(doc, a, b, SpliceOverlap::Average, name, sink);
        };
    };
    const std::pair<Make, std::string> cases[] = {
        {splice(0, 0), "Error: A splice needs two different traces; trace \"UP\" was given twice."},
        {splice(0, 9), "Error: Cannot splice trace \"RX 1\": it is a sonic trace, not a line trace."},
        {splice(5, 6), "Error: Nothing to splice: trace \"E1\" and trace \"E2\" have no samples."},
        {splice(0, 4), "Error: Cannot splice trace \"UP\", logged against depth, with trace \"T\", logged against "
                       "time."},
        {splice(1, 2), "Error: Cannot splice trace \"V\" (units \"m/s\", Velocity-Slowness) with trace \"R\" (units "
                       "\"ohm-m\", Resistivity-Conductivity): their units are of different types."},
        {splice(0, 1), "Error: Cannot splice trace \"UP\" (units \"API\") with trace \"V\" (units \"m/s\", "
                       "Velocity-Slowness): their units are of different types."},
        {splice(0, 3), "Error: Cannot splice trace \"UP\" (units \"API\") with trace \"CPS\" (units \"CPS\"): there "
                       "is no conversion between their units."},
        // The flow recogniser's "g/min" has no factors of its own.
        {splice(8, 7), "Error: Cannot splice trace \"LFLOW\" (units \"L/MIN\", Flow) with trace \"FLOW\" (units "
                       "\"GAL/MIN\", Flow): there is no conversion between their units."},
        {splice(0, 5, ""), "Error: The spliced trace needs a name."},
        {splice(0, 5, "V"), "Error: A trace named \"V\" already exists; choose another name for the new trace."},
    };
    for (const auto& [make, message] : cases) {
        SCOPED_TRACE(message);
        ExpectRefused(doc, make, message);
    }
}

} // namespace
} // namespace ba
