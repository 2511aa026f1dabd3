#include "numeric/LinearLeastSquares.h"

#include "numeric/NumericTestSupport.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <vector>

namespace ba::numeric {
namespace {

using testing::MakeMatrix;
using testing::Rows;

TEST(GaussJordan, InvertsAndSolves)
{
    struct Case {
        const char* name;
        Rows a;
        Rows inverse;  // exact, from rational arithmetic
        std::vector<double> b;
    };
    const Case cases[] = {
        {"tridiagonal", {{2, -1, 0}, {-1, 2, -1}, {0, -1, 2}},
         {{0.75, 0.5, 0.25}, {0.5, 1.0, 0.5}, {0.25, 0.5, 0.75}}, {1, 0, 1}},
        {"zero on the diagonal, full pivoting needed", {{0, 1, 2}, {1, 0, 3}, {4, -3, 8}},
         {{-4.5, 7, -1.5}, {-2, 4, -1}, {1.5, -2, 0.5}}, {3, -1, 2}},
    };
    for (const auto& c : cases) {
        CollectingMessageSink sink;
        const NumericReporter reporter(sink, NumericVariant::SpectralFit);
        auto a = MakeMatrix(c.a, reporter);
        auto b = MakeMatrix({{c.b[0]}, {c.b[1]}, {c.b[2]}}, reporter);
        gaussj(a->get(), 3, b->get(), 1, reporter);
        for (int i = 1; i <= 3; ++i) {
            double expectedX = 0.0;
            for (int j = 1; j <= 3; ++j) {
                EXPECT_NEAR((*a)[i][j], c.inverse[i - 1][j - 1], 1e-5) << c.name << " inverse " << i << j;
                expectedX += c.inverse[i - 1][j - 1] * c.b[j - 1];
            }
            EXPECT_NEAR((*b)[i][1], expectedX, 1e-5) << c.name << " x" << i;
        }
        EXPECT_TRUE(sink.messages.empty()) << c.name;
    }
}

TEST(GaussJordan, SingularMatricesAreReportedAndEliminationGoesOn)
{
    struct Case {
        const char* name;
        Rows a;
        const char* expected;
    };
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const Case cases[] = {
        // Rank one: the second pivot is exactly zero.
        {"zero pivot", {{1, 2}, {2, 4}}, "gaussj: Singular Matrix-2"},
        // NaN leaves no pivot candidate, so a column is chosen a second time.
        {"pivot column twice", {{nan, nan, nan}, {nan, nan, nan}, {nan, nan, nan}}, "gaussj: Singular Matrix-1"},
    };
    for (const auto& c : cases) {
        CollectingMessageSink sink;
        const NumericReporter reporter(sink, NumericVariant::SpectralFit);
        const int n = static_cast<int>(c.a.size());
        auto a = MakeMatrix(c.a, reporter);
        OwnedMatrix b(1, n, 1, 1, reporter);
        for (int i = 1; i <= n; ++i) b[i][1] = 1.0f;
        gaussj(a->get(), n, b.get(), 1, reporter);
        const auto texts = sink.Texts();
        ASSERT_FALSE(texts.empty()) << c.name;
        EXPECT_EQ(texts.front(), c.expected) << c.name;
    }
}

// 1.5 - 2x + 0.25x² sampled without noise at x = 0..9, unit standard deviations.
struct PolynomialData {
    float x[11] = {};
    float y[11] = {};
    float sig[11] = {};
    PolynomialData()
    {
        for (int i = 1; i <= 10; ++i) {
            x[i] = static_cast<float>(i - 1);
            y[i] = 1.5f - 2.0f * x[i] + 0.25f * x[i] * x[i];
            sig[i] = 1.0f;
        }
    }
};

void PowersOfX(float x, float* afunc, int ma)
{
    float power = 1.0f;
    for (int j = 1; j <= ma; ++j) {
        afunc[j] = power;
        power *= x;
    }
}

TEST(LinearFit, RecoversPolynomialCoefficientsAndTheirCovariance)
{
    struct Case {
        const char* name;
        std::int32_t ia[4];
        float start[4];
        // Covariance (XᵀX)⁻¹ of the free parameters spread to all three positions, exact
        // from rational arithmetic; zero for the fixed parameter.
        double covariance[3][3];
    };
    const Case cases[] = {
        {"all free",
         {0, 1, 1, 1},
         {0, 0, 0, 0},
         {{0.6181818181818182, -0.2590909090909091, 0.022727272727272728},
          {-0.2590909090909091, 0.16553030303030303, -0.017045454545454544},
          {0.022727272727272728, -0.017045454545454544, 0.001893939393939394}}},
        {"linear term held at its true value",
         {0, 1, 0, 1},
         {0, 0, -2.0f, 0},
         {{0.2126482213438735, 0, -0.003952569169960474},
          {0, 0, 0},
          {-0.003952569169960474, 0, 0.0001386866375424728}}},
    };
    const PolynomialData data;
    const double truth[3] = {1.5, -2.0, 0.25};
    for (const auto& c : cases) {
        CollectingMessageSink sink;
        const NumericReporter reporter(sink, NumericVariant::SpectralFit);
        float a[4] = {c.start[0], c.start[1], c.start[2], c.start[3]};
        OwnedMatrix covar(1, 3, 1, 3, reporter);
        float chisq = -1.0f;
        lfit(data.x, data.y, data.sig, 10, a, c.ia, 3, covar.get(), chisq, PowersOfX, reporter);
        // Normal equations in single precision, condition number about 1e4.
        for (int j = 1; j <= 3; ++j) EXPECT_NEAR(a[j], truth[j - 1], 5e-4) << c.name << " a" << j;
        for (int j = 1; j <= 3; ++j)
            for (int k = 1; k <= 3; ++k)
                EXPECT_NEAR(covar[j][k], c.covariance[j - 1][k - 1], 1e-4 * std::fabs(c.covariance[0][0]) + 1e-7)
                    << c.name << " covar" << j << k;
        EXPECT_NEAR(chisq, 0.0, 1e-4) << c.name;
        EXPECT_TRUE(sink.messages.empty()) << c.name;
    }
}

// With every parameter held, the fit reports it and proceeds: a is kept, chi-square is
// that of the given coefficients and the covariance is all zero.
TEST(LinearFit, NothingToFitIsReportedAndTheFitProceeds)
{
    CollectingMessageSink sink;
    const NumericReporter reporter(sink, NumericVariant::SpectralFit);
    const PolynomialData data;
    const std::int32_t ia[4] = {0, 0, 0, 0};
    float a[4] = {0.0f, 1.5f, -2.0f, 0.0f};  // misses 0.25x²
    OwnedMatrix covar(1, 3, 1, 3, reporter);
    for (int j = 1; j <= 3; ++j)
        for (int k = 1; k <= 3; ++k) covar[j][k] = 9.0f;
    float chisq = -1.0f;
    lfit(data.x, data.y, data.sig, 10, a, ia, 3, covar.get(), chisq, PowersOfX, reporter);
    EXPECT_EQ(sink.Texts(), std::vector<std::string>{"lfit: no parameters to be fitted"});
    EXPECT_EQ(a[1], 1.5f);
    EXPECT_EQ(a[2], -2.0f);
    EXPECT_EQ(a[3], 0.0f);
    // Σ (0.25·x²)² for x = 0..9 = 0.0625 · Σ x⁴ = 0.0625 · 15333.
    EXPECT_NEAR(chisq, 958.3125, 1e-3);
    for (int j = 1; j <= 3; ++j)
        for (int k = 1; k <= 3; ++k) EXPECT_EQ(covar[j][k], 0.0f);
}

TEST(CovarianceSpread, MovesThePackedBlockToTheFreePositions)
{
    CollectingMessageSink sink;
    const NumericReporter reporter(sink, NumericVariant::SpectralFit);
    auto covar = MakeMatrix({{1, 2, 7}, {2, 3, 7}, {7, 7, 7}}, reporter);
    const std::int32_t ia[4] = {0, 1, 0, 1};
    covsrt(covar->get(), 3, ia, 2);
    const double expected[3][3] = {{1, 0, 2}, {0, 0, 0}, {2, 0, 3}};
    for (int j = 1; j <= 3; ++j)
        for (int k = 1; k <= 3; ++k) EXPECT_EQ((*covar)[j][k], expected[j - 1][k - 1]) << j << k;
}

} // namespace
} // namespace ba::numeric
