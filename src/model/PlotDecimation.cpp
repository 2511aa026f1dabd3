#include "model/PlotDecimation.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>
#include <system_error>
#include <thread>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace ba {
namespace {

// A value that cannot be placed on the plot: the null value, or not a number.
bool IsGapValue(float value) { return IsNullSample(value) || value != value; }

// Turns samples, met in depth order, into runs. A block is a stretch of gap-free samples
// in one row, added at once with its extremes.
class RunBuilder {
public:
    void AddGap()
    {
        Close();
        m_joinNext = false;
    }

    void AddBlock(std::int32_t row, float first, float last, float minimum, float maximum)
    {
        if (m_open && m_run.row == row) {
            m_run.last = last;
            m_run.minimum = std::min(m_run.minimum, minimum);
            m_run.maximum = std::max(m_run.maximum, maximum);
            return;
        }
        Close();
        m_run = {row, first, last, minimum, maximum, m_joinNext};
        m_open = true;
        m_joinNext = true;
    }

    void AddSample(std::int32_t row, float value)
    {
        if (IsGapValue(value))
            AddGap();
        else
            AddBlock(row, value, value, value, value);
    }

    std::vector<CurveRun> Finish()
    {
        Close();
        return std::move(m_runs);
    }

private:
    void Close()
    {
        if (m_open) m_runs.push_back(m_run);
        m_open = false;
    }

    std::vector<CurveRun> m_runs;
    CurveRun m_run;
    bool m_open = false;
    bool m_joinNext = false;
};

// Display depths of a trace, read the way CTrace::Depth reads them.
class DisplayDepths {
public:
    explicit DisplayDepths(const CTrace& trace)
        : m_depths(trace.StoredDepths().Data()), m_count(trace.SampleCount()),
          m_factor(DepthUnitFactor(trace.DepthUnit()))
    {
    }
    float operator()(std::size_t i) const { return static_cast<float>(static_cast<double>(m_depths[i]) * m_factor); }
    std::size_t Count() const { return m_count; }

    // First index in [from, to) for which `before` is false; `before` must hold for a
    // prefix of the range.
    template <typename Before>
    std::size_t PartitionPoint(std::size_t from, std::size_t to, Before before) const
    {
        while (from < to) {
            const std::size_t mid = from + (to - from) / 2;
            if (before((*this)(mid)))
                from = mid + 1;
            else
                to = mid;
        }
        return from;
    }

private:
    const float* m_depths;
    std::size_t m_count;
    double m_factor;
};

// The samples [begin, end) that the window shows: past top, before bottom, inside the rows.
struct SampleRange {
    std::size_t begin = 0;
    std::size_t end = 0;
};

SampleRange ShownSamples(const DisplayDepths& depths, const PlotRowWindow& window)
{
    const std::size_t count = depths.Count();
    const std::size_t begin = depths.PartitionPoint(0, count, [&](float d) { return !(d > window.top); });
    const std::size_t end = depths.PartitionPoint(begin, count, [&](float d) {
        return d < window.bottom && window.RowOf(d) < window.rows;
    });
    return {begin, end};
}

// Smallest and largest of values[begin, end), and whether any of them is a gap. When
// there is a gap the extremes mean nothing: the caller then walks the samples one by one.
// This loop is what a plot of the whole depth range spends its time in, hence the
// vector instructions where the target has them.
struct BlockExtremes {
    float minimum;
    float maximum;
    bool hasGap;
};

BlockExtremes ScanBlock(const float* values, std::size_t begin, std::size_t end)
{
    constexpr float kInf = std::numeric_limits<float>::infinity();
    BlockExtremes result{kInf, -kInf, false};
    std::size_t i = begin;
#if defined(__SSE2__)
    __m128 mins = _mm_set1_ps(kInf);
    __m128 maxs = _mm_set1_ps(-kInf);
    __m128 gaps = _mm_setzero_ps();
    const __m128 null = _mm_set1_ps(kNullValue);
    for (; i + 4 <= end; i += 4) {
        const __m128 v = _mm_loadu_ps(values + i);
        gaps = _mm_or_ps(gaps, _mm_or_ps(_mm_cmpeq_ps(v, null), _mm_cmpunord_ps(v, v)));
        mins = _mm_min_ps(mins, v);
        maxs = _mm_max_ps(maxs, v);
    }
    alignas(16) float lanes[4];
    _mm_store_ps(lanes, mins);
    for (const float lane : lanes) result.minimum = std::min(result.minimum, lane);
    _mm_store_ps(lanes, maxs);
    for (const float lane : lanes) result.maximum = std::max(result.maximum, lane);
    result.hasGap = _mm_movemask_ps(gaps) != 0;
#endif
    for (; i < end; ++i) {
        const float v = values[i];
        result.hasGap = result.hasGap || IsGapValue(v);
        result.minimum = std::min(result.minimum, v);
        result.maximum = std::max(result.maximum, v);
    }
    return result;
}

void AddSamples(RunBuilder& builder, const DisplayDepths& depths, const CLineTrace& trace,
                const PlotRowWindow& window, std::size_t begin, std::size_t end)
{
    for (std::size_t i = begin; i < end; ++i)
        builder.AddSample(static_cast<std::int32_t>(window.RowOf(depths(i))), trace.Value(i));
}

// Rows hold several samples on average beyond this density, and searching for each row's
// end beats visiting every sample.
constexpr std::size_t kSamplesPerRowForSearch = 4;

// Below this many samples in all, starting a thread costs more than it saves.
constexpr std::size_t kSamplesForThreads = 1'000'000;

} // namespace

