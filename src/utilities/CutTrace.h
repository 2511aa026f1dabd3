#pragma once
// Cut: keeps only the samples of a depth interval, or removes them, on a trace of any kind
// (image, sonic and spectrum traces keep or lose their rows with their depths).

#include "base/MessageSink.h"
#include "model/BoreAnalystDoc.h"
#include "model/DocumentChange.h"
#include "utilities/DepthInterval.h"

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

namespace ba {

enum class CutMode {
    Keep,   // keep TOP..BOTTOM, drop the rest
    Remove, // drop TOP..BOTTOM, keep the rest
};

struct CutRequest {
    DepthInterval interval;
    CutMode mode = CutMode::Keep;
    std::string newName; // empty: the result replaces the trace
};

// "Cut <name>", or null after a message when the interval is not valid, holds no samples,
// or would leave the trace without any.
std::unique_ptr<CDocumentChange> MakeCutChange(const CBoreAnalystDoc& doc, std::size_t traceIndex,
                                               const CutRequest& request, IMessageSink& sink);

// The trace as the cut would leave it, or null after a message; `verb` names the operation
// in messages ("cut", "delete samples of").
std::unique_ptr<CTrace> CutSamples(const CBoreAnalystDoc& doc, std::size_t traceIndex, const DepthInterval& interval,
                                   CutMode mode, std::string_view verb, IMessageSink& sink);

} // namespace ba
