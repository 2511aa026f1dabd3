#pragma once
// The log plot as a file: a PNG image, or a one-page vector PDF of the same picture. The
// PDF page is the size the image has at screen resolution (96 dots per inch, to the
// nearest point), so both show the same depths; it is drawn at a finer resolution so
// that the curves keep their detail when the page is enlarged. A file is written whole
// or not at all: a failed write leaves what was there before. The desktop's File >
// Export plot and the command-line tool's plot command both write through here.

#include "view/PlotLayout.h"

#include <QSize>

#include <filesystem>
#include <optional>

class QPagedPaintDevice;

namespace ba {

class CBoreAnalystDoc;
class IMessageSink;

enum class PlotFileFormat { Png, Pdf };

// What a plot file shows: the depth at the top of the tracks and the vertical scale (both
// in display depth units) on a plot of `pixelSize` at screen resolution.
struct PlotFilePage {
    float topDepth = 0.0f;
    float verticalScale = 10.0f;
    QSize pixelSize{850, 1100};
};

// The format a file name asks for by its extension, ".png" or ".pdf" in any case. Any
// other name is reported as an error naming the file, and gives none.
std::optional<PlotFileFormat> PlotFileFormatOf(const std::filesystem::path& path, IMessageSink& sink);

// The page as the window would draw it at screen resolution; the image is drawn from it,
// and its bottom depth is the deepest a plot file of the page shows.
PlotViewport ScreenViewport(const PlotFilePage& page);

// Draws the plot and writes it to `path` in `format`. False, with an error naming the
// file, when the plot cannot be drawn or the file cannot be written.
bool WritePlotFile(const CBoreAnalystDoc& doc, const PlotFilePage& page, const std::filesystem::path& path,
                   PlotFileFormat format, IMessageSink& sink);

// Draws one page on a printer or PDF writer: the page's paint area becomes the viewport's
// size and the device's resolution the plot's dots per centimetre; the selection is not
// highlighted on paper. False when the device refuses to start the page.
bool PaintPlotPage(QPagedPaintDevice& device, const CBoreAnalystDoc& doc, PlotViewport viewport);

} // namespace ba
