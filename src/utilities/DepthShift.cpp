#include "utilities/DepthShift.h"

#include "utilities/DepthsChange.h"
#include "utilities/ResultName.h"
#include "utilities/TargetTrace.h"
#include "utilities/TraceDepths.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <string>
#include <vector>

namespace ba {
namespace {

constexpr std::string_view kDescription = "Depth Shift ";

std::string TieText(const DepthTie& tie, std::int32_t depthUnit)
{
    char buffer[32];
    const auto end = std::to_chars(buffer, buffer + sizeof buffer, static_cast<float>(tie.from)).ptr;
    return std::string(buffer, end) + ":" + DepthText(tie.to, depthUnit);
}

// The trace to shift, or null after a message: it must exist with its arrays aligned, have
// samples in strictly ascending order, and the new name must be free.
const CTrace* ShiftableTrace(const CBoreAnalystDoc& doc, std::size_t traceIndex, std::string_view newName,
                             IMessageSink& sink)
{
    const CTrace* trace = FindTargetTrace(doc, traceIndex, "shift", sink);
    if (trace == nullptr) return nullptr;
    if (trace->SampleCount() == 0) {
        sink.Error("Error: Nothing to shift: " + TraceLabel(*trace) + " has no samples.");
        return nullptr;
    }
    return CheckDepthsAscend(*trace, sink) && CheckResultName(doc, newName, sink) ? trace : nullptr;
}

// Sorts the tie points by FROM and checks that they describe a shift that keeps depths in
// order; reports the first problem found.
bool SortAndCheckTies(std::vector<DepthTie>& ties, const CTrace& trace, IMessageSink& sink)
{
    const std::int32_t unit = trace.DepthUnit();
    if (ties.empty()) {
        sink.Error("Error: A depth shift by tie points needs at least one tie point.");
        return false;
    }
    for (const DepthTie& tie : ties) {
        if (!std::isfinite(tie.from) || !std::isfinite(tie.to)) {
            sink.Error("Error: The tie points of a depth shift must be finite numbers.");
            return false;
        }
    }
    std::stable_sort(ties.begin(), ties.end(), [](const DepthTie& a, const DepthTie& b) { return a.from < b.from; });
    for (std::size_t k = 1; k < ties.size(); ++k) {
        if (ties[k].from == ties[k - 1].from) {
            sink.Error("Error: Two tie points move the depth " + DepthText(ties[k].from, unit) + " of " +
                       TraceLabel(trace) + "; give each depth one tie point.");
            return false;
        }
        if (!(ties[k].to > ties[k - 1].to)) {
            sink.Error("Error: The tie points " + TieText(ties[k - 1], unit) + " and " + TieText(ties[k], unit) +
                       " of " + TraceLabel(trace) + " cross: depths must keep their order after the shift.");
            return false;
        }
    }
    return true;
}

// The shift along the trace: linear between two tie points, the end tie point's own
// shift beyond either end. It is asked at ascending depths, so it walks along its
// intervals instead of searching for each depth's.
class ShiftCurve {
public:
    explicit ShiftCurve(std::span<const DepthTie> sorted)
    {
        for (const DepthTie& tie : sorted) {
            m_from.push_back(tie.from);
            m_shift.push_back(tie.to - tie.from);
        }
        for (std::size_t k = 0; k + 1 < m_from.size(); ++k) {
            m_slope.push_back((m_shift[k + 1] - m_shift[k]) / (m_from[k + 1] - m_from[k]));
        }
    }

