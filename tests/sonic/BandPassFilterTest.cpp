#include "sonic/BandPassFilter.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <vector>

namespace ba {
namespace {

// The amplitude a long sine keeps in the middle of the record, zero-phase filtered.
double Gain(const CBandPassFilter& filter, double hz, double dtMicroseconds)
{
    std::vector<float> x(4000);
    for (std::size_t i = 0; i < x.size(); ++i) {
        x[i] = static_cast<float>(std::sin(2.0 * std::numbers::pi * hz * static_cast<double>(i) * dtMicroseconds * 1e-6));
    }
    filter.ApplyZeroPhase(x);
    return *std::max_element(x.begin() + 1500, x.begin() + 2500);
}

// Butterworth magnitudes, squared by the two passes: |H|² = 1/(1 + (f/fc)^2n) for the
// low-pass and 1/(1 + (fc/f)^2n) for the high-pass, here without pre-warping's small
// shift (the corners lie far below the Nyquist frequency; tolerance 0.02).
TEST(BandPassFilter, ZeroPhaseButterworthResponse)
{
    const double dt = 4.0; // 125 kHz Nyquist
    for (const int order : {2, 3, 4}) {
        const CBandPassFilter filter(BandPass{1000.0, 20000.0, order}, dt);
        for (const double f : {500.0, 1000.0, 4500.0, 20000.0, 40000.0}) {
            const double lp = 1.0 / (1.0 + std::pow(f / 20000.0, 2 * order));
            const double hp = 1.0 / (1.0 + std::pow(1000.0 / f, 2 * order));
            EXPECT_NEAR(Gain(filter, f, dt), lp * hp, 0.02) << "order " << order << " at " << f << " Hz";
        }
    }
    // Zero phase: a symmetric pulse keeps its peak where it was; a constant is taken out.
    std::vector<float> pulse(400, 100.0f);
    for (int i = -20; i <= 20; ++i) pulse[200 + i] += static_cast<float>(1000.0 * std::exp(-i * i / 20.0));
    CBandPassFilter(BandPass{2000.0, 30000.0, 4}, dt).ApplyZeroPhase(pulse);
    EXPECT_EQ(std::max_element(pulse.begin(), pulse.end()) - pulse.begin(), 200);
    EXPECT_NEAR(pulse[20], 0.0f, 5.0f);
}

TEST(BandPassFilter, UnusableBandsAreNamed)
{
    struct Case {
        BandPass band;
        const char* message;
    };
    const Case cases[] = {
        {{1000.0, 25000.0, 5}, "Error: the band-pass order must be 2, 3 or 4; 5 was given."},
        {{5000.0, 2000.0, 4}, "Error: the band-pass from 5 to 2 kHz must have a low corner above 0 and below its high corner."},
        {{1000.0, 70000.0, 4},
         "Error: the band-pass from 1 to 70 kHz must stay below half the sampling rate, 62.5 kHz for samples every 8 us."},
    };
    for (const Case& c : cases) EXPECT_EQ(BandPassProblem(c.band, 8.0).value_or("none"), c.message);
    EXPECT_FALSE(BandPassProblem(BandPass{1000.0, 25000.0, 4}, 8.0).has_value());
}

} // namespace
} // namespace ba
