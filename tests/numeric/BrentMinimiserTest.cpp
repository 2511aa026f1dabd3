#include "numeric/BrentMinimiser.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <string>
#include <vector>

namespace ba::numeric {
namespace {

TEST(Brent, FindsTheMinimumInsideTheBracket)
{
    struct Case {
        const char* name;
        Objective f;
        float ax, bx, cx;
        double xmin, fmin;
        double xTolerance;  // set by how flat the function is in single precision
    };
    const Case cases[] = {
        {"parabola", [](float x) { return (x - 2.0f) * (x - 2.0f) + 1.0f; }, 0.0f, 1.0f, 5.0f, 2.0, 1.0, 1e-3},
        {"parabola, bracket given high to low", [](float x) { return 3.0f * (x + 1.5f) * (x + 1.5f) - 4.0f; },
         1.0f, -1.0f, -6.0f, -1.5, -4.0, 1e-3},
        // cos is flat to single precision within about 3e-4 of pi.
        {"cos", [](float x) { return std::cos(x); }, 2.0f, 3.0f, 4.0f, std::numbers::pi, -1.0, 1e-3},
        {"minimum at zero", [](float x) { return x * x; }, -1.0f, 0.3f, 2.0f, 0.0, 0.0, 1e-3},
    };
    for (const auto& c : cases) {
        CollectingMessageSink sink;
        const NumericReporter reporter(sink, NumericVariant::SpectralFit);
        float xmin = -99.0f;
        const float fmin = brent(c.ax, c.bx, c.cx, c.f, 1.0e-4f, xmin, reporter);
        EXPECT_NEAR(xmin, c.xmin, c.xTolerance) << c.name;
        EXPECT_NEAR(fmin, c.fmin, 1e-6) << c.name;
        EXPECT_EQ(fmin, c.f(xmin)) << c.name;
        EXPECT_TRUE(sink.messages.empty()) << c.name;
    }
}

TEST(Brent, IterationLimitReportsAndReturnsTheBestPoint)
{
    CollectingMessageSink sink;
    const NumericReporter reporter(sink, NumericVariant::SpectralFit);
    int calls = 0;
    // Near 1e6 neighbouring floats are 0.0625 apart, far coarser than the requested
    // precision, so the bracket can never become narrow enough.
    const Objective f = [&calls](float x) {
        ++calls;
        const float d = x - 1.0e6f;
        return d * d;
    };
    float xmin = 0.0f;
    const float fmin = brent(1.0e6f - 100.0f, 1.0e6f + 3.0f, 1.0e6f + 100.0f, f, 0.0f, xmin, reporter);
    EXPECT_EQ(sink.Texts(), std::vector<std::string>{"Too many iterations in brent"});
    EXPECT_EQ(calls, 101);  // the middle point, then one evaluation per iteration
    EXPECT_NEAR(xmin, 1.0e6f, 0.0625f);
    EXPECT_EQ(fmin, f(xmin));
}

} // namespace
} // namespace ba::numeric