    double At(double z)
    {
        if (z <= m_from.front()) return m_shift.front();
        if (z >= m_from.back()) return m_shift.back();
        while (z >= m_from[m_interval + 1]) ++m_interval;
        return m_shift[m_interval] + (z - m_from[m_interval]) * m_slope[m_interval];
    }

private:
    std::vector<double> m_from;
    std::vector<double> m_shift;
    std::vector<double> m_slope; // of the shift over interval k, from tie point k to k + 1
    std::size_t m_interval = 0;
};

// Hands `shifted` (the new stored depths of trace `traceIndex`) on as the change when they
// are finite and still ascend strictly.
std::unique_ptr<CDocumentChange> FinishShift(const CBoreAnalystDoc& doc, std::size_t traceIndex,
                                             CFloatArray shifted, std::string_view newName, IMessageSink& sink)
{
    const CTrace& source = doc.Trace(traceIndex);
    const std::span<const float> depths = shifted.Items();
    for (const float d : depths) {
        if (!std::isfinite(d)) {
            sink.Error("Error: The depth shift would move " + TraceLabel(source) +
                       " beyond the depths a document can hold.");
            return nullptr;
        }
    }
    if (const auto unordered = FirstUnorderedSample(depths)) {
        const std::size_t i = *unordered;
        const double factor = DepthUnitFactor(source.DepthUnit());
        sink.Error("Error: The depth shift would leave the depths of " + TraceLabel(source) +
                   " out of order: sample " + std::to_string(i) + " would lie at " +
                   DepthText(depths[i] * factor, source.DepthUnit()) + " and sample " + std::to_string(i - 1) +
                   " at " + DepthText(depths[i - 1] * factor, source.DepthUnit()) + ".");
        return nullptr;
    }
    return MakeDepthsResultChange(std::string(kDescription) + source.Name(), source, traceIndex, std::move(shifted),
                                  std::string(newName));
}

// New stored depths made from the old ones by `move`, one by one.
template <typename Move>
CFloatArray ShiftedDepths(const CTrace& trace, Move&& move)
{
    const CFloatArray& old = trace.StoredDepths();
    CFloatArray shifted;
    shifted.SetSize(old.Size());
    const float* in = old.Data();
    float* out = shifted.Data();
    for (std::size_t i = 0, n = old.Size(); i < n; ++i) out[i] = move(in[i]);
    return shifted;
}

} // namespace

std::unique_ptr<CDocumentChange> ShiftDepthsBy(const CBoreAnalystDoc& doc, std::size_t traceIndex, double offset,
                                               std::string_view newName, IMessageSink& sink)
{
    if (!std::isfinite(offset)) {
        sink.Error("Error: The depth shift must be a finite number.");
        return nullptr;
    }
    const CTrace* trace = ShiftableTrace(doc, traceIndex, newName, sink);
    if (trace == nullptr) return nullptr;

    // The offset is turned into stored units once; each depth is moved in double precision
    // and rounded once, so a shift by 0 gives back the very same floats.
    const double storedOffset = offset / DepthUnitFactor(trace->DepthUnit());
    CFloatArray shifted =
        ShiftedDepths(*trace, [storedOffset](double stored) { return static_cast<float>(stored + storedOffset); });
    return FinishShift(doc, traceIndex, std::move(shifted), newName, sink);
}

std::unique_ptr<CDocumentChange> ShiftDepthsByTies(const CBoreAnalystDoc& doc, std::size_t traceIndex,
                                                   std::span<const DepthTie> ties, std::string_view newName,
                                                   IMessageSink& sink)
{
    const CTrace* trace = ShiftableTrace(doc, traceIndex, newName, sink);
    std::vector<DepthTie> sorted(ties.begin(), ties.end());
    if (trace == nullptr || !SortAndCheckTies(sorted, *trace, sink)) return nullptr;

    // Depths ascend (checked above), as the curve needs.
    const double factor = DepthUnitFactor(trace->DepthUnit());
    const double toStored = 1.0 / factor;
    ShiftCurve curve(sorted);
    CFloatArray shifted = ShiftedDepths(*trace, [&curve, factor, toStored](double stored) {
        return static_cast<float>(stored + curve.At(stored * factor) * toStored);
    });
    return FinishShift(doc, traceIndex, std::move(shifted), newName, sink);
}

} // namespace ba
