// Coefficients fitted to ground truth must be the ones that produced it. The ground truth is
// made here by ReferenceValue, this file's own double-precision writing of the equations
// (independent of the code under test), rounded to float as a log would hold it.
//
// Tolerances: the solver stops once every residual is below 1e-5. For a residual of the form
// "equation value minus ground truth" that leaves each coefficient within |J^-1|·1e-5 of the
// truth, J the Jacobian of the values with respect to the unknowns. That bound was computed in
// Python 3 (double precision, the formulas written in EquationFormulaTests.cpp, J by forward
// differences with step 1e-6·max(|c|, 1), worst over the sign patterns of the residuals
// ±1e-5 solved by Gauss-Jordan elimination); each tolerance below is twice that bound, and at
// least a few float steps of the coefficient (the one exception is noted at its case):
//   eq 0 (m, b):           1.05e-6, 1.94e-5      eq 1 (GRsh, GRss):  2.24e-3, 2.04e-3
//   eq 3 (a, m):           1.08e-3, 5.71e-4      eq 10 (Vf, Vma):    5.19e-4, 2.40e-4
//   eq 11 (RHOf, RHOma):   2.25e-4, 5.84e-5      eq 14 (m):          4.25e-7
//   eq 5 (Rsh):            7.20e-3               eq 12 (RHOf, RHOma, RHOsh): 1.37e-3, 6.09e-4, 4.89e-4

#include "evaluation/CoefficientFit.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <string>
#include <vector>

