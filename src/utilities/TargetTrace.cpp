#include "utilities/TargetTrace.h"

#include "model/DocumentChanges.h"
#include "model/SpectralTrace.h"
#include "utilities/TraceDepths.h"

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace ba {
namespace {

// The first per-sample array of `trace` whose length differs from its depth count, as the
// words a message uses for it and its length, or nothing when all are aligned. (A document
// written elsewhere may hold such a trace; it is kept as read, but no utility can tell
// which value belongs to which depth.)
struct Misaligned {
    std::string_view what;
    std::size_t length = 0;
};

std::optional<Misaligned> FindMisaligned(const CTrace& trace)
{
    const std::size_t n = trace.SampleCount();
    if (const auto* line = dynamic_cast<const CLineTrace*>(&trace)) {
        if (line->Values().Size() != n) return Misaligned{"values", line->Values().Size()};
        return std::nullopt;
    }
    const auto* image = dynamic_cast<const CImageTrace*>(&trace);
    if (image == nullptr) return std::nullopt;
    if (image->RowCount() != n) return Misaligned{"rows", image->RowCount()};
    if (const auto* spectral = dynamic_cast<const CSpectralTrace*>(&trace)) {
        const CFloatArray* arrays[] = {&spectral->AcquisitionTimes(), &spectral->TotalTimes(),
                                       &spectral->Temperatures(), &spectral->HighVoltages()};
        for (const CFloatArray* values : arrays) {
            if (values->Size() != n) return Misaligned{"spectrum times, temperatures or voltages", values->Size()};
        }
    }
    return std::nullopt;
}

} // namespace

const CTrace* FindTargetTrace(const CBoreAnalystDoc& doc, std::size_t index, std::string_view verb,
                              IMessageSink& sink)
{
    if (index >= doc.TraceCount()) {
        const std::size_t count = doc.TraceCount();
        sink.Error("Error: The document has no trace " + std::to_string(index) + "; it holds " +
                   std::to_string(count) + (count == 1 ? " trace." : " traces."));
        return nullptr;
    }
    const CTrace& trace = doc.Trace(index);
    if (const auto misaligned = FindMisaligned(trace)) {
        sink.Error("Error: Cannot " + std::string(verb) + " " + TraceLabel(trace) + ": it has " +
                   std::to_string(trace.SampleCount()) + " depths but " + std::to_string(misaligned->length) + " " +
                   std::string(misaligned->what) + ".");
        return nullptr;
    }
    return &trace;
}

const CLineTrace* FindTargetLineTrace(const CBoreAnalystDoc& doc, std::size_t index, std::string_view verb,
                                      IMessageSink& sink)
{
    const CTrace* trace = FindTargetTrace(doc, index, verb, sink);
    if (trace == nullptr) return nullptr;
    const auto* line = dynamic_cast<const CLineTrace*>(trace);
    if (line == nullptr) {
        const std::string kind(TraceKindText(trace->Kind()));
        const bool vowel = kind.find_first_of("aeiou") == 0;
        sink.Error("Error: Cannot " + std::string(verb) + " " + TraceLabel(*trace) + ": it is " +
                   (vowel ? "an " : "a ") + kind + ", not a line trace.");
    }
    return line;
}

std::unique_ptr<CDocumentChange> MakeResultChange(std::string description, std::size_t index,
                                                  std::unique_ptr<CTrace> result, const std::string& newName)
{
    if (newName.empty()) return MakeReplaceTraceChange(std::move(description), index, std::move(result));
    result->SetName(newName);
    std::vector<std::unique_ptr<CTrace>> added;
    added.push_back(std::move(result));
    return MakeAddTracesChange(std::move(description), std::move(added));
}

} // namespace ba
