#include "utilities/Resample.h"

#include "utilities/ResultName.h"
#include "utilities/SampleFreeCopy.h"
#include "utilities/TargetTrace.h"
#include "utilities/TraceDepths.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace ba {
namespace {

constexpr std::string_view kDescription = "Resample ";
constexpr std::size_t kIrregularAxisFlag = 2;

// The new depths are worked out from typed decimal numbers that binary floating point
// holds only approximately, so the last one may miss the end of the trace or of the
// interval by a rounding error. A new sample within this fraction of a step of an end of
// the trace counts as lying on it, and a count of steps this close to the next whole
// number (in steps) reaches it.
constexpr double kEndTolerance = 1e-3;
constexpr double kCountTolerance = 1e-6;
// A step this close to the mean spacing (relatively) counts as equal to it: no coarsening.
constexpr double kSpacingTolerance = 1e-6;

std::string FloatText(float value)
{
    char buffer[32];
    return std::string(buffer, std::to_chars(buffer, buffer + sizeof buffer, value).ptr);
}

// The old samples as the methods read them: display depths and values (one per depth:
// a trace whose arrays differ in length is refused before).
class OldSamples {
public:
    explicit OldSamples(const CLineTrace& trace)
        : m_depths(trace.StoredDepths().Data()), m_values(trace.Values().Data()), m_count(trace.SampleCount()),
          m_factor(DepthUnitFactor(trace.DepthUnit()))
    {
    }
    std::size_t Count() const { return m_count; }
    double Depth(std::size_t i) const { return m_depths[i] * m_factor; }
    float Value(std::size_t i) const { return m_values[i]; }
    double First() const { return Depth(0); }
    double Last() const { return Depth(m_count - 1); }

private:
    const float* m_depths;
    const float* m_values;
    std::size_t m_count;
    double m_factor;
};

// The new samples: `count` of them from `top` every `step` (display units).
struct Grid {
    double top = 0.0;
    double step = 0.0;
    std::size_t count = 0;
    double factor = 1.0;
    double toStored = 1.0; // 1 / factor: a product per sample is much cheaper than a quotient

