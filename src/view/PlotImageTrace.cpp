#include "view/PlotImageTrace.h"

#include "model/ImageDrawing.h"
#include "model/ImagePropertiesModel.h"
#include "model/SonicTrace.h"

#include <QImage>
#include <QLinearGradient>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace ba {
namespace {

QRgb RgbOf(std::uint32_t colorRef)
{
    return qRgb(static_cast<int>(colorRef & 0xFF), static_cast<int>((colorRef >> 8) & 0xFF),
                static_cast<int>((colorRef >> 16) & 0xFF));
}

// The track's pixels: columns [left, right), rows [top, bottom). Pixels never painted
// stay transparent, so the grid under them shows.
class TrackCanvas {
public:
    TrackCanvas(std::int64_t left, std::int64_t top, std::int64_t right, std::int64_t bottom)
        : m_left(left), m_top(top), m_right(right), m_bottom(bottom),
          m_image(static_cast<int>(right - left), static_cast<int>(bottom - top), QImage::Format_ARGB32_Premultiplied)
    {
        m_image.fill(Qt::transparent);
    }

    void Fill(std::int64_t x0, std::int64_t y0, std::int64_t x1, std::int64_t y1, std::uint32_t colorRef)
    {
        x0 = std::max(x0, m_left);
        x1 = std::min(x1, m_right);
        y0 = std::max(y0, m_top);
        y1 = std::min(y1, m_bottom);
        if (x0 >= x1 || y0 >= y1) return;
        const QRgb rgb = RgbOf(colorRef);
        for (std::int64_t y = y0; y < y1; ++y) {
            auto* line = reinterpret_cast<QRgb*>(m_image.scanLine(static_cast<int>(y - m_top)));
            std::fill(line + (x0 - m_left), line + (x1 - m_left), rgb);
        }
    }

    // Repeats pixel row y0 down to y1 (exclusive), clipped.
    void CopyRowDown(std::int64_t y0, std::int64_t y1)
    {
        if (y0 < m_top || y0 >= m_bottom) return;
        const auto* source = m_image.constScanLine(static_cast<int>(y0 - m_top));
        for (std::int64_t y = y0 + 1; y < std::min(y1, m_bottom); ++y)
            std::copy_n(source, m_image.bytesPerLine(), m_image.scanLine(static_cast<int>(y - m_top)));
    }

    void DrawOnto(QPainter& painter) const
    {
        painter.drawImage(QPoint(static_cast<int>(m_left), static_cast<int>(m_top)), m_image);
    }

private:
    std::int64_t m_left, m_top, m_right, m_bottom;
    QImage m_image;
};

void PaintSonic(TrackCanvas& canvas, const CSonicTrace& trace, const ImageWindow& window, const ImageTrackPixels& track)
{
    const SonicImage image = SonicBands(trace, window, track);
    for (const SonicBand& band : image.bands) {
        // The band's first row is drawn run by run; the rows below it are the same.
        for (std::size_t r = band.firstRun; r < band.endRun; ++r)
            canvas.Fill(image.runs[r].left, band.top, image.runs[r].right, band.top + 1, image.runs[r].colour);
        canvas.CopyRowDown(band.top, band.bottom);
    }
}

} // namespace

void DrawImageTrace(QPainter& painter, const CImageTrace& trace, const PlotLayout& layout, const QRectF& trackRect)
{
    if (layout.rowsPerDepth <= 0.0 || layout.rows <= 0) return;
    const ImageTrackPixels track{std::lround(trackRect.left()), std::lround(trackRect.right()),
                                 std::lround(trackRect.bottom())};
    const std::int64_t top = std::max<std::int64_t>(layout.trackTop, std::lround(trackRect.top()));
    if (track.right <= track.left || track.bottom <= top) return;
    const ImageWindow window{layout.topDepth, layout.BottomDepth(), layout.rowsPerDepth, layout.trackTop};

    TrackCanvas canvas(track.left, top, track.right, track.bottom);
    if (const auto* sonic = dynamic_cast<const CSonicTrace*>(&trace)) {
        PaintSonic(canvas, *sonic, window, track);
    } else {
        for (const ImageCell& cell :
             ImageCells(trace, window, track, kPlotBackgroundColorRef, ImageIntensityMultiplier(trace)))
            canvas.Fill(cell.x, cell.y, cell.x + cell.width, cell.y + cell.height, cell.colour);
    }
    canvas.DrawOnto(painter);
}

void DrawImageLegendSample(QPainter& painter, const QRectF& strip)
{
    QLinearGradient gradient(strip.topLeft(), strip.topRight());
    gradient.setColorAt(0.0, QColor::fromRgb(RgbOf(ImageSampleColour(0))));
    gradient.setColorAt(1.0, QColor::fromRgb(RgbOf(ImageSampleColour(4095))));
    painter.fillRect(strip, gradient);
}

} // namespace ba
