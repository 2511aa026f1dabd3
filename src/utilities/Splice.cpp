#include "utilities/Splice.h"

#include "model/DocumentChanges.h"
#include "model/LineTrace.h"
#include "units/ConversionFactors.h"
#include "units/UnitVocabulary.h"
#include "utilities/ResultName.h"
#include "utilities/SampleFreeCopy.h"
#include "utilities/TargetTrace.h"
#include "utilities/TraceDepths.h"

#include <algorithm>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace ba {
namespace {

// One trace's samples as the splice reads them: stored depths (metres or minutes for
// both traces) and one value per depth, in the first trace's unit.
struct SplicePart {
    std::span<const float> depths;
    std::vector<float> values;

    bool Empty() const { return depths.empty(); }
    float First() const { return depths.front(); }
    float Last() const { return depths.back(); }
};

SplicePart ReadPart(const CLineTrace& trace, UnitType type, std::optional<ConversionFactor> conversion)
{
    SplicePart part{trace.StoredDepths().Items(), std::vector<float>(trace.SampleCount())};
    for (std::size_t i = 0; i < part.values.size(); ++i) {
        const float v = trace.Value(i);
        part.values[i] = conversion && !IsNullSample(v) ? ConvertValue(v, type, *conversion) : v;
    }
    return part;
}

// Reads a part at depths that only move down, each within the part's range: the sample at
// the depth, or the straight line between the two around it (null when either is null).
class PartReader {
public:
    explicit PartReader(const SplicePart& part) : m_part(part) {}
    float At(float d)
    {
        const auto& depths = m_part.depths;
        while (m_j + 1 < depths.size() && depths[m_j + 1] <= d) ++m_j;
        if (depths[m_j] == d) return m_part.values[m_j];
        const float v0 = m_part.values[m_j];
        const float v1 = m_part.values[m_j + 1];
        if (IsNullSample(v0) || IsNullSample(v1)) return kNullValue;
        const double d0 = depths[m_j];
        const double d1 = depths[m_j + 1];
        return static_cast<float>(v0 + (d - d0) * (static_cast<double>(v1) - v0) / (d1 - d0));
    }

private:
    const SplicePart& m_part;
    std::size_t m_j = 0;
};

struct SplicedSamples {
    std::vector<float> depths;
    std::vector<float> values;
    void Add(float depth, float value)
    {
        depths.push_back(depth);
        values.push_back(value);
    }
    // The samples of `part` whose depths satisfy `keep`, in order.
    template <typename Keep>
    void AddWhere(const SplicePart& part, Keep&& keep)
    {
        for (std::size_t i = 0; i < part.depths.size(); ++i) {
            if (keep(part.depths[i])) Add(part.depths[i], part.values[i]);
        }
    }
};

float MeanOfValid(float a, float b)
{
    if (IsNullSample(a)) return b;
    if (IsNullSample(b)) return a;
    return static_cast<float>((static_cast<double>(a) + b) / 2.0);
}

// Every depth of either part within lo..hi, once, with the mean of both parts there.
void AddAveragedOverlap(const SplicePart& a, const SplicePart& b, float lo, float hi, SplicedSamples& out)
{
    PartReader readA(a);
    PartReader readB(b);
    auto firstFrom = [lo](const SplicePart& p) {
        return static_cast<std::size_t>(std::lower_bound(p.depths.begin(), p.depths.end(), lo) - p.depths.begin());
    };
    std::size_t i = firstFrom(a);
    std::size_t j = firstFrom(b);
    while (true) {
        const bool moreA = i < a.depths.size() && a.depths[i] <= hi;
        const bool moreB = j < b.depths.size() && b.depths[j] <= hi;
        if (!moreA && !moreB) return;
        const float d = !moreB || (moreA && a.depths[i] <= b.depths[j]) ? a.depths[i] : b.depths[j];
        if (moreA && a.depths[i] == d) ++i;
        if (moreB && b.depths[j] == d) ++j;
        out.Add(d, MeanOfValid(readA.At(d), readB.At(d)));
    }
}

SplicedSamples Splice(const SplicePart& a, const SplicePart& b, SpliceOverlap overlap)
{
    SplicedSamples out;
    if (a.Empty() || b.Empty()) {
        out.AddWhere(a.Empty() ? b : a, [](float) { return true; });
        return out;
    }
    // Above the overlap only the part that starts first has samples, below it only the part
    // that ends last; with no overlap at all (lo > hi) that is each part whole.
    const float lo = std::max(a.First(), b.First());
    const float hi = std::min(a.Last(), b.Last());
    out.AddWhere(a, [lo](float d) { return d < lo; });
    out.AddWhere(b, [lo](float d) { return d < lo; });
    if (lo <= hi) {
        auto inOverlap = [lo, hi](float d) { return lo <= d && d <= hi; };
        switch (overlap) {
        case SpliceOverlap::First: out.AddWhere(a, inOverlap); break;
        case SpliceOverlap::Second: out.AddWhere(b, inOverlap); break;
        case SpliceOverlap::Average: AddAveragedOverlap(a, b, lo, hi, out); break;
        }
    }
    out.AddWhere(a, [hi](float d) { return d > hi; });
    out.AddWhere(b, [hi](float d) { return d > hi; });
    return out;
}

std::string UnitsText(const CTrace& trace, const UnitClassification& unit)
{
    std::string text = TraceLabel(trace) + " (units \"" + trace.Units() + "\"";
    if (unit.type != UnitType::Unknown) text.append(", ").append(UnitTypeName(unit.type));
    return text + ")";
}

// How the second trace's values become values in the first trace's unit: no conversion
// (nothing), or the conversion. Refusals are reported and give `refused`.
struct UnitMatch {
    bool refused = false;
    UnitType type = UnitType::Unknown;
    std::optional<ConversionFactor> conversion;
    std::string from;
    std::string to;
};

UnitMatch MatchUnits(const CLineTrace& a, const CLineTrace& b, IMessageSink& sink)
{
    UnitMatch match;
    if (a.Units() == b.Units()) return match;
    const UnitClassification ua = ClassifyUnits(a.Units());
    const UnitClassification ub = ClassifyUnits(b.Units());
    if (ua.type != ub.type) {
        sink.Error("Error: Cannot splice " + UnitsText(a, ua) + " with " + UnitsText(b, ub) +
                   ": their units are of different types.");
        match.refused = true;
        return match;
    }
    if (ua.type != UnitType::Unknown && ua.canonical == ub.canonical) return match;
    const auto conversion = ua.type == UnitType::Unknown ? std::nullopt
                                                         : FindConversion(ua.type, ub.canonical, ua.canonical);
    if (!conversion) {
        sink.Error("Error: Cannot splice " + UnitsText(a, ua) + " with " + UnitsText(b, ub) +
                   ": there is no conversion between their units.");
        match.refused = true;
        return match;
    }
    match.type = ua.type;
    match.conversion = conversion;
    match.from = ub.canonical;
    match.to = ua.canonical;
    return match;
}

} // namespace

