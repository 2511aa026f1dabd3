#include "view/PlotCurve.h"

#include "model/CurveGeometry.h"

#include <QPainter>
#include <QPolygonF>

#include <algorithm>
#include <cmath>

namespace ba {
namespace {

// Sample positions are snapped to pixel centres: every sample in a row then lies on one
// horizontal line, which is what lets a row's samples be reduced to their extremes
// without changing the pixels drawn.
class PixelMapper {
public:
    PixelMapper(const CLineTrace& trace, const PlotLayout& layout, const CRect32& area, const QRectF& trackRect)
        : m_scaleLeft(trace.ScaleLeft()), m_scaleRight(trace.ScaleRight()), m_area(area),
          m_unitScale(layout.unitScale), m_top(layout.trackTop), m_firstColumn(std::floor(trackRect.left())),
          m_lastColumn(std::max(m_firstColumn, std::ceil(trackRect.right()) - 1.0))
    {
    }

    double X(float value) const
    {
        const double x = ValueToX(value, m_scaleLeft, m_scaleRight, m_area.left, m_area.right) * m_unitScale;
        // A value beyond the scale runs along the track's edge, so the reader sees that the
        // curve left the scale there rather than a hole in it.
        if (!(x >= m_firstColumn)) return m_firstColumn + 0.5; // also catches -inf
        return std::min(std::floor(x), m_lastColumn) + 0.5;
    }
    double Y(std::int64_t row) const { return m_top + static_cast<double>(row) + 0.5; }

private:
    float m_scaleLeft;
    float m_scaleRight;
    CRect32 m_area;
    double m_unitScale;
    double m_top;
    double m_firstColumn;
    double m_lastColumn;
};

// Collects the polylines of a curve and draws them. A solid curve is drawn as separate
// segments, each with both end pixels: the pixels are then the union of the segments',
// whatever order the samples visit them in, which keeps the per-row reduction exact.
// Patterned pens need one continuous path so that the dashes run along the curve.
class CurveStrokes {
public:
    explicit CurveStrokes(bool solid) : m_solid(solid) {}

    void Add(QPointF point)
    {
        if (m_line.isEmpty() || m_line.back() != point) m_line.push_back(point);
    }

    // Ends the current polyline; the next point starts a new one.
    void Break(QPainter& painter)
    {
        if (m_line.size() == 1) {
            m_points.push_back(m_line.front()); // a sample between two nulls still shows
        } else if (m_line.size() > 1) {
            if (m_solid) {
                for (qsizetype i = 1; i < m_line.size(); ++i) m_segments.push_back(QLineF(m_line[i - 1], m_line[i]));
            } else {
                painter.drawPolyline(m_line);
            }
        }
        m_line.clear();
    }

