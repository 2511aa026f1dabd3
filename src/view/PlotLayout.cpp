#include "view/PlotLayout.h"

#include <algorithm>
#include <cmath>

namespace ba {
namespace {

// Track indices of the standard layout: the left track, the full right track and its halves.
constexpr std::int32_t kLeftTrack = 0;
constexpr std::int32_t kRightTrack = 1;
constexpr std::int32_t kRightLeftHalf = 2;
constexpr std::int32_t kRightRightHalf = 3;

QRectF ColumnOf(const CRect32& area, double unitScale, double top, double bottom)
{
    return QRectF(QPointF(area.left * unitScale, top), QPointF(area.right * unitScale, bottom));
}

} // namespace

PlotRowWindow PlotLayout::RowWindow() const { return {topDepth, BottomDepth(), rowsPerDepth, rows}; }

float PlotLayout::BottomDepth() const { return static_cast<float>(DepthAtY(trackTop + rows)); }

double PlotLayout::DepthAtY(double y) const
{
    if (rowsPerDepth <= 0.0) return topDepth;
    return topDepth + (y - trackTop) / rowsPerDepth;
}

double PlotLayout::YAtDepth(double depth) const { return trackTop + (depth - topDepth) * rowsPerDepth; }

PlotLayout ComputePlotLayout(const CBoreAnalystDoc& doc, const PlotViewport& viewport)
{
    PlotLayout layout;
    const int width = std::max(0, viewport.pixelSize.width());
    const int height = std::max(0, viewport.pixelSize.height());
    layout.unitScale = doc.PlotWidth() > 0 ? width / static_cast<double>(doc.PlotWidth()) : 1.0;
    layout.topDepth = viewport.topDepth;

    // Legend boxes stack down each column of the header: the left track's on the left;
    // on the right the full right track's across the whole width, then the two halves'
    // side by side below them.
    std::size_t stacked[4] = {0, 0, 0, 0};
    for (std::size_t i = 0; i < doc.TraceCount(); ++i) {
        const std::int32_t track = doc.Trace(i).TrackIndex();
        if (track >= 0 && track < 4 && doc.TrackAt(track) != nullptr) ++stacked[track];
    }
    const std::size_t rightRows = stacked[kRightTrack] + std::max(stacked[kRightLeftHalf], stacked[kRightRightHalf]);
    const std::size_t legendRows = std::max(stacked[kLeftTrack], rightRows);
    const double headerUnits =
        std::max(static_cast<double>(-doc.TrackTop()), kTitleHeight + kLegendHeight * static_cast<double>(legendRows) + 2.0);

    const double s = layout.unitScale;
    layout.trackTop = std::min(height, static_cast<int>(std::lround(headerUnits * s)));
    layout.rows = height - layout.trackTop;
    const bool scaleUsable = std::isfinite(viewport.verticalScale) && viewport.verticalScale > 0.0f &&
                             viewport.dotsPerCentimetre > 0.0;
    layout.rowsPerDepth = scaleUsable ? viewport.dotsPerCentimetre / viewport.verticalScale : 0.0;

    layout.header = QRectF(0, 0, width, layout.trackTop);
    layout.title = QRectF(0, 0, doc.HeaderRect().right * s, kTitleHeight * s);
    const double top = layout.trackTop;
    const double bottom = height;
    for (std::size_t t = 0; t < doc.TrackCount(); ++t) layout.tracks.push_back(ColumnOf(doc.Track(t).Area(), s, top, bottom));
    if (doc.TrackCount() >= 2) {
        const double left = doc.Track(kLeftTrack).Area().right * s;
        const double right = doc.Track(kRightTrack).Area().left * s;
        layout.depthColumn = QRectF(QPointF(left, top), QPointF(right, bottom));
    }

    std::size_t placed[4] = {0, 0, 0, 0};
    for (std::size_t i = 0; i < doc.TraceCount(); ++i) {
        const CTrace& trace = doc.Trace(i);
        const std::int32_t track = trace.TrackIndex();
        if (track < 0 || track >= 4 || doc.TrackAt(track) == nullptr) continue;
        std::size_t row = placed[track]++;
        if (track == kRightLeftHalf || track == kRightRightHalf) row += stacked[kRightTrack];
        const CRect32& area = doc.TrackAt(track)->Area();
        const double boxTop = (kTitleHeight + kLegendHeight * static_cast<double>(row)) * s;
        layout.legends.push_back(
            {&trace, QRectF(QPointF(area.left * s, boxTop), QPointF(area.right * s, boxTop + kLegendHeight * s))});
    }
    return layout;
}

} // namespace ba
