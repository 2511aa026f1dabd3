#include "view/PlotText.h"

#include <gtest/gtest.h>

namespace ba {
namespace {

TEST(PlotText, LegendNumbersKeepTheirSignificantPart)
{
    const struct {
        float value;
        const char* text;
    } cases[] = {
        {150.0f, "150"},       {0.25f, "0.25"},      {0.0f, "0"},          {-0.0f, "0"},
        {-12.5f, "-12.5"},     {0.1f, "0.1"},        {1e-8f, "0"},         {-1e-8f, "0"},
        {1234567.0f, "1234567"}, {3.1415927f, "3.1415927"}, {100.5f, "100.5"}, {-2000.0f, "-2000"},
    };
    for (const auto& c : cases) EXPECT_EQ(LegendNumberText(c.value), c.text) << c.value;
}

TEST(PlotText, DepthUnitCaptions)
{
    const char* expected[] = {"ft", "m", "s", "min", "h", "d"};
    for (std::int32_t code = 0; code < 6; ++code) EXPECT_EQ(DepthUnitCaption(code), expected[code]);
    EXPECT_EQ(DepthUnitCaption(6), "");
    EXPECT_EQ(DepthUnitCaption(-1), "");
}

TEST(PlotText, DepthStepsAreOneTwoOrFiveTimesAPowerOfTen)
{
    const struct {
        double minimum;
        double step;
    } cases[] = {{0.3, 0.5}, {1.0, 1.0}, {1.01, 2.0}, {7.0, 10.0}, {0.013, 0.02}, {45.0, 50.0}, {51.0, 100.0}};
    for (const auto& c : cases) EXPECT_DOUBLE_EQ(NiceDepthStep(c.minimum), c.step) << c.minimum;
}

TEST(PlotText, DepthLabelsShowTheDecimalsTheStepNeeds)
{
    EXPECT_EQ(DepthLabelText(12.5, 0.5), "12.5");
    EXPECT_EQ(DepthLabelText(12.0, 0.5), "12");
    EXPECT_EQ(DepthLabelText(100.0, 20.0), "100");
    EXPECT_EQ(DepthLabelText(0.30000000000000004, 0.1), "0.3");
    EXPECT_EQ(DepthLabelText(1.05, 0.05), "1.05");
    EXPECT_EQ(DepthLabelText(-0.0, 1.0), "0");
}

} // namespace
} // namespace ba
