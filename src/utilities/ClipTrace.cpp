#include "utilities/ClipTrace.h"

#include "utilities/ResultName.h"
#include "utilities/TargetTrace.h"
#include "utilities/UsableSample.h"
#include "utilities/ValueText.h"
#include "utilities/ValuesChange.h"

#include <cmath>
#include <optional>

namespace ba {
namespace {

bool CheckLimits(const ClipRequest& request, IMessageSink& sink)
{
    if (!std::isfinite(request.minimum) || !std::isfinite(request.maximum)) {
        sink.Error("Error: The clip limits must be finite numbers.");
        return false;
    }
    if (request.minimum > request.maximum) {
        sink.Error("Error: The clip minimum " + ValueText(request.minimum) + " is above the maximum " +
                   ValueText(request.maximum) + ".");
        return false;
    }
    return true;
}

} // namespace

std::unique_ptr<CDocumentChange> MakeClipChange(const CBoreAnalystDoc& doc, std::size_t traceIndex,
                                                const ClipRequest& request, IMessageSink& sink)
{
    const CLineTrace* line = FindTargetLineTrace(doc, traceIndex, "clip", sink);
    if (line == nullptr || !CheckLimits(request, sink) || !CheckResultName(doc, request.newName, sink)) return nullptr;
    const float below = request.toNull ? kNullValue : request.minimum;
    const float above = request.toNull ? kNullValue : request.maximum;
    const auto clipped = [&](std::size_t, float v) -> std::optional<float> {
        if (!IsUsableSample(v)) return std::nullopt;
        if (v < request.minimum) return below;
        if (v > request.maximum) return above;
        return std::nullopt;
    };
    std::size_t outside = 0;
    for (const float v : line->Values().Items()) outside += clipped(0, v) ? 1 : 0;
    return MakeChangedValuesResult("Clip " + line->Name(), *line, traceIndex, outside, clipped, request.newName);
}

} // namespace ba
