#pragma once
// Resampling of a line trace onto a regular step, over the trace's own depth range or an
// interval TOP..BOTTOM. The new samples lie at TOP, TOP + STEP, ... up to BOTTOM; each takes
// its value from the old samples by one of three methods:
//   Linear   the straight line between the two old samples around it (refining);
//   Average  the mean of the old samples in its block, from half a step above it to half a
//            step below (coarsening);
//   Nearest  the value of the nearest old sample, the upper one when two are as near (for
//            discrete logs: codes, flags, zone numbers).
// Nothing is extrapolated: a new sample above the first old one or below the last is
// null. A null is never part of a value: a line from a null sample is null, a block
// average leaves nulls out (and is null when nothing else is in the block), and the nearest
// sample passes its null on.

#include "base/MessageSink.h"
#include "model/BoreAnalystDoc.h"
#include "model/DocumentChange.h"
#include "model/LineTrace.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace ba {

enum class ResampleMethod {
    Automatic, // Linear when the new step is no longer than the old spacing, Average when longer
    Linear,
    Average,
    Nearest,
};

// The most samples a resampled trace may have.
inline constexpr std::size_t kMaxResampledSamples = 100'000'000;

struct ResampleRequest {
    double step = 0.0; // display units
    ResampleMethod method = ResampleMethod::Automatic;
    std::optional<double> top{};    // display units; the trace's first depth when absent
    std::optional<double> bottom{}; // display units; the trace's last depth when absent
    std::string newName{};         // empty: the resampled trace replaces the old one
};

// What Automatic means for `trace` at `step`: Average when `step` is longer than the
// trace's mean sample spacing, Linear otherwise.
ResampleMethod AutomaticResampleMethod(const CLineTrace& trace, double step);

// The change that resamples trace `traceIndex`, or null (reported to `sink`, nothing
// touched) when it is not a line trace or has no samples, its depths do not ascend
// strictly, the step or the interval is unusable or lies outside the trace, the result
// would exceed kMaxResampledSamples, or `newName` is taken. The resampled trace keeps
// everything else of the old one and is marked as regularly sampled.
std::unique_ptr<CDocumentChange> ResampleTrace(const CBoreAnalystDoc& doc, std::size_t traceIndex,
                                               const ResampleRequest& request, IMessageSink& sink);

} // namespace ba
