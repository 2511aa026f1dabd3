#include "utilities/TraceDepths.h"

#include <charconv>

namespace ba {

std::string_view DepthUnitSymbol(std::int32_t depthUnit)
{
    switch (depthUnit) {
    case kDepthFeet: return "ft";
    case kDepthMetres: return "m";
    case kTimeSeconds: return "s";
    case kTimeMinutes: return "min";
    case kTimeHours: return "h";
    case kTimeDays: return "d";
    default: return "";
    }
}

std::string DepthText(double displayDepth, std::int32_t depthUnit)
{
    // The shortest text that reads back to the float a document would hold for the depth.
    char buffer[32];
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, static_cast<float>(displayDepth));
    std::string text(buffer, result.ptr);
    const std::string_view symbol = DepthUnitSymbol(depthUnit);
    if (!symbol.empty()) text.append(" ").append(symbol);
    return text;
}

std::optional<std::size_t> FirstUnorderedSample(std::span<const float> depths)
{
    for (std::size_t i = 1; i < depths.size(); ++i) {
        // Written so that a NaN depth counts as out of order too.
        if (!(depths[i] > depths[i - 1])) return i;
    }
    return std::nullopt;
}

bool CheckDepthsAscend(const CTrace& trace, IMessageSink& sink)
{
    const auto unordered = FirstUnorderedSample(trace);
    if (!unordered) return true;
    const std::size_t i = *unordered;
    sink.Error("Error: The depths of " + TraceLabel(trace) + " do not ascend strictly: sample " + std::to_string(i) +
               " (" + DepthText(DisplayDepth(trace, i), trace.DepthUnit()) + ") follows sample " +
               std::to_string(i - 1) + " (" + DepthText(DisplayDepth(trace, i - 1), trace.DepthUnit()) + ").");
    return false;
}

std::string TraceLabel(const CTrace& trace) { return "trace \"" + trace.Name() + "\""; }

std::string_view TraceKindText(TraceKind kind)
{
    switch (kind) {
    case TraceKind::Line: return "line trace";
    case TraceKind::Image: return "image trace";
    case TraceKind::Sonic: return "sonic trace";
    case TraceKind::Spectral: return "spectrum trace";
    }
    return "trace";
}

} // namespace ba