std::int64_t PlotRowWindow::RowOf(float d) const
{
    const double row = std::floor((static_cast<double>(d) - top) * rowsPerDepth);
    // Depths far outside the window still order correctly without overflowing.
    constexpr double kLimit = 1.0e15;
    return static_cast<std::int64_t>(std::clamp(row, -kLimit, kLimit));
}

std::size_t FirstSampleAfter(const CTrace& trace, float depth)
{
    const DisplayDepths depths(trace);
    return depths.PartitionPoint(0, depths.Count(), [&](float d) { return !(d > depth); });
}

std::vector<CurveRun> DecimateCurveBySample(const CLineTrace& trace, const PlotRowWindow& window)
{
    RunBuilder builder;
    if (window.rows <= 0) return builder.Finish();
    const DisplayDepths depths(trace);
    for (std::size_t i = 0; i < depths.Count(); ++i) {
        const float d = depths(i);
        if (!(window.top < d && d < window.bottom)) continue;
        const std::int64_t row = window.RowOf(d);
        if (row < 0 || row >= window.rows) continue;
        builder.AddSample(static_cast<std::int32_t>(row), trace.Value(i));
    }
    return builder.Finish();
}

std::vector<CurveRun> DecimateCurve(const CLineTrace& trace, const PlotRowWindow& window)
{
    RunBuilder builder;
    if (window.rows <= 0) return builder.Finish();
    const DisplayDepths depths(trace);
    // Values beyond the depths (a malformed trace) are never read: Value() guards them.
    const SampleRange shown = ShownSamples(depths, window);
    const std::size_t valueCount = trace.Values().Size();
    if (shown.end - shown.begin <= kSamplesPerRowForSearch * static_cast<std::size_t>(window.rows) ||
        valueCount < shown.end) {
        AddSamples(builder, depths, trace, window, shown.begin, shown.end);
        return builder.Finish();
    }
    const float* values = trace.Values().Data();
    std::size_t i = shown.begin;
    while (i < shown.end) {
        const std::int64_t row = window.RowOf(depths(i));
        const std::size_t rowEnd =
            depths.PartitionPoint(i + 1, shown.end, [&](float d) { return window.RowOf(d) <= row; });
        const BlockExtremes block = ScanBlock(values, i, rowEnd);
        if (block.hasGap) {
            AddSamples(builder, depths, trace, window, i, rowEnd);
        } else {
            builder.AddBlock(static_cast<std::int32_t>(row), values[i], values[rowEnd - 1], block.minimum,
                             block.maximum);
        }
        i = rowEnd;
    }
    return builder.Finish();
}

std::vector<std::vector<CurveRun>> DecimateCurves(std::span<const CLineTrace* const> traces,
                                                  const PlotRowWindow& window)
{
    std::vector<std::vector<CurveRun>> runs(traces.size());
    const std::size_t samples = std::accumulate(traces.begin(), traces.end(), std::size_t{0},
                                                [](std::size_t sum, const CLineTrace* t) { return sum + t->SampleCount(); });
    const std::size_t threads = std::min<std::size_t>(std::max(1u, std::thread::hardware_concurrency()), traces.size());
    if (threads <= 1 || samples < kSamplesForThreads) {
        for (std::size_t k = 0; k < traces.size(); ++k) runs[k] = DecimateCurve(*traces[k], window);
        return runs;
    }
    // Worker w takes traces w, w + threads, ...; each writes only its own results.
    auto work = [&](std::size_t first) {
        for (std::size_t k = first; k < traces.size(); k += threads) runs[k] = DecimateCurve(*traces[k], window);
    };
    std::size_t started = 1;
    {
        std::vector<std::jthread> workers;
        workers.reserve(threads - 1);
        try {
            for (; started < threads; ++started) workers.emplace_back(work, started);
        } catch (const std::system_error&) {
            // No thread to be had: the shares of the workers that did not start are done here.
        }
        work(0);
    }
    for (std::size_t w = started; w < threads; ++w) work(w);
    return runs;
}

} // namespace ba
