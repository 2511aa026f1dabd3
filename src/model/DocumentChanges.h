#pragma once
// The changes every editing operation is made of. Each returns a change for
// CBoreAnalystDoc::Apply; none touches the document before it is applied.

#include "model/DocumentChange.h"
#include "model/Trace.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace ba {

// Appends the traces (in order) to the document's traces; undo removes them again.
std::unique_ptr<CDocumentChange> MakeAddTracesChange(std::string description,
                                                     std::vector<std::unique_ptr<CTrace>> traces);
// Inserts one trace at trace index `index` (at most the trace count).
std::unique_ptr<CDocumentChange> MakeInsertTraceChange(std::string description, std::size_t index,
                                                       std::unique_ptr<CTrace> trace);
// Removes the traces at these trace indices (any order, no repeats); undo puts each back
// at its place.
std::unique_ptr<CDocumentChange> MakeRemoveTracesChange(std::string description, std::vector<std::size_t> indices);
// Puts `replacement` in the place of trace `index`; the old trace is kept by the change for
// undo. This is how a utility changes a trace's samples: it builds the new trace aside.
std::unique_ptr<CDocumentChange> MakeReplaceTraceChange(std::string description, std::size_t index,
                                                        std::unique_ptr<CTrace> replacement);

// Everything of a trace that its property pages edit, without its samples.
struct TraceAppearance {
    std::string name;
    std::string units;
    float scaleLeft = 0.0f;
    float scaleRight = 100.0f;
    std::int32_t trackIndex = 0;
    std::int32_t flags = 0;
    float viewParameter = 0.0f;
    // Line traces.
    std::int32_t penWidth = 1;
    std::int32_t penStyle = 0;
    std::int32_t colourIndex = 0;
    std::uint32_t colour = 0;
    // Sonic traces: the receiver gain word that also holds the intensity multiplier.
    std::int32_t sonicGainWord = 0;
    friend bool operator==(const TraceAppearance&, const TraceAppearance&) = default;
};
TraceAppearance CaptureAppearance(const CTrace& trace);
// Sets trace `index` to `after`; undo restores what it had when the change was applied.
std::unique_ptr<CDocumentChange> MakeTraceAppearanceChange(std::string description, std::size_t index,
                                                           TraceAppearance after);

// Several changes that are done and undone as one (undo runs them backwards).
std::unique_ptr<CDocumentChange> MakeCompositeChange(std::string description,
                                                     std::vector<std::unique_ptr<CDocumentChange>> parts);

} // namespace ba
