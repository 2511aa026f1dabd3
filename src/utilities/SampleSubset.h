#pragma once
// A copy of a trace of any kind that keeps only some of its samples, built in one pass.
// (Removing samples one at a time would move the whole tail for each.)

#include "model/Trace.h"

#include <cstdint>
#include <memory>
#include <span>

namespace ba {

// A copy of `trace` with every field it has, keeping the samples marked non-zero in `keep`
// (one mark per depth): each kept depth with its value, its row, or its spectrum and the
// spectrum's four values. Every per-sample array of `trace` must be as long as its depths
// (FindTargetTrace checks this).
std::unique_ptr<CTrace> CopyKeepingSamples(const CTrace& trace, std::span<const std::uint8_t> keep);

} // namespace ba
