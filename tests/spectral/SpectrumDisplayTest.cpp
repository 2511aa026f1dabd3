#include "spectral/SpectrumDisplay.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

namespace ba {
namespace {

TEST(SpectrumTexts, ExactFormats)
{
    EXPECT_EQ(SpectrumStatusLine(1.0, 123.456, 25.5, 950.25),
              "Acq. Time: 1.00 seconds    Total Time: 123.46 seconds    Temperature: 25.50 degrees C    HV: "
              "950.25 Volts");
    EXPECT_EQ(SpectrumStatusLine(0.5, 3.5, -2.0, 5.0),
              "Acq. Time: 0.50 seconds    Total Time:   3.50 seconds    Temperature: -2.00 degrees C    HV:  "
              "5.00 Volts");
    EXPECT_EQ(ChannelCountCaption(1024), "Num Chans: 1024");
    EXPECT_EQ(EnergyRangeCaption({0.0, 3072.0}), "0.0 to 3072.0 KeV");
    EXPECT_EQ(EnergyRangeCaption({26.0, 99.0}), "26.0 to 99.0 KeV");
    EXPECT_EQ(MaxValueCaption(12.34), "Max Value: 12.3 CPS");
    EXPECT_EQ(CursorReadout(609.0, 203), "609.00 KeV (Bin 203)");
    EXPECT_EQ(CursorReadout(9.5, 3), "  9.50 KeV (Bin 3)");
}

TEST(SpectrumTexts, StatusLineOfASample)
{
    CSpectralTrace trace;
    trace.AppendSpectrum(10.0f, ImageRow{1}, 1.0f, 60.0f, 20.0f, 900.0f);
    trace.AppendSpectrum(10.1f, ImageRow{1}, 0.98f, 61.25f, 20.5f, 901.5f);
    EXPECT_EQ(SpectrumStatusLine(trace, 1),
              "Acq. Time: 0.98 seconds    Total Time:  61.25 seconds    Temperature: 20.50 degrees C    HV: "
              "901.50 Volts");
}

TEST(MaxCountRate, LargestOrZero)
{
    EXPECT_EQ(MaxCountRate(std::vector<float>{}), 0.0f);
    EXPECT_EQ(MaxCountRate(std::vector<float>{1.5f, 7.25f, 3.0f}), 7.25f);
}

TEST(DisplayedScale, AutomaticFollowsTheLargestRateWhenThereIsOne)
{
    const SpectrumScale set{.logarithmic = true, .plottingScale = 100.0, .decades = 3};
    struct Case {
        bool automatic;
        double maxCps;
        double expected;
    };
    for (const Case c : {Case{false, 12.5, 100.0}, Case{true, 12.5, 12.5}, Case{true, 0.0, 100.0}}) {
        const SpectrumScale shown = DisplayedScale(set, c.automatic, c.maxCps);
        EXPECT_EQ(shown.plottingScale, c.expected) << c.automatic << " " << c.maxCps;
        EXPECT_TRUE(shown.logarithmic);
        EXPECT_EQ(shown.decades, 3);
    }
}

TEST(SpectrumGeometry, ChannelsAcrossTheWidth)
{
    const SpectrumPlotArea area{10, 20, 522, 420}; // 512 wide
    EXPECT_DOUBLE_EQ(ChannelX(area, 1024, 0), 10.0);
    EXPECT_DOUBLE_EQ(ChannelX(area, 1024, 512), 266.0);
    EXPECT_DOUBLE_EQ(ChannelX(area, 1024, 1024), 522.0);
    struct Case {
        double x;
        int channel;
    };
    const Case cases[] = {{10.0, 0}, {10.49, 0}, {10.5, 1}, {266.0, 512}, {521.9, 1023}, {522.0, 1023},
                          {0.0, 0}, {900.0, 1023}};
    for (const auto& c : cases) EXPECT_EQ(ChannelAtX(area, 1024, c.x), c.channel) << "x " << c.x;
}

TEST(SpectrumGeometry, CountRatesUpTheHeight)
{
    const SpectrumPlotArea area{0, 100, 1024, 400}; // baseline 400, top 100, height 300
    const SpectrumScale linear{.logarithmic = false, .plottingScale = 60.0, .decades = 4};
    const SpectrumScale log{.logarithmic = true, .plottingScale = 1000.0, .decades = 3};
    struct Case {
        const char* name;
        SpectrumScale scale;
        double cps;
        double y;
    };
    const Case cases[] = {
        {"linear zero", linear, 0.0, 400.0},
        {"linear half scale", linear, 30.0, 250.0},
        {"linear full scale", linear, 60.0, 100.0},
        {"linear above full scale is clipped", linear, 600.0, 100.0},
        {"linear negative is clipped", linear, -5.0, 400.0},
        {"log full scale", log, 1000.0, 100.0},
        {"log one decade down", log, 100.0, 200.0},
        {"log bottom of the decades", log, 1.0, 400.0},
        {"log below the decades", log, 0.01, 400.0},
        {"log zero", log, 0.0, 400.0},
        {"log above full scale", log, 5000.0, 100.0},
    };
    for (const auto& c : cases) EXPECT_NEAR(CountRateY(area, c.scale, c.cps), c.y, 1e-9) << c.name;
}

} // namespace
} // namespace ba
