// Create: constant, ramp and formula traces over TOP..BOTTOM at STEP in the document's depth
// unit (a step with no exact binary form must still reach BOTTOM), their scale and their
// change; the refusals and their messages. Depths and values are compared within 1e-4,
// about ten float roundings at these depths.

#include "utilities/CreateTrace.h"

#include "DepthUtilityFixtures.h"

#include <functional>

namespace ba {
namespace {

using test::AddLine;
using test::ApplyAndCheckHistory;
using test::ExpectRefused;
using test::ExpectSamples;

constexpr double kTolerance = 1e-4;

CreateRequest Constant(DepthInterval interval, double step, float value)
{
    CreateRequest request;
    request.name = "NEW";
    request.units = "v/v";
    request.interval = interval;
    request.step = step;
    request.constant = value;
    return request;
}

CreateRequest Ramp(DepthInterval interval, double step, float start, float end)
{
    CreateRequest request = Constant(interval, step, 0);
    request.source = CreateSource::Ramp;
    request.rampStart = start;
    request.rampEnd = end;
    return request;
}

CreateRequest Formula(DepthInterval interval, double step, std::string formula)
{
    CreateRequest request = Constant(interval, step, 0);
    request.source = CreateSource::Formula;
    request.formula = std::move(formula);
    return request;
}

struct CreateCase {
    const char* what;
    std::int32_t documentUnit; // -1: a document without traces
    CreateRequest request;
    std::vector<float> depths;
    std::vector<float> values;
    float scaleLeft;
    float scaleRight;
};

const CreateCase kCases[] = {
    {"constant, empty document", -1, Constant({0, 1}, 0.25, 7), {0, 0.25f, 0.5f, 0.75f, 1}, {7, 7, 7, 7, 7}, 6.5f,
     7.5f},
    // 0.1 has no binary form; the eleventh sample must still be at 1 m.
    {"ramp", kDepthMetres, Ramp({0, 1}, 0.1, 10, 20), {0, 0.1f, 0.2f, 0.3f, 0.4f, 0.5f, 0.6f, 0.7f, 0.8f, 0.9f, 1},
     {10, 11, 12, 13, 14, 15, 16, 17, 18, 19, 20}, 10, 20},
    // The last sample at or above BOTTOM: 100, 102 and 104 ft, not 106.
    {"falling ramp in feet", kDepthFeet, Ramp({100, 105}, 2, 3, 1), {100, 102, 104}, {3, 2, 1}, 1, 3},
    {"one sample", kTimeSeconds, Ramp({30, 30}, 1, 3, 1), {30}, {3}, 2.5f, 3.5f},
    {"formula of the depth", kDepthMetres, Formula({10, 12}, 0.5, "2 * DEPTH + 1"), {10, 10.5f, 11, 11.5f, 12},
     {21, 22, 23, 24, 25}, 21, 25},
    // The document's trace A holds 1 2 3 at 10, 11, 12 m; between samples it is interpolated.
    {"formula of a trace", kDepthMetres, Formula({10, 12}, 0.5, "A * 10"), {10, 10.5f, 11, 11.5f, 12},
     {10, 15, 20, 25, 30}, 10, 30},
};

TEST(CreateTrace, SamplesFromTopToBottomAtTheStep)
{
    for (const CreateCase& c : kCases) {
        SCOPED_TRACE(c.what);
        CBoreAnalystDoc doc;
        if (c.documentUnit >= 0) AddLine(doc, {"A", "", {10, 11, 12}, {1, 2, 3}, c.documentUnit});
        ApplyAndCheckHistory(doc, [&](IMessageSink& sink) { return MakeCreateChange(doc, c.request, sink); },
                             "Create NEW");
        const auto& created = static_cast<const CLineTrace&>(doc.Trace(doc.TraceCount() - 1));
        EXPECT_EQ(created.Name(), "NEW");
        EXPECT_EQ(created.Units(), "v/v");
        EXPECT_EQ(created.DepthUnit(), c.documentUnit >= 0 ? c.documentUnit : kDepthMetres);
        ExpectSamples(created, c.depths, c.values, kTolerance);
        EXPECT_NEAR(created.ScaleLeft(), c.scaleLeft, kTolerance);
        EXPECT_NEAR(created.ScaleRight(), c.scaleRight, kTolerance);
    }
}

TEST(CreateTrace, RefusalsNameWhatIsWrong)
{
    CBoreAnalystDoc doc;
    AddLine(doc, {"A", "", {10, 11, 12}, {1, 2, 3}});
    CreateRequest unnamed = Constant({0, 1}, 0.5, 1);
    unnamed.name.clear();
    CreateRequest taken = Constant({0, 1}, 0.5, 1);
    taken.name = "A";
    struct Case {
        const char* what;
        CreateRequest request;
        std::string message;
    };
    const Case cases[] = {
        {"no name", unnamed, "Error: The trace name must not be empty."},
        {"name taken", taken, "Error: A trace named \"A\" already exists; choose another name for the new trace."},
        {"top below bottom", Constant({2, 1}, 0.5, 1), "Error: The top depth 2 m lies below the bottom depth 1 m."},
        {"step of 0", Constant({0, 1}, 0, 1), "Error: The step must be a number greater than 0; 0 m was given."},
        {"too many samples", Constant({0, 1000}, 1e-6, 1),
         "Error: 0 m to 1000 m at a step of 1e-06 m would make more than 100000000 samples."},
        // At 1000 m a float depth moves in steps of about 6e-5 m.
        {"step too fine for float depths", Constant({1000, 1000.001}, 1e-5, 1),
         "Error: A step of 1e-05 m is too fine for depths near 1000 m: 32-bit depths cannot tell the samples "
         "apart there."},
        {"constant not finite", Constant({0, 1}, 0.5, std::numeric_limits<float>::infinity()),
         "Error: The values of a new trace must be finite numbers."},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        ExpectRefused(doc, [&](IMessageSink& sink) { return MakeCreateChange(doc, c.request, sink); }, c.message);
    }
}

} // namespace
} // namespace ba