std::unique_ptr<CDocumentChange> SpliceTraces(const CBoreAnalystDoc& doc, std::size_t firstIndex,
                                              std::size_t secondIndex, SpliceOverlap overlap,
                                              std::string_view newName, IMessageSink& sink)
{
    const CLineTrace* a = FindTargetLineTrace(doc, firstIndex, "splice", sink);
    const CLineTrace* b = a == nullptr ? nullptr : FindTargetLineTrace(doc, secondIndex, "splice", sink);
    if (b == nullptr) return nullptr;
    if (a == b) {
        sink.Error("Error: A splice needs two different traces; " + TraceLabel(*a) + " was given twice.");
        return nullptr;
    }
    if (a->SampleCount() == 0 && b->SampleCount() == 0) {
        sink.Error("Error: Nothing to splice: " + TraceLabel(*a) + " and " + TraceLabel(*b) + " have no samples.");
        return nullptr;
    }
    if (a->IsTimeAxis() != b->IsTimeAxis()) {
        auto axis = [](const CTrace& t) { return t.IsTimeAxis() ? "time" : "depth"; };
        sink.Error("Error: Cannot splice " + TraceLabel(*a) + ", logged against " + axis(*a) + ", with " +
                   TraceLabel(*b) + ", logged against " + axis(*b) + ".");
        return nullptr;
    }
    if (!CheckDepthsAscend(*a, sink) || !CheckDepthsAscend(*b, sink)) return nullptr;
    const UnitMatch units = MatchUnits(*a, *b, sink);
    if (units.refused) return nullptr;
    if (newName.empty()) {
        sink.Error("Error: The spliced trace needs a name.");
        return nullptr;
    }
    if (!CheckResultName(doc, newName, sink)) return nullptr;

    const SplicedSamples samples =
        Splice(ReadPart(*a, units.type, std::nullopt), ReadPart(*b, units.type, units.conversion), overlap);
    std::unique_ptr<CLineTrace> spliced = CopyWithoutSamples(*a);
    spliced->SetName(std::string(newName));
    spliced->StoredDepths().Assign(samples.depths);
    spliced->Values().Assign(samples.values);
    if (units.conversion) {
        sink.Note("Note: The values of " + TraceLabel(*b) + " are converted from " + units.from + " to " +
                  units.to + " for the splice.");
    }
    std::vector<std::unique_ptr<CTrace>> added;
    added.push_back(std::move(spliced));
    return MakeAddTracesChange("Splice " + std::string(newName), std::move(added));
}

} // namespace ba
