#include "model/ImagePropertiesModel.h"

#include "model/SonicTrace.h"

#include <charconv>
#include <cmath>

namespace ba {
namespace {

bool InRange(std::int32_t multiplier)
{
    return multiplier >= kMinIntensityMultiplier && multiplier <= kMaxIntensityMultiplier;
}

bool IsLocked(const CImageTrace& trace)
{
    const auto* sonic = dynamic_cast<const CSonicTrace*>(&trace);
    return sonic != nullptr && IsNonWaveformSonicTool(sonic->ToolType());
}

} // namespace

std::int32_t ImageIntensityMultiplier(const CImageTrace& trace)
{
    std::int32_t multiplier = 1;
    if (const auto* sonic = dynamic_cast<const CSonicTrace*>(&trace)) {
        multiplier = sonic->IntensityMultiplier();
    } else {
        const float stored = trace.ViewParameter();
        if (std::isfinite(stored) && std::fabs(stored) <= static_cast<float>(kMaxIntensityMultiplier))
            multiplier = static_cast<std::int32_t>(std::lround(stored));
    }
    return InRange(multiplier) ? multiplier : 1;
}

std::optional<std::int32_t> ParseIntensityMultiplier(std::string_view text, IMessageSink& sink)
{
    const auto isBlank = [](char c) { return c == ' ' || c == '\t'; };
    while (!text.empty() && isBlank(text.front())) text.remove_prefix(1);
    while (!text.empty() && isBlank(text.back())) text.remove_suffix(1);
    std::int32_t value = 0;
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value);
    if (text.empty() || error != std::errc() || stop != end || !InRange(value)) {
        sink.Error(std::string(kIntensityMultiplierRangeMessage));
        return std::nullopt;
    }
    return value;
}

ImagePageValues ImagePageValuesOf(const CImageTrace& trace)
{
    ImagePageValues values;
    values.name = trace.Name();
    values.minimum = trace.ScaleLeft();
    values.maximum = trace.ScaleRight();
    values.units = trace.Units();
    values.trackIndex = trace.TrackIndex();
    values.hidden = trace.IsHidden();
    values.intensityMultiplier = ImageIntensityMultiplier(trace);
    if (const auto* sonic = dynamic_cast<const CSonicTrace*>(&trace)) {
        values.acquisitionText = SonicAcquisitionText(*sonic);
        values.numericFieldsLocked = IsNonWaveformSonicTool(sonic->ToolType());
    }
    return values;
}

bool ApplyImageProperties(CBoreAnalystDoc& doc, CImageTrace& trace, const ImagePropertyEdit& edit, IMessageSink& sink)
{
    if (edit.intensityMultiplier && !InRange(*edit.intensityMultiplier)) {
        sink.Error(std::string(kIntensityMultiplierRangeMessage));
        return false;
    }
    if (IsLocked(trace)) {
        const TracePropertyEdit& common = edit.common;
        const bool changes = (common.scaleLeft && *common.scaleLeft != trace.ScaleLeft()) ||
                             (common.scaleRight && *common.scaleRight != trace.ScaleRight()) ||
                             (edit.intensityMultiplier && *edit.intensityMultiplier != ImageIntensityMultiplier(trace));
        if (changes) {
            sink.Error(std::string(kLockedNumericFieldsMessage));
            return false;
        }
    }
    TracePropertyEdit common = edit.common;
    common.penWidth.reset();
    common.penStyle.reset();
    common.colourIndex.reset();
    common.intensityMultiplier = edit.intensityMultiplier;
    return ApplyTraceProperties(doc, trace, common, sink);
}

} // namespace ba
