#include "sonic/ModePicking.h"

#include "sonic/WaveformSynth.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace ba {
namespace {

using test::Arrival;

struct StationCase {
    std::string name;
    std::vector<double> offsets; // ft
    std::vector<Arrival> arrivals;
    double dtc, dts, dtst; // expected slownesses, 0 where the mode is absent
};

// Synthetic stations in a water-filled hole (fluid 189 µs/ft): each mode is found within
// one grid step with a coherence above 0.9, and no mode takes another's label.
TEST(ModePicking, LabelsEachModeOfSyntheticStations)
{
    const StationCase cases[] = {
        {"three modes, 3-4-5 ft", {3.0, 4.0, 5.0}, {{60.0, 15000.0, 1.0}, {110.0, 10000.0, 2.0}, {220.0, 3000.0, 3.0}},
         60.0, 110.0, 220.0},
        {"shear far stronger than compressional", {3.0, 4.0, 5.0},
         {{60.0, 15000.0, 1.0}, {110.0, 10000.0, 3.0}, {220.0, 3000.0, 2.0}}, 60.0, 110.0, 220.0},
        {"four receivers, 8-11 ft", {8.0, 9.0, 10.0, 11.0},
         {{75.0, 15000.0, 1.0}, {135.0, 10000.0, 2.0}, {240.0, 3000.0, 3.0}}, 75.0, 135.0, 240.0},
        {"slow formation: no shear faster than the fluid", {3.0, 4.0, 5.0},
         {{100.0, 15000.0, 1.0}, {230.0, 3000.0, 3.0}}, 100.0, 0.0, 230.0},
    };
    const SlownessGrid grid{40.0, 300.0, 1.0};
    for (const StationCase& c : cases) {
        const auto traces = test::Synthesise(c.offsets, c.arrivals, 4.0, 1500, 0.05, 11);
        const CoherenceMap map = ComputeCoherenceMap(test::Station(traces, c.offsets, 4.0), grid, 150.0);
        const ModePicks picks = LabelModes(FindCoherencePeaks(map, kDefaultCoherenceThreshold, {150.0, 0.1}), ModeRules{}, nullptr);
        const auto check = [&](const std::optional<CoherencePeak>& pick, double expected, const char* mode) {
            if (expected == 0.0) {
                EXPECT_FALSE(pick) << c.name << ": " << mode << " at " << pick->slowness;
                return;
            }
            ASSERT_TRUE(pick) << c.name << ": no " << mode;
            EXPECT_NEAR(pick->slowness, expected, grid.step) << c.name << ": " << mode;
            EXPECT_GT(pick->rho, 0.9f) << c.name << ": " << mode;
        };
        check(picks.compressional, c.dtc, "compressional");
        check(picks.shear, c.dts, "shear");
        check(picks.stoneley, c.dtst, "Stoneley");
    }
}

// Several shear candidates: the most coherent wins, unless one continues the shear picked
// at the station before.
TEST(ModePicking, DepthContinuityChoosesAmongCandidates)
{
    // Each arrival coherent for 50 µs either side of its peak.
    const auto peak = [](double slowness, double time, float rho) {
        return CoherencePeak{slowness, time, rho, time - 50.0, time + 50.0};
    };
    const std::vector<CoherencePeak> peaks = {peak(150.0, 450.0, 0.97f), peak(60.0, 200.0, 0.95f),
                                              peak(112.0, 400.0, 0.92f), peak(220.0, 800.0, 0.90f),
                                              peak(45.0, 90.0, 0.85f),   peak(50.0, 40.0, 0.7f)};
    const ModePicks alone = LabelModes(peaks, ModeRules{}, nullptr);
    ASSERT_TRUE(alone.compressional && alone.shear && alone.stoneley);
    // The earliest clearly coherent arrival faster than the fluid (50 is too weak next to 0.97).
    EXPECT_EQ(alone.compressional->slowness, 45.0);
    EXPECT_EQ(alone.shear->slowness, 150.0);
    EXPECT_EQ(alone.stoneley->slowness, 220.0);

    ModePicks before;
    before.compressional = peak(61.0, 200.0, 0.9f);
    before.shear = peak(110.0, 400.0, 0.9f);
    const ModePicks continued = LabelModes(peaks, ModeRules{}, &before);
    EXPECT_EQ(continued.compressional->slowness, 60.0);
    EXPECT_EQ(continued.shear->slowness, 112.0);
    EXPECT_EQ(continued.stoneley->slowness, 220.0);

    // Nothing faster than the fluid: only a Stoneley.
    const ModePicks slow = LabelModes({peak(230.0, 800.0, 0.9f)}, ModeRules{}, nullptr);
    EXPECT_FALSE(slow.compressional);
    EXPECT_FALSE(slow.shear);
    ASSERT_TRUE(slow.stoneley);
}

TEST(ModePicking, PeaksAreLocalMaximaAboveTheThresholdMostCoherentFirst)
{
    CoherenceMap map;
    map.slowness = {50.0, 60.0, 70.0, 80.0};
    map.time = {0.0, 10.0, 20.0};
    // Column by column (a slowness at a time): peaks 0.9 at (60, 10) and 0.7 at (80, 0); a
    // plateau of two 0.6 at slowness 50 is below the 0.9 next to it; 0.3 is below threshold.
    map.rho = {0.6f, 0.6f, 0.1f, /**/ 0.2f, 0.9f, 0.3f, /**/ 0.1f, 0.2f, 0.1f, /**/ 0.7f, 0.1f, 0.3f};
    const std::vector<CoherencePeak> peaks = FindCoherencePeaks(map, 0.5f);
    ASSERT_EQ(peaks.size(), 2u);
    EXPECT_EQ(peaks[0].slowness, 60.0);
    EXPECT_EQ(peaks[0].time, 10.0);
    EXPECT_EQ(peaks[1].slowness, 80.0);
    EXPECT_EQ(peaks[1].time, 0.0);
    EXPECT_EQ(FindCoherencePeaks(map, 0.5f, {}, 1).size(), 1u);
    // Within the separation of the stronger peak, the weaker one is the same arrival.
    EXPECT_EQ(FindCoherencePeaks(map, 0.5f, {15.0, 0.5}).size(), 1u);
}

} // namespace
} // namespace ba
