#pragma once
// A formula (evaluation/FormulaParser.h) computed over the document's line traces.
//
// Every trace the formula names is read at the depths being computed with CLineTrace::
// ValueAt's answers, bit for bit (interpolated between samples, null outside the trace);
// a trace in another depth unit is read at the same depth in its own unit. The traces
// are read without a search per sample: one sharing the depths exactly is read sample by
// sample, any other with a cursor walking along it.
//
// A null input makes its sample null. A sample whose result has no value for another
// reason — a function outside its domain, a division by zero, a result too large for a
// float — is null as well, and one warning tells how many there were and the depth of the
// first. Refusals (a syntax error, an unknown trace or function, traces on a time axis
// mixed with traces on a depth axis) are reported to the sink; nothing is computed then.

#include "base/MessageSink.h"
#include "model/LineTrace.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace ba {

class CBoreAnalystDoc;

inline constexpr std::string_view kFormulaNamesNoTraceMessage =
    "Error: The formula names no trace; a formula log takes its depths from the first trace it names.";

// A new line trace of the formula's values at the samples of the first trace it names:
// the same stored depths, depth unit and axis flag; that trace's own values are read by
// sample index. The trace gets `name` and `units`, the document's usual pen and vertical
// scale, and a plot scale spanning its values; nothing is added to the document.
std::unique_ptr<CLineTrace> ComputeFormulaLog(const CBoreAnalystDoc& doc, std::string_view formula,
                                              std::string name, std::string units, IMessageSink& sink);

// The formula's values at `depths` (display depths in `depthUnit`, ascending), as for a
// new trace named `outputName` (the name the warning gives). DEPTH is each of `depths`.
std::optional<std::vector<float>> EvaluateFormulaAtDepths(const CBoreAnalystDoc& doc, std::string_view formula,
                                                          std::span<const float> depths, std::int32_t depthUnit,
                                                          std::string_view outputName, IMessageSink& sink);

} // namespace ba
