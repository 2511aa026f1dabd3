#pragma once
// Drawing one line trace in its track: the pen from the trace's width, style and colour,
// and the curve, either reduced to one run per pixel row or through every sample.
// Values beyond the scale run along the track's edges.

#include "model/LineTrace.h"
#include "model/PlotDecimation.h"
#include "view/PlotLayout.h"

#include <QColor>
#include <QPen>

class QPainter;

namespace ba {

// A COLORREF (0x00BBGGRR) as a colour.
QColor ColourFromColorRef(std::uint32_t colour);

// The trace's pen, its width scaled from plot units to pixels (at least one pixel). The
// null style gives Qt::NoPen; an unknown style draws solid.
QPen TracePen(const CLineTrace& trace, double unitScale);

// Draws the curve across the track `area` (plot units), mapping the scale onto it, and
// clipped to `trackRect` (pixels).
void DrawCurve(QPainter& painter, const CLineTrace& trace, const PlotLayout& layout, const CRect32& area,
               const QRectF& trackRect, bool everySample);

// DrawCurve from the trace's runs in the layout's row window, computed beforehand.
void DrawReducedCurve(QPainter& painter, const CLineTrace& trace, const PlotLayout& layout, const CRect32& area,
                      const QRectF& trackRect, const std::vector<CurveRun>& runs);

// DrawCurve through every sample.
void DrawEverySampleCurve(QPainter& painter, const CLineTrace& trace, const PlotLayout& layout, const CRect32& area,
                          const QRectF& trackRect);

} // namespace ba
