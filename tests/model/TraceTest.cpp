#include "model/LineTrace.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

namespace ba {
namespace {

CLineTrace MakeTrace(std::initializer_list<float> depths, std::int32_t depthUnit = kDepthMetres)
{
    CLineTrace t;
    t.SetDepthUnit(depthUnit);
    float v = 1.0f;
    for (const float d : depths) t.AppendSample(d, v++);
    return t;
}

TEST(TraceDepths, AreConvertedByTheDepthUnitCodeOnEveryRead)
{
    struct Case {
        std::int32_t unit;
        float expected; // display value of a stored 10.0
    };
    const Case cases[] = {
        {kDepthFeet, 32.8084f}, {kDepthMetres, 10.0f}, {kTimeSeconds, 600.0f}, {kTimeMinutes, 10.0f},
        {kTimeHours, 0.16666668f}, {kTimeDays, 0.0069444446f}, {17, 10.0f}, {-1, 10.0f},
    };
    for (const auto& c : cases) {
        const CLineTrace t = MakeTrace({10.0f}, c.unit);
        EXPECT_FLOAT_EQ(t.Depth(0), c.expected) << c.unit;
        EXPECT_FLOAT_EQ(t.FirstDepth(), c.expected) << c.unit;
        EXPECT_EQ(t.StoredDepth(0), 10.0f);
    }
    EXPECT_FALSE(IsTimeAxisCode(kDepthFeet));
    EXPECT_FALSE(IsTimeAxisCode(kDepthMetres));
    EXPECT_TRUE(IsTimeAxisCode(kTimeSeconds));
    EXPECT_TRUE(IsTimeAxisCode(kTimeDays));
}

TEST(TraceDepths, ReadsPastTheEndGiveZero)
{
    const CLineTrace empty;
    EXPECT_EQ(empty.FirstDepth(), 0.0f);
    EXPECT_EQ(empty.LastDepth(), 0.0f);
    const CLineTrace t = MakeTrace({5.0f, 6.0f});
    EXPECT_EQ(t.Depth(2), 0.0f);
    EXPECT_EQ(t.LastDepth(), 6.0f);
}

TEST(TraceDepths, SetDepthPastTheEndRepeatsTheValue)
{
    CLineTrace t = MakeTrace({1.0f});
    t.SetDepth(0, 2.0f);
    EXPECT_EQ(t.StoredDepth(0), 2.0f);
    t.SetDepth(3, 7.5f);
    ASSERT_EQ(t.SampleCount(), 4u);
    for (std::size_t i = 1; i < 4; ++i) EXPECT_EQ(t.StoredDepth(i), 7.5f);
}

TEST(TraceStep, DividesBySampleCountNotIntervals)
{
    EXPECT_FLOAT_EQ(MakeTrace({0.0f, 10.0f}).SamplingStep(), 5.0f);
    EXPECT_FLOAT_EQ(MakeTrace({100.0f, 100.5f, 101.0f, 101.5f}).SamplingStep(), 0.375f);
    // In feet the step is taken from display depths.
    EXPECT_FLOAT_EQ(MakeTrace({0.0f, 1.0f}, kDepthFeet).SamplingStep(), 3.28084f / 2);
}

TEST(TraceStep, DefaultAndFallbackStepsPerUnit)
{
    struct Case {
        std::int32_t unit;
        float defaultStep;
        float fallbackStep;
    };
    const Case cases[] = {
        {kDepthFeet, 0.032808397f, 0.164042f}, {kDepthMetres, 0.01f, 0.01f},
        {kTimeSeconds, 0.1f, 0.1f},            {kTimeMinutes, 0.0016666667f, 0.0016666667f},
        {kTimeHours, 2.7777778e-05f, 2.7777778e-05f}, {kTimeDays, 1.1574074e-06f, 1.1574074e-06f},
        {9, 0.01f, 0.01f},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(MakeTrace({}, c.unit).SamplingStep(), c.defaultStep) << c.unit;
        EXPECT_EQ(MakeTrace({3.0f}, c.unit).SamplingStep(), c.defaultStep) << c.unit;
        EXPECT_EQ(MakeTrace({3.0f, 3.0f, 3.0f}, c.unit).SamplingStep(), c.fallbackStep) << c.unit;
        CLineTrace irregular = MakeTrace({0.0f, 100.0f}, c.unit);
        irregular.SetFlag(2, true);
        EXPECT_EQ(irregular.SamplingStep(), c.defaultStep) << c.unit;
    }
}

TEST(TraceFlags, PackIntoThreeBitsAndTwentyClearsThem)
{
    struct Case {
        std::int32_t value;
        bool f0, f1, f2;
        std::int32_t packed;
    };
    const Case cases[] = {
        {0, false, false, false, 0}, {1, true, false, false, 1}, {2, false, true, false, 2},
        {4, false, false, true, 4},  {7, true, true, true, 7},  {5, true, false, true, 5},
        {20, false, false, false, 0}, {12, false, false, true, 4}, {21, true, false, true, 5},
        {-1, true, true, true, 7},
    };
    for (const auto& c : cases) {
        CLineTrace t;
        t.SetFlags(7);
        t.SetFlags(c.value);
        EXPECT_EQ(t.Flag(0), c.f0) << c.value;
        EXPECT_EQ(t.Flag(1), c.f1) << c.value;
        EXPECT_EQ(t.Flag(2), c.f2) << c.value;
        EXPECT_EQ(t.Flags(), c.packed) << c.value;
    }
}

struct SearchCase {
    const char* name;
    std::vector<float> depths;
    bool irregular;
    float d;
    int code;
    std::size_t i0;
    std::size_t i1;
};

// Depths 10, 11, 12, 13: step 0.75, so ends reach 1.5 beyond; an irregular axis uses the
// default step 0.01 and reaches 0.02 beyond.
const std::vector<float> kFour = {10.0f, 11.0f, 12.0f, 13.0f};

const SearchCase kSearchCases[] = {
    {"empty", {}, false, 10.0f, -1, 0, 0},
    {"one sample, at it", {10.0f}, false, 10.0f, 0, 0, 0},
    {"one sample, next to it", {10.0f}, false, 10.001f, -1, 0, 0},
    {"two samples, at the first", {10.0f, 12.0f}, false, 10.0f, 0, 0, 1},
    {"two samples, between", {10.0f, 12.0f}, false, 11.0f, 1, 0, 1},
    {"two samples, at the second (two steps from the first)", {10.0f, 12.0f}, false, 12.0f, 1, 0, 1},
    {"two samples, two steps above the first", {10.0f, 12.0f}, false, 8.0f, 1, 0, 1},
    {"two samples, past two steps", {10.0f, 12.0f}, false, 12.5f, -1, 0, 1},
    {"first sample exactly", kFour, false, 10.0f, 0, 0, 0},
    {"inner sample found from below", kFour, false, 11.0f, 1, 0, 1},
    {"between two samples", kFour, false, 11.5f, 1, 1, 2},
    {"last sample found from below", kFour, false, 13.0f, 1, 2, 3},
    {"just past the end", kFour, false, 14.0f, 1, 3, 3},
    {"too far past the end", kFour, false, 14.6f, -1, 2, 2},
    {"just above the top", kFour, false, 9.0f, 1, 0, 0},
    {"too far above the top", kFour, false, 8.4f, -1, 0, 0},
    {"irregular: inner sample exactly", kFour, true, 11.0f, 0, 1, 1},
    {"irregular: last sample exactly", kFour, true, 13.0f, 0, 3, 3},
    {"irregular: between", kFour, true, 11.5f, 1, 1, 2},
    {"irregular: just past the end", kFour, true, 13.01f, 1, 3, 3},
    {"irregular: too far past the end", kFour, true, 13.05f, -1, 3, 3},
    {"irregular: just above the top", kFour, true, 9.99f, 1, 0, 0},
    {"repeated depths: the first of the run is bracketed", {1.0f, 2.0f, 2.0f, 2.0f, 3.0f}, false, 2.0f, 1, 0, 1},
    {"repeated depths, irregular: the last of the run", {1.0f, 2.0f, 2.0f, 2.0f, 3.0f}, true, 2.0f, 0, 3, 3},
};

TEST(TraceSearch, FindsTheSamplesAroundADepth)
{
    for (const auto& c : kSearchCases) {
        CLineTrace t;
        for (const float d : c.depths) t.AppendSample(d, 0.0f);
        t.SetFlag(2, c.irregular);
        const SampleBracket at = t.FindSamplesAround(c.d);
        EXPECT_EQ(at.code, c.code) << c.name;
        if (at.code != SampleBracket::NotFound) {
            EXPECT_EQ(at.i0, c.i0) << c.name;
            EXPECT_EQ(at.i1, c.i1) << c.name;
        }
    }
}

// The search as the plotting code first walked it: forward from sample 0 with coarse
// strides, then unit strides, keeping the last sample still before d.
SampleBracket ForwardWalk(const CTrace& t, float d)
{
    const std::size_t n = t.SampleCount();
    const bool irregular = t.Flag(2);
    const std::size_t last = irregular ? n - 1 : n - 2;
    std::size_t i0 = 0;
    for (const std::size_t stride : {997u, 61u, 7u, 1u}) {
        while (i0 + stride <= last && (irregular ? t.Depth(i0 + stride) <= d : t.Depth(i0 + stride) < d)) i0 += stride;
    }
    const float twoSteps = 2.0f * t.SamplingStep();
    if (t.Depth(i0) == d) return {SampleBracket::Exact, i0, i0};
    if (i0 + 1 < n && t.Depth(i0) <= d && d <= t.Depth(i0 + 1)) return {SampleBracket::Bracketed, i0, i0 + 1};
    if (d < t.Depth(0) && t.Depth(0) - d <= twoSteps) return {SampleBracket::Bracketed, 0, 0};
    if (d > t.Depth(n - 1) && d - t.Depth(n - 1) <= twoSteps) return {SampleBracket::Bracketed, n - 1, n - 1};
    return {SampleBracket::NotFound, i0, i0};
}

TEST(TraceSearch, AgreesWithAForwardWalkOnRandomAscendingDepths)
{
    std::mt19937 rng(20261122);
    std::uniform_real_distribution<float> gap(0.0f, 0.3f);
    for (int trial = 0; trial < 60; ++trial) {
        CLineTrace t;
        t.SetDepthUnit(trial % 3 == 0 ? kDepthFeet : kDepthMetres);
        t.SetFlag(2, trial % 2 == 1);
        const std::size_t n = 3 + rng() % 3000;
        float depth = 100.0f;
        for (std::size_t i = 0; i < n; ++i) {
            // Some equal neighbours, as real logs with repeated stations have.
            if (rng() % 10 != 0) depth += gap(rng);
            t.AppendSample(depth, 0.0f);
        }
        std::uniform_real_distribution<float> probe(t.FirstDepth() - 1.0f, t.LastDepth() + 1.0f);
        for (int k = 0; k < 300; ++k) {
            // Half the probes land exactly on a sample.
            const float d = k % 2 == 0 ? probe(rng) : t.Depth(rng() % n);
            const SampleBracket fast = t.FindSamplesAround(d);
            const SampleBracket walk = ForwardWalk(t, d);
            ASSERT_EQ(fast.code, walk.code) << "trial " << trial << " d " << d;
            if (fast.code != SampleBracket::NotFound) {
                ASSERT_EQ(fast.i0, walk.i0) << "trial " << trial << " d " << d;
                ASSERT_EQ(fast.i1, walk.i1) << "trial " << trial << " d " << d;
            }
        }
    }
}

} // namespace
} // namespace ba
