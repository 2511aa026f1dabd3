#pragma once
// The trace a utility works on, checked before anything is computed, and the change that
// puts the utility's result into the document: in the trace's place, or as a new trace
// after the others when the result is given a name of its own.

#include "base/MessageSink.h"
#include "model/BoreAnalystDoc.h"
#include "model/DocumentChange.h"
#include "model/LineTrace.h"

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

namespace ba {

// Trace `index` of `doc` with every per-sample array as long as its depths, or null after
// a message. `verb` says what the utility would do in the message ("cut").
const CTrace* FindTargetTrace(const CBoreAnalystDoc& doc, std::size_t index, std::string_view verb,
                              IMessageSink& sink);
// The same for a utility that changes values: the trace must also be a line trace.
const CLineTrace* FindTargetLineTrace(const CBoreAnalystDoc& doc, std::size_t index, std::string_view verb,
                                      IMessageSink& sink);

// Replaces trace `index` with `result` when `newName` is empty; otherwise names the result
// `newName` and adds it after the other traces.
std::unique_ptr<CDocumentChange> MakeResultChange(std::string description, std::size_t index,
                                                  std::unique_ptr<CTrace> result, const std::string& newName);

} // namespace ba
