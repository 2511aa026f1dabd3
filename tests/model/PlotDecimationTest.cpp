#include "model/CurveGeometry.h"
#include "model/PlotDecimation.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

namespace ba {
namespace {

// The runs as drawing every sample of CurvePieces would produce them: consecutive points
// of a piece that share a row form one run; a new piece is never joined to the last.
std::vector<CurveRun> RunsFromPieces(const CLineTrace& trace, const PlotRowWindow& window)
{
    std::vector<CurveRun> runs;
    for (const auto& piece : CurvePieces(trace, window.top, window.bottom)) {
        bool first = true;
        for (const CurvePoint& p : piece) {
            const std::int64_t row = window.RowOf(p.depth);
            if (row < 0 || row >= window.rows) continue;
            if (!first && runs.back().row == row) {
                CurveRun& run = runs.back();
                run.last = p.value;
                run.minimum = std::min(run.minimum, p.value);
                run.maximum = std::max(run.maximum, p.value);
                continue;
            }
            runs.push_back({static_cast<std::int32_t>(row), p.value, p.value, p.value, p.value, !first});
            first = false;
        }
    }
    return runs;
}

CLineTrace RandomTrace(std::mt19937& rng, std::size_t count, double nullChance, std::int32_t depthUnit)
{
    CLineTrace trace;
    trace.SetDepthUnit(depthUnit);
    std::uniform_real_distribution<float> step(0.0f, 0.2f);
    std::uniform_real_distribution<float> value(-50.0f, 150.0f);
    std::bernoulli_distribution isNull(nullChance);
    float depth = 100.0f;
    for (std::size_t i = 0; i < count; ++i) {
        depth += step(rng); // steps of zero give repeated depths, which must be kept too
        trace.AppendSample(depth, isNull(rng) ? kNullValue : value(rng));
    }
    return trace;
}

TEST(PlotDecimation, MatchesEverySampleOnRandomTracesWithNulls)
{
    struct Case {
        std::size_t samples;
        double nullChance;
        std::int32_t depthUnit;
        float top;
        float span;
        std::int32_t rows;
    };
    // Sparse windows take the sample-by-sample path, dense ones the per-row search.
    const Case cases[] = {
        {2000, 0.05, kDepthMetres, 120.0f, 50.0f, 400},  // about 1 sample per row
        {20000, 0.0, kDepthMetres, 90.0f, 3000.0f, 100},  // whole trace, dense, no nulls
        {20000, 0.01, kDepthMetres, 150.0f, 800.0f, 97},  // dense with nulls
        {20000, 0.3, kDepthFeet, 400.0f, 2000.0f, 250},   // feet: depths scaled on reading
        {5000, 0.0, kTimeSeconds, 7000.0f, 9000.0f, 33},  // seconds: factor 60
        {3000, 0.02, kDepthMetres, 500.0f, 100.0f, 50},   // window past the last sample
        {3000, 0.5, kDepthMetres, 110.0f, 50.0f, 1},      // a single row
    };
    std::mt19937 rng(1234);
    for (const Case& c : cases) {
        const CLineTrace trace = RandomTrace(rng, c.samples, c.nullChance, c.depthUnit);
        const PlotRowWindow window{c.top, c.top + c.span, c.rows / static_cast<double>(c.span), c.rows};
        const auto expected = RunsFromPieces(trace, window);
        EXPECT_EQ(DecimateCurveBySample(trace, window), expected) << "samples " << c.samples << " rows " << c.rows;
        EXPECT_EQ(DecimateCurve(trace, window), expected) << "samples " << c.samples << " rows " << c.rows;
    }
}

TEST(PlotDecimation, RunsSplitAtNullsInsideOneRowAndJoinAcrossRows)
{
    CLineTrace trace;
    // Row 0 holds 1, 5, null, 3, 2; row 1 holds 7 and 6; row 3 holds 9 after an empty row.
    const float depths[] = {0.1f, 0.2f, 0.3f, 0.4f, 0.5f, 1.2f, 1.5f, 3.5f};
    const float values[] = {1, 5, kNullValue, 3, 2, 7, 6, 9};
    for (int i = 0; i < 8; ++i) trace.AppendSample(depths[i], values[i]);
    const PlotRowWindow window{0.0f, 4.0f, 1.0, 4};
    const std::vector<CurveRun> expected = {
        {0, 1, 5, 1, 5, false},
        {0, 3, 2, 2, 3, false},
        {1, 7, 6, 6, 7, true},
        {3, 9, 9, 9, 9, true},
    };
    EXPECT_EQ(DecimateCurve(trace, window), expected);
    EXPECT_EQ(DecimateCurveBySample(trace, window), expected);
}

TEST(PlotDecimation, NotANumberBreaksTheCurveLikeANull)
{
    CLineTrace trace;
    const float nan = std::numeric_limits<float>::quiet_NaN();
    for (int i = 0; i < 400; ++i) trace.AppendSample(static_cast<float>(i) * 0.01f, i == 200 ? nan : 1.0f);
    const PlotRowWindow window{-1.0f, 10.0f, 0.1, 10}; // 400 samples in row 0: the search path
    const auto runs = DecimateCurve(trace, window);
    ASSERT_EQ(runs.size(), 2u);
    EXPECT_FALSE(runs[1].joined);
    EXPECT_EQ(runs, DecimateCurveBySample(trace, window));
}

TEST(PlotDecimation, DenseRowFindsExtremesAndGapsAtEveryPosition)
{
    // One row holding n samples takes the search path, whose scan splits the row into
    // vector lanes and a scalar tail: an extreme or a gap must count wherever it falls.
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const float specials[] = {kNullValue, nan, 1000.0f, -1000.0f};
    const PlotRowWindow window{-1.0f, 100.0f, 1.0 / 101.0, 1};
    for (std::size_t n = 5; n <= 40; ++n) {
        for (std::size_t at = 0; at < n; ++at) {
            for (const float special : specials) {
                CLineTrace trace;
                for (std::size_t i = 0; i < n; ++i)
                    trace.AppendSample(static_cast<float>(i), i == at ? special : static_cast<float>(i % 7));
                EXPECT_EQ(DecimateCurve(trace, window), DecimateCurveBySample(trace, window))
                    << "n " << n << " at " << at << " value " << special;
            }
        }
    }
}

// Enough samples in all that the work is shared among threads (where the machine has
// several cores): every trace must still get its own runs, in its own slot.
TEST(PlotDecimation, SeveralTracesAtOnceGiveEachTracesOwnRuns)
{
    std::mt19937 rng(7);
    std::vector<CLineTrace> traces;
    for (std::size_t k = 0; k < 5; ++k) traces.push_back(RandomTrace(rng, 150'000 + 40'000 * k, 0.001, k % 2));
    std::vector<const CLineTrace*> pointers;
    for (const CLineTrace& trace : traces) pointers.push_back(&trace);
    const PlotRowWindow window{150.0f, 9000.0f, 0.1, 800};
    const auto runs = DecimateCurves(pointers, window);
    ASSERT_EQ(runs.size(), traces.size());
    for (std::size_t k = 0; k < traces.size(); ++k) {
        EXPECT_FALSE(runs[k].empty()) << "trace " << k;
        EXPECT_EQ(runs[k], DecimateCurve(traces[k], window)) << "trace " << k;
    }
    EXPECT_TRUE(DecimateCurves({}, window).empty());
}

TEST(PlotDecimation, EmptyInputsGiveNoRuns)
{
    CLineTrace trace;
    EXPECT_TRUE(DecimateCurve(trace, {0.0f, 10.0f, 1.0, 10}).empty());
    trace.AppendSample(5.0f, 1.0f);
    EXPECT_TRUE(DecimateCurve(trace, {0.0f, 10.0f, 1.0, 0}).empty());
    EXPECT_TRUE(DecimateCurve(trace, {5.0f, 10.0f, 1.0, 10}).empty()); // top is exclusive
}

TEST(PlotDecimation, FirstSampleAfterSearchesDisplayDepths)
{
    CLineTrace trace;
    trace.SetDepthUnit(kDepthFeet);
    for (int i = 0; i < 10; ++i) trace.AppendSample(static_cast<float>(i), 0.0f);
    EXPECT_EQ(FirstSampleAfter(trace, -1.0f), 0u);
    EXPECT_EQ(FirstSampleAfter(trace, trace.Depth(4)), 5u); // sample 4 is at the depth itself
    EXPECT_EQ(FirstSampleAfter(trace, trace.Depth(4) - 0.01f), 4u);
    EXPECT_EQ(FirstSampleAfter(trace, 1000.0f), 10u);
}

} // namespace
} // namespace ba
