#include "numeric/SingularValueDecomposition.h"

#include "numeric/NumericTestSupport.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <string>
#include <vector>

namespace ba::numeric {
namespace {

using testing::MakeMatrix;
using testing::Rows;

// Householder reflection I - 2·u·uᵀ/(uᵀu): an exact orthogonal matrix built independently of
// the decomposition under test.
Rows Reflection(const std::vector<double>& u)
{
    double norm2 = 0.0;
    for (double e : u) norm2 += e * e;
    Rows h(u.size(), std::vector<double>(u.size(), 0.0));
    for (std::size_t i = 0; i < u.size(); ++i)
        for (std::size_t j = 0; j < u.size(); ++j) h[i][j] = (i == j ? 1.0 : 0.0) - 2.0 * u[i] * u[j] / norm2;
    return h;
}

// Q1 · diag(s) · Q2ᵀ for m×m and n×n orthogonal Q1, Q2: singular values exactly s.
Rows WithSingularValues(const Rows& q1, const std::vector<double>& s, const Rows& q2)
{
    const std::size_t m = q1.size();
    const std::size_t n = q2.size();
    Rows a(m, std::vector<double>(n, 0.0));
    for (std::size_t i = 0; i < m; ++i)
        for (std::size_t j = 0; j < n; ++j)
            for (std::size_t k = 0; k < s.size(); ++k) a[i][j] += q1[i][k] * s[k] * q2[j][k];
    return a;
}

struct SvdCase {
    const char* name;
    Rows a;
    std::vector<double> singularValues;  // descending, exact
};

std::vector<SvdCase> SvdCases()
{
    return {
        {"2x2 classic", {{3, 0}, {4, 5}}, {std::sqrt(45.0), std::sqrt(5.0)}},
        {"3x3 identity", {{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}, {1, 1, 1}},
        {"4x3 full rank", WithSingularValues(Reflection({1, 2, -1, 3}), {7, 3, 0.5}, Reflection({2, -1, 1})),
         {7, 3, 0.5}},
        {"4x3 rank two", WithSingularValues(Reflection({1, -1, 2, 1}), {5, 2, 0}, Reflection({1, 1, 3})),
         {5, 2, 0}},
        {"5x2 tall", WithSingularValues(Reflection({3, 1, -2, 1, 1}), {4, 1}, Reflection({1, 2})), {4, 1}},
        {"3x3 widely spread", WithSingularValues(Reflection({1, 2, 2}), {1000, 1, 0.001}, Reflection({2, 1, -1})),
         {1000, 1, 0.001}},
    };
}

TEST(Svd, ReconstructsTheMatrixWithOrthonormalFactors)
{
    for (const auto& c : SvdCases()) {
        CollectingMessageSink sink;
        const NumericReporter reporter(sink, NumericVariant::PrincipalComponents);
        const int m = static_cast<int>(c.a.size());
        const int n = static_cast<int>(c.a.front().size());
        auto u = MakeMatrix(c.a, reporter);
        OwnedVector w(1, n, reporter);
        OwnedMatrix v(1, n, 1, n, reporter);
        svdcmp(u->get(), m, n, w.get(), v.get(), reporter);
        EXPECT_TRUE(sink.messages.empty()) << c.name;

        const double scale = c.singularValues.front();
        // Single precision: errors of a few ulps of the largest singular value.
        const double tolerance = 2e-6 * scale * n;
        for (int i = 1; i <= m; ++i)
            for (int j = 1; j <= n; ++j) {
                double sum = 0.0;
                for (int k = 1; k <= n; ++k) sum += (*u)[i][k] * w[k] * v[j][k];
                EXPECT_NEAR(sum, c.a[i - 1][j - 1], tolerance) << c.name << " a" << i << j;
            }
        for (int p = 1; p <= n; ++p)
            for (int q = 1; q <= n; ++q) {
                double vtv = 0.0;
                double utu = 0.0;
                for (int k = 1; k <= n; ++k) vtv += v[k][p] * v[k][q];
                for (int k = 1; k <= m; ++k) utu += (*u)[k][p] * (*u)[k][q];
                const double identity = p == q ? 1.0 : 0.0;
                EXPECT_NEAR(vtv, identity, 1e-5) << c.name << " VtV" << p << q;
                // Columns of U that belong to a zero singular value are left zero.
                if (w[p] != 0.0f && w[q] != 0.0f) {
                    EXPECT_NEAR(utu, identity, 1e-5) << c.name << " UtU" << p << q;
                }
            }

        std::vector<double> found;
        for (int k = 1; k <= n; ++k) {
            EXPECT_GE(w[k], 0.0f) << c.name;
            found.push_back(w[k]);
        }
        std::sort(found.begin(), found.end(), std::greater<>());
        for (std::size_t k = 0; k < found.size(); ++k)
            EXPECT_NEAR(found[k], c.singularValues[k], tolerance) << c.name << " w" << k + 1;
    }
}

// NaN defeats every convergence test: each singular value but the last (which needs no
// sweep) runs out of sweeps, shows the message and the decomposition returns what it has.
TEST(Svd, NoConvergenceIsReportedAndTheDecompositionGoesOn)
{
    CollectingMessageSink sink;
    const NumericReporter reporter(sink, NumericVariant::PrincipalComponents);
    const double nan = std::numeric_limits<double>::quiet_NaN();
    auto a = MakeMatrix({{1, 2, 3}, {4, nan, 6}, {7, 8, 9}}, reporter);
    OwnedVector w(1, 3, reporter);
    OwnedMatrix v(1, 3, 1, 3, reporter);
    svdcmp(a->get(), 3, 3, w.get(), v.get(), reporter);
    const std::string text = "Error: No convergence in 30 svdcmp iterations.";
    EXPECT_EQ(sink.Texts(), (std::vector<std::string>{text, text}));
}

TEST(Pythag, HypotenuseWithoutOverflowOrUnderflow)
{
    struct Case {
        float a, b;
        double expected;
    };
    const Case cases[] = {
        {3.0f, 4.0f, 5.0},
        {-5.0f, 12.0f, 13.0},
        {0.0f, 0.0f, 0.0},
        {0.0f, -2.5f, 2.5},
        {1e30f, 1e30f, 1.4142135623730951e30},  // the squares would overflow
        {3e-30f, 4e-30f, 5e-30},                 // the squares would underflow
    };
    for (const auto& c : cases)
        EXPECT_NEAR(pythag(c.a, c.b), c.expected, 2e-7 * c.expected) << c.a << "," << c.b;
}

} // namespace
} // namespace ba::numeric
