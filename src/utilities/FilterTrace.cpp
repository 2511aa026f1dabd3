#include "utilities/FilterTrace.h"

#include "utilities/MedianFilters.h"
#include "utilities/MovingAverage.h"
#include "utilities/ResultName.h"
#include "utilities/TargetTrace.h"
#include "utilities/TraceDepths.h"
#include "utilities/ValuesChange.h"

#include <span>
#include <vector>

namespace ba {

bool CheckSampleWindow(std::size_t window, std::string_view what, const CTrace& trace, IMessageSink& sink)
{
    if (window < 3 || window % 2 == 0) {
        sink.Error("Error: The " + std::string(what) + " window must be an odd number of samples, 3 or more; " +
                   std::to_string(window) + " was given.");
        return false;
    }
    if (window > trace.SampleCount()) {
        sink.Error("Error: The " + std::string(what) + " window of " + std::to_string(window) +
                   " samples is longer than " + TraceLabel(trace) + " (" + std::to_string(trace.SampleCount()) +
                   " samples).");
        return false;
    }
    return true;
}

std::unique_ptr<CDocumentChange> MakeFilterChange(const CBoreAnalystDoc& doc, std::size_t traceIndex,
                                                  const FilterRequest& request, IMessageSink& sink)
{
    const CLineTrace* line = FindTargetLineTrace(doc, traceIndex, "filter", sink);
    if (line == nullptr || !CheckSampleWindow(request.window, "filter", *line, sink) ||
        !CheckResultName(doc, request.newName, sink)) {
        return nullptr;
    }
    const std::span<const float> values = line->Values().Items();
    CFloatArray filtered;
    filtered.SetSize(values.size());
    const std::span<float> out(filtered.Data(), values.size());
    switch (request.kind) {
    case FilterKind::Mean: MovingAverage(values, request.window, AverageWeights::Boxcar, out); break;
    case FilterKind::Triangle: MovingAverage(values, request.window, AverageWeights::Triangle, out); break;
    case FilterKind::Median: MedianFilter(values, request.window, out); break;
    }
    return MakeValuesResultChange("Filter " + line->Name(), *line, traceIndex, std::move(filtered), request.newName);
}

} // namespace ba
