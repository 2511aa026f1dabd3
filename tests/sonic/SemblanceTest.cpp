#include "sonic/Semblance.h"

#include "sonic/WaveformSynth.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <vector>

namespace ba {
namespace {

using test::Arrival;
using test::Station;
using test::Synthesise;

// The definition, term by term, at one slowness and one window start.
double DirectCoherence(const ReceiverWaveforms& s, double slowness, std::size_t start, std::size_t window)
{
    const auto read = [](std::span<const float> x, double at) {
        const double k = std::floor(at);
        const auto sample = [&](double i) {
            return i >= 0 && i < static_cast<double>(x.size()) ? static_cast<double>(x[static_cast<std::size_t>(i)]) : 0.0;
        };
        return (1.0 - (at - k)) * sample(k) + (at - k) * sample(k + 1);
    };
    double numerator = 0.0;
    double denominator = 0.0;
    for (std::size_t t = start; t < start + window; ++t) {
        double sum = 0.0;
        for (std::size_t r = 0; r < s.traces.size(); ++r) {
            const double v = read(s.traces[r], static_cast<double>(t) + slowness * (s.offsets[r] - s.offsets[0]) / s.sampleInterval);
            sum += v;
            denominator += v * v;
        }
        numerator += sum * sum;
    }
    return numerator / (static_cast<double>(s.traces.size()) * denominator);
}

TEST(Semblance, TheMapIsTheDefinitionWithRunningSums)
{
    const std::vector<double> offsets = {3.0, 4.0, 5.0, 6.5};
    const auto traces = Synthesise(offsets, {{60.0, 15000.0, 1.0}, {110.0, 10000.0, 2.0}}, 4.0, 500, 0.05, 1);
    const ReceiverWaveforms station = Station(traces, offsets, 4.0);
    const SlownessGrid grid{40.0, 240.0, 2.5};
    const CoherenceMap map = ComputeCoherenceMap(station, grid, 120.0);
    const std::size_t window = WindowSamples(120.0, 4.0);
    ASSERT_EQ(window, 30u);
    ASSERT_EQ(map.slowness.size(), 81u);
    ASSERT_EQ(map.time.size(), 500u - 30u + 1u);
    EXPECT_DOUBLE_EQ(map.time[10], 40.0);
    std::mt19937 rng(2);
    for (int k = 0; k < 300; ++k) {
        const std::size_t row = rng() % map.time.size();
        const std::size_t column = rng() % map.slowness.size();
        EXPECT_NEAR(map.At(row, column), DirectCoherence(station, map.slowness[column], row, window), 1e-5)
            << "row " << row << ", slowness " << map.slowness[column];
    }
}

// Each mode's arrival on the first receiver: the best slowness there lies within one grid
// step of the true one, with a coherence above 0.9.
TEST(Semblance, RecoversEachModesSlownessOnSyntheticWaveforms)
{
    const std::vector<Arrival> modes = {{60.0, 15000.0, 1.0}, {110.0, 10000.0, 2.0}, {220.0, 3000.0, 3.0}};
    const std::vector<std::vector<double>> geometries = {{3.0, 4.0, 5.0}, {8.0, 9.0, 10.0, 11.0}, {3.0, 5.0}};
    const SlownessGrid grid{40.0, 300.0, 1.0};
    constexpr double dt = 4.0;
    for (const auto& offsets : geometries) {
        const auto traces = Synthesise(offsets, modes, dt, 1500, 0.05, 3);
        const CoherenceMap map = ComputeCoherenceMap(Station(traces, offsets, dt), grid, 150.0);
        ASSERT_FALSE(map.rho.empty());
        for (const Arrival& mode : modes) {
            // Window starts from a quarter period before the wavelet's centre to its centre.
            const double centre = offsets[0] * mode.slowness + 1e6 / mode.frequency;
            const double quarter = 0.25e6 / mode.frequency;
            float best = -1.0f;
            double bestSlowness = 0.0;
            for (std::size_t row = 0; row < map.time.size(); ++row) {
                if (map.time[row] < centre - quarter - 75.0 || map.time[row] > centre - 75.0 + quarter) continue;
                for (std::size_t c = 0; c < map.slowness.size(); ++c) {
                    if (std::fabs(map.slowness[c] - mode.slowness) > 30.0) continue; // the mode's own peak
                    if (map.At(row, c) > best) {
                        best = map.At(row, c);
                        bestSlowness = map.slowness[c];
                    }
                }
            }
            EXPECT_NEAR(bestSlowness, mode.slowness, grid.step) << offsets.size() << " receivers, mode " << mode.slowness;
            EXPECT_GT(best, 0.9f) << offsets.size() << " receivers, mode " << mode.slowness;
        }
    }
}

TEST(Semblance, UnusableStationsGiveAnEmptyMap)
{
    const std::vector<float> a(100, 1.0f);
    const std::vector<float> shorter(99, 1.0f);
    struct Case {
        const char* what;
        ReceiverWaveforms station;
        double window;
    };
    const Case cases[] = {
        {"one receiver", {{a}, {3.0}, 4.0, 0.0}, 40.0},
        {"unequal lengths", {{a, shorter}, {3.0, 4.0}, 4.0, 0.0}, 40.0},
        {"window longer than the record", {{a, a}, {3.0, 4.0}, 4.0, 0.0}, 404.0},
        {"offsets missing", {{a, a}, {3.0}, 4.0, 0.0}, 40.0},
    };
    for (const Case& c : cases) EXPECT_TRUE(ComputeCoherenceMap(c.station, SlownessGrid{}, c.window).rho.empty()) << c.what;
    // Silence: no coherence anywhere, rather than what rounding leaves.
    const std::vector<float> zeros(100, 0.0f);
    const CoherenceMap silent = ComputeCoherenceMap({{zeros, zeros}, {3.0, 4.0}, 4.0, 0.0}, SlownessGrid{}, 40.0);
    ASSERT_FALSE(silent.rho.empty());
    for (const float rho : silent.rho) ASSERT_EQ(rho, 0.0f);
}

} // namespace
} // namespace ba
