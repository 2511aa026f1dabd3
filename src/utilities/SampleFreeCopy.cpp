#include "utilities/SampleFreeCopy.h"

namespace ba {

std::unique_ptr<CLineTrace> CopyWithoutSamples(const CLineTrace& trace)
{
    auto copy = std::make_unique<CLineTrace>(trace.PenWidth(), trace.PenStyle(), trace.ColourIndex(),
                                             trace.ScaleLeft(), trace.ScaleRight(), trace.Name(), trace.Units());
    copy->ChangePen(trace.PenWidth(), trace.PenStyle(), trace.ColourIndex(), trace.Colour());
    copy->SetTrackIndex(trace.TrackIndex());
    copy->SetTrack(trace.Track());
    copy->SetHeaderBox(trace.HeaderBox());
    copy->SetViewParameter(trace.ViewParameter());
    copy->SetVerticalScale(trace.VerticalScale());
    copy->SetTopDepth(trace.TopDepth());
    for (std::size_t mark = 0; mark < trace.LegendMarks().size(); ++mark) {
        copy->SetLegendMark(mark, trace.LegendMarks()[mark] != 0);
    }
    copy->SetDepthUnit(trace.DepthUnit());
    copy->SetFlags(trace.Flags());
    return copy;
}

} // namespace ba