namespace ba {
namespace {

// The coefficients each equation uses, in list order.
constexpr std::size_t kCoefficientsUsed[kEquationCount] = {2, 2, 2, 2, 3, 3, 4, 2, 3, 2, 2, 2, 3, 1, 1, 2, 2};

// The equations that the fits below use, written afresh in double precision.
double ReferenceValue(int equation, const std::array<float, kEquationLogSlots>& logs, const EquationCoefficients& c)
{
    const double l1 = logs[0], l2 = logs[1], l3 = logs[2];
    const double c1 = c[0], c2 = c[1], c3 = c[2];
    switch (equation) {
    case 0: return c1 * l1 + c2;
    case 1: return (l1 - c2) / (c1 - c2);
    case 3: return std::pow(l1 / (c1 * l2), 1.0 / c2);
    case 5: {
        const double n5 = c1 * l3 * l3 * l2 * l1 - c1 * l3 * l2 * l1 - c1 * c3 * l3 * l2 + c1 * c3 * l2;
        return std::pow(n5 / (l1 * c3), -1.0 / c2);
    }
    case 10: { // the smaller root in [0, 1] of c2·φ² + (c1 − 2·c2)·φ + (c2 − l1)
        const double d = std::sqrt(4.0 * l1 * c2 + c1 * c1 - 4.0 * c1 * c2);
        const double r1 = (c1 - 2.0 * c2 + d) / (-2.0 * c2);
        const double r2 = (c1 - 2.0 * c2 - d) / (-2.0 * c2);
        const bool in1 = r1 >= 0.0 && r1 <= 1.0;
        const bool in2 = r2 >= 0.0 && r2 <= 1.0;
        if (in1 && in2) return std::min(r1, r2);
        return in1 ? r1 : in2 ? r2 : 0.0;
    }
    case 11: return (c2 - l1) / (c2 - c1);
    case 12: return (c2 - l1) / (c2 - c1) - ((c2 - c3) / (c2 - c1)) * l2;
    case 14: return 182800.0 * std::pow(std::pow(l1, 2.0 - c1) / ((1.0 - l1) * (1.0 - l1)), 1.100000023841858);
    default: ADD_FAILURE() << "no reference for equation " << equation; return 0.0;
    }
}

struct FitCase {
    std::string name;
    int equation;
    EquationCoefficients truth;
    CoefficientMask unknown;
    std::vector<std::array<float, kEquationLogSlots>> logs; // one per unknown
    std::array<double, kEquationCoefficientSlots> tolerance; // absolute, for the unknowns
};

const std::vector<FitCase>& FitCases()
{
    static const std::vector<FitCase> cases = {
        {"linear m and b", 0, {2.5f, -12.0f}, {true, true}, {{10.0f}, {30.0f}}, {2.1e-6, 3.9e-5}},
        {"gamma GRsh and GRss", 1, {150.0f, 20.0f}, {true, true}, {{40.0f}, {120.0f}}, {4.5e-3, 4.1e-3}},
        {"Archie a and m", 3, {0.81f, -2.0f}, {true, true}, {{20.0f, 0.05f}, {5.0f, 0.1f}}, {2.2e-3, 1.2e-3}},
        // Velocities in km/s: the solver's step is limited to about half the start vector's
        // length, and 2000 such steps from the start grid do not reach m/s magnitudes.
        {"Raymer-Hunt Vf and Vma", 10, {1.5f, 5.5f}, {true, true}, {{4.0f}, {3.0f}}, {1.1e-3, 5.2e-4}},
        {"density RHOf and RHOma", 11, {1.0f, 2.65f}, {true, true}, {{2.4f}, {2.2f}}, {4.5e-4, 1.2e-4}},
        // A residual relative to the ground truth instead would allow 1e-5/|d ln(value)/dm| = 1e-5/2.53.
        {"Jorgensen m", 14, {-2.0f}, {true}, {{0.1f}}, {1e-5}},
        {"Archie with clay Rsh", 5, {1.0f, -2.0f, 4.0f}, {false, false, true}, {{10.0f, 0.08f, 0.05f}},
         {0.0, 0.0, 1.5e-2}},
        {"density with clay, three densities", 12, {1.0f, 2.65f, 2.55f}, {true, true, true},
         {{2.4f, 0.3f}, {2.2f, 0.1f}, {2.5f, 0.45f}}, {2.8e-3, 1.2e-3, 1.0e-3}},
    };
    return cases;
}

TEST(CoefficientFit, RecoversTheCoefficientsBehindTheGroundTruth)
{
    for (const auto& c : FitCases()) {
        SCOPED_TRACE(c.name);
        std::vector<GroundTruthSample> points;
        for (const auto& logs : c.logs)
            points.push_back({logs, static_cast<float>(ReferenceValue(c.equation, logs, c.truth))});
        // Unknowns start from a value that is wrong on purpose; the known ones are the truth.
        EquationCoefficients known = c.truth;
        for (std::size_t slot = 0; slot < kEquationCoefficientSlots; ++slot)
            if (c.unknown[slot]) known[slot] = 999.0f;

        CollectingMessageSink sink;
        const auto fitted = FitCoefficients(c.equation, known, c.unknown, points, sink);
        if (!fitted) {
            ADD_FAILURE() << "no coefficients found";
            continue;
        }
        for (std::size_t slot = 0; slot < kEquationCoefficientSlots; ++slot) {
            if (c.unknown[slot])
                EXPECT_NEAR((*fitted)[slot], c.truth[slot], c.tolerance[slot]) << "coefficient " << slot + 1;
            else
                EXPECT_EQ((*fitted)[slot], known[slot]) << "coefficient " << slot + 1 << " was given";
        }
    }
}

// Two ground-truth points at the same log value but with different targets: no line passes
// through both, so no start value can converge.
TEST(CoefficientFit, ImpossibleSystemFindsNothing)
{
    const GroundTruthSample points[] = {{{10.0f}, 13.0f}, {{10.0f}, 20.0f}};
    CollectingMessageSink sink;
    EXPECT_FALSE(FitCoefficients(0, {}, {true, true}, points, sink).has_value());
}

TEST(CoefficientFit, StartValueStepsAreTheThreeKnownSizes)
{
    for (int e = 0; e < kEquationCount; ++e)
        for (std::size_t slot = 0; slot < kCoefficientsUsed[e]; ++slot) {
            const float s = StartValueStep(e, slot);
            EXPECT_TRUE(s == -1.0f || s == 0.5f || s == 0.1f) << "equation " << e << " slot " << slot << ": " << s;
        }
}

// The grid holds k·s (k = 1, 2, 3) for each unknown, every combination once, the first unknown
// varying slowest.
void ExpectGrid(int equation, const CoefficientMask& unknown)
{
    std::vector<std::size_t> slots;
    for (std::size_t slot = 0; slot < kEquationCoefficientSlots; ++slot)
        if (unknown[slot]) slots.push_back(slot);
    std::size_t combinations = 1;
    for (std::size_t i = 0; i < slots.size(); ++i) combinations *= 3;

    const auto grid = StartValueGrid(equation, unknown);
    ASSERT_EQ(grid.size(), combinations) << "equation " << equation;
    for (std::size_t j = 0; j < combinations; ++j) {
        ASSERT_EQ(grid[j].size(), slots.size()) << "equation " << equation << " entry " << j;
        std::size_t rest = j;
        for (std::size_t u = slots.size(); u-- > 0;) {
            const float k = static_cast<float>(rest % 3 + 1);
            rest /= 3;
            EXPECT_FLOAT_EQ(grid[j][u], k * StartValueStep(equation, slots[u]))
                << "equation " << equation << " entry " << j << " unknown " << u;
        }
    }
}

TEST(CoefficientFit, StartValueGridTriesEveryCombinationFirstUnknownSlowest)
{
    for (int e = 0; e < kEquationCount; ++e) {
        CoefficientMask all{};
        for (std::size_t slot = 0; slot < kCoefficientsUsed[e]; ++slot) all[slot] = true;
        ExpectGrid(e, all);
        CoefficientMask last{};
        last[kCoefficientsUsed[e] - 1] = true;
        ExpectGrid(e, last);
        if (kCoefficientsUsed[e] >= 3) ExpectGrid(e, {true, false, true});
    }
}

} // namespace
} // namespace ba
