#include "model/TraceProperties.h"

#include "model/LineTrace.h"

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

    trace.SetName(name);
    if (edit.units) trace.SetUnits(WithoutOuterBlanks(*edit.units));
    if (edit.hidden) trace.SetFlag(kHiddenTraceFlag, *edit.hidden);
    trace.SetScale(left, right);
    if (edit.trackIndex) {
        trace.SetTrackIndex(*edit.trackIndex);
        trace.SetTrack(doc.TrackAt(*edit.trackIndex));
    }
    if (line != nullptr) {
        const std::int32_t width = edit.penWidth.value_or(line->PenWidth());
        const std::int32_t style = edit.penStyle.value_or(line->PenStyle());
        const std::int32_t colour = edit.colourIndex.value_or(line->ColourIndex());
        if (colour == line->ColourIndex())
            line->ChangePen(width, style, colour, line->Colour());
        else
            line->ChangePen(width, style, colour);
    }
    doc.SetModified();
    doc.UpdateAllViews();
    return true;
}

} // namespace ba
