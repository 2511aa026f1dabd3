#pragma once
// Clip: a line trace's values outside MIN..MAX become MIN or MAX, or null.

#include "base/MessageSink.h"
#include "model/BoreAnalystDoc.h"
#include "model/DocumentChange.h"

#include <cstddef>
#include <memory>
#include <string>

namespace ba {

struct ClipRequest {
    float minimum = 0.0f;
    float maximum = 0.0f;
    bool toNull = false;  // values outside become null instead of the nearer limit
    std::string newName;  // empty: the result replaces the trace
};

// "Clip <name>", or null after a message when the limits are not finite or MIN exceeds MAX.
// Nulls stay null.
std::unique_ptr<CDocumentChange> MakeClipChange(const CBoreAnalystDoc& doc, std::size_t traceIndex,
                                                const ClipRequest& request, IMessageSink& sink);

} // namespace ba
