// Accuracy of the seventeen equations of the common-logs dialog against values computed
// independently of this code base, in Python 3 double precision (math module only):
//
//   import math, struct
//   f = lambda x: struct.unpack('f', struct.pack('f', x))[0]   # every input rounded to float first
//   c1..c5, L1..L3 = f(...) of the table's literals, then
//   0: c1*L1 + c2                1, 2, 7: (L1 - c2)/(c1 - c2)        3: (L1/(c1*L2))**(1/c2)
//   4: (-L1/(c3*c1*L1*L2**0.8 - c1*L2))**(1/c2)
//   5: N5 = c1*L3*L3*L2*L1 - c1*L3*L2*L1 - c1*c3*L3*L2 + c1*c3*L2;  (N5/(L1*c3))**(-1/c2)
//   6: N6 = c1*L3*L3*L2*L1 - c1*L3*L2*L1 - c1*c3*c4*L1*L2**0.800000011920929 - c1*c4*L3*L2 + c1*c4*L2
//      (N6/(L1*c4))**(-1/c2)
//   8: ((L1 - c2)/(c1 - c2))/c3   9: c1*(L1 - c2)/L1
//   10: D = math.sqrt(4*L1*c2 + c1*c1 - 4*c1*c2) (no root when negative); r1 = (c1 - 2*c2 + D)/(-2*c2),
//       r2 = (c1 - 2*c2 - D)/(-2*c2); the smaller of those in [0, 1], else 0
//   11: (c2 - L1)/(c2 - c1)   12: (c2 - L1)/(c2 - c1) - ((c2 - c3)/(c2 - c1))*L2   13: L1 - L2*c1
//   14: 182800*(L1**(2 - c1)/(1 - L1)**2)**1.100000023841858   15, 16: (c2 - L2)/(L1 - c1)
// printed with '%.9g'.
//
// Tolerances: the program computes in single precision. Each tolerance is at least three times
// the largest relative deviation seen when every intermediate operation of the formula (in the
// order written above) is rounded to float with a random relative error of up to 2^-24 (3000
// trials per row), and never below 2e-6. Rows with cancellation (equation 5: the four terms of
// N5 nearly cancel) get the looser values that this gives.

#include "evaluation/EquationFormulas.h"
#include "model/Trace.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <random>
#include <stdexcept>
#include <vector>

