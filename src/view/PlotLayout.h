#pragma once
// Where everything of a log plot lies in device pixels for one viewport: the header band
// with the title and the legend boxes, the depth column, the track areas, and the mapping
// between depth and pixel row. Painting and hit-testing share it, so a click finds what
// was drawn.

#include "model/BoreAnalystDoc.h"
#include "model/PlotDecimation.h"

#include <QRectF>
#include <QSize>

#include <set>
#include <vector>

namespace ba {

// What part of the document is shown, and how.
struct PlotViewport {
    float topDepth = 0.0f;           // depth at the top of the track area, in display units
    float verticalScale = 10.0f;     // display depth units per centimetre of plot
    QSize pixelSize{850, 1100};      // size of the area painted, in device pixels
    double dotsPerCentimetre = 37.8; // device resolution used to turn the vertical scale into pixels
    bool printing = false;           // printed output leaves out the selection highlight
    std::set<const CTrace*> selected; // traces drawn with a highlighted legend box
    // Draw every sample instead of the per-row reduction: slower, and the same pixels for
    // solid pens; kept to check the reduction against.
    bool drawEverySample = false;
};

struct LegendBox {
    const CTrace* trace = nullptr;
    QRectF box; // pixels
};

struct PlotLayout {
    double unitScale = 1.0; // pixels per logical plot unit, horizontally and for the header
    int trackTop = 0;       // first pixel row of the track area (below the header band)
    int rows = 0;           // pixel rows of the track area
    double rowsPerDepth = 0.0; // pixel rows per display depth unit; 0 when the scale is unusable
    float topDepth = 0.0f;
    QRectF header;          // the header band
    QRectF title;           // the title line inside it
    QRectF depthColumn;     // between the left track and the right-hand tracks, track area only
    std::vector<QRectF> tracks; // one per document track, track area only
    std::vector<LegendBox> legends;

    // The curve rows: display depths from topDepth to the bottom of the track area.
    PlotRowWindow RowWindow() const;
    float BottomDepth() const;
    double DepthAtY(double y) const;
    double YAtDepth(double depth) const;
};

// Logical layout constants (plot units; the document's plot is 850 wide).
inline constexpr double kTitleHeight = 24.0;
inline constexpr double kLegendHeight = 34.0;
inline constexpr double kLegendLineOffset = 16.0; // the line sample, below the box's top

PlotLayout ComputePlotLayout(const CBoreAnalystDoc& doc, const PlotViewport& viewport);

} // namespace ba
