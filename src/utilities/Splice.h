#pragma once
// Splicing two line traces of one quantity (two runs of a log over neighbouring or
// overlapping intervals) into one new trace over the union of their depths. Outside their
// overlap each keeps its own samples; in the overlap the new trace takes the samples of
// the first, those of the second, or their average at every depth of either (a trace
// between two of its samples read along the straight line between them; a null left out
// of the average, which is null only when both are). The second trace's values are first
// converted into the first one's unit when the labels name different units of one type.

#include "base/MessageSink.h"
#include "model/BoreAnalystDoc.h"
#include "model/DocumentChange.h"

#include <cstddef>
#include <memory>
#include <string_view>

namespace ba {

enum class SpliceOverlap { First, Second, Average };

// The change that adds the splice of traces `firstIndex` and `secondIndex` as a new trace
// named `newName` after the others, or null (reported to `sink`, nothing touched) when
// they are the same trace, not both line traces, both empty, one on a depth axis and one
// on a time axis, their depths do not ascend strictly, their units are of different types
// or have no conversion between them, or `newName` is empty or taken. The new trace takes
// everything but its name and samples from the first trace. A unit conversion is
// reported as a note.
std::unique_ptr<CDocumentChange> SpliceTraces(const CBoreAnalystDoc& doc, std::size_t firstIndex,
                                              std::size_t secondIndex, SpliceOverlap overlap,
                                              std::string_view newName, IMessageSink& sink);

} // namespace ba
