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

// The straight line in stored depth between the nearest usable samples before sample
// `first` and after sample `last`, or nothing after reporting that one side has none.
struct StraightLine {
    double d0 = 0.0;
    double v0 = 0.0;
    double slope = 0.0;
    float At(float depth) const { return static_cast<float>(v0 + slope * (static_cast<double>(depth) - d0)); }
};

std::optional<StraightLine> Bridge(const CLineTrace& line, std::size_t first, std::size_t last,
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
    StraightLine straight;
    straight.d0 = depths[*before];
    straight.v0 = values[*before];
    straight.slope = (static_cast<double>(values[*after]) - straight.v0) /
                     (static_cast<double>(depths[*after]) - straight.d0);
    return straight;
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
    const std::size_t count = MarkSamplesInside(*line, request.interval, inside);
    if (count == 0) {
        ReportNoSamplesInside(*line, request.interval, sink);
        return nullptr;
    }
    const std::string description = "Edit " + line->Name();
    if (request.action == EditAction::Interpolate) {
        // With ascending depths the samples inside form one run.
        std::size_t first = 0;
        while (inside[first] == 0) ++first;
        const std::size_t last = first + count - 1;
        const auto straight = Bridge(*line, first, last, request.interval, sink);
        if (!straight) return nullptr;
        const CFloatArray& depths = line->StoredDepths();
        return MakeChangedValuesResult(
            description, *line, traceIndex, count,
            [&](std::size_t i, float) -> std::optional<float> {
                if (inside[i] == 0) return std::nullopt;
                return straight->At(depths[i]);
            },
            {});
    }
    const float value = request.action == EditAction::SetNull ? kNullValue : request.value;
    return MakeChangedValuesResult(
        description, *line, traceIndex, count,
        [&](std::size_t i, float) -> std::optional<float> {
            if (inside[i] == 0) return std::nullopt;
            return value;
        },
        {});
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
