#include "spectral/EnergyCalibration.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

namespace ba {
namespace {

// Gain 4.25 - 0.0625·X keV/channel, offset 0.25·X - 5.5 keV: binary fractions, so the
// ceilings below are not at the mercy of rounding.
constexpr EnergyCoefficients kDrifting{.offsetSlope = 0.25, .offsetIntercept = -5.5, .gainSlope = -0.0625,
                                       .gainIntercept = 4.25};

TEST(ComputeEnergyRange, CeilingsOfOffsetAndTop)
{
    struct Case {
        const char* name;
        EnergyCoefficients c;
        int channels;
        double x;
        EnergyRange expected;
    };
    const Case cases[] = {
        {"identity at 25.5 C", EnergyCoefficients{}, 1024, 25.5, {26.0, 1024 * 25.5 + 26.0}},
        {"offset -0.5 rounds up to 0, gain 3.0", kDrifting, 1024, 20.0, {0.0, 3072.0}},
        {"offset 2.25 rounds up to 3, top 2312.5 + 3 rounds up", kDrifting, 1000, 31.0, {3.0, 2316.0}},
        {"no channels", kDrifting, 0, 31.0, {3.0, 3.0}},
    };
    for (const auto& c : cases) {
        const EnergyRange r = ComputeEnergyRange(c.c, c.channels, c.x);
        EXPECT_EQ(r.e0, c.expected.e0) << c.name;
        EXPECT_EQ(r.e1, c.expected.e1) << c.name;
    }
}

TEST(BinEnergy, LinearBetweenTheEnds)
{
    const EnergyRange r{10.0, 1034.0};
    EXPECT_DOUBLE_EQ(BinEnergy(r, 1024, 0), 10.0);
    EXPECT_DOUBLE_EQ(BinEnergy(r, 1024, 512), 522.0);
    EXPECT_DOUBLE_EQ(BinEnergy(r, 1024, 1024), 1034.0);
}

// A calibration that the coefficients would give at x, read at two bins.
CalibrationState StateAt(const EnergyCoefficients& c, double x, double bin1, double bin2)
{
    const double gain = c.gainSlope * x + c.gainIntercept;
    const double offset = c.offsetSlope * x + c.offsetIntercept;
    return {bin1, offset + gain * bin1, bin2, offset + gain * bin2, x};
}

TEST(DeriveEnergyCoefficients, RecoversTheCoefficientsOfTwoCalibrations)
{
    CollectingMessageSink sink;
    const auto c = DeriveEnergyCoefficients(StateAt(kDrifting, 20.0, 100, 800), StateAt(kDrifting, 45.0, 860, 210), sink);
    ASSERT_TRUE(c.has_value());
    EXPECT_TRUE(sink.messages.empty());
    EXPECT_NEAR(c->gainSlope, kDrifting.gainSlope, 1e-12);
    EXPECT_NEAR(c->gainIntercept, kDrifting.gainIntercept, 1e-12);
    EXPECT_NEAR(c->offsetSlope, kDrifting.offsetSlope, 1e-12);
    EXPECT_NEAR(c->offsetIntercept, kDrifting.offsetIntercept, 1e-10);
}

TEST(DeriveEnergyCoefficients, RefusesCalibrationsThatFixNoLine)
{
    const CalibrationState good{200, 609, 870, 2614, 20};
    struct Case {
        const char* name;
        CalibrationState first;
        CalibrationState second;
        std::vector<std::string> messages;
    };
    const Case cases[] = {
        {"same bins", {300, 609, 300, 2614, 20}, good, {"Error: the two bins of the first calibration must differ."}},
        {"same energies", good, {200, 609, 870, 609, 40},
         {"Error: the two energies of the second calibration must differ."}},
        {"not a number", good, {200, 609, std::nan(""), 2614, 40},
         {"Error: the second calibration has a value that is not a finite number."}},
        {"both bad", {1, 5, 1, 6, 0}, {1, 5, 1, 6, 9},
         {"Error: the two bins of the first calibration must differ.",
          "Error: the two bins of the second calibration must differ."}},
    };
    for (const auto& c : cases) {
        CollectingMessageSink sink;
        EXPECT_FALSE(DeriveEnergyCoefficients(c.first, c.second, sink).has_value()) << c.name;
        EXPECT_EQ(sink.Texts(), c.messages) << c.name;
    }
}

TEST(DeriveEnergyCoefficients, SameReferenceValueHoldsTheMeanScaleAndWarns)
{
    CollectingMessageSink sink;
    // Gains 3.0 and 3.2 keV/channel, offsets 0 and 10 keV, both at 25 C.
    const auto c = DeriveEnergyCoefficients({0, 0, 100, 300, 25}, {0, 10, 100, 330, 25}, sink);
    ASSERT_TRUE(c.has_value());
    EXPECT_EQ(c->gainSlope, 0.0);
    EXPECT_DOUBLE_EQ(c->gainIntercept, 3.1);
    EXPECT_EQ(c->offsetSlope, 0.0);
    EXPECT_DOUBLE_EQ(c->offsetIntercept, 5.0);
    ASSERT_EQ(sink.messages.size(), 1u);
    EXPECT_EQ(sink.messages[0].severity, Severity::Warning);
}

} // namespace
} // namespace ba
