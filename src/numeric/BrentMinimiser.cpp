#include "numeric/BrentMinimiser.h"

#include <algorithm>
#include <cmath>

namespace ba::numeric {

namespace {

constexpr int kMaxIterations = 100;
// Golden-section fraction (3 - sqrt 5) / 2.
constexpr double kGoldenFraction = 0.381966;
// Absolute tolerance floor, for a minimum at exactly zero.
constexpr double kTinyAbsolute = 1.0e-10;

float WithSignOf(float magnitude, float signSource)
{
    return signSource >= 0.0f ? std::fabs(magnitude) : -std::fabs(magnitude);
}

} // namespace

float brent(float ax, float bx, float cx, const Objective& f, float tol, float& xmin, const NumericReporter& reporter)
{
    float low = std::min(ax, cx);
    float high = std::max(ax, cx);
    // best: lowest value so far; second: next lowest; previousSecond: the value of second
    // before it was last replaced.
    float best = bx;
    float second = bx;
    float previousSecond = bx;
    float fBest = f(best);
    float fSecond = fBest;
    float fPreviousSecond = fBest;
    float step = 0.0f;        // the step just taken
    float stepBefore = 0.0f;  // the step taken the time before last

    for (int iteration = 1; iteration <= kMaxIterations; ++iteration) {
        const float middle = 0.5f * (low + high);
        const auto tol1 = static_cast<float>(static_cast<double>(tol * std::fabs(best)) + kTinyAbsolute);
        const float tol2 = 2.0f * tol1;
        if (std::fabs(best - middle) <= tol2 - 0.5f * (high - low)) {
            xmin = best;
            return fBest;
        }

        bool golden = true;
        if (std::fabs(stepBefore) > tol1) {
            // Parabola through best, second and previousSecond.
            const float r = (best - second) * (fBest - fPreviousSecond);
            float q = (best - previousSecond) * (fBest - fSecond);
            float p = (best - previousSecond) * q - (best - second) * r;
            q = 2.0f * (q - r);
            if (q > 0.0f) p = -p;
            q = std::fabs(q);
            const float olderStep = stepBefore;
            stepBefore = step;
            // Accept the parabolic step only if it falls inside the bracket and moves less
            // than half the step before last.
            if (!(std::fabs(p) >= std::fabs(0.5f * q * olderStep) || p <= q * (low - best) || p >= q * (high - best))) {
                golden = false;
                step = p / q;
                const float trial = best + step;
                if (trial - low < tol2 || high - trial < tol2) step = WithSignOf(tol1, middle - best);
            }
        }
        if (golden) {
            stepBefore = best >= middle ? low - best : high - best;
            step = static_cast<float>(kGoldenFraction * static_cast<double>(stepBefore));
        }

        const float trial = std::fabs(step) >= tol1 ? best + step : best + WithSignOf(tol1, step);
        const float fTrial = f(trial);
        if (fTrial <= fBest) {
            if (trial >= best)
                low = best;
            else
                high = best;
            previousSecond = second;
            second = best;
            best = trial;
            fPreviousSecond = fSecond;
            fSecond = fBest;
            fBest = fTrial;
        } else {
            if (trial < best)
                low = trial;
            else
                high = trial;
            if (fTrial <= fSecond || second == best) {
                previousSecond = second;
                second = trial;
                fPreviousSecond = fSecond;
                fSecond = fTrial;
            } else if (fTrial <= fPreviousSecond || previousSecond == best || previousSecond == second) {
                previousSecond = trial;
                fPreviousSecond = fTrial;
            }
        }
    }
    reporter.Show(NumericEvent::BrentTooManyIterations);
    xmin = best;
    return fBest;
}

} // namespace ba::numeric
