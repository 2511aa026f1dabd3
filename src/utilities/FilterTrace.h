#pragma once
// Filter: smooths a line trace with a moving average (boxcar or triangular weights) or a
// running median over an odd window of samples. Nulls stay null and are left out of every
// window; near the ends a window holds the samples that exist.

#include "base/MessageSink.h"
#include "model/BoreAnalystDoc.h"
#include "model/DocumentChange.h"

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

namespace ba {

enum class FilterKind { Mean, Triangle, Median };

struct FilterRequest {
    FilterKind kind = FilterKind::Mean;
    std::size_t window = 3; // samples, odd
    std::string newName;    // empty: the result replaces the trace
};

// "Filter <name>", or null after a message when the window is not odd and at least 3, or
// is longer than the trace.
std::unique_ptr<CDocumentChange> MakeFilterChange(const CBoreAnalystDoc& doc, std::size_t traceIndex,
                                                  const FilterRequest& request, IMessageSink& sink);

// The window check the filter and the despiker share; `what` names the window ("filter").
bool CheckSampleWindow(std::size_t window, std::string_view what, const CTrace& trace, IMessageSink& sink);

} // namespace ba