namespace ba {
namespace {

// How many input logs each equation reads, in list order.
constexpr std::size_t kLogsUsed[kEquationCount] = {1, 1, 1, 2, 2, 3, 3, 1, 1, 1, 1, 1, 2, 2, 1, 2, 2};

struct FormulaCase {
    int equation;
    float l1, l2, l3;
    EquationCoefficients c;
    double expected;
    double relativeTolerance;
};

// At least two realistic input sets per equation. Archie-type forms are shown with both signs of
// m: this program's forms give a porosity when m is entered negative.
const FormulaCase kFormulaCases[] = {
    {0, 80.0f, 0.0f, 0.0f, {0.5f, 10.0f}, 50.0, 2e-6},
    {0, 42.3f, 0.0f, 0.0f, {-1.25f, 3.7f}, -49.174999, 2e-6},
    {1, 65.0f, 0.0f, 0.0f, {150.0f, 20.0f}, 0.346153846, 2e-6},
    {1, 120.5f, 0.0f, 0.0f, {135.0f, 18.0f}, 0.876068376, 2e-6},
    {2, -35.0f, 0.0f, 0.0f, {-10.0f, -80.0f}, 0.642857143, 2e-6},
    {2, -62.5f, 0.0f, 0.0f, {-5.0f, -95.0f}, 0.361111111, 2e-6},
    {3, 20.0f, 0.05f, 0.0f, {1.0f, 2.0f}, 19.9999999, 2e-6},
    {3, 20.0f, 0.05f, 0.0f, {1.0f, -2.0f}, 0.0500000004, 2e-6},
    {3, 8.5f, 0.12f, 0.0f, {0.62f, -2.15f}, 0.110372879, 2e-6},
    {4, 20.0f, 0.05f, 0.0f, {1.0f, -2.0f, 0.02f}, 0.0260659904, 2e-6},
    {4, 5.0f, 0.2f, 0.0f, {0.81f, -1.8f, 0.05f}, 0.117614729, 2e-6},
    {4, 20.0f, 0.05f, 0.0f, {1.0f, 2.0f, 0.01f}, 25.0807178, 2e-6},
    {5, 20.0f, 0.05f, 0.2f, {1.0f, -2.0f, 5.0f}, 0.0199999995, 3e-6},
    {5, 10.0f, 0.08f, 0.35f, {0.81f, -2.0f, 4.0f}, 0.0229455891, 5e-6},
    {6, 20.0f, 0.05f, 0.1f, {1.0f, -2.0f, 0.01f, 8.0f}, 0.027878629, 2e-6},
    {6, 10.0f, 0.08f, 0.25f, {0.81f, -1.9f, 0.005f, 4.0f}, 0.0300932688, 2e-6},
    {7, 80.0f, 0.0f, 0.0f, {189.0f, 55.5f}, 0.183520599, 2e-6},
    {7, 330.0f, 0.0f, 0.0f, {620.0f, 182.0f}, 0.337899543, 2e-6},
    {8, 90.0f, 0.0f, 0.0f, {189.0f, 47.6f, 1.2f}, 0.249882127, 2e-6},
    {8, 120.0f, 0.0f, 0.0f, {189.0f, 55.5f, 1.35f}, 0.35788597, 2e-6},
    {9, 80.0f, 0.0f, 0.0f, {0.625f, 55.5f}, 0.19140625, 2e-6},
    {9, 95.0f, 0.0f, 0.0f, {0.67f, 47.6f}, 0.334294756, 2e-6},
    {10, 4000.0f, 0.0f, 0.0f, {1500.0f, 5500.0f}, 0.175784275, 2e-6},
    {10, 3200.0f, 0.0f, 0.0f, {1600.0f, 5950.0f}, 0.329836052, 2e-6},
    {11, 2.4f, 0.0f, 0.0f, {1.0f, 2.65f}, 0.151515143, 2e-6},
    {11, 2.55f, 0.0f, 0.0f, {1.1f, 2.71f}, 0.0993789344, 2e-6},
    {12, 2.4f, 0.3f, 0.0f, {1.0f, 2.65f, 2.55f}, 0.133333299, 2e-6},
    {12, 2.31f, 0.12f, 0.0f, {1.05f, 2.71f, 2.6f}, 0.233012084, 2e-6},
    {13, 0.3f, 0.25f, 0.0f, {0.35f}, 0.212500013, 2e-6},
    {13, 0.21f, 0.4f, 0.0f, {0.28f}, 0.0979999913, 2e-6},
    {14, 0.2f, 0.0f, 0.0f, {-2.0f}, 251.021067, 2e-6},
    {14, 0.12f, 0.0f, 0.0f, {-1.8f}, 34.2840283, 2e-6},
    {15, 2.4f, 80.0f, 0.0f, {1.0f, 189.0f}, 77.8571376, 2e-6},
    {15, 2.65f, 55.5f, 0.0f, {1.1f, 189.0f}, 86.1290283, 2e-6},
    {16, 2.4f, 0.2f, 0.0f, {1.0f, 1.0f}, 0.57142853, 2e-6},
    {16, 2.71f, 0.0f, 0.0f, {1.0f, 1.0f}, 0.584795309, 2e-6},
};

// The same float, NaN payloads aside.
bool SameFloat(float a, float b)
{
    if (std::isnan(a) && std::isnan(b)) return true;
    return std::bit_cast<std::uint32_t>(a) == std::bit_cast<std::uint32_t>(b);
}

void ExpectClose(const FormulaCase& c, float actual)
{
    EXPECT_NEAR(actual, c.expected, std::fabs(c.expected) * c.relativeTolerance)
        << "equation " << c.equation << " L1=" << c.l1 << " L2=" << c.l2 << " L3=" << c.l3;
}

TEST(EquationFormulas, MatchIndependentlyComputedValues)
{
    bool seen[kEquationCount] = {};
    for (const auto& c : kFormulaCases) {
        ExpectClose(c, EvaluateEquation(c.equation, c.l1, c.l2, c.l3, c.c));
        seen[c.equation] = true;
    }
    for (int e = 0; e < kEquationCount; ++e) EXPECT_TRUE(seen[e]) << "no case for equation " << e;
}

// Raymer-Hunt root choice: r1 is the smaller root when Vma > 0, r2 when it is negative; a root
// of exactly 1 counts as inside [0, 1]. Roots (Python, as above):
//   Vp=4000 Vf=5000 Vma=5500: r1=0.387995381 r2=0.70291371
//   Vp=-9.5 Vf=-15 Vma=-10:   r1=0.361803399 r2=0.138196601
//   Vp=4000 Vf=1500 Vma=5500: r1=0.175784275 r2=1.55148845   Vp=-1500 Vf=-1500 Vma=5500: r1=1 r2=1.27272727
//   Vp=6000 Vf=1500 Vma=5500: r1=-0.0511187181 r2=1.77839145   Vp=3000 Vf=5000 Vma=5500: no real root
TEST(EquationFormulas, RaymerHuntChoosesTheRootInTheUnitInterval)
{
    const FormulaCase cases[] = {
        {10, 4000.0f, 0.0f, 0.0f, {5000.0f, 5500.0f}, 0.387995381, 2e-6},  // both inside, r1 smaller
        {10, -9.5f, 0.0f, 0.0f, {-15.0f, -10.0f}, 0.138196601, 2e-6},      // both inside, r2 smaller
        {10, 4000.0f, 0.0f, 0.0f, {1500.0f, 5500.0f}, 0.175784275, 2e-6},  // only r1 inside
        {10, -1500.0f, 0.0f, 0.0f, {-1500.0f, 5500.0f}, 1.0, 0.0},         // r1 exactly 1, r2 above 1
    };
    for (const auto& c : cases) ExpectClose(c, EvaluateEquation(c.equation, c.l1, c.l2, c.l3, c.c));

    // No root in [0, 1]: one negative and one above 1, or a negative discriminant.
    EXPECT_EQ(EvaluateEquation(10, 6000.0f, 0.0f, 0.0f, {1500.0f, 5500.0f}), 0.0f);
    EXPECT_EQ(EvaluateEquation(10, 3000.0f, 0.0f, 0.0f, {5000.0f, 5500.0f}), 0.0f);
}

// The 0.8 of equation 4 is the double 0.8, that of equation 6 the float 0.8 widened
// (0.800000011920929), and Jorgensen's 1.1 is the float 1.1 widened (1.100000023841858). The
// relative difference that the other exponent makes is 1.19e-8·|ln base| (2.38e-8 for 1.1), so
// these cases use bases far from 1 (L2 = 2e-38, ln = -86.8; Jorgensen base 1e27):
//   eq 4: (-1/(-1*1*1*f(2e-38)**0.8 - 1*f(2e-38)))**1 = 1.44269986e+30, with 0.8f: 1.44270135e+30
//   eq 6: (N6/(1*1))**(-1/1), N6 = -1*-1*1*1*f(2e-38)**0.800000011920929 + f(2e-38)
//         = 1.44270135e+30, with 0.8: 1.44269986e+30
//   eq 14: 182800*(f(0.001)**(2 - 11)/(1 - f(0.001))**2)**1.100000023841858 = 9.18189996e+34,
//          with 1.1: 9.18188635e+34
// The other exponent is off by 1.03e-6 (1.48e-6 for 14); single-precision rounding of these
// steps stays below 3.5e-7 (the estimate above), so a tolerance of 5e-7 (6e-7) separates them.
TEST(EquationFormulas, EachEquationUsesItsOwnExponent)
{
    const FormulaCase cases[] = {
        {4, 1.0f, 2e-38f, 0.0f, {1.0f, 1.0f, -1.0f}, 1.44269986e+30, 5e-7},
        {6, 1.0f, 2e-38f, 0.0f, {1.0f, 1.0f, -1.0f, 1.0f}, 1.44270135e+30, 5e-7},
        {14, 0.001f, 0.0f, 0.0f, {11.0f}, 9.18189996e+34, 6e-7},
    };
    for (const auto& c : cases) ExpectClose(c, EvaluateEquation(c.equation, c.l1, c.l2, c.l3, c.c));
}

// With Cs = 0 equation 4 is Archie's law (equation 3); with Vsh = 0 equations 5 and 6 are too
// (Cs = 0 as well for 6). The forms round differently, so they agree to a few float steps.
TEST(EquationFormulas, ArchieVariantsReduceToArchie)
{
    std::mt19937 random(20261122u);
    std::uniform_real_distribution<float> resistivity(0.5f, 200.0f);
    std::uniform_real_distribution<float> waterResistivity(0.01f, 0.5f);
    std::uniform_real_distribution<float> tortuosity(0.6f, 1.2f);
    std::uniform_real_distribution<float> cementation(1.5f, 2.5f);
    std::uniform_real_distribution<float> shaleResistivity(1.0f, 10.0f);
    for (int i = 0; i < 1000; ++i) {
        const float r = resistivity(random);
        const float rw = waterResistivity(random);
        const float a = tortuosity(random);
        const float m = (i % 2 == 0 ? -1.0f : 1.0f) * cementation(random);
        const float rsh = shaleResistivity(random);
        const float archie = EvaluateEquation(3, r, rw, 0.0f, {a, m});
        const float tolerance = 1e-6f * std::fabs(archie);
        EXPECT_NEAR(EvaluateEquation(4, r, rw, 0.0f, {a, m, 0.0f}), archie, tolerance) << r << " " << rw;
        EXPECT_NEAR(EvaluateEquation(5, r, rw, 0.0f, {a, m, rsh}), archie, tolerance) << r << " " << rw;
        EXPECT_NEAR(EvaluateEquation(6, r, rw, 0.0f, {a, m, 0.0f, rsh}), archie, tolerance) << r << " " << rw;
    }
}

// A null value in a log the equation reads gives the null value; in a log it does not read it
// changes nothing.
TEST(EquationFormulas, NullInputsGiveNullOnlyInUsedLogs)
{
    for (int e = 0; e < kEquationCount; ++e) {
        const FormulaCase* base = nullptr;
        for (const auto& c : kFormulaCases)
            if (c.equation == e) {
                base = &c;
                break;
            }
        ASSERT_NE(base, nullptr);
        const float reference = EvaluateEquation(e, base->l1, base->l2, base->l3, base->c);
        ASSERT_NE(reference, kNullValue);
        for (std::size_t slot = 0; slot < kEquationLogSlots; ++slot) {
            float logs[3] = {base->l1, base->l2, base->l3};
            logs[slot] = kNullValue;
            const float result = EvaluateEquation(e, logs[0], logs[1], logs[2], base->c);
            if (slot < kLogsUsed[e]) {
                EXPECT_EQ(result, kNullValue) << "equation " << e << " log " << slot + 1;
            } else {
                EXPECT_TRUE(SameFloat(result, reference)) << "equation " << e << " log " << slot + 1 << ": " << result;
            }
        }
    }
}

// Equal end points divide by zero; the quotient is kept as computed, not made null.
TEST(EquationFormulas, EqualEndPointsGiveTheQuotientAsComputed)
{
    struct Case {
        int equation;
        float l1;
        EquationCoefficients c;
        int expectedSign; // 0: NaN
    };
    const Case cases[] = {
        {1, 65.0f, {100.0f, 100.0f}, -1},  {1, 130.0f, {100.0f, 100.0f}, +1}, {1, 100.0f, {100.0f, 100.0f}, 0},
        {2, -35.0f, {-50.0f, -50.0f}, +1}, {7, 80.0f, {189.0f, 189.0f}, -1},   {11, 2.4f, {2.65f, 2.65f}, +1},
    };
    for (const auto& c : cases) {
        const float result = EvaluateEquation(c.equation, c.l1, 0.0f, 0.0f, c.c);
        EXPECT_NE(result, kNullValue);
        if (c.expectedSign == 0) {
            EXPECT_TRUE(std::isnan(result)) << "equation " << c.equation << ": " << result;
        } else {
            EXPECT_TRUE(std::isinf(result)) << "equation " << c.equation << ": " << result;
            EXPECT_EQ(std::signbit(result), c.expectedSign < 0) << "equation " << c.equation;
        }
    }
}

TEST(EquationFormulas, UnknownEquationIsRejected)
{
    EXPECT_THROW(EvaluateEquation(-1, 1.0f, 1.0f, 1.0f, {}), std::out_of_range);
    EXPECT_THROW(EvaluateEquation(kEquationCount, 1.0f, 1.0f, 1.0f, {}), std::out_of_range);
}

// Random samples around a realistic input set, with about one null in a hundred.
std::vector<float> RandomLog(std::mt19937& random, float centre, std::size_t size)
{
    std::uniform_real_distribution<float> factor(0.7f, 1.3f);
    std::uniform_int_distribution<int> nullChance(0, 99);
    std::vector<float> log(size);
    for (auto& v : log) v = nullChance(random) == 0 ? kNullValue : centre * factor(random);
    return log;
}

// The span form must give exactly what the per-sample form gives, whichever part of the log a
// worker computes. The length is odd so that the split leaves a remainder, and large enough that
// the work is split over threads (100,000 samples are not); logs 2 and 3, where used, are
// shorter than log 1, end inside different workers' parts and count as null past their ends.
TEST(EquationFormulas, SpanFormEqualsPerSampleFormBitForBit)
{
    constexpr std::size_t kSamples = 300'007;
    constexpr std::size_t kLog2Samples = 180'001;
    constexpr std::size_t kLog3Samples = 233'333;
    std::mt19937 random(5u);
    for (int e = 0; e < kEquationCount; ++e) {
        const FormulaCase* base = nullptr;
        for (const auto& c : kFormulaCases)
            if (c.equation == e) {
                base = &c;
                break;
            }
        ASSERT_NE(base, nullptr);
        const std::vector<float> l1 = RandomLog(random, base->l1, kSamples);
        const std::vector<float> l2 = kLogsUsed[e] >= 2 ? RandomLog(random, base->l2, kLog2Samples) : std::vector<float>{};
        const std::vector<float> l3 = kLogsUsed[e] >= 3 ? RandomLog(random, base->l3, kLog3Samples) : std::vector<float>{};
        std::vector<float> out(kSamples, 12345.0f);
        EvaluateEquation(e, l1, l2, l3, base->c, out);

        std::size_t mismatches = 0;
        std::size_t firstMismatch = 0;
        for (std::size_t i = 0; i < kSamples; ++i) {
            const float v2 = i < l2.size() ? l2[i] : kNullValue;
            const float v3 = i < l3.size() ? l3[i] : kNullValue;
            if (!SameFloat(out[i], EvaluateEquation(e, l1[i], v2, v3, base->c)) && mismatches++ == 0) firstMismatch = i;
        }
        EXPECT_EQ(mismatches, 0u) << "equation " << e << ", first at sample " << firstMismatch;
        if (kLogsUsed[e] >= 2) {
            EXPECT_EQ(out[kSamples - 1], kNullValue) << "equation " << e;
        }
    }
}

} // namespace
} // namespace ba
