#pragma once
// Despike: a sample of a line trace farther than K times the median absolute deviation
// (MAD) from the running median of its window becomes that median. The MAD is the median
// of the window's distances from its median, unscaled. Nulls stay null and are left out of
// every window; near the ends a window holds the samples that exist.

#include "base/MessageSink.h"
#include "model/BoreAnalystDoc.h"
#include "model/DocumentChange.h"

#include <cstddef>
#include <memory>
#include <string>

namespace ba {

struct DespikeRequest {
    std::size_t window = 3; // samples, odd
    float k = 3.0f;         // spike threshold in MADs
    std::string newName;    // empty: the result replaces the trace
};

// "Despike <name>", or null after a message when the window is not odd and at least 3 or
// longer than the trace, or K is not a positive number.
std::unique_ptr<CDocumentChange> MakeDespikeChange(const CBoreAnalystDoc& doc, std::size_t traceIndex,
                                                   const DespikeRequest& request, IMessageSink& sink);

} // namespace ba
