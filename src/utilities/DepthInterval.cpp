#include "utilities/DepthInterval.h"

#include "utilities/TraceDepths.h"

#include <cmath>

namespace ba {
namespace {

// Four roundings of a 32-bit float, relative: wider than the error of a display depth read
// back through the unit's factor, far narrower than any sampling step a float can hold.
constexpr double kDepthMatchTolerance = 1.0 / (1 << 21);

} // namespace

bool CheckDepthInterval(const DepthInterval& interval, std::int32_t depthUnit, IMessageSink& sink)
{
    if (!std::isfinite(interval.top)) {
        sink.Error("Error: The top depth must be a finite number.");
        return false;
    }
    if (!std::isfinite(interval.bottom)) {
        sink.Error("Error: The bottom depth must be a finite number.");
        return false;
    }
    if (interval.top > interval.bottom) {
        sink.Error("Error: The top depth " + DepthText(interval.top, depthUnit) + " lies below the bottom depth " +
                   DepthText(interval.bottom, depthUnit) + ".");
        return false;
    }
    return true;
}

std::string DepthIntervalText(const DepthInterval& interval, std::int32_t depthUnit)
{
    return DepthText(interval.top, depthUnit) + " to " + DepthText(interval.bottom, depthUnit);
}

std::size_t MarkSamplesInside(const CTrace& trace, const DepthInterval& interval, std::vector<std::uint8_t>& inside)
{
    const double low = interval.top - std::abs(interval.top) * kDepthMatchTolerance;
    const double high = interval.bottom + std::abs(interval.bottom) * kDepthMatchTolerance;
    const double factor = DepthUnitFactor(trace.DepthUnit());
    const CFloatArray& depths = trace.StoredDepths();
    const std::size_t n = depths.Size();
    inside.assign(n, 0);
    std::size_t count = 0;
    for (std::size_t i = 0; i < n; ++i) {
        const double d = static_cast<double>(depths[i]) * factor;
        const bool in = d >= low && d <= high;
        inside[i] = in ? 1 : 0;
        count += in ? 1 : 0;
    }
    return count;
}

void ReportNoSamplesInside(const CTrace& trace, const DepthInterval& interval, IMessageSink& sink)
{
    sink.Error("Error: There are no samples of " + TraceLabel(trace) + " from " +
               DepthIntervalText(interval, trace.DepthUnit()) + ".");
}

} // namespace ba
