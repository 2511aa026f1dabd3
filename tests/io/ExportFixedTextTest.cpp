#include "io/FixedText.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <limits>
#include <random>
#include <string>

namespace ba {
namespace {

std::string Printf(float value, int width, int precision)
{
    char text[512];
    std::snprintf(text, sizeof text, "%*.*f", width, precision, static_cast<double>(value));
    return text;
}

std::string Fixed(float value, int width, int precision)
{
    std::string out = "#"; // AppendFixed appends: what is already there stays
    AppendFixed(out, value, width, precision);
    return out.substr(1);
}

// The field formats the exports write, and a few others.
constexpr std::pair<int, int> kFormats[] = {{14, 2}, {14, 3}, {14, 4}, {14, 6}, {8, 3}, {0, 0}, {1, 1}, {20, 9}, {30, 12}, {70, 4}};

TEST(ExportFixedText, HandPickedValuesMatchPrintf)
{
    const float max = std::numeric_limits<float>::max();
    const float values[] = {
        0.0f, -0.0f, 1.0f, -1.0f, 12.0f, 11.6f, -9999.99f, 27.999992f, 52.000008f,
        // exact halves at 0, 1, 2 and 3 decimals: printf rounds ties to even
        0.5f, 1.5f, 2.5f, -2.5f, 0.25f, 0.75f, 0.125f, 0.375f, -0.125f, 0.0625f, 0.1875f, 1023.5f,
        // negative values that round to zero keep their sign
        -0.0001f, -0.004f, -1e-30f,
        // beyond the exact fast path (2^53 / 10^precision) and at the float range's ends
        9.0e11f, 9.1e11f, 1.0e12f, 1.0e15f, 16777216.0f, 3.0e38f, max, -max,
        std::numeric_limits<float>::min(), std::numeric_limits<float>::denorm_min(),
        std::numeric_limits<float>::infinity(), -std::numeric_limits<float>::infinity(),
        std::numeric_limits<float>::quiet_NaN(), -std::numeric_limits<float>::quiet_NaN(),
    };
    for (const float v : values) {
        for (const auto& [width, precision] : kFormats) {
            EXPECT_EQ(Fixed(v, width, precision), Printf(v, width, precision))
                << "value " << v << " format %" << width << "." << precision << "f";
        }
    }
}

TEST(ExportFixedText, RandomFloatsOfEveryMagnitudeMatchPrintf)
{
    std::mt19937 random(20240517);
    std::uniform_int_distribution<std::uint32_t> bits;
    std::uniform_real_distribution<float> depths(-100.0f, 20000.0f);
    int mismatches = 0;
    for (int i = 0; i < 200000 && mismatches < 10; ++i) {
        // Half of them any bit pattern (every exponent, NaN and infinity included), half
        // of them depths and values of the size logs have.
        const float v = i % 2 == 0 ? std::bit_cast<float>(bits(random)) : depths(random);
        const auto& [width, precision] = kFormats[static_cast<std::size_t>(i) % std::size(kFormats)];
        const std::string expected = Printf(v, width, precision);
        const std::string got = Fixed(v, width, precision);
        if (got != expected) {
            ++mismatches;
            ADD_FAILURE() << "bits 0x" << std::hex << std::bit_cast<std::uint32_t>(v) << std::dec << " format %"
                          << width << "." << precision << "f: got \"" << got << "\", printf gives \"" << expected
                          << "\"";
        }
    }
}

TEST(ExportFixedText, ExactTiesAtEachPrecisionRoundToEvenLikePrintf)
{
    // A float lies exactly halfway between two p-decimal numbers when it is an odd
    // multiple of 2^-(p+1): 0.5 at 0 decimals, 0.25 and 0.75 at 1, 0.125 ... at 2.
    for (int precision = 0; precision <= 6; ++precision) {
        for (int m = -199; m <= 199; m += 2) {
            const float tie = std::ldexp(static_cast<float>(m), -(precision + 1));
            EXPECT_EQ(Fixed(tie, 14, precision), Printf(tie, 14, precision)) << tie << " at " << precision;
        }
    }
    // Spot checks that the ties really are ties, rounded to the even neighbour.
    EXPECT_EQ(Fixed(0.125f, 0, 2), "0.12");
    EXPECT_EQ(Fixed(0.375f, 0, 2), "0.38");
    EXPECT_EQ(Fixed(-2.5f, 0, 0), "-2");
}

TEST(ExportFixedText, PadsOnTheLeftAndNeverCuts)
{
    EXPECT_EQ(Fixed(12.0f, 14, 3), "        12.000");
    EXPECT_EQ(Fixed(-9999.99f, 14, 2), "      -9999.99");
    EXPECT_EQ(Fixed(123456.0f, 4, 2), "123456.00");
    EXPECT_THROW(Fixed(1.0f, 14, 18), std::invalid_argument);
}

} // namespace
} // namespace ba
