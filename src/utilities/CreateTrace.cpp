#include "utilities/CreateTrace.h"

#include "evaluation/FormulaEvaluation.h"
#include "model/DerivedLineTraces.h"
#include "model/DocumentChanges.h"
#include "model/TraceProperties.h"
#include "utilities/ResultName.h"
#include "utilities/TraceDepths.h"
#include "utilities/UsableSample.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <utility>
#include <vector>

namespace ba {
namespace {

// Allowance for a step that does not divide TOP..BOTTOM exactly in binary (0.1 m steps).
constexpr double kLastSampleAllowance = 1e-6;

// How many samples TOP..BOTTOM at STEP makes, or nothing after a message.
std::optional<std::size_t> SampleCount(const CreateRequest& request, std::int32_t depthUnit, IMessageSink& sink)
{
    if (!CheckDepthInterval(request.interval, depthUnit, sink)) return std::nullopt;
    if (!(std::isfinite(request.step) && request.step > 0.0)) {
        sink.Error("Error: The step must be a number greater than 0; " + DepthText(request.step, depthUnit) +
                   " was given.");
        return std::nullopt;
    }
    const double steps = std::floor((request.interval.bottom - request.interval.top) / request.step +
                                    kLastSampleAllowance);
    if (!(steps < static_cast<double>(kMostCreatedSamples))) {
        sink.Error("Error: " + DepthIntervalText(request.interval, depthUnit) + " at a step of " +
                   DepthText(request.step, depthUnit) + " would make more than " +
                   std::to_string(kMostCreatedSamples) + " samples.");
        return std::nullopt;
    }
    return static_cast<std::size_t>(steps) + 1;
}

bool CheckValues(const CreateRequest& request, IMessageSink& sink)
{
    const bool finite = request.source == CreateSource::Constant ? std::isfinite(request.constant)
                        : request.source == CreateSource::Ramp
                            ? std::isfinite(request.rampStart) && std::isfinite(request.rampEnd)
                            : true;
    if (!finite) sink.Error("Error: The values of a new trace must be finite numbers.");
    return finite;
}

// A scale that shows the whole curve: its smallest and largest values, widened by a half
// on either side when they are equal.
void ScaleToValues(CLineTrace& trace)
{
    float lo = 0.0f;
    float hi = 0.0f;
    bool any = false;
    for (const float v : trace.Values().Items()) {
        if (!IsUsableSample(v)) continue;
        lo = any ? std::min(lo, v) : v;
        hi = any ? std::max(hi, v) : v;
        any = true;
    }
    if (!any || lo == hi) {
        lo = any ? lo - 0.5f : 0.0f;
        hi = any ? hi + 0.5f : 1.0f;
    }
    trace.SetScale(lo, hi);
}

bool FillValues(const CBoreAnalystDoc& doc, const CreateRequest& request, CLineTrace& trace, IMessageSink& sink)
{
    const std::size_t n = trace.SampleCount();
    CFloatArray& values = trace.Values();
    switch (request.source) {
    case CreateSource::Constant:
        values.SetSize(n);
        std::fill(values.Data(), values.Data() + n, request.constant);
        return true;
    case CreateSource::Ramp: {
        values.SetSize(n);
        const double start = request.rampStart;
        const double rise = static_cast<double>(request.rampEnd) - start;
        for (std::size_t k = 0; k < n; ++k) {
            values[k] = n == 1 ? request.rampStart
                               : static_cast<float>(start + rise * static_cast<double>(k) / static_cast<double>(n - 1));
        }
        return true;
    }
    case CreateSource::Formula: {
        std::vector<float> depths(n);
        for (std::size_t k = 0; k < n; ++k) depths[k] = trace.Depth(k);
        auto computed = EvaluateFormulaAtDepths(doc, request.formula, depths, trace.DepthUnit(), trace.Name(), sink);
        if (!computed) return false;
        values.Assign(*computed);
        return true;
    }
    }
    return false;
}

} // namespace

std::unique_ptr<CDocumentChange> MakeCreateChange(const CBoreAnalystDoc& doc, const CreateRequest& request,
                                                  IMessageSink& sink)
{
    if (request.name.empty()) {
        sink.Error(std::string(kEmptyTraceNameMessage));
        return nullptr;
    }
    if (!CheckResultName(doc, request.name, sink)) return nullptr;
    auto trace = MakeDerivedLineTrace(doc, 0.0f, 1.0f, request.name, request.units);
    const std::optional<std::size_t> count = SampleCount(request, trace->DepthUnit(), sink);
    if (!count || !CheckValues(request, sink)) return nullptr;

    // Each depth is computed from TOP afresh, so no rounding builds up along the trace.
    const double toStored = 1.0 / DepthUnitFactor(trace->DepthUnit());
    CFloatArray& depths = trace->StoredDepths();
    depths.SetSize(*count);
    for (std::size_t k = 0; k < *count; ++k) {
        const double depth = request.interval.top + static_cast<double>(k) * request.step;
        depths[k] = static_cast<float>(depth * toStored);
    }
    if (const auto unordered = FirstUnorderedSample(*trace)) {
        sink.Error("Error: A step of " + DepthText(request.step, trace->DepthUnit()) + " is too fine for depths near " +
                   DepthText(trace->Depth(*unordered), trace->DepthUnit()) +
                   ": 32-bit depths cannot tell the samples apart there.");
        return nullptr;
    }
    if (!FillValues(doc, request, *trace, sink)) return nullptr;
    ScaleToValues(*trace);

    std::vector<std::unique_ptr<CTrace>> added;
    added.push_back(std::move(trace));
    return MakeAddTracesChange("Create " + request.name, std::move(added));
}

} // namespace ba
