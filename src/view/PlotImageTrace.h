#pragma once
// Drawing image traces in their track: sonic waveforms as bands of time-ordered colour
// runs, plain images and spectra as coloured cells. The geometry comes from
// model/ImageDrawing.h; this only turns it into pixels, rendered into an image of the
// track's size that is then drawn over the track (so printers and PDF files get the same
// picture as the screen).

#include "model/ImageTrace.h"
#include "view/PlotLayout.h"

#include <QColor>

class QPainter;

namespace ba {

// The background the plot is painted on, as the image drawing's start-up state sees it.
inline constexpr std::uint32_t kPlotBackgroundColorRef = 0x00FFFFFF;

// Draws `trace` clipped to `trackRect` (pixels) for the layout's depth window.
void DrawImageTrace(QPainter& painter, const CImageTrace& trace, const PlotLayout& layout, const QRectF& trackRect);

// The legend sample of an image trace: a strip running through the colours from the
// lowest to the highest sample.
void DrawImageLegendSample(QPainter& painter, const QRectF& strip);

} // namespace ba
