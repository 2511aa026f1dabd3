#include "spectral/SpectrumSumming.h"

#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <vector>

namespace ba {
namespace {

// A log of n spectra of n channels in which spectrum i holds one count in channel i only,
// so the summed counts of channel i say how often spectrum i was added.
CSpectralTrace MarkerLog(std::size_t n, std::vector<float> depths, std::vector<float> liveTimes)
{
    CSpectralTrace trace("GRSP", 0.0f, 100.0f, "CPS");
    for (std::size_t i = 0; i < n; ++i) {
        ImageRow row(n, 0);
        row[i] = 1;
        trace.AppendSpectrum(depths[i], std::move(row), liveTimes[i], 10.0f * static_cast<float>(i), 25.0f, 950.0f);
    }
    return trace;
}

CSpectralTrace RegularMarkerLog(std::size_t n, float spacing, float liveTime = 1.0f)
{
    std::vector<float> depths(n), times(n, liveTime);
    for (std::size_t i = 0; i < n; ++i) depths[i] = 100.0f + spacing * static_cast<float>(i);
    return MarkerLog(n, depths, times);
}

// How many times each spectrum was added, recovered from the count rates.
std::map<std::size_t, int> Multiplicities(const SummedSpectrum& s)
{
    std::map<std::size_t, int> uses;
    for (std::size_t ch = 0; ch < s.cps.size(); ++ch) {
        const int n = static_cast<int>(std::lround(s.cps[ch] * s.acquisitionTime));
        if (n != 0) uses[ch] = n;
    }
    return uses;
}

TEST(MirroredSample, ReflectsBothEndsAndSkipsN)
{
    const std::size_t n = 5;
    struct Case {
        long long index;
        std::optional<std::size_t> sample;
    };
    const Case cases[] = {
        {0, 0}, {4, 4}, {5, std::nullopt}, {6, 4}, {9, 1}, {10, 0}, {11, std::nullopt},
        {-1, 1}, {-4, 4}, {-5, std::nullopt}, {-6, std::nullopt},
    };
    for (const auto& c : cases) EXPECT_EQ(MirroredSample(c.index, n), c.sample) << "index " << c.index;
}

TEST(SummingOrder, VisitsEverySampleThroughTheMirrorUntilBothBoundsArePassed)
{
    struct Case {
        std::size_t centre;
        std::size_t n;
        std::vector<std::size_t> order;
    };
    const Case cases[] = {
        {0, 5, {0, 1, 1, 2, 2, 3, 3, 4, 4, 4, 3, 2, 1, 0}},
        {4, 5, {4, 3, 4, 2, 3, 1, 2, 0, 1, 1, 0, 2, 3, 4}},
        {2, 5, {2, 3, 1, 4, 0, 1, 4, 2, 3, 3, 2, 4, 1, 0}},
        {0, 1, {0, 0}},
        {0, 0, {}},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(SummingOrder(c.centre, c.n), c.order) << "centre " << c.centre << " of " << c.n;
    }
}

TEST(SumSpectraAround, TimeSummingStopsAtTheTargetWithTheMirrorNearTheEnds)
{
    struct Case {
        const char* name;
        std::size_t centre;
        double timeSum;
        std::map<std::size_t, int> uses;
    };
    const Case cases[] = {
        {"the first sample reuses the spectra after it", 0, 5.0, {{0, 1}, {1, 2}, {2, 2}}},
        {"the last sample skips index N and meets itself again", 99, 4.0, {{99, 2}, {98, 1}, {97, 1}}},
        {"in the middle", 50, 5.0, {{48, 1}, {49, 1}, {50, 1}, {51, 1}, {52, 1}}},
        {"a target below one spectrum's time keeps the centre alone", 50, 0.5, {{50, 1}}},
    };
    const CSpectralTrace trace = RegularMarkerLog(100, 0.1f);
    for (const auto& c : cases) {
        const SummedSpectrum s = SumSpectraAround(trace, c.centre, SummingTarget{.byDepth = false, .timeSum = c.timeSum});
        EXPECT_EQ(Multiplicities(s), c.uses) << c.name;
        EXPECT_EQ(s.ChannelCount(), 100u) << c.name;
    }
}

TEST(SumSpectraAround, ShortLogStopsAtTheMirrorBoundsAndUsesTheTimeAccumulated)
{
    // Live times 0.5, 1.5, 2.5, 3.5, 4.5 s; from sample 0 the whole mirrored order is
    // 0,1,1,2,2,3,3,4,4,4,3,2,1,0 (sample 0 twice, the others three times).
    const CSpectralTrace trace = MarkerLog(5, {1, 2, 3, 4, 5}, {0.5f, 1.5f, 2.5f, 3.5f, 4.5f});
    const SummedSpectrum s = SumSpectraAround(trace, 0, SummingTarget{.byDepth = false, .timeSum = 1000.0});
    const double expectedTime = 2 * 0.5 + 3 * (1.5 + 2.5 + 3.5 + 4.5);
    EXPECT_DOUBLE_EQ(s.acquisitionTime, expectedTime);
    EXPECT_EQ(s.spectraSummed, 14u);
    EXPECT_FLOAT_EQ(s.cps[0], static_cast<float>(2.0 / expectedTime));
    EXPECT_FLOAT_EQ(s.cps[4], static_cast<float>(3.0 / expectedTime));
}

TEST(SumSpectraAround, DepthSumming)
{
    struct Case {
        const char* name;
        float spacing;
        double depthSum;
        std::size_t spectra; // the centre and those added
        double span;
    };
    const Case cases[] = {
        {"zero spacing advances 0.001 per spectrum", 0.0f, 0.01, 11, 0.01},
        {"spacing below the minimum counts as 0.001", 0.0001f, 0.005, 6, 0.005},
        {"regular spacing", 0.25f, 1.0, 5, 1.0},
        {"a target of zero keeps the centre alone", 0.25f, 0.0, 1, 0.0},
    };
    for (const auto& c : cases) {
        const CSpectralTrace trace = RegularMarkerLog(100, c.spacing);
        const SummedSpectrum s = SumSpectraAround(trace, 50, SummingTarget{.byDepth = true, .depthSum = c.depthSum});
        EXPECT_EQ(s.spectraSummed, c.spectra) << c.name;
        EXPECT_NEAR(s.depthSpan, c.span, 1e-6) << c.name;
        EXPECT_DOUBLE_EQ(s.acquisitionTime, static_cast<double>(c.spectra)) << c.name;
    }
}

TEST(SumSpectraAround, CountsAreAddedAsFloatsAndDividedByTheTime)
{
    // Two-channel spectra of 60000 counts: the sum overflows 16 bits but not a float.
    CSpectralTrace trace;
    for (int i = 0; i < 3; ++i) trace.AppendSpectrum(static_cast<float>(i), ImageRow{60000, 1}, 2.0f, 0, 0, 0);
    const SummedSpectrum s = SumSpectraAround(trace, 1, SummingTarget{.byDepth = false, .timeSum = 6.0});
    EXPECT_DOUBLE_EQ(s.acquisitionTime, 6.0);
    EXPECT_FLOAT_EQ(s.cps[0], 30000.0f);
    EXPECT_FLOAT_EQ(s.cps[1], 0.5f);
}

TEST(SumSpectraAround, SpectraOfOtherLengthsAddToTheCentresChannels)
{
    CSpectralTrace trace;
    trace.AppendSpectrum(0.0f, ImageRow{1, 1, 1}, 1.0f, 0, 0, 0);
    trace.AppendSpectrum(1.0f, ImageRow{2}, 1.0f, 0, 0, 0);
    trace.AppendSpectrum(2.0f, ImageRow{4, 4, 4, 4, 4}, 1.0f, 0, 0, 0);
    const SummedSpectrum s = SumSpectraAround(trace, 0, SummingTarget{.byDepth = false, .timeSum = 5.0});
    // Order 0, 1, 1, 2, 2.
    ASSERT_EQ(s.ChannelCount(), 3u);
    EXPECT_FLOAT_EQ(s.cps[0], (1 + 2 + 2 + 4 + 4) / 5.0f);
    EXPECT_FLOAT_EQ(s.cps[2], (1 + 4 + 4) / 5.0f);
}

TEST(SumSpectraAround, NoLiveTimeGivesZeroRatesAndSaysSo)
{
    CSpectralTrace trace;
    trace.AppendSpectrum(0.0f, ImageRow{5, 5}, 0.0f, 0, 0, 0);
    trace.AppendSpectrum(1.0f, ImageRow{5, 5}, 0.0f, 0, 0, 0);
    const SummedSpectrum s = SumSpectraAround(trace, 0, SummingTarget{.byDepth = false, .timeSum = 10.0});
    EXPECT_EQ(s.acquisitionTime, 0.0);
    EXPECT_EQ(s.cps, (std::vector<float>{0.0f, 0.0f}));
}

TEST(SumSpectraAround, ReusedResultIsResetBetweenCalls)
{
    const CSpectralTrace trace = RegularMarkerLog(20, 0.1f);
    SummedSpectrum out;
    SumSpectraAround(trace, 0, SummingTarget{.byDepth = false, .timeSum = 1000.0}, out);
    SumSpectraAround(trace, 10, SummingTarget{.byDepth = false, .timeSum = 1.0}, out);
    EXPECT_EQ(Multiplicities(out), (std::map<std::size_t, int>{{10, 1}}));
    EXPECT_EQ(out.spectraSummed, 1u);
}

} // namespace
} // namespace ba
