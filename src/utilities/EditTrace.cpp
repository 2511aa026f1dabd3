#include "utilities/EditTrace.h"

#include "utilities/CutTrace.h"
#include "utilities/TargetTrace.h"
#include "utilities/TraceDepths.h"
#include "utilities/UsableSample.h"
#include "utilities/ValuesChange.h"

#include <cmath>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace ba {
namespace {

std::optional<std::size_t> UsableBefore(const CFloatArray& values, std::size_t first)
{
    for (std::size_t j = first; j-- > 0;) {
        if (IsUsableSample(values[j])) return j;
    }
    return std::nullopt;
}

std::optional<std::size_t> UsableAfter(const CFloatArray& values, std::size_t last)
{
    for (std::size_t j = last + 1; j < values.Size(); ++j) {
        if (IsUsableSample(values[j])) return j;
    }
    return std::nullopt;
}

// Samples first..last of `line` on the straight line between the nearest usable samples
// outside them, or nothing after reporting that one side has none.
std::optional<ValuePatch> Interpolation(const CLineTrace& line, std::size_t first, std::size_t last,
                                        const DepthInterval& interval, IMessageSink& sink)
{
    const CFloatArray& depths = line.StoredDepths();
    const CFloatArray& values = line.Values();
    const auto before = UsableBefore(values, first);
    const auto after = UsableAfter(values, last);
    if (!before || !after) {
        const std::int32_t unit = line.DepthUnit();
        sink.Error("Error: Cannot interpolate " + TraceLabel(line) + " from " + DepthIntervalText(interval, unit) +
                   ": it has no value " +
                   (before ? "after " + DepthText(interval.bottom, unit) : "before " + DepthText(interval.top, unit)) +
                   ".");
        return std::nullopt;
    }
    const double d0 = depths[*before];
    const double v0 = values[*before];
    const double slope = (static_cast<double>(values[*after]) - v0) / (static_cast<double>(depths[*after]) - d0);
    ValuePatch patch;
    for (std::size_t i = first; i <= last; ++i) {
        patch.Add(i, static_cast<float>(v0 + slope * (static_cast<double>(depths[i]) - d0)));
    }
    return patch;
}

std::unique_ptr<CDocumentChange> EditValues(const CBoreAnalystDoc& doc, std::size_t traceIndex,
                                            const EditRequest& request, IMessageSink& sink)
{
    const CLineTrace* line = FindTargetLineTrace(doc, traceIndex, "edit the values of", sink);
    if (line == nullptr || !CheckDepthInterval(request.interval, line->DepthUnit(), sink)) return nullptr;
    if (request.action == EditAction::SetValue && !std::isfinite(request.value)) {
        sink.Error("Error: The value to set must be a finite number.");
        return nullptr;
    }
    // Interpolation walks along the depths, so they must be in order.
    if (request.action == EditAction::Interpolate && !CheckDepthsAscend(*line, sink)) return nullptr;
    std::vector<std::uint8_t> inside;
    if (MarkSamplesInside(*line, request.interval, inside) == 0) {
        ReportNoSamplesInside(*line, request.interval, sink);
        return nullptr;
    }
    ValuePatch patch;
    if (request.action == EditAction::Interpolate) {
        // With ascending depths the samples inside form one run.
        std::size_t first = 0;
        while (inside[first] == 0) ++first;
        std::size_t last = inside.size() - 1;
        while (inside[last] == 0) --last;
        auto straight = Interpolation(*line, first, last, request.interval, sink);
        if (!straight) return nullptr;
        patch = std::move(*straight);
    } else {
        const float value = request.action == EditAction::SetNull ? kNullValue : request.value;
        for (std::size_t i = 0; i < inside.size(); ++i) {
            if (inside[i] != 0) patch.Add(i, value);
        }
    }
    return MakePatchResultChange("Edit " + line->Name(), *line, traceIndex, std::move(patch), {});
}

} // namespace

std::unique_ptr<CDocumentChange> MakeEditChange(const CBoreAnalystDoc& doc, std::size_t traceIndex,
                                                const EditRequest& request, IMessageSink& sink)
{
    if (request.action != EditAction::Delete) return EditValues(doc, traceIndex, request, sink);
    auto result = CutSamples(doc, traceIndex, request.interval, CutMode::Remove, "delete samples of", sink);
    if (!result) return nullptr;
    return MakeResultChange("Edit " + doc.Trace(traceIndex).Name(), traceIndex, std::move(result), {});
}

} // namespace ba
