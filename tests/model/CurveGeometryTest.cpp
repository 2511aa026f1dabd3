#include "model/CurveGeometry.h"

#include <gtest/gtest.h>

namespace ba {
namespace {

TEST(DepthWindow, ScreenAndPrinterFormulasDiffer)
{
    // Screen: the window extent is negative (y up), 1000 units at 10 m/cm -> 100 m down.
    EXPECT_FLOAT_EQ(BottomDepth(50.0f, -1000, 10.0f, false), 150.0f);
    // Printer: a positive extent and ten times the factor.
    EXPECT_FLOAT_EQ(BottomDepth(50.0f, 1000, 10.0f, true), 1050.0f);
    EXPECT_FLOAT_EQ(BottomDepth(0.0f, -500, 2.5f, false), 12.5f);
}

TEST(CurvePieces, NullsBreakTheCurveAndTheWindowIsStrict)
{
    CLineTrace t;
    const float values[] = {1, 2, kNullValue, 4, 5, kNullValue, kNullValue, 8, 9};
    for (int i = 0; i < 9; ++i) t.AppendSample(static_cast<float>(i), values[i]);

    const auto all = CurvePieces(t, -1.0f, 9.0f);
    ASSERT_EQ(all.size(), 3u);
    EXPECT_EQ(all[0], (std::vector<CurvePoint>{{1, 0}, {2, 1}}));
    EXPECT_EQ(all[1], (std::vector<CurvePoint>{{4, 3}, {5, 4}}));
    EXPECT_EQ(all[2], (std::vector<CurvePoint>{{8, 7}, {9, 8}}));

    // Samples at exactly the top or bottom depth are left out.
    const auto window = CurvePieces(t, 0.0f, 8.0f);
    ASSERT_EQ(window.size(), 3u);
    EXPECT_EQ(window[0], (std::vector<CurvePoint>{{2, 1}}));
    EXPECT_EQ(window[2], (std::vector<CurvePoint>{{8, 7}}));

    // A sample outside the window does not break the piece; only a null does.
    CLineTrace dense;
    dense.AppendSample(1.0f, 1.0f);
    dense.AppendSample(2.0f, 2.0f);
    EXPECT_EQ(CurvePieces(dense, 1.5f, 3.0f).size(), 1u);
    EXPECT_TRUE(CurvePieces(CLineTrace{}, 0.0f, 10.0f).empty());
}

TEST(CurvePieces, UseDisplayDepths)
{
    CLineTrace t;
    t.SetDepthUnit(kDepthFeet);
    t.AppendSample(10.0f, 1.0f); // 32.8 ft
    const auto pieces = CurvePieces(t, 30.0f, 40.0f);
    ASSERT_EQ(pieces.size(), 1u);
    EXPECT_FLOAT_EQ(pieces[0][0].depth, 32.8084f);
}

TEST(ValueToX, MapsTheScaleAcrossTheTrack)
{
    EXPECT_DOUBLE_EQ(ValueToX(0.0f, 0.0f, 150.0f, 0, 250), 0.0);
    EXPECT_DOUBLE_EQ(ValueToX(75.0f, 0.0f, 150.0f, 0, 250), 125.0);
    EXPECT_DOUBLE_EQ(ValueToX(150.0f, 0.0f, 150.0f, 300, 800), 800.0);
    EXPECT_DOUBLE_EQ(ValueToX(30.0f, 60.0f, 0.0f, 300, 550), 425.0); // reversed scale
    EXPECT_DOUBLE_EQ(ValueToX(300.0f, 0.0f, 150.0f, 0, 250), 500.0); // outside: not clipped here
    EXPECT_DOUBLE_EQ(ValueToX(5.0f, 2.0f, 2.0f, 10, 20), 10.0);
}

} // namespace
} // namespace ba
