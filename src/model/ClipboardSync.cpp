#include "model/ClipboardSync.h"

#include <algorithm>
#include <cctype>
#include <string>
#include <utility>
#include <vector>

namespace ba {
namespace {

struct UnitKeyword {
    std::string_view keyword;
    UnitRatio ratio; // turns a value in this unit into metres or minutes
};

constexpr UnitKeyword kDepthKeywords[] = {
    {"FEET", {0.3048, 1.0}}, {"METERS", {}}, {"MTRS", {}}, {"DEPTH", {}},
};
constexpr UnitKeyword kTimeKeywords[] = {
    {"SECONDS", {1.0, 60.0}}, {"MINUTES", {}}, {"HOURS", {60.0, 1.0}}, {"DAYS", {1440.0, 1.0}}, {"TIME", {}},
};

std::string Upper(std::string_view text)
{
    std::string out(text);
    for (char& c : out) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    return out;
}

std::string Quoted(std::string_view text) { return "\"" + std::string(text) + "\""; }

// A point of the reference: a position on the document's axis and the other axis's
// position there, both in stored units.
struct ReferencePoint {
    double axis;
    double other;
};

std::vector<ReferencePoint> ReferencePoints(const CLineTrace& reference, const UnitRatio& ratio)
{
    std::vector<ReferencePoint> points;
    const std::size_t n = std::min(reference.SampleCount(), reference.Values().Size());
    points.reserve(n);
    for (std::size_t i = 0; i < n; ++i) {
        const float value = reference.Value(i);
        if (IsNullSample(value)) continue;
        points.push_back({reference.StoredDepth(i), ratio.ToStored(value)});
    }
    return points;
}

// The document-axis position where the reference passes `other`, if it does.
std::optional<double> MapThrough(const std::vector<ReferencePoint>& points, double other)
{
    if (points.size() == 1 && points[0].other == other) return points[0].axis;
    for (std::size_t k = 0; k + 1 < points.size(); ++k) {
        const ReferencePoint& a = points[k];
        const ReferencePoint& b = points[k + 1];
        if (other < std::min(a.other, b.other) || other > std::max(a.other, b.other)) continue;
        if (a.other == b.other) return a.axis;
        return a.axis + (other - a.other) * (b.axis - a.axis) / (b.other - a.other);
    }
    return std::nullopt;
}

const CTrace* FindReference(const CBoreAnalystDoc& doc, const CTrace& pasted, std::string_view name)
{
    for (std::size_t i = 0; i < doc.TraceCount(); ++i) {
        const CTrace& candidate = doc.Trace(i);
        if (&candidate != &pasted && candidate.Name() == name) return &candidate;
    }
    return nullptr;
}

} // namespace

std::optional<UnitRatio> ReferenceUnitRatio(std::string_view units, bool timeValues)
{
    const std::string upper = Upper(units);
    const auto keywords = timeValues ? std::span<const UnitKeyword>(kTimeKeywords)
                                     : std::span<const UnitKeyword>(kDepthKeywords);
    for (const auto& k : keywords) {
        if (upper.find(k.keyword) != std::string::npos) return k.ratio;
    }
    return std::nullopt;
}

SynchroniseResult SynchroniseTrace(const CBoreAnalystDoc& doc, CLineTrace& trace, IMessageSink& sink)
{
    const bool documentIsTime = doc.IsTimeIndexed();
    const std::string_view referenceName = documentIsTime ? kDepthReferenceName : kTimeReferenceName;
    const CTrace* found = FindReference(doc, trace, referenceName);
    if (found == nullptr) {
        sink.Error("Error: No trace named " + Quoted(referenceName) + " found for syncronization.");
        return {};
    }
    const auto* reference = dynamic_cast<const CLineTrace*>(found);
    if (reference == nullptr) {
        sink.Error("Error: trace " + Quoted(referenceName) + " is a " + std::string(found->ClassName()) +
                   ", not a line trace; it cannot be used for syncronization.");
        return {};
    }

    // The reference's values lie on the pasted trace's axis: time in a depth document.
    const bool timeValues = !documentIsTime;
    UnitRatio ratio;
    if (const auto named = ReferenceUnitRatio(reference->Units(), timeValues)) {
        ratio = *named;
    } else {
        sink.Note("Note: the units " + Quoted(reference->Units()) + " of trace " + Quoted(referenceName) +
                  " name no " + (timeValues ? "time unit; its values are taken as minutes."
                                            : "depth unit; its values are taken as metres."));
    }
    const std::vector<ReferencePoint> points = ReferencePoints(*reference, ratio);

    std::vector<std::pair<double, float>> kept;
    kept.reserve(trace.SampleCount());
    for (std::size_t i = 0; i < trace.SampleCount(); ++i) {
        if (const auto axis = MapThrough(points, trace.StoredDepth(i))) kept.emplace_back(*axis, trace.Value(i));
    }
    std::stable_sort(kept.begin(), kept.end(), [](const auto& a, const auto& b) { return a.first < b.first; });

    SynchroniseResult result;
    result.done = true;
    result.dropped = trace.SampleCount() - kept.size();
    std::vector<float> depths;
    std::vector<float> values;
    depths.reserve(kept.size());
    values.reserve(kept.size());
    for (const auto& [axis, value] : kept) {
        depths.push_back(static_cast<float>(axis));
        values.push_back(value);
    }
    trace.StoredDepths().Assign(depths);
    trace.Values().Assign(values);
    trace.SetDepthUnit(doc.Trace(0).DepthUnit());
    trace.SetVerticalScale(doc.Trace(0).VerticalScale());

    if (result.dropped > 0) {
        sink.Note("Note: " + std::to_string(result.dropped) + " of " +
                  std::to_string(result.dropped + kept.size()) + " samples of trace " + Quoted(trace.Name()) +
                  " lie outside trace " + Quoted(referenceName) + " and were dropped.");
    }
    return result;
}

} // namespace ba
