#include "numeric/NewtonSolver.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <vector>

namespace ba::numeric {
namespace {

// x1² + x2² = 5 and x1·x2 = 2: roots (1, 2), (2, 1), (-1, -2), (-2, -1).
void CircleAndHyperbola(int, const float* x, float* f)
{
    f[1] = x[1] * x[1] + x[2] * x[2] - 5.0f;
    f[2] = x[1] * x[2] - 2.0f;
}

TEST(Newton, FindsTheRootNearTheStart)
{
    struct Case {
        float x1, x2;
        float root1, root2;
    };
    const Case cases[] = {
        {0.5f, 2.5f, 1.0f, 2.0f},
        {2.5f, 0.5f, 2.0f, 1.0f},
        {-0.8f, -2.2f, -1.0f, -2.0f},
        {1.0f, 1.9f, 1.0f, 2.0f},
    };
    for (const auto& c : cases) {
        CollectingMessageSink sink;
        CNewtonSolver solver(CircleAndHyperbola, sink);
        float x[3] = {0.0f, c.x1, c.x2};
        bool check = true;
        solver.newt(x, 2, check);
        EXPECT_FALSE(check) << c.x1 << "," << c.x2;
        // Residuals below 1e-5 near a simple root put x within about 1e-5 of it.
        EXPECT_NEAR(x[1], c.root1, 1e-4) << c.x1 << "," << c.x2;
        EXPECT_NEAR(x[2], c.root2, 1e-4) << c.x1 << "," << c.x2;
        ASSERT_EQ(solver.EquationCount(), 2);
        for (int i = 1; i <= 2; ++i) EXPECT_LT(std::fabs(solver.Residuals()[i]), 1e-5f);
        EXPECT_TRUE(sink.messages.empty());
    }
}

TEST(Newton, ExactRootReturnsAtOnceUnchanged)
{
    CollectingMessageSink sink;
    int calls = 0;
    CNewtonSolver solver(
        [&calls](int n, const float* x, float* f) {
            ++calls;
            CircleAndHyperbola(n, x, f);
        },
        sink);
    float x[3] = {0.0f, 1.0f, 2.0f};
    bool check = true;
    solver.newt(x, 2, check);
    EXPECT_FALSE(check);
    EXPECT_EQ(x[1], 1.0f);
    EXPECT_EQ(x[2], 2.0f);
    EXPECT_EQ(calls, 1);
}

// The residual is NaN for negative x1 and the first step (limited to 0.5) crosses zero.
TEST(Newton, NanResidualsZeroTheUnknowns)
{
    struct Case {
        const char* name;
        float start;
    };
    const Case cases[] = {{"NaN after the first step", 0.25f}, {"NaN at the start", -3.0f}};
    for (const auto& c : cases) {
        CollectingMessageSink sink;
        CNewtonSolver solver(
            [](int, const float* x, float* f) {
                f[1] = x[1] >= 0.0f ? x[1] + 1.0f : std::numeric_limits<float>::quiet_NaN();
                f[2] = x[2] - 3.0f;
            },
            sink);
        float x[3] = {0.0f, c.start, 7.0f};
        bool check = false;
        solver.newt(x, 2, check);
        EXPECT_TRUE(check) << c.name;
        EXPECT_EQ(x[1], 0.0f) << c.name;
        EXPECT_EQ(x[2], 0.0f) << c.name;
    }
}

// 1/x1 has its root at infinity and Newton's step (x1 itself) always exceeds the limit of
// 0.5·max(|x|, n) = 1 fixed at the start (x = (1, 0), two unknowns): each iteration moves
// x1 by 1, and after 2000 iterations the solver gives up silently with check set.
TEST(Newton, IterationLimitReturnsCheckWithoutMessage)
{
    CollectingMessageSink sink;
    CNewtonSolver solver(
        [](int, const float* x, float* f) {
            f[1] = 1.0f / x[1];
            f[2] = x[2];
        },
        sink);
    float x[3] = {0.0f, 1.0f, 0.0f};
    bool check = false;
    solver.newt(x, 2, check);
    EXPECT_TRUE(check);
    EXPECT_NEAR(x[1], 2001.0f, 0.5f);
    EXPECT_EQ(x[2], 0.0f);
    EXPECT_TRUE(sink.messages.empty());
}

// Equations that ignore the unknowns give all-zero Jacobian rows: ludcmp reports each one
// and carries on with a tiny pivot. The resulting step is so long that its length
// overflows, the search cuts it to nothing and newt stops where it started.
TEST(Newton, SingularJacobianRowsAreReportedOnceEach)
{
    struct Case {
        const char* name;
        float constant1;  // 0 makes the first equation x1 - 1
        std::size_t zeroRows;
    };
    const Case cases[] = {{"second row zero", 0.0f, 1}, {"both rows zero", 3.0f, 2}};
    for (const auto& c : cases) {
        CollectingMessageSink sink;
        CNewtonSolver solver(
            [&c](int, const float* x, float* f) {
                f[1] = c.constant1 != 0.0f ? c.constant1 : x[1] - 1.0f;
                f[2] = 5.0f;
            },
            sink);
        float x[3] = {0.0f, 0.25f, 0.5f};
        bool check = false;
        solver.newt(x, 2, check);
        EXPECT_EQ(sink.Texts(), std::vector<std::string>(c.zeroRows, "Error: Singular matrix in routine ludcmp"))
            << c.name;
        EXPECT_EQ(x[1], 0.25f) << c.name;
        EXPECT_EQ(x[2], 0.5f) << c.name;
    }
}

// x1² + 1 has no root; its merit function has a minimum at 0 with zero gradient. There the
// forward difference of x² + 1 vanishes in single precision (ludcmp may report the zero
// row), the search cannot leave the point and the gradient test decides.
TEST(Newton, LocalMinimumOfTheMeritFunctionEndsTheSearch)
{
    CollectingMessageSink sink;
    CNewtonSolver solver([](int, const float* x, float* f) { f[1] = x[1] * x[1] + 1.0f; }, sink);
    float x[2] = {0.0f, 1.0f};
    bool check = true;
    solver.newt(x, 1, check);
    EXPECT_LT(std::fabs(x[1]), 1e-3f);
    // A vanishing gradient (test below 0.01) gives check = 0.
    EXPECT_FALSE(check);
    for (const auto& text : sink.Texts()) EXPECT_EQ(text, "Error: Singular matrix in routine ludcmp");
}

TEST(ForwardDifferenceJacobian, MatchesTheAnalyticJacobian)
{
    CollectingMessageSink sink;
    CNewtonSolver solver(
        [](int, const float* x, float* f) {
            f[1] = x[1] * x[1] * x[2];
            f[2] = std::sin(x[1]) + x[2];
        },
        sink);
    solver.SetEquationCount(2);
    float x[3] = {0.0f, 1.5f, 2.0f};
    solver.fmin(x);
    OwnedMatrix df(1, 2, 1, 2, NumericReporter(sink, NumericVariant::EquationFitter));
    solver.fdjac(2, x, solver.Residuals(), df.get());
    const double exact[2][2] = {{2 * 1.5 * 2.0, 1.5 * 1.5}, {std::cos(1.5), 1.0}};
    // Relative step 1e-4 in single precision: truncation ~1e-4, rounding ~1e-3 relative.
    for (int i = 1; i <= 2; ++i)
        for (int j = 1; j <= 2; ++j)
            EXPECT_NEAR(df[i][j], exact[i - 1][j - 1], 5e-3 * std::fmax(1.0, std::fabs(exact[i - 1][j - 1])))
                << i << "," << j;
    EXPECT_EQ(x[1], 1.5f);
    EXPECT_EQ(x[2], 2.0f);
}

// At x = 0 the step is the absolute 1.0e-4, so the slope of x² there comes out as 1.0e-4.
TEST(ForwardDifferenceJacobian, ZeroUnknownUsesTheAbsoluteStep)
{
    CollectingMessageSink sink;
    CNewtonSolver solver([](int, const float* x, float* f) { f[1] = x[1] * x[1]; }, sink);
    solver.SetEquationCount(1);
    float x[2] = {0.0f, 0.0f};
    solver.fmin(x);
    OwnedMatrix df(1, 1, 1, 1, NumericReporter(sink, NumericVariant::EquationFitter));
    solver.fdjac(1, x, solver.Residuals(), df.get());
    EXPECT_NEAR(df[1][1], 1.0e-4, 1e-9);
}

TEST(LineSearch, LongStepIsCutToTheMaximum)
{
    CollectingMessageSink sink;
    CNewtonSolver solver([](int, const float* x, float* f) { f[1] = x[1] - 10.0f; }, sink);
    solver.SetEquationCount(1);
    const float xold[2] = {0.0f, 0.0f};
    const float fold = solver.fmin(xold);  // 50
    const float g[2] = {0.0f, -10.0f};
    float p[2] = {0.0f, 10.0f};
    float x[2] = {0.0f, 0.0f};
    float f = 0.0f;
    bool check = true;
    solver.lnsrch(1, xold, fold, g, p, x, f, 1.0f, check);
    EXPECT_FALSE(check);
    EXPECT_EQ(p[1], 1.0f);
    EXPECT_EQ(x[1], 1.0f);
    EXPECT_FLOAT_EQ(f, 40.5f);
    EXPECT_TRUE(sink.messages.empty());
}

// An uphill direction is reported and searched anyway: the search backtracks until the
// trial point is no worse than the old one in single precision.
TEST(LineSearch, UphillDirectionIsReportedAndSearchedAnyway)
{
    CollectingMessageSink sink;
    CNewtonSolver solver([](int, const float* x, float* f) { f[1] = x[1] - 1.0f; }, sink);
    solver.SetEquationCount(1);
    const float xold[2] = {0.0f, 0.0f};
    const float fold = solver.fmin(xold);  // 0.5
    const float g[2] = {0.0f, -1.0f};
    float p[2] = {0.0f, -1.0f};
    float x[2] = {0.0f, 0.0f};
    float f = 0.0f;
    bool check = true;
    solver.lnsrch(1, xold, fold, g, p, x, f, 100.0f, check);
    EXPECT_EQ(sink.Texts(), std::vector<std::string>{"Error: Roundoff problem in lnsrch."});
    EXPECT_FALSE(check);
    EXPECT_LE(x[1], 0.0f);
    EXPECT_GT(x[1], -1e-6f);
    EXPECT_LE(f, fold);
}

} // namespace
} // namespace ba::numeric
