#include "numeric/NewtonSolver.h"

#include "numeric/LuDecomposition.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <utility>

namespace ba::numeric {

namespace {

constexpr int kMaxIterations = 2000;
// Residual size accepted as a root after a Newton step.
constexpr float kResidualTolerance = 1.0e-5f;
// Residual size at which the starting point already counts as a root (compared in double).
constexpr double kInitialResidualTolerance = 1.0e-7;
// Gradient test that tells a local minimum of the merit function from a true root.
constexpr float kMinimumGradientTest = 0.01f;
// The smallest positive denormal but six: the x-convergence exit (and the line search's
// smallest step) is taken only when the step has all but vanished.
constexpr float kStepTolerance = std::bit_cast<float>(std::uint32_t{7});
// Every Newton step is limited to half the length of the unknown vector (or half of n),
// which keeps coefficient fits from leaping to a distant root.
constexpr float kMaxStepFactor = 0.5f;
constexpr float kJacobianRelativeStep = 1.0e-4f;
// Sufficient-decrease factor of the line search.
constexpr float kSufficientDecrease = 1.0e-4f;
// A slope above this along the Newton direction means rounding has spoilt the direction.
constexpr float kRoundoffSlope = 1.0e-7f;

// Largest magnitude, NaN if any element is NaN: a NaN residual must never pass for a root.
float MaxAbs(const float* v, int n)
{
    float largest = 0.0f;
    for (int i = 1; i <= n; ++i) {
        if (std::isnan(v[i])) return v[i];
        largest = std::max(largest, std::fabs(v[i]));
    }
    return largest;
}

bool AnyNan(const float* v, int n)
{
    for (int i = 1; i <= n; ++i)
        if (std::isnan(v[i])) return true;
    return false;
}

} // namespace

CNewtonSolver::CNewtonSolver(ResidualFunction residuals, IMessageSink& sink)
    : m_residuals(std::move(residuals)), m_reporter(sink, NumericVariant::EquationFitter)
{
}

void CNewtonSolver::SetEquationCount(int n)
{
    m_fvec.reset();
    m_equationCount = 0;
    auto fvec = std::make_unique<OwnedVector>(1, n, m_reporter);
    if (!*fvec) return;
    m_fvec = std::move(fvec);
    m_equationCount = n;
}

float CNewtonSolver::fmin(const float* x)
{
    if (!m_fvec) return std::numeric_limits<float>::quiet_NaN();
    float* fvec = m_fvec->get();
    m_residuals(m_equationCount, x, fvec);
    float sum = 0.0f;
    for (int i = 1; i <= m_equationCount; ++i) sum += fvec[i] * fvec[i];
    return 0.5f * sum;
}

void CNewtonSolver::fdjac(int n, float* x, const float* fvec, float** df)
{
    OwnedVector shifted(1, n, m_reporter);
    if (!shifted) return;
    for (int j = 1; j <= n; ++j) {
        const float saved = x[j];
        float h = kJacobianRelativeStep * std::fabs(saved);
        if (h == 0.0f) h = kJacobianRelativeStep;
        x[j] = saved + h;
        // The step actually taken, after rounding of x + h.
        h = x[j] - saved;
        m_residuals(n, x, shifted.get());
        x[j] = saved;
        for (int i = 1; i <= n; ++i) df[i][j] = (shifted[i] - fvec[i]) / h;
    }
}

void CNewtonSolver::lnsrch(int n, const float* xold, float fold, const float* g, float* p, float* x, float& f,
                           float stpmax, bool& check)
{
    check = false;

    float lengthSquared = 0.0f;
    for (int i = 1; i <= n; ++i) lengthSquared += p[i] * p[i];
    const float length = std::sqrt(lengthSquared);
    if (length > stpmax)
        for (int i = 1; i <= n; ++i) p[i] *= stpmax / length;

    float slope = 0.0f;
    for (int i = 1; i <= n; ++i) slope += g[i] * p[i];
    if (slope >= kRoundoffSlope) m_reporter.Show(NumericEvent::LnsrchRoundoff);

    float relativeStep = 0.0f;
    for (int i = 1; i <= n; ++i)
        relativeStep = std::max(relativeStep, std::fabs(p[i]) / std::max(std::fabs(xold[i]), 1.0f));
    const float smallestLambda = kStepTolerance / relativeStep;

    float lambda = 1.0f;
    float previousLambda = 0.0f;
    float previousF = 0.0f;
    bool firstBacktrack = true;
    for (;;) {
        for (int i = 1; i <= n; ++i) x[i] = xold[i] + lambda * p[i];
        f = fmin(x);
        if (lambda < smallestLambda) {
            for (int i = 1; i <= n; ++i) x[i] = xold[i];
            check = true;
            return;
        }
        // A NaN anywhere would make every later comparison fail; newt decides what a NaN
        // point means.
        if (f <= fold + kSufficientDecrease * lambda * slope || std::isnan(f) || std::isnan(fold) ||
            std::isnan(lambda))
            return;

        float nextLambda;
        if (firstBacktrack) {
            // Minimum of the quadratic through fold, slope and f(1).
            nextLambda = -slope / (2.0f * (f - fold - slope));
            firstBacktrack = false;
        } else {
            // Minimum of the cubic through fold, slope and the last two trial values.
            const float rhs1 = f - fold - lambda * slope;
            const float rhs2 = previousF - fold - previousLambda * slope;
            const float span = lambda - previousLambda;
            const float a = (rhs1 / (lambda * lambda) - rhs2 / (previousLambda * previousLambda)) / span;
            const float b =
                (-previousLambda * rhs1 / (lambda * lambda) + lambda * rhs2 / (previousLambda * previousLambda)) /
                span;
            if (a == 0.0f) {
                nextLambda = -slope / (2.0f * b);
            } else {
                const float discriminant = b * b - 3.0f * a * slope;
                if (discriminant < 0.0f)
                    nextLambda = 0.5f * lambda;
                else if (b <= 0.0f)
                    nextLambda = (-b + std::sqrt(discriminant)) / (3.0f * a);
                else
                    nextLambda = -slope / (b + std::sqrt(discriminant));
            }
        }
        nextLambda = std::min(nextLambda, 0.5f * lambda);
        previousLambda = lambda;
        previousF = f;
        lambda = std::max(nextLambda, 0.1f * lambda);
    }
}

void CNewtonSolver::newt(float* x, int n, bool& check)
{
    check = true;
    OwnedIntVector indx(1, n, m_reporter);
    OwnedMatrix fjac(1, n, 1, n, m_reporter);
    OwnedVector g(1, n, m_reporter);
    OwnedVector p(1, n, m_reporter);
    OwnedVector xold(1, n, m_reporter);
    SetEquationCount(n);
    if (!indx || !fjac || !g || !p || !xold || !m_fvec) return;
    const float* fvec = m_fvec->get();

    float f = fmin(x);
    if (static_cast<double>(MaxAbs(fvec, n)) < kInitialResidualTolerance) {
        check = false;
        return;
    }

    float lengthSquared = 0.0f;
    for (int i = 1; i <= n; ++i) lengthSquared += x[i] * x[i];
    const float stpmax = kMaxStepFactor * std::max(std::sqrt(lengthSquared), static_cast<float>(n));

    for (int iteration = 1; iteration <= kMaxIterations; ++iteration) {
        fdjac(n, x, fvec, fjac.get());
        for (int i = 1; i <= n; ++i) {
            float sum = 0.0f;
            for (int j = 1; j <= n; ++j) sum += fjac[j][i] * fvec[j];
            g[i] = sum;
        }
        for (int i = 1; i <= n; ++i) xold[i] = x[i];
        const float fold = f;
        for (int i = 1; i <= n; ++i) p[i] = -fvec[i];
        float parity = 1.0f;
        ludcmp(fjac.get(), n, indx.get(), parity, m_reporter);
        lubksb(fjac.get(), n, indx.get(), p.get());
        lnsrch(n, xold.get(), fold, g.get(), p.get(), x, f, stpmax, check);

        if (AnyNan(fvec, n)) {
            check = true;
            for (int i = 1; i <= n; ++i) x[i] = 0.0f;
            return;
        }
        if (MaxAbs(fvec, n) < kResidualTolerance) {
            check = false;
            return;
        }
        if (check) {
            // Spurious convergence: is the gradient of the merit function zero here?
            const float denominator = std::max(f, 0.5f * static_cast<float>(n));
            float gradientTest = 0.0f;
            for (int i = 1; i <= n; ++i)
                gradientTest =
                    std::max(gradientTest, std::fabs(g[i]) * std::max(std::fabs(x[i]), 1.0f) / denominator);
            check = gradientTest >= kMinimumGradientTest;
            return;
        }
        float stepTest = 0.0f;
        for (int i = 1; i <= n; ++i)
            stepTest = std::max(stepTest, std::fabs(x[i] - xold[i]) / std::max(std::fabs(x[i]), 1.0f));
        if (stepTest < kStepTolerance) {
            check = true;
            return;
        }
    }
    check = true;
}

} // namespace ba::numeric
