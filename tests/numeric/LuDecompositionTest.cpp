#include "numeric/LuDecomposition.h"

#include "numeric/NumericTestSupport.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

namespace ba::numeric {
namespace {

using testing::MakeMatrix;
using testing::MakeVector;
using testing::Rows;

TEST(LuSolve, KnownFourByFourSystems)
{
    struct Case {
        const char* name;
        Rows a;
        std::vector<double> b;
        std::vector<double> x;  // exact solution
        double determinant;     // exact, from rational arithmetic
    };
    const Case cases[] = {
        {"no row swap needed", {{2, 1, 1, 0}, {4, 3, 3, 1}, {8, 7, 9, 5}, {6, 7, 9, 8}}, {7, 23, 69, 79}, {1, 2, 3, 4}, 8},
        {"zero in the first pivot position",
         {{0, 2, 1, 3}, {1, 1, 1, 1}, {3, 0, 2, 1}, {2, 1, 0, 4}},
         {1.5, 2.5, 7.5, 3},
         {1, -1, 2, 0.5},
         -11},
        // Leading zeros of b are skipped by the forward pass; the answer is column 4 of the
        // inverse, from rational arithmetic.
        {"unit right-hand side",
         {{0, 2, 1, 3}, {1, 1, 1, 1}, {3, 0, 2, 1}, {2, 1, 0, 4}},
         {0, 0, 0, 1},
         {0.272727272727, 0.090909090909, -0.454545454545, 0.090909090909},
         -11},
    };
    for (const auto& c : cases) {
        CollectingMessageSink sink;
        const NumericReporter reporter(sink, NumericVariant::EquationFitter);
        auto a = MakeMatrix(c.a, reporter);
        auto b = MakeVector(c.b, reporter);
        OwnedIntVector indx(1, 4, reporter);
        float d = 0.0f;
        ludcmp(a->get(), 4, indx.get(), d, reporter);
        double determinant = d;
        for (int i = 1; i <= 4; ++i) determinant *= (*a)[i][i];
        EXPECT_NEAR(determinant, c.determinant, 1e-5 * std::fabs(c.determinant)) << c.name;

        lubksb(a->get(), 4, indx.get(), b->get());
        // Single precision on well-conditioned integer systems: a few ulps of the answer.
        for (int i = 1; i <= 4; ++i) EXPECT_NEAR((*b)[i], c.x[i - 1], 1e-5) << c.name << " x" << i;
        EXPECT_TRUE(sink.messages.empty()) << c.name;
    }
}

// Every all-zero row is reported once with the text of the user's variant; the
// decomposition goes on and leaves a permutation that names valid rows.
TEST(LuSolve, SingularRowsAreReportedAndTheSolveGoesOn)
{
    struct Case {
        NumericVariant variant;
        Rows a;
        std::vector<std::string> expected;
    };
    const std::string fitter = "Error: Singular matrix in routine ludcmp";
    const std::string components = "Error: Singular matrix in routine ludcmp.";
    const Case cases[] = {
        {NumericVariant::EquationFitter, {{1, 2, 3}, {0, 0, 0}, {4, 5, 6}}, {fitter}},
        {NumericVariant::PrincipalComponents, {{1, 2, 3}, {0, 0, 0}, {4, 5, 6}}, {components}},
        {NumericVariant::EquationFitter, {{0, 0, 0}, {0, 0, 0}, {4, 5, 6}}, {fitter, fitter}},
        {NumericVariant::PrincipalComponents, {{0, 0, 0}, {0, 0, 0}, {0, 0, 0}}, {components, components, components}},
    };
    for (const auto& c : cases) {
        CollectingMessageSink sink;
        const NumericReporter reporter(sink, c.variant);
        auto a = MakeMatrix(c.a, reporter);
        OwnedIntVector indx(1, 3, reporter);
        float d = 0.0f;
        ludcmp(a->get(), 3, indx.get(), d, reporter);
        EXPECT_EQ(sink.Texts(), c.expected);
        for (int i = 1; i <= 3; ++i) {
            EXPECT_GE(indx[i], 1);
            EXPECT_LE(indx[i], 3);
        }
        auto b = MakeVector({1, 1, 1}, reporter);
        lubksb(a->get(), 3, indx.get(), b->get());
        EXPECT_EQ(sink.messages.size(), c.expected.size());
    }
}

// A zero pivot in a matrix without a zero row becomes 1.0e-20: the solve yields a huge but
// definite answer instead of dividing by zero.
TEST(LuSolve, ZeroPivotIsReplacedByTiny)
{
    CollectingMessageSink sink;
    const NumericReporter reporter(sink, NumericVariant::EquationFitter);
    auto a = MakeMatrix({{1, 1}, {1, 1}}, reporter);
    auto b = MakeVector({2, 3}, reporter);
    OwnedIntVector indx(1, 2, reporter);
    float d = 0.0f;
    ludcmp(a->get(), 2, indx.get(), d, reporter);
    EXPECT_EQ((*a)[2][2], 1.0e-20f);
    lubksb(a->get(), 2, indx.get(), b->get());
    // Equal scaled candidates go to the later row, so the rows swap: forward pass gives
    // (3, -1), then x2 = -1 / 1e-20 and x1 = 3 - x2.
    EXPECT_EQ(indx[1], 2);
    EXPECT_FLOAT_EQ((*b)[2], -1.0e20f);
    EXPECT_FLOAT_EQ((*b)[1], 1.0e20f);
    EXPECT_TRUE(sink.messages.empty());
}

} // namespace
} // namespace ba::numeric
