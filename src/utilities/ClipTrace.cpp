#include "utilities/ClipTrace.h"

#include "utilities/ResultName.h"
#include "utilities/TargetTrace.h"
#include "utilities/UsableSample.h"
#include "utilities/ValueText.h"
#include "utilities/ValuesChange.h"

#include <cmath>

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
    ValuePatch patch;
    const float* v = line->Values().Data();
    for (std::size_t i = 0, n = line->Values().Size(); i < n; ++i) {
        if (!IsUsableSample(v[i])) continue;
        if (v[i] < request.minimum) patch.Add(i, below);
        else if (v[i] > request.maximum) patch.Add(i, above);
    }
    return MakePatchResultChange("Clip " + line->Name(), *line, traceIndex, std::move(patch), request.newName);
}

} // namespace ba
