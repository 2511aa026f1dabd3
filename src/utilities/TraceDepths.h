#pragma once
// Depths as the trace utilities read and report them: a sample's depth in the trace's
// display unit, depths written for messages ("1203.5 m"), and the check that a trace's
// depths ascend strictly, which the utilities that walk along a trace rely on.

#include "base/MessageSink.h"
#include "model/Trace.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace ba {

// The symbol of a depth-unit code: "ft", "m", "s", "min", "h", "d"; "" for an unknown code.
std::string_view DepthUnitSymbol(std::int32_t depthUnit);

// A display depth in its shortest float form with the unit's symbol: "1203.5 m".
std::string DepthText(double displayDepth, std::int32_t depthUnit);

// Depth of sample i in display units, unrounded (the stored float times the unit's factor).
inline double DisplayDepth(const CTrace& trace, std::size_t i)
{
    return static_cast<double>(trace.StoredDepth(i)) * DepthUnitFactor(trace.DepthUnit());
}

// The first sample whose stored depth is not greater than the one before it, or nothing.
std::optional<std::size_t> FirstUnorderedSample(std::span<const float> storedDepths);
inline std::optional<std::size_t> FirstUnorderedSample(const CTrace& trace)
{
    return FirstUnorderedSample(trace.StoredDepths().Items());
}

// Reports that the depths of `trace` do not ascend strictly and returns false, or returns
// true when they do.
bool CheckDepthsAscend(const CTrace& trace, IMessageSink& sink);

// `trace "GR"`, the way messages name a trace inside a sentence.
std::string TraceLabel(const CTrace& trace);

// "line trace", "image trace", "sonic trace" or "spectrum trace".
std::string_view TraceKindText(TraceKind kind);

} // namespace ba
