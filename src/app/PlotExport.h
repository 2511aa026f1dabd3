#pragma once
// The log plot as a file or on paper, drawn by the same renderer as the window.

#include "view/LogPlotRenderer.h"

#include <QString>

class QPagedPaintDevice;

namespace ba {

class CBoreAnalystDoc;
class IMessageSink;

// A viewport the size of the document's plot extent, at screen resolution, starting at
// `topDepth` with `verticalScale`.
PlotViewport PlotExtentViewport(const CBoreAnalystDoc& doc, float topDepth, float verticalScale);

// Writes the plot as a PNG image of viewport.pixelSize. Reports a failure naming the file.
bool WritePlotPng(const CBoreAnalystDoc& doc, const PlotViewport& viewport, const QString& path, IMessageSink& sink);

// Writes the plot as a one-page PDF at printing resolution; the page's printable area
// replaces viewport.pixelSize.
bool WritePlotPdf(const CBoreAnalystDoc& doc, const PlotViewport& viewport, const QString& path, IMessageSink& sink);

// Draws one page on a printer or PDF writer: the page's paint area becomes the viewport
// size and its resolution the plot's dots per centimetre, with printing set.
bool PaintPlotPage(QPagedPaintDevice& device, const CBoreAnalystDoc& doc, PlotViewport viewport);

} // namespace ba
