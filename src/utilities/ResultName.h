#pragma once
// The name a utility's result is given. An empty name means the result takes the place of
// the trace it was computed from and keeps that trace's name; any other name makes a new
// trace, and two traces of one name would leave every lookup by name finding only the
// first.

#include "base/MessageSink.h"
#include "model/BoreAnalystDoc.h"

#include <string_view>

namespace ba {

// Whether `newName` may name a utility's result: empty, or the name of no trace of `doc`.
// A name already taken is reported.
bool CheckResultName(const CBoreAnalystDoc& doc, std::string_view newName, IMessageSink& sink);

} // namespace ba
