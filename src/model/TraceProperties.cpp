#include "model/TraceProperties.h"

#include "model/DocumentChanges.h"
#include "model/LineTrace.h"
#include "model/SonicTrace.h"

#include <stdexcept>

#include <string>

namespace ba {
namespace {

std::string WithoutOuterBlanks(const std::string& text)
{
    const auto isBlank = [](char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; };
    std::size_t begin = 0;
    std::size_t end = text.size();
    while (begin < end && isBlank(text[begin])) ++begin;
    while (end > begin && isBlank(text[end - 1])) --end;
    return text.substr(begin, end - begin);
}

} // namespace

bool ApplyTraceProperties(CBoreAnalystDoc& doc, CTrace& trace, const TracePropertyEdit& edit, IMessageSink& sink)
{
    const std::string name = edit.name ? WithoutOuterBlanks(*edit.name) : trace.Name();
    if (name.empty()) {
        sink.Error(std::string(kEmptyTraceNameMessage));
        return false;
    }
    const float left = edit.scaleLeft.value_or(trace.ScaleLeft());
    const float right = edit.scaleRight.value_or(trace.ScaleRight());
    if (left == right) {
        sink.Error(std::string(kEqualScaleEndsMessage));
        return false;
    }
    if (edit.trackIndex && doc.TrackAt(*edit.trackIndex) == nullptr) {
        sink.Error("Error: There is no track " + std::to_string(*edit.trackIndex) + " in this document.");
        return false;
    }
    auto* line = dynamic_cast<CLineTrace*>(&trace);
    if (line != nullptr) {
        if (edit.penWidth && (*edit.penWidth < kMinPenWidth || *edit.penWidth > kMaxPenWidth)) {
            sink.Error("Error: The pen width must lie between " + std::to_string(kMinPenWidth) + " and " +
                       std::to_string(kMaxPenWidth) + ".");
            return false;
        }
        if (edit.penStyle && (*edit.penStyle < kPenSolid || *edit.penStyle > kPenNull)) {
            sink.Error("Error: The pen style must lie between 0 and 5.");
            return false;
        }
        if (edit.colourIndex && (*edit.colourIndex < 0 || *edit.colourIndex >= kLineColourCount)) {
            sink.Error("Error: The colour must lie between 0 and 6.");
            return false;
        }
    }

    const std::ptrdiff_t index = doc.IndexOfTrace(trace);
    if (index < 0) throw std::logic_error("trace properties applied to a trace of another document");
    TraceAppearance after = CaptureAppearance(trace);
    after.name = name;
    if (edit.units) after.units = WithoutOuterBlanks(*edit.units);
    if (edit.hidden) {
        after.flags = (after.flags & ~(1 << kHiddenTraceFlag)) | (*edit.hidden ? 1 << kHiddenTraceFlag : 0);
    }
    after.scaleLeft = left;
    after.scaleRight = right;
    if (edit.trackIndex) after.trackIndex = *edit.trackIndex;
    if (line != nullptr) {
        after.penWidth = edit.penWidth.value_or(line->PenWidth());
        after.penStyle = edit.penStyle.value_or(line->PenStyle());
        after.colourIndex = edit.colourIndex.value_or(line->ColourIndex());
        if (after.colourIndex != line->ColourIndex()) after.colour = LineColourFromIndex(after.colourIndex);
    }
    if (edit.intensityMultiplier) {
        if (auto* sonic = dynamic_cast<const CSonicTrace*>(&trace)) {
            CSonicTrace changed(*sonic);
            changed.SetIntensityMultiplier(*edit.intensityMultiplier);
            after.sonicGainWord = changed.Acquisition().rxGain;
        } else {
            after.viewParameter = static_cast<float>(*edit.intensityMultiplier);
        }
    }
    doc.Apply(MakeTraceAppearanceChange("Properties of " + trace.Name(), static_cast<std::size_t>(index),
                                        std::move(after)));
    return true;
}

} // namespace ba
