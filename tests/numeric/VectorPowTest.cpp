// Powers over arrays against std::pow: close to a few units in the last place of a
// double (far below what single-precision logs keep), the same special values, and one
// answer per input wherever it sits in an array or when it is raised alone.

#include "numeric/VectorPow.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <random>
#include <stdexcept>
#include <vector>

namespace ba::numeric {
namespace {

template <class T>
bool SameValue(T a, T b)
{
    return (std::isnan(a) && std::isnan(b)) || a == b;
}

// Bases over sixty decades and exponents of either sign, as derived logs raise them.
template <class T>
std::vector<T> RandomBases(std::size_t n, double decades)
{
    std::mt19937_64 rng(7);
    std::uniform_real_distribution<double> exponent10(-decades / 2, decades / 2);
    std::vector<T> bases(n);
    for (T& b : bases) b = static_cast<T>(std::pow(10.0, exponent10(rng)));
    return bases;
}

TEST(VectorPow, DoublesAreWithinAFewUnitsInTheLastPlaceOfStdPow)
{
    const std::vector<double> bases = RandomBases<double>(100'003, 60.0);
    for (const double exponent : {-2.15, -0.5, 0.8, static_cast<double>(0.8f), static_cast<double>(1.1f), 3.0}) {
        std::vector<double> out(bases.size());
        PowArray(bases, exponent, out);
        for (std::size_t i = 0; i < bases.size(); ++i) {
            const double expected = std::pow(bases[i], exponent);
            // 4 units in the last place: what the vector routines promise.
            ASSERT_NEAR(out[i], expected, 4.0 * std::numeric_limits<double>::epsilon() * std::fabs(expected))
                << bases[i] << "^" << exponent;
        }
    }
}

TEST(VectorPow, FloatsAreWithinOneUnitInTheLastPlaceOfStdPow)
{
    const std::vector<float> bases = RandomBases<float>(100'003, 20.0);
    for (const float exponent : {-2.0f, -0.5f, 0.5f, 2.8f}) {
        std::vector<float> out(bases.size());
        PowArray(bases, exponent, out);
        for (std::size_t i = 0; i < bases.size(); ++i) {
            const float expected = std::pow(bases[i], exponent);
            ASSERT_LE(std::fabs(out[i] - expected), std::fabs(expected) * std::numeric_limits<float>::epsilon())
                << bases[i] << "^" << exponent;
        }
    }
}

TEST(VectorPow, SpecialValuesAreThoseOfStdPow)
{
    const double inf = std::numeric_limits<double>::infinity();
    const double nan = std::numeric_limits<double>::quiet_NaN();
    struct Case {
        double base;
        double exponent;
    };
    const Case cases[] = {{0.0, 2.0},  {0.0, -0.5}, {-8.0, 1.0 / 3.0}, {-2.0, 2.0}, {-2.0, 3.0}, {inf, 0.5},
                          {inf, -0.5}, {nan, 1.0},  {2.0, nan},        {1.0, nan},  {5e-324, 0.5}, {2.0, 2000.0},
                          {2.0, -2000.0}, {1.0, 1e300}, {-0.0, -1.0}};
    for (const Case& c : cases) {
        const double expected = std::pow(c.base, c.exponent);
        EXPECT_TRUE(SameValue(PowOne(c.base, c.exponent), expected)) << c.base << "^" << c.exponent;
        const float expectedFloat = std::pow(static_cast<float>(c.base), static_cast<float>(c.exponent));
        EXPECT_TRUE(SameValue(PowOne(static_cast<float>(c.base), static_cast<float>(c.exponent)), expectedFloat))
            << c.base << "^" << c.exponent << " in float";
    }
}

TEST(VectorPow, AValueIsRaisedAloneAsInsideAnyArray)
{
    // Arrays of every length up to two vectors and a bit, so each value sits in every lane
    // and in the padded tail.
    const std::vector<double> bases = RandomBases<double>(19, 10.0);
    const std::vector<float> floatBases = RandomBases<float>(19, 10.0);
    for (std::size_t length = 1; length <= bases.size(); ++length) {
        for (std::size_t offset = 0; offset + length <= bases.size(); ++offset) {
            std::vector<double> out(length);
            PowArray(std::span<const double>(bases).subspan(offset, length), -1.7, out);
            std::vector<float> floatOut(length);
            PowArray(std::span<const float>(floatBases).subspan(offset, length), -1.7f, floatOut);
            for (std::size_t k = 0; k < length; ++k) {
                ASSERT_EQ(std::bit_cast<std::uint64_t>(out[k]), std::bit_cast<std::uint64_t>(PowOne(bases[offset + k], -1.7)));
                ASSERT_EQ(std::bit_cast<std::uint32_t>(floatOut[k]),
                          std::bit_cast<std::uint32_t>(PowOne(floatBases[offset + k], -1.7f)));
            }
        }
    }
}

TEST(VectorPow, OutputOfAnotherLengthIsRefused)
{
    std::vector<double> bases(5, 2.0);
    std::vector<double> out(4);
    EXPECT_THROW(PowArray(bases, 2.0, out), std::invalid_argument);
}

} // namespace
} // namespace ba::numeric
