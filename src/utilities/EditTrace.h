#pragma once
// Edit: over a depth interval, sets a line trace's values to one value or to null, bridges
// them by a straight line between the nearest values on either side, or deletes the
// samples (of a trace of any kind).

#include "base/MessageSink.h"
#include "model/BoreAnalystDoc.h"
#include "model/DocumentChange.h"
#include "utilities/DepthInterval.h"

#include <cstddef>
#include <memory>

namespace ba {

enum class EditAction {
    SetValue,    // every sample in the interval takes `value`
    SetNull,     // every sample in the interval becomes null
    Interpolate, // linear in depth between the nearest non-null samples before and after the interval
    Delete,      // the samples in the interval are removed
};

struct EditRequest {
    DepthInterval interval;
    EditAction action = EditAction::SetValue;
    float value = 0.0f; // for SetValue
};

// "Edit <name>" (the trace is replaced), or null after a message.
std::unique_ptr<CDocumentChange> MakeEditChange(const CBoreAnalystDoc& doc, std::size_t traceIndex,
                                                const EditRequest& request, IMessageSink& sink);

} // namespace ba
