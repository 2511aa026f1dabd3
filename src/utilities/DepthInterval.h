#pragma once
// A depth interval TOP..BOTTOM as the utilities take it: both ends in the trace's display
// unit, both included.

#include "base/MessageSink.h"
#include "model/Trace.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace ba {

struct DepthInterval {
    double top = 0.0;
    double bottom = 0.0;
};

// Reports and returns false unless both ends are finite and the top is not below the bottom.
bool CheckDepthInterval(const DepthInterval& interval, std::int32_t depthUnit, IMessageSink& sink);

// "100 m to 200 m".
std::string DepthIntervalText(const DepthInterval& interval, std::int32_t depthUnit);

// Marks with 1 (else 0) each sample of `trace` whose display depth lies in `interval`, and
// returns how many are marked. Depths are 32-bit floats that went through the unit's
// factor, so an end matches a sample within a few float roundings of it: a sample shown
// at 1000 ft counts as lying at 1000 ft although 1000 ft has no exact stored form.
std::size_t MarkSamplesInside(const CTrace& trace, const DepthInterval& interval, std::vector<std::uint8_t>& inside);

// Reports that `trace` has no samples in `interval`.
void ReportNoSamplesInside(const CTrace& trace, const DepthInterval& interval, IMessageSink& sink);

} // namespace ba
