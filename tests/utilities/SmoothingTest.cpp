// Filter and despike: the moving mean, triangular mean, running median and despiker on
// values worked by hand (nulls, both ends, an even count of usable samples), then on a
// long noisy log against a direct computation of every window (sorting each window for
// the median and its median absolute deviation), long enough for the window sums to be
// computed afresh along the way; the changes, their names and their refusals. Values are
// compared within 1e-5 relative: the direct computation uses the same double arithmetic
// in another order.

#include "utilities/DespikeTrace.h"
#include "utilities/FilterTrace.h"
#include "utilities/MedianFilters.h"
#include "utilities/MovingAverage.h"

#include "DepthUtilityFixtures.h"
#include "model/ImageTrace.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>
#include <vector>

namespace ba {
namespace {

using test::AddLine;
using test::ApplyAndCheckHistory;
using test::ExpectRefused;
using test::kNull;

void ExpectValues(const std::vector<float>& actual, const std::vector<float>& expected, const char* what)
{
    ASSERT_EQ(actual.size(), expected.size()) << what;
    for (std::size_t i = 0; i < expected.size(); ++i) {
        if (IsNullSample(expected[i]) || std::isnan(expected[i])) {
            EXPECT_EQ(std::bit_cast<std::uint32_t>(actual[i]), std::bit_cast<std::uint32_t>(expected[i]))
                << what << " sample " << i;
        } else {
            EXPECT_NEAR(actual[i], expected[i], 1e-5 * std::max(1.0f, std::abs(expected[i]))) << what << " sample " << i;
        }
    }
}

enum class Kernel { Mean, Triangle, Median, Despike };

std::vector<float> RunKernel(Kernel kernel, const std::vector<float>& values, std::size_t window, double k = 3.0)
{
    std::vector<float> out(values.size());
    switch (kernel) {
    case Kernel::Mean: MovingAverage(values, window, AverageWeights::Boxcar, out); break;
    case Kernel::Triangle: MovingAverage(values, window, AverageWeights::Triangle, out); break;
    case Kernel::Median: MedianFilter(values, window, out); break;
    case Kernel::Despike: Despike(values, window, k, out); break;
    }
    return out;
}

constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();

TEST(Smoothing, KernelsOnValuesWorkedByHand)
{
    // Window 3 over 1 2 10 4 null 6 7: the ends and the samples beside the null see two
    // usable samples; the null and the NaN stay as they are.
    const std::vector<float> log = {1, 2, 10, 4, kNull, 6, 7};
    struct Case {
        const char* what;
        Kernel kernel;
        std::vector<float> values;
        std::size_t window;
        std::vector<float> expected;
    };
    const Case cases[] = {
        {"mean", Kernel::Mean, log, 3, {1.5f, 13.0f / 3, 16.0f / 3, 7, kNull, 6.5f, 6.5f}},
        // Weights 1 2 1: (2*1 + 2)/3, (1 + 4 + 10)/4, (2 + 20 + 4)/4, (10 + 8)/3, (12 + 7)/3, (6 + 14)/3.
        {"triangle", Kernel::Triangle, log, 3, {4.0f / 3, 3.75f, 6.5f, 6, kNull, 19.0f / 3, 20.0f / 3}},
        // Weights 1 2 3 2 1: at 0 (3*1 + 2*2 + 10)/6; at 3 (2 + 2*10 + 3*4 + 6)/7, the null's
        // weight 2 dropping out.
        {"triangle, window 5", Kernel::Triangle, log, 5,
         {17.0f / 6, 4, 43.0f / 8, 40.0f / 7, kNull, 6, 6.6f}},
        {"median", Kernel::Median, log, 3, {1.5f, 2, 4, 7, kNull, 6.5f, 6.5f}},
        {"not a number is a gap", Kernel::Mean, {1, kNaN, 3}, 3, {1, kNaN, 3}},
        // Sample 3's window 11 10 50 11 10 has median 11 and MAD 1: 50 is 39 MADs out.
        // Sample 5's window 50 11 10 12: median 11.5, distances .5 .5 1.5 38.5, MAD 1.
        {"despike, K 3", Kernel::Despike, {10, 11, 10, 50, 11, 10, 12}, 5, {10, 11, 10, 11, 11, 10, 12}},
        // A flat window has MAD 0, so any other value in it is a spike.
        {"despike, MAD 0", Kernel::Despike, {5, 5, 5, 6, 5}, 5, {5, 5, 5, 5, 5}},
        // Sample 3's window 5 90 5 has MAD 0; sample 2's is 5 90 without the null (median
        // 47.5, MAD 42.5), where 5 is one MAD out.
        {"despike leaves nulls out", Kernel::Despike, {5, kNull, 5, 90, 5}, 3, {5, kNull, 5, 5, 5}},
    };
    for (const Case& c : cases) ExpectValues(RunKernel(c.kernel, c.values, c.window), c.expected, c.what);
}

// The direct computation: every window read afresh.
std::vector<float> DirectKernel(Kernel kernel, const std::vector<float>& values, std::size_t window, double k)
{
    const auto n = static_cast<std::ptrdiff_t>(values.size());
    const auto h = static_cast<std::ptrdiff_t>(window / 2);
    std::vector<float> out = values;
    for (std::ptrdiff_t i = 0; i < n; ++i) {
        if (IsNullSample(values[i])) continue;
        double sum = 0.0;
        double weight = 0.0;
        std::vector<double> held;
        for (std::ptrdiff_t j = std::max<std::ptrdiff_t>(0, i - h); j <= std::min(n - 1, i + h); ++j) {
            if (IsNullSample(values[j])) continue;
            const double w = kernel == Kernel::Triangle ? static_cast<double>(h + 1 - std::abs(i - j)) : 1.0;
            sum += w * values[j];
            weight += w;
            held.push_back(values[j]);
        }
        const auto median = [](std::vector<double> v) {
            std::sort(v.begin(), v.end());
            const std::size_t m = v.size();
            return m % 2 == 1 ? v[m / 2] : (v[m / 2 - 1] + v[m / 2]) / 2.0;
        };
        const double m = median(held);
        if (kernel == Kernel::Mean || kernel == Kernel::Triangle) {
            out[i] = static_cast<float>(sum / weight);
        } else if (kernel == Kernel::Median) {
            out[i] = static_cast<float>(m);
        } else {
            std::vector<double> distances;
            for (const double v : held) distances.push_back(std::abs(v - m));
            if (std::abs(values[i] - m) > k * median(distances)) out[i] = static_cast<float>(m);
        }
    }
    return out;
}

TEST(Smoothing, KernelsAgreeWithEveryWindowComputedDirectly)
{
    // 10,000 samples of a gamma-ray-like curve with noise, spikes and runs of nulls; the
    // sums are computed afresh every 4096 samples, so the carried sums are checked across
    // two of those points.
    std::mt19937 random(17);
    std::normal_distribution<float> noise(0.0f, 3.0f);
    std::uniform_int_distribution<int> roll(0, 99);
    std::vector<float> log(10'000);
    for (std::size_t i = 0; i < log.size(); ++i) {
        const int r = roll(random);
        log[i] = r < 3 ? kNull : r < 5 ? 400.0f : 80.0f + 30.0f * std::sin(0.01f * static_cast<float>(i)) + noise(random);
    }
    for (std::size_t i = 5000; i < 5020; ++i) log[i] = kNull;
    for (const Kernel kernel : {Kernel::Mean, Kernel::Triangle, Kernel::Median, Kernel::Despike}) {
        for (const std::size_t window : {3u, 11u, 101u}) {
            const std::string what = "kernel " + std::to_string(static_cast<int>(kernel)) + ", window " +
                                     std::to_string(window);
            ExpectValues(RunKernel(kernel, log, window, 2.5), DirectKernel(kernel, log, window, 2.5), what.c_str());
        }
    }
}

const test::LineSetup kGamma = {"GR", "API", {100, 101, 102, 103, 104, 105, 106}, {1, 2, 10, 4, kNull, 6, 7}};

TEST(Smoothing, FilterAndDespikeReplaceTheTraceOrAddANewOne)
{
    {
        CBoreAnalystDoc doc;
        AddLine(doc, kGamma);
        ApplyAndCheckHistory(
            doc,
            [&](IMessageSink& sink) { return MakeFilterChange(doc, 0, {FilterKind::Median, 3, ""}, sink); },
            "Filter GR");
        ASSERT_EQ(doc.TraceCount(), 1u);
        test::ExpectSamples(doc.Trace(0), kGamma.depths, {1.5f, 2, 4, 7, kNull, 6.5f, 6.5f}, 1e-5);
        // The result keeps the trace's pen and scale.
        const auto& line = static_cast<const CLineTrace&>(doc.Trace(0));
        EXPECT_EQ(line.PenWidth(), 2);
        EXPECT_EQ(line.ScaleLeft(), -5.0f);
    }
    {
        CBoreAnalystDoc doc;
        AddLine(doc, kGamma);
        ApplyAndCheckHistory(
            doc, [&](IMessageSink& sink) { return MakeDespikeChange(doc, 0, {3, 1.0f, "GR clean"}, sink); },
            "Despike GR");
        ASSERT_EQ(doc.TraceCount(), 2u);
        test::ExpectSamples(doc.Trace(0), kGamma.depths, kGamma.values, 0.0);
        EXPECT_EQ(doc.Trace(1).Name(), "GR clean");
        // Windows 1 2 | 1 2 10 | 2 10 4 | 10 4 | - | 6 7 | 6 7: only 10 lies more than one
        // MAD from its window's median (median 4, MAD 2); in a window of two samples each
        // lies exactly one MAD from the median, which is not more.
        test::ExpectSamples(doc.Trace(1), kGamma.depths, {1, 2, 4, 4, kNull, 6, 7}, 1e-5);
    }
}

TEST(Smoothing, RefusalsNameWhatIsWrong)
{
    CBoreAnalystDoc doc;
    AddLine(doc, kGamma);
    AddLine(doc, {"GR2", "API", {1}, {1}});
    doc.AddTrace(std::make_unique<CImageTrace>("IMG", 0.0f, 100.0f, "us"));
    struct Case {
        const char* what;
        std::function<std::unique_ptr<CDocumentChange>(IMessageSink&)> make;
        std::string message;
    };
    const Case cases[] = {
        {"even window", [&](IMessageSink& s) { return MakeFilterChange(doc, 0, {FilterKind::Mean, 4, ""}, s); },
         "Error: The filter window must be an odd number of samples, 3 or more; 4 was given."},
        {"window of one", [&](IMessageSink& s) { return MakeDespikeChange(doc, 0, {1, 3.0f, ""}, s); },
         "Error: The despike window must be an odd number of samples, 3 or more; 1 was given."},
        {"window longer than the trace",
         [&](IMessageSink& s) { return MakeFilterChange(doc, 0, {FilterKind::Triangle, 9, ""}, s); },
         "Error: The filter window of 9 samples is longer than trace \"GR\" (7 samples)."},
        {"not a line trace", [&](IMessageSink& s) { return MakeFilterChange(doc, 2, {FilterKind::Mean, 3, ""}, s); },
         "Error: Cannot filter trace \"IMG\": it is an image trace, not a line trace."},
        {"name taken", [&](IMessageSink& s) { return MakeFilterChange(doc, 0, {FilterKind::Mean, 3, "GR2"}, s); },
         "Error: A trace named \"GR2\" already exists; choose another name for the new trace."},
        {"K of 0", [&](IMessageSink& s) { return MakeDespikeChange(doc, 0, {3, 0.0f, ""}, s); },
         "Error: The spike factor K must be a number greater than 0; 0 was given."},
        {"no such trace", [&](IMessageSink& s) { return MakeDespikeChange(doc, 5, {3, 2.0f, ""}, s); },
         "Error: The document has no trace 5; it holds 3 traces."},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        ExpectRefused(doc, c.make, c.message);
    }
}

} // namespace
} // namespace ba
