#pragma once
// Re-indexing a line trace recorded against the other vertical axis (time in a
// depth-indexed document, depth in a time-indexed one) through the document's reference
// trace: "Time" in a depth-indexed document holds, per depth, the time at which the tool
// was there; "Depth" in a time-indexed document holds, per time, the depth.
//
// Each pasted sample sits at a stored time (minutes) or stored depth (metres). The
// reference's samples, taken pairwise in order with null values skipped, form straight
// segments from (axis, other) to (axis, other); the first segment whose two "other" values
// enclose the sample's position gives its new axis position by linear interpolation (a
// flat segment at exactly that position gives its first end). Samples no segment encloses
// are dropped. The re-indexed samples are put in ascending order of their new position
// (stably, so samples that land on the same position keep their order), since a trace's
// depths must ascend; a reference that is not monotonic can reorder them.
//
// The reference's values are converted to the other axis's stored unit (metres or
// minutes) by the unit keyword found in its units text: "FEET", "METERS", "MTRS" for
// depth; "SECONDS", "MINUTES", "HOURS", "DAYS" for time; "DEPTH" and "TIME" name the
// stored unit itself. Units naming no keyword of the needed axis are taken as the stored
// unit, and a note says so.

#include "base/MessageSink.h"
#include "model/BoreAnalystDoc.h"
#include "model/LineTrace.h"

#include <cstddef>
#include <optional>
#include <span>
#include <string_view>

namespace ba {

inline constexpr std::string_view kTimeReferenceName = "Time";
inline constexpr std::string_view kDepthReferenceName = "Depth";

// How a reference's values turn into the stored unit of the other axis (minutes when
// `timeValues`, metres otherwise): value x numerator / denominator. A division keeps
// whole seconds exact (600 s is exactly 10 min), which matters where a sample sits
// exactly on a reference point.
struct UnitRatio {
    double numerator = 1.0;
    double denominator = 1.0;
    double ToStored(double value) const { return value * numerator / denominator; }
};

// The ratio named by the first keyword of the needed axis found in `units` (anywhere in
// the text, ignoring case), or none when the text names no unit of that axis.
std::optional<UnitRatio> ReferenceUnitRatio(std::string_view units, bool timeValues);

struct SynchroniseResult {
    bool done = false;          // false: no reference trace; the trace is as it was
    std::size_t dropped = 0;    // samples no reference segment encloses
};

// Re-indexes `trace` onto the axis of `doc` (which must hold at least one trace) through
// its reference trace. The trace then takes the depth-unit code and vertical scale of the
// document's first trace. The reference is looked for among the document's other traces.
// Without one, the "No trace named ..." error is reported; with one that is not a line
// trace (it has no values to map through), an error says so; either way nothing changes.
SynchroniseResult SynchroniseTrace(const CBoreAnalystDoc& doc, CLineTrace& trace, IMessageSink& sink);

} // namespace ba
