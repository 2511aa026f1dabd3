#pragma once
// Draws a document's log plot with QPainter: the header band with the title and each
// trace's legend box, the depth column between the left and the right tracks, the four
// tracks with their grid lines, every image trace (sonic, spectrum, plain image) and
// every line trace in its track. The same renderer
// serves the window, the printer, PNG and PDF files and the command-line tool.
//
// Geometry: plot units across (the document's plot width fills the painted width), and
// down the track area one centimetre at the device's resolution holds `verticalScale`
// display depth units. The header band grows to hold the legend boxes.

#include "model/BoreAnalystDoc.h"
#include "view/PlotLayout.h"

#include <QPoint>

class QPainter;

namespace ba {

class CLogPlotRenderer {
public:
    // Paints the whole plot into the painter's device, filling viewport.pixelSize.
    void Paint(QPainter& painter, const CBoreAnalystDoc& doc, const PlotViewport& viewport) const;

    // Where everything lies for this viewport; the operations below are shorthands.
    PlotLayout Layout(const CBoreAnalystDoc& doc, const PlotViewport& viewport) const;

    // Depth (display units) shown at the bottom of the track area.
    float BottomDepth(const CBoreAnalystDoc& doc, const PlotViewport& viewport) const;
    // The depth at a pixel row inside the track area, and the reverse.
    double DepthAtY(const CBoreAnalystDoc& doc, const PlotViewport& viewport, double y) const;
    double YAtDepth(const CBoreAnalystDoc& doc, const PlotViewport& viewport, double depth) const;
    // The trace whose legend box contains the point, or null.
    const CTrace* TraceAtLegend(const CBoreAnalystDoc& doc, const PlotViewport& viewport, QPoint point) const;
    // The track whose area contains the point, or -1. Where a half track lies over the
    // full right track, the half track is the answer.
    int TrackAt(const CBoreAnalystDoc& doc, const PlotViewport& viewport, QPoint point) const;
};

// The display depth unit of a document: that of its first trace, metres without traces.
std::int32_t DocumentDepthUnit(const CBoreAnalystDoc& doc);

} // namespace ba
