#include "utilities/DespikeTrace.h"

#include "utilities/FilterTrace.h"
#include "utilities/MedianFilters.h"
#include "utilities/ResultName.h"
#include "utilities/TargetTrace.h"
#include "utilities/ValueText.h"
#include "utilities/ValuesChange.h"

#include <cmath>
#include <span>

namespace ba {

std::unique_ptr<CDocumentChange> MakeDespikeChange(const CBoreAnalystDoc& doc, std::size_t traceIndex,
                                                   const DespikeRequest& request, IMessageSink& sink)
{
    const CLineTrace* line = FindTargetLineTrace(doc, traceIndex, "despike", sink);
    if (line == nullptr || !CheckSampleWindow(request.window, "despike", *line, sink)) return nullptr;
    if (!(std::isfinite(request.k) && request.k > 0.0f)) {
        sink.Error("Error: The spike factor K must be a number greater than 0; " + ValueText(request.k) +
                   " was given.");
        return nullptr;
    }
    if (!CheckResultName(doc, request.newName, sink)) return nullptr;
    const std::span<const float> values = line->Values().Items();
    CFloatArray despiked;
    despiked.SetSize(values.size());
    Despike(values, request.window, request.k, std::span<float>(despiked.Data(), values.size()));
    return MakeValuesResultChange("Despike " + line->Name(), *line, traceIndex, std::move(despiked), request.newName);
}

} // namespace ba
