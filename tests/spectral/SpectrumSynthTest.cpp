#include "spectral/SpectrumSynth.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numeric>

namespace ba::synth {
namespace {

const Radioelements kPotassiumOnly{2.0, 0.0, 0.0};

std::size_t PeakChannel(const std::vector<double>& rates, std::size_t from, std::size_t to)
{
    return static_cast<std::size_t>(std::max_element(rates.begin() + static_cast<long>(from),
                                                     rates.begin() + static_cast<long>(to)) -
                                    rates.begin());
}

TEST(SpectrumSynth, PotassiumPeakDriftsDownTheChannelsAsTheToolWarms)
{
    const Detector d;
    struct Case {
        double temperature;
        double channel; // 1461 keV / gain, where the peak is centred
    };
    const Case cases[] = {{20.0, 1461.0 / 3.0}, {40.0, 1461.0 / 2.82}, {0.0, 1461.0 / 3.18}};
    for (const auto& c : cases) {
        const auto rates = ExpectedCountRates(kPotassiumOnly, c.temperature, d);
        // The middle of the fullest channel lies within a channel of the centre.
        EXPECT_NEAR(static_cast<double>(PeakChannel(rates, 400, 600)) + 0.5, c.channel, 1.0) << c.temperature << " C";
    }
}

TEST(SpectrumSynth, PotassiumPeakHasTheDetectorsResolution)
{
    const Detector d;
    const auto rates = ExpectedCountRates(kPotassiumOnly, 20.0, d);
    const std::size_t peak = PeakChannel(rates, 400, 600);
    const double half = rates[peak] / 2.0;
    // Where the rate crosses half the maximum, interpolated between channel centres.
    auto crossing = [&](std::size_t outside, std::size_t inside) {
        const double t = (half - rates[outside]) / (rates[inside] - rates[outside]);
        return static_cast<double>(outside) + t * (static_cast<double>(inside) - static_cast<double>(outside));
    };
    std::size_t left = peak;
    while (rates[left - 1] >= half) --left;
    std::size_t right = peak;
    while (rates[right + 1] >= half) ++right;
    const double fwhmChannels = crossing(right + 1, right) - crossing(left - 1, left);
    // 7% at 662 keV scales as the square root of energy to 68.8 keV at 1461 keV.
    EXPECT_NEAR(fwhmChannels * 3.0, 0.07 * std::sqrt(662.0 * 1461.0), 1.5);
}

TEST(SpectrumSynth, PoissonCountsAverageToTheExpectedRates)
{
    const auto rates = ExpectedCountRates(FormationAt(110.0), 25.0, Detector{});
    const double expected = std::accumulate(rates.begin(), rates.end(), 0.0) * 10.0;
    std::mt19937_64 rng(7);
    const ImageRow counts = PoissonCounts(rates, 10.0, rng);
    const double total = std::accumulate(counts.begin(), counts.end(), 0.0);
    EXPECT_NEAR(total, expected, 5.0 * std::sqrt(expected));
}

TEST(SpectrumSynth, LogCarriesItsAcquisitionValues)
{
    LogOptions o;
    o.spectra = 20;
    const auto trace = MakeSpectralLog("GRSP", o);
    ASSERT_EQ(trace->RowCount(), 20u);
    ASSERT_EQ(trace->AcquisitionTimes().Size(), 20u);
    EXPECT_EQ(trace->RowSampleCount(0), 1024u);
    EXPECT_FLOAT_EQ(trace->StoredDepth(19), 101.9f);
    EXPECT_GT(trace->TotalTime(19), trace->TotalTime(0));
    EXPECT_GT(trace->Temperature(19), trace->Temperature(0));
    EXPECT_NEAR(trace->HighVoltage(5), 1000.0f, 5.0f);
}

TEST(SpectrumSynth, ShaleIsHotterThanSandstone)
{
    // Beds of 4 m: 102 m lies in sandstone, 106 m in shale.
    EXPECT_LT(FormationAt(102.0).potassiumPercent, 0.9);
    EXPECT_GT(FormationAt(106.0).potassiumPercent, 2.5);
    EXPECT_GT(FormationAt(137.5).uraniumPpm, 40.0);
}

} // namespace
} // namespace ba::synth