    void Finish(QPainter& painter)
    {
        Break(painter);
        if (!m_segments.isEmpty()) painter.drawLines(m_segments);
        if (!m_points.isEmpty()) painter.drawPoints(m_points.data(), static_cast<int>(m_points.size()));
    }

private:
    bool m_solid;
    QPolygonF m_line;
    QList<QLineF> m_segments;
    QList<QPointF> m_points;
};

// A solid curve through the runs. A run's stroke from its first value through its extremes
// to its last stays on one row within [minimum, maximum], so the join into the run plus
// one stroke across that span covers the same pixels with two segments instead of four.
// A run of one pixel that nothing joins to or from is drawn as a point. With a one-pixel
// pen a span is a rectangle one pixel high: filled as such it costs a fraction of a line.
void DrawSolidRuns(QPainter& painter, const std::vector<CurveRun>& runs, const PixelMapper& map)
{
    const bool thin = painter.pen().isCosmetic() && painter.pen().widthF() <= 1.0;
    QList<QLineF> segments;
    segments.reserve(static_cast<qsizetype>((thin ? 1 : 2) * runs.size()));
    QList<QRectF> spans;
    if (thin) spans.reserve(static_cast<qsizetype>(runs.size()));
    QList<QPointF> points;
    QPointF previousLast;
    for (std::size_t k = 0; k < runs.size(); ++k) {
        const CurveRun& run = runs[k];
        const double y = map.Y(run.row);
        const QPointF first(map.X(run.first), y);
        if (run.joined) segments.push_back(QLineF(previousLast, first));
        const double left = map.X(run.minimum);
        const double right = map.X(run.maximum);
        if (left != right) {
            if (thin) {
                const double low = std::min(left, right); // a reversed scale puts the minimum on the right
                spans.push_back(QRectF(low - 0.5, y - 0.5, std::abs(right - left) + 1.0, 1.0));
            } else {
                segments.push_back(QLineF(left, y, right, y));
            }
        } else if (!run.joined && !(k + 1 < runs.size() && runs[k + 1].joined)) {
            points.push_back(first);
        }
        previousLast = QPointF(map.X(run.last), y);
    }
    if (!spans.isEmpty()) {
        const QColor colour = painter.pen().color();
        painter.save();
        painter.setPen(Qt::NoPen);
        painter.setBrush(colour);
        painter.drawRects(spans.data(), static_cast<int>(spans.size()));
        painter.restore();
    }
    if (!segments.isEmpty()) painter.drawLines(segments);
    if (!points.isEmpty()) painter.drawPoints(points.data(), static_cast<int>(points.size()));
}

void DrawRuns(QPainter& painter, const std::vector<CurveRun>& runs, const PixelMapper& map, CurveStrokes& strokes)
{
    for (const CurveRun& run : runs) {
        if (!run.joined) strokes.Break(painter);
        const double y = map.Y(run.row);
        strokes.Add({map.X(run.first), y});
        strokes.Add({map.X(run.minimum), y});
        strokes.Add({map.X(run.maximum), y});
        strokes.Add({map.X(run.last), y});
    }
}

void DrawEverySample(QPainter& painter, const CLineTrace& trace, const PlotLayout& layout, const PixelMapper& map,
                     CurveStrokes& strokes)
{
    const PlotRowWindow window = layout.RowWindow();
    for (const auto& piece : CurvePieces(trace, window.top, window.bottom)) {
        for (const CurvePoint& point : piece) {
            const std::int64_t row = window.RowOf(point.depth);
            if (row < 0 || row >= window.rows) continue;
            strokes.Add({map.X(point.value), map.Y(row)});
        }
        strokes.Break(painter);
    }
}

} // namespace

QColor ColourFromColorRef(std::uint32_t colour)
{
    return QColor(static_cast<int>(colour & 0xFFu), static_cast<int>((colour >> 8) & 0xFFu),
                  static_cast<int>((colour >> 16) & 0xFFu));
}

QPen TracePen(const CLineTrace& trace, double unitScale)
{
    Qt::PenStyle style = Qt::SolidLine;
    switch (trace.PenStyle()) {
    case kPenDash: style = Qt::DashLine; break;
    case kPenDot: style = Qt::DotLine; break;
    case kPenDashDot: style = Qt::DashDotLine; break;
    case kPenDashDotDot: style = Qt::DashDotDotLine; break;
    case kPenNull: style = Qt::NoPen; break;
    default: break;
    }
    const double width = std::max(1.0, std::round(std::max(0, trace.PenWidth()) * unitScale));
    QPen pen(ColourFromColorRef(trace.Colour()), width, style, Qt::RoundCap, Qt::RoundJoin);
    // A one-pixel pen is cosmetic: the raster engine then draws it with its line stepper
    // rather than outlining and filling each segment, many times faster.
    pen.setCosmetic(width <= 1.0);
    return pen;
}

void DrawCurve(QPainter& painter, const CLineTrace& trace, const PlotLayout& layout, const CRect32& area,
               const QRectF& trackRect, bool everySample)
{
    if (everySample) {
        DrawEverySampleCurve(painter, trace, layout, area, trackRect);
    } else {
        DrawReducedCurve(painter, trace, layout, area, trackRect, DecimateCurve(trace, layout.RowWindow()));
    }
}

void DrawReducedCurve(QPainter& painter, const CLineTrace& trace, const PlotLayout& layout, const CRect32& area,
                      const QRectF& trackRect, const std::vector<CurveRun>& runs)
{
    const QPen pen = TracePen(trace, layout.unitScale);
    if (pen.style() == Qt::NoPen || layout.rowsPerDepth <= 0.0 || layout.rows <= 0) return;
    painter.save();
    painter.setClipRect(trackRect);
    painter.setRenderHint(QPainter::Antialiasing, false);
    painter.setPen(pen);
    const PixelMapper map(trace, layout, area, trackRect);
    if (pen.style() == Qt::SolidLine) {
        DrawSolidRuns(painter, runs, map);
    } else {
        CurveStrokes strokes(false);
        DrawRuns(painter, runs, map, strokes);
        strokes.Finish(painter);
    }
    painter.restore();
}

void DrawEverySampleCurve(QPainter& painter, const CLineTrace& trace, const PlotLayout& layout, const CRect32& area,
                          const QRectF& trackRect)
{
    const QPen pen = TracePen(trace, layout.unitScale);
    if (pen.style() == Qt::NoPen || layout.rowsPerDepth <= 0.0 || layout.rows <= 0) return;
    painter.save();
    painter.setClipRect(trackRect);
    painter.setRenderHint(QPainter::Antialiasing, false);
    painter.setPen(pen);
    CurveStrokes strokes(pen.style() == Qt::SolidLine);
    DrawEverySample(painter, trace, layout, PixelMapper(trace, layout, area, trackRect), strokes);
    strokes.Finish(painter);
    painter.restore();
}

} // namespace ba