    double Nominal(double k) const { return top + k * step; }
    float StoredDepth(std::size_t k) const { return static_cast<float>(Nominal(static_cast<double>(k)) * toStored); }
};

// Runs `valueAt(k, z)` for every new sample that lies within the old samples (z its
// display depth, moved onto the end it is within tolerance of); the others are null.
template <typename ValueAt>
void FillGrid(const OldSamples& old, const Grid& grid, float* depths, float* values, ValueAt&& valueAt)
{
    const double tolerance = kEndTolerance * grid.step;
    const double first = old.First();
    const double last = old.Last();
    for (std::size_t k = 0; k < grid.count; ++k) {
        depths[k] = grid.StoredDepth(k);
        const double z = depths[k] * grid.factor;
        values[k] = z < first - tolerance || z > last + tolerance ? kNullValue
                                                                   : valueAt(k, std::clamp(z, first, last));
    }
}

void FillLinear(const OldSamples& old, const Grid& grid, float* depths, float* values)
{
    std::size_t j = 0; // the last old sample at or above z; z only moves down
    FillGrid(old, grid, depths, values, [&](std::size_t, double z) {
        while (j + 1 < old.Count() && old.Depth(j + 1) <= z) ++j;
        const double d0 = old.Depth(j);
        if (d0 == z) return old.Value(j);
        const float v0 = old.Value(j);
        const float v1 = old.Value(j + 1);
        if (IsNullSample(v0) || IsNullSample(v1)) return kNullValue;
        const double d1 = old.Depth(j + 1);
        return static_cast<float>(v0 + (z - d0) * (static_cast<double>(v1) - v0) / (d1 - d0));
    });
}

void FillNearest(const OldSamples& old, const Grid& grid, float* depths, float* values)
{
    std::size_t j = 0;
    FillGrid(old, grid, depths, values, [&](std::size_t, double z) {
        while (j + 1 < old.Count() && old.Depth(j + 1) <= z) ++j;
        // Without branches: which of two samples is nearer is a coin toss when the new
        // depths fall halfway between the old ones, and a mispredicted branch per sample
        // would cost more than the rest of the work.
        const std::size_t next = std::min(j + 1, old.Count() - 1);
        const bool lowerIsNearer = old.Depth(next) - z < z - old.Depth(j);
        return old.Value(j + static_cast<std::size_t>(lowerIsNearer));
    });
}

void FillAverage(const OldSamples& old, const Grid& grid, float* depths, float* values)
{
    // Block k runs from its nominal depth less half a step to its nominal depth plus half a
    // step, that end excluded; consecutive blocks share their edges exactly, so every old
    // sample falls into one block at most.
    std::size_t j = 0;
    FillGrid(old, grid, depths, values, [&](std::size_t k, double) {
        const double upper = grid.Nominal(static_cast<double>(k) + 0.5);
        const double lower = grid.Nominal(static_cast<double>(k) - 0.5);
        while (j < old.Count() && old.Depth(j) < lower) ++j;
        double sum = 0.0;
        std::size_t taken = 0;
        for (; j < old.Count() && old.Depth(j) < upper; ++j) {
            const float v = old.Value(j);
            if (IsNullSample(v)) continue;
            sum += v;
            ++taken;
        }
        return taken == 0 ? kNullValue : static_cast<float>(sum / static_cast<double>(taken));
    });
}

const CLineTrace* ResamplableTrace(const CBoreAnalystDoc& doc, std::size_t traceIndex, IMessageSink& sink)
{
    const CLineTrace* line = FindTargetLineTrace(doc, traceIndex, "resample", sink);
    if (line == nullptr) return nullptr;
    if (line->SampleCount() == 0) {
        sink.Error("Error: Nothing to resample: " + TraceLabel(*line) + " has no samples.");
        return nullptr;
    }
    return CheckDepthsAscend(*line, sink) ? line : nullptr;
}

// The new samples for `request` over `old`, or nothing when the step or the interval
// cannot be used (reported).
std::optional<Grid> MakeGrid(const CLineTrace& trace, const OldSamples& old, const ResampleRequest& request,
                             IMessageSink& sink)
{
    const std::int32_t unit = trace.DepthUnit();
    if (!(request.step > 0.0) || !std::isfinite(request.step)) {
        sink.Error("Error: The resampling step must be a number greater than 0, not " +
                   FloatText(static_cast<float>(request.step)) + ".");
        return std::nullopt;
    }
    if ((request.top && !std::isfinite(*request.top)) || (request.bottom && !std::isfinite(*request.bottom))) {
        sink.Error("Error: The top and bottom of the resampling interval must be finite numbers.");
        return std::nullopt;
    }
    Grid grid;
    grid.step = request.step;
    grid.factor = DepthUnitFactor(unit);
    grid.toStored = 1.0 / grid.factor;
    grid.top = request.top ? *request.top : old.First();
    const double bottom = request.bottom ? *request.bottom : old.Last();
    if (request.top && request.bottom && !(grid.top < bottom)) {
        sink.Error("Error: The top of the resampling interval (" + DepthText(grid.top, unit) +
                   ") must lie above its bottom (" + DepthText(bottom, unit) + ").");
        return std::nullopt;
    }
    if (grid.top > old.Last()) {
        sink.Error("Error: The top of the resampling interval (" + DepthText(grid.top, unit) +
                   ") lies below the last sample of " + TraceLabel(trace) + " (" + DepthText(old.Last(), unit) +
                   ").");
        return std::nullopt;
    }
    if (bottom < old.First()) {
        sink.Error("Error: The bottom of the resampling interval (" + DepthText(bottom, unit) +
                   ") lies above the first sample of " + TraceLabel(trace) + " (" + DepthText(old.First(), unit) +
                   ").");
        return std::nullopt;
    }
    const double steps = (bottom - grid.top) / grid.step;
    const double wholeSteps = std::floor(steps + kCountTolerance);
    if (wholeSteps + 1.0 > static_cast<double>(kMaxResampledSamples)) {
        sink.Error("Error: Resampling " + TraceLabel(trace) + " every " + DepthText(grid.step, unit) + " from " +
                   DepthText(grid.top, unit) + " to " + DepthText(bottom, unit) + " would make more than " +
                   std::to_string(kMaxResampledSamples) + " samples.");
        return std::nullopt;
    }
    grid.count = static_cast<std::size_t>(wholeSteps) + 1;
    return grid;
}

} // namespace

ResampleMethod AutomaticResampleMethod(const CLineTrace& trace, double step)
{
    const std::size_t n = trace.SampleCount();
    if (n < 2) return ResampleMethod::Linear;
    const OldSamples old(trace);
    const double spacing = (old.Last() - old.First()) / static_cast<double>(n - 1);
    return step > spacing * (1.0 + kSpacingTolerance) ? ResampleMethod::Average : ResampleMethod::Linear;
}

std::unique_ptr<CDocumentChange> ResampleTrace(const CBoreAnalystDoc& doc, std::size_t traceIndex,
                                               const ResampleRequest& request, IMessageSink& sink)
{
    const CLineTrace* line = ResamplableTrace(doc, traceIndex, sink);
    if (line == nullptr) return nullptr;
    const OldSamples old(*line);
    const auto grid = MakeGrid(*line, old, request, sink);
    if (!grid || !CheckResultName(doc, request.newName, sink)) return nullptr;

    std::unique_ptr<CLineTrace> resampled = CopyWithoutSamples(*line);
    CFloatArray& depths = resampled->StoredDepths();
    CFloatArray& values = resampled->Values();
    depths.SetSize(grid->count);
    values.SetSize(grid->count);
    ResampleMethod method = request.method;
    if (method == ResampleMethod::Automatic) method = AutomaticResampleMethod(*line, request.step);
    switch (method) {
    case ResampleMethod::Average: FillAverage(old, *grid, depths.Data(), values.Data()); break;
    case ResampleMethod::Nearest: FillNearest(old, *grid, depths.Data(), values.Data()); break;
    case ResampleMethod::Automatic:
    case ResampleMethod::Linear: FillLinear(old, *grid, depths.Data(), values.Data()); break;
    }
    resampled->SetFlag(kIrregularAxisFlag, false);
    return MakeResultChange(std::string(kDescription) + line->Name(), traceIndex, std::move(resampled),
                            request.newName);
}

} // namespace ba
