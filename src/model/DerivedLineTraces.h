#pragma once
// What the processing dialogs share when they read the document's line traces and add
// traces derived from them: the names their lists offer, the lookup by name, and a new
// trace that follows the document's first trace in depth unit and depth scale.

#include "model/LineTrace.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace ba {

class CBoreAnalystDoc;

// Every line trace of the document, in document order: what a dialog's trace list offers.
std::vector<std::string> LineTraceNames(const CBoreAnalystDoc& doc);

// The first line trace named `name`, or null.
const CLineTrace* FindLineTrace(const CBoreAnalystDoc& doc, std::string_view name);
// "Error: No line trace named "<name>" in the document.": a name that is none of the
// listed traces, possible when the choices come from elsewhere than the lists.
std::string NoLineTraceMessage(std::string_view name);

// A new line trace (pen 1, solid, colour 0) with the depth unit and vertical scale of the
// document's first trace, or metres and 10 when the document has no trace.
std::unique_ptr<CLineTrace> MakeDerivedLineTrace(const CBoreAnalystDoc& doc, float scaleLeft, float scaleRight,
                                                 std::string name, std::string units);

// The depth a derived trace stores for a sample at `displayDepth` (in the display unit of
// the trace it is derived from): as it stands when the trace is in metres; otherwise the
// depth is taken to be in feet and converted to metres.
inline float DerivedStoredDepth(float displayDepth, std::int32_t derivedDepthUnit)
{
    constexpr double kFeetToMetres = 0.3048;
    return derivedDepthUnit == kDepthMetres ? displayDepth : static_cast<float>(displayDepth * kFeetToMetres);
}

} // namespace ba
