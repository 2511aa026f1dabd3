#include "model/LineTraceCursor.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <random>
#include <sstream>
#include <vector>

namespace ba {
namespace {

struct RandomTrace {
    CLineTrace trace;
    std::string description;
};

// A random trace: any length from 0 up, regular or irregular, in metres, feet or a time
// unit, with repeated depths, runs of nulls, and now and then fewer values than depths
// or depths out of order.
RandomTrace MakeRandomTrace(std::mt19937& random)
{
    std::uniform_real_distribution<float> unit01(0.0f, 1.0f);
    const auto chance = [&](float p) { return unit01(random) < p; };

    RandomTrace made;
    CLineTrace& t = made.trace;
    const int lengthClass = std::uniform_int_distribution<int>(0, 9)(random);
    const std::size_t n = lengthClass == 0 ? std::uniform_int_distribution<std::size_t>(0, 3)(random)
                                           : std::uniform_int_distribution<std::size_t>(4, lengthClass == 9 ? 2000 : 60)(random);
    const std::int32_t units[] = {kDepthMetres, kDepthFeet, kTimeSeconds, kTimeHours};
    t.SetDepthUnit(units[std::uniform_int_distribution<int>(0, 3)(random)]);
    t.SetFlag(2, chance(0.3f));
    const bool regularSpacing = chance(0.6f);
    const float step = std::uniform_real_distribution<float>(0.001f, 2.0f)(random);
    float depth = std::uniform_real_distribution<float>(-50.0f, 3000.0f)(random);
    for (std::size_t i = 0; i < n; ++i) {
        const float value = chance(0.15f) ? kNullValue : std::uniform_real_distribution<float>(-500.0f, 500.0f)(random);
        t.AppendSample(depth, value);
        if (regularSpacing) depth += step;
        else if (!chance(0.1f)) depth += step * unit01(random) * 3.0f; // sometimes a repeated depth
    }
    if (n > 3 && chance(0.05f)) {
        std::swap(t.StoredDepths()[1], t.StoredDepths()[n - 2]); // out of order
        made.description += " unordered";
    }
    if (n > 0 && chance(0.05f)) {
        t.Values().SetSize(n / 2); // fewer values than depths
        made.description += " short-values";
    }
    std::ostringstream s;
    s << "n=" << n << " unit=" << t.DepthUnit() << " irregular=" << t.IrregularAxis() << made.description;
    made.description = s.str();
    return made;
}

// Depths worth asking about: every sample's display depth and the floats just beside it,
// midpoints, points beyond both ends inside and outside two steps, and random points.
std::vector<float> QueryDepths(const CLineTrace& t, std::mt19937& random)
{
    std::vector<float> depths;
    const std::size_t n = t.SampleCount();
    const float reach = 2.0f * t.SamplingStep();
    for (std::size_t i = 0; i < n; ++i) {
        const float d = t.Depth(i);
        depths.insert(depths.end(), {d, std::nextafter(d, -INFINITY), std::nextafter(d, INFINITY)});
        if (i + 1 < n) depths.push_back((d + t.Depth(i + 1)) / 2.0f);
    }
    if (n > 0) {
        const float first = std::min(t.FirstDepth(), t.LastDepth());
        const float last = std::max(t.FirstDepth(), t.LastDepth());
        for (const float k : {0.5f, 1.0f, 1.999f, 2.0f, 2.001f, 3.0f}) {
            depths.push_back(first - k * reach);
            depths.push_back(last + k * reach);
        }
        std::uniform_real_distribution<float> within(first - 3.0f * reach, last + 3.0f * reach);
        for (int i = 0; i < 50; ++i) depths.push_back(within(random));
    } else {
        depths.insert(depths.end(), {0.0f, 1.0f, -1.0f});
    }
    return depths;
}

std::uint32_t Bits(float v) { return std::bit_cast<std::uint32_t>(v); }

TEST(ExportCursor, GivesExactlyWhatValueAtGivesInEitherDirectionAndAnyOrder)
{
    std::mt19937 random(7);
    int failures = 0;
    for (int round = 0; round < 3000 && failures < 5; ++round) {
        const RandomTrace made = MakeRandomTrace(random);
        std::vector<float> depths = QueryDepths(made.trace, random);
        std::sort(depths.begin(), depths.end());
        std::vector<std::vector<float>> orders = {depths, {depths.rbegin(), depths.rend()}, depths};
        std::shuffle(orders[2].begin(), orders[2].end(), random);
        const char* orderNames[] = {"ascending", "descending", "shuffled"};
        for (std::size_t o = 0; o < orders.size() && failures < 5; ++o) {
            CLineTraceCursor cursor(made.trace);
            for (const float d : orders[o]) {
                const float expected = made.trace.ValueAt(d);
                const float got = cursor.ValueAt(d);
                if (Bits(got) != Bits(expected)) {
                    ++failures;
                    ADD_FAILURE() << made.description << " " << orderNames[o] << " at depth " << d << ": cursor "
                                  << got << ", ValueAt " << expected;
                    break;
                }
            }
        }
    }
}

TEST(ExportCursor, HandWorkedLookupsOnARegularAxis)
{
    // 10, 10.5, 11, 11.5, 12 m with 20, 30, null, 50, 60. On a regular axis a sample is
    // reached from the one before it, so a depth at a sample next to a null reads null.
    CLineTrace t;
    const float samples[][2] = {{10.0f, 20.0f}, {10.5f, 30.0f}, {11.0f, kNullValue}, {11.5f, 50.0f}, {12.0f, 60.0f}};
    for (const auto& s : samples) t.AppendSample(s[0], s[1]);
    struct Case {
        float depth;
        float expected;
    };
    const Case cases[] = {
        {12.75f, 60.0f}, {12.0f, 60.0f}, {11.75f, 55.0f}, {11.5f, kNullValue}, {11.0f, kNullValue},
        {10.5f, 30.0f},  {10.25f, 25.0f}, {10.0f, 20.0f},  {9.5f, 20.0f},        {9.0f, kNullValue},
    };
    CLineTraceCursor cursor(t);
    for (const auto& c : cases) EXPECT_FLOAT_EQ(cursor.ValueAt(c.depth), c.expected) << c.depth;
}

} // namespace
} // namespace ba
