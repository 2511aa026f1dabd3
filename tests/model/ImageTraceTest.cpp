#include "model/ImageTraceSamples.h"

#include <gtest/gtest.h>

#include <functional>
#include <stdexcept>

namespace ba {
namespace {

// Three rows at 1, 2 and 3 m; row k holds the single sample k.
template <typename T>
std::unique_ptr<T> ThreeRows()
{
    auto t = std::make_unique<T>("T", 0.0f, 100.0f, "u");
    for (std::uint16_t k = 0; k < 3; ++k) t->AppendRow(1.0f + k, {k});
    return t;
}

std::unique_ptr<CSpectralTrace> ThreeSpectra()
{
    auto t = std::make_unique<CSpectralTrace>("S", 0.0f, 100.0f, "cps");
    for (std::uint16_t k = 0; k < 3; ++k) {
        const float f = k;
        t->AppendSpectrum(1.0f + f, {k}, 10.0f + f, 20.0f + f, 30.0f + f, 40.0f + f);
    }
    return t;
}

std::vector<float> Depths(const CTrace& t) { return {t.StoredDepths().Items().begin(), t.StoredDepths().Items().end()}; }

std::vector<float> Floats(const CFloatArray& a) { return {a.Items().begin(), a.Items().end()}; }

TEST(ImageTraceRemoveSample, RemovesDepthAndRowTogetherAndShrinksToSize)
{
    struct Case {
        const char* name;
        std::function<std::unique_ptr<CImageTrace>()> make;
        std::size_t index;
        std::vector<float> depths;
        std::vector<ImageRow> rows;
    };
    const auto image = [] { return std::unique_ptr<CImageTrace>(ThreeRows<CImageTrace>()); };
    const auto sonic = [] { return std::unique_ptr<CImageTrace>(ThreeRows<CSonicTrace>()); };
    const auto spectral = [] { return std::unique_ptr<CImageTrace>(ThreeSpectra()); };
    const Case cases[] = {
        {"image, first", image, 0, {2.0f, 3.0f}, {{1}, {2}}},
        {"image, past the end", image, 3, {1.0f, 2.0f, 3.0f}, {{0}, {1}, {2}}},
        {"sonic, middle", sonic, 1, {1.0f, 3.0f}, {{0}, {2}}},
        {"sonic, last", sonic, 2, {1.0f, 2.0f}, {{0}, {1}}},
        {"spectral, middle", spectral, 1, {1.0f, 3.0f}, {{0}, {2}}},
    };
    for (const auto& c : cases) {
        auto t = c.make();
        t->RemoveSample(c.index);
        EXPECT_EQ(Depths(*t), c.depths) << c.name;
        EXPECT_EQ(t->Rows(), c.rows) << c.name;
        if (c.index < 3) {
            EXPECT_EQ(t->StoredDepths().Capacity(), c.depths.size()) << c.name;
            EXPECT_EQ(t->Rows().capacity(), c.rows.size()) << c.name;
        }
    }
}

TEST(ImageTraceRemoveSample, SpectralTraceRemovesTheFourValuesOfTheSpectrum)
{
    auto t = ThreeSpectra();
    t->RemoveSample(0);
    EXPECT_EQ(Floats(t->AcquisitionTimes()), (std::vector<float>{11.0f, 12.0f}));
    EXPECT_EQ(Floats(t->TotalTimes()), (std::vector<float>{21.0f, 22.0f}));
    EXPECT_EQ(Floats(t->Temperatures()), (std::vector<float>{31.0f, 32.0f}));
    EXPECT_EQ(Floats(t->HighVoltages()), (std::vector<float>{41.0f, 42.0f}));
    t->RemoveSample(5);
    EXPECT_EQ(t->HighVoltages().Size(), 2u);
}

TEST(ImageTraceRows, InsertRowOpensBothArraysAndRefusesAPositionPastTheEnd)
{
    auto t = ThreeRows<CSonicTrace>();
    t->InsertRow(0, 0.5f, {9});
    t->InsertRow(4, 4.0f, {8, 8});
    t->InsertRow(2, 1.5f, {});
    EXPECT_EQ(Depths(*t), (std::vector<float>{0.5f, 1.0f, 1.5f, 2.0f, 3.0f, 4.0f}));
    EXPECT_EQ(t->Rows(), (std::vector<ImageRow>{{9}, {0}, {}, {1}, {2}, {8, 8}}));
    EXPECT_EQ(t->RowSampleCount(5), 2u);
    EXPECT_THROW(t->InsertRow(7, 9.0f, {}), std::out_of_range);
    EXPECT_EQ(t->RowCount(), 6u);
}

TEST(ImageSampleColour, LowValuesGreenHighValuesRed)
{
    struct Case {
        std::uint16_t sample;
        std::uint32_t colour; // 0x00BBGGRR
    };
    const Case cases[] = {
        {0, 0x0080FF00},    // RGB(0, 255, 128)
        {4095, 0x008000FF}, // RGB(255, 0, 128)
        {2047, 0x0080807F}, // RGB(127, 128, 128)
        {16, 0x0080FE01},   // RGB(1, 254, 128)
    };
    for (const auto& c : cases) EXPECT_EQ(ImageSampleColour(c.sample), c.colour) << c.sample;
}

} // namespace
} // namespace ba
