#pragma once
// The change a depth shift makes: new depths for a trace of any kind whose values or rows
// stay as they are. Cheaper than replacing the whole trace: the values and rows are
// neither copied nor kept for undo; the change holds only the depths it swaps in and out.

#include "model/DocumentChange.h"
#include "model/GrowableArray.h"
#include "model/Trace.h"

#include <cstddef>
#include <memory>
#include <string>

namespace ba {

// Gives trace `index` (which is `trace`) the depths `depths` (stored units, one per
// sample) in its place; with a `newName`, adds a copy of `trace` with those depths under
// that name after the other traces instead.
std::unique_ptr<CDocumentChange> MakeDepthsResultChange(std::string description, const CTrace& trace,
                                                        std::size_t index, CFloatArray depths,
                                                        const std::string& newName);

} // namespace ba
