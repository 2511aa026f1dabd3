#include "view/LogPlotRenderer.h"

#include "model/LineTrace.h"
#include "view/PlotCurve.h"
#include "view/PlotImageTrace.h"
#include "view/PlotText.h"

#include <QFont>
#include <QPainter>
#include <QString>

#include <algorithm>
#include <cmath>
#include <vector>

namespace ba {
namespace {

// Track settings as the plot uses them: T1 set means the track owns its frame and grid
// (the two half tracks lie inside the right track and draw none of their own), T5 is the
// number of vertical grid divisions across the track, T6 the number of minor depth
// divisions between two labelled depth lines.
constexpr std::size_t kOwnsGrid = 0;
constexpr std::size_t kVerticalDivisions = 4;
constexpr std::size_t kMinorDepthDivisions = 5;

// Labelled depth lines are at least this far apart; minor lines are left out below the
// second figure.
constexpr double kMinimumLabelSpacing = 40.0; // pixels
constexpr double kMinimumMinorSpacing = 4.0;  // pixels
// A plot taller than this many labelled lines is not a plot anyone reads; it also bounds
// the loops below whatever the viewport holds.
constexpr int kMaximumDepthLines = 10000;

const QColor kMajorGrid(170, 170, 170);
const QColor kMinorGrid(225, 225, 225);
const QColor kDivisionGrid(200, 200, 200);
const QColor kLegendFrame(150, 150, 150);
const QColor kSelectedLegend(205, 225, 250);

QFont PlotFont(double pixelSize, bool bold = false)
{
    QFont font;
    // Arial where installed; DejaVu Sans is the Debian font with the same metrics role.
    font.setFamilies({QStringLiteral("Arial"), QStringLiteral("DejaVu Sans")});
    font.setStyleHint(QFont::SansSerif);
    font.setPixelSize(std::max(1, static_cast<int>(std::lround(pixelSize))));
    font.setBold(bold);
    return font;
}

QString Text(const std::string& text) { return QString::fromStdString(text); }

struct DepthLines {
    double step = 0.0;   // between labelled lines; 0 when there are none
    double minor = 0.0;  // between minor lines; 0 when they are left out
};

DepthLines ChooseDepthLines(const PlotLayout& layout, std::int32_t minorDivisions)
{
    DepthLines lines;
    if (layout.rowsPerDepth <= 0.0 || layout.rows <= 0) return lines;
    lines.step = NiceDepthStep(kMinimumLabelSpacing / layout.rowsPerDepth);
    if ((layout.rows / layout.rowsPerDepth) / lines.step > kMaximumDepthLines) lines.step = 0.0;
    if (lines.step > 0.0 && minorDivisions > 1 &&
        lines.step / minorDivisions * layout.rowsPerDepth >= kMinimumMinorSpacing)
        lines.minor = lines.step / minorDivisions;
    return lines;
}

// Calls draw(depth, y) for each multiple of `step` in the track area.
template <typename Draw>
void ForEachDepthLine(const PlotLayout& layout, double step, Draw draw)
{
    if (step <= 0.0) return;
    const double top = layout.topDepth;
    const double bottom = layout.BottomDepth();
    for (double k = std::ceil(top / step); k * step <= bottom; k += 1.0) {
        const double depth = k * step;
        draw(depth, std::floor(layout.YAtDepth(depth)) + 0.5);
    }
}

void DrawTrackGrid(QPainter& painter, const CTrack& track, const QRectF& rect, const PlotLayout& layout)
{
    const DepthLines lines = ChooseDepthLines(layout, track.Setting(kMinorDepthDivisions));
    painter.setPen(QPen(kMinorGrid, 0));
    ForEachDepthLine(layout, lines.minor, [&](double, double y) { painter.drawLine(QPointF(rect.left(), y), QPointF(rect.right(), y)); });
    const std::int32_t divisions = track.Setting(kVerticalDivisions);
    if (divisions > 1 && divisions <= rect.width()) {
        painter.setPen(QPen(kDivisionGrid, 0));
        for (std::int32_t i = 1; i < divisions; ++i) {
            const double x = std::floor(rect.left() + rect.width() * i / divisions) + 0.5;
            painter.drawLine(QPointF(x, rect.top()), QPointF(x, rect.bottom()));
        }
    }
    painter.setPen(QPen(kMajorGrid, 0));
    ForEachDepthLine(layout, lines.step, [&](double, double y) { painter.drawLine(QPointF(rect.left(), y), QPointF(rect.right(), y)); });
    painter.setPen(QPen(Qt::black, 0));
    painter.drawRect(rect.adjusted(0.5, 0.5, -0.5, -0.5));
}

void DrawDepthColumn(QPainter& painter, const PlotLayout& layout)
{
    const QRectF column = layout.depthColumn;
    if (column.width() <= 0.0) return;
    const double s = layout.unitScale;
    painter.setFont(PlotFont(10.0 * s));
    painter.setPen(Qt::black);
    const DepthLines lines = ChooseDepthLines(layout, 0);
    const double tick = 4.0 * s;
    const double half = 7.0 * s;
    painter.save();
    painter.setClipRect(column);
    ForEachDepthLine(layout, lines.step, [&](double depth, double y) {
        painter.drawLine(QPointF(column.left(), y), QPointF(column.left() + tick, y));
        painter.drawLine(QPointF(column.right() - tick, y), QPointF(column.right(), y));
        if (y - half < column.top()) return; // a label cut by the header would be misread
        const QRectF label(column.left() + tick, y - half, column.width() - 2 * tick, 2 * half);
        painter.drawText(label, Qt::AlignCenter, Text(DepthLabelText(depth, lines.step)));
    });
    painter.restore();
}

void DrawLegend(QPainter& painter, const LegendBox& legend, const PlotLayout& layout, bool selected)
{
    const double s = layout.unitScale;
    const QRectF box = legend.box;
    if (selected) painter.fillRect(box, kSelectedLegend);
    painter.setPen(QPen(kLegendFrame, 0));
    painter.drawRect(box.adjusted(0.5, 0.5, -0.5, -0.5));

    const CTrace& trace = *legend.trace;
    if (const auto* line = dynamic_cast<const CLineTrace*>(&trace)) {
        const QPen pen = TracePen(*line, s);
        // A hidden trace keeps its legend box (so it can still be selected and shown again)
        // but loses the line sample, which marks it as hidden.
        if (pen.style() != Qt::NoPen && !trace.IsHidden()) {
            const double inset = pen.widthF() / 2.0 + 1.0 * s;
            const double y = box.top() + kLegendLineOffset * s;
            painter.setPen(pen);
            painter.drawLine(QPointF(box.left() + inset, y), QPointF(box.right() - inset, y));
        }
    } else if (dynamic_cast<const CImageTrace*>(&trace) != nullptr && !trace.IsHidden()) {
        const double y = box.top() + kLegendLineOffset * s;
        const QRectF strip(QPointF(box.left() + 3 * s, y - 1.5 * s), QPointF(box.right() - 3 * s, y + 1.5 * s));
        DrawImageLegendSample(painter, strip);
    }

    painter.setPen(Qt::black);
    painter.setFont(PlotFont(10.0 * s, true));
    std::string name = trace.Name();
    if (!trace.Units().empty()) name += " (" + trace.Units() + ")";
    const QRectF nameRow(box.left() + 2 * s, box.top() + 1 * s, box.width() - 4 * s, 13 * s);
    painter.drawText(nameRow, Qt::AlignCenter, painter.fontMetrics().elidedText(Text(name), Qt::ElideRight, static_cast<int>(nameRow.width())));

    painter.setFont(PlotFont(10.0 * s));
    const QRectF scaleRow(box.left() + 3 * s, box.top() + 18 * s, box.width() - 6 * s, 14 * s);
    painter.drawText(scaleRow, Qt::AlignLeft | Qt::AlignVCenter, Text(LegendNumberText(trace.ScaleLeft())));
    painter.drawText(scaleRow, Qt::AlignRight | Qt::AlignVCenter, Text(LegendNumberText(trace.ScaleRight())));

    // The two legend marks: small filled squares at the left and right, 23 units down.
    painter.setPen(Qt::NoPen);
    painter.setBrush(Qt::black);
    const double mark = 3.0 * s;
    const double markY = box.top() + 23.0 * s;
    if (trace.LegendMarks()[0] != 0) painter.drawRect(QRectF(box.left() + 2 * s, markY - mark / 2, mark, mark));
    if (trace.LegendMarks()[1] != 0) painter.drawRect(QRectF(box.right() - 2 * s - mark, markY - mark / 2, mark, mark));
    painter.setBrush(Qt::NoBrush);
}

void DrawHeader(QPainter& painter, const CBoreAnalystDoc& doc, const PlotLayout& layout, const PlotViewport& viewport)
{
    const double s = layout.unitScale;
    painter.setPen(Qt::black);
    painter.setFont(PlotFont(14.0 * s, true));
    painter.drawText(layout.title, Qt::AlignCenter, Text(doc.Header().Title()));
    if (layout.depthColumn.width() > 0.0) {
        painter.setFont(PlotFont(10.0 * s));
        const QRectF caption(layout.depthColumn.left(), layout.trackTop - 14.0 * s, layout.depthColumn.width(), 14.0 * s);
        painter.drawText(caption, Qt::AlignCenter, Text(DepthUnitCaption(DocumentDepthUnit(doc))));
    }
    for (const LegendBox& legend : layout.legends) {
        const bool selected = !viewport.printing && viewport.selected.count(legend.trace) != 0;
        DrawLegend(painter, legend, layout, selected);
    }
}

} // namespace

std::int32_t DocumentDepthUnit(const CBoreAnalystDoc& doc)
{
    return doc.TraceCount() == 0 ? kDepthMetres : doc.Trace(0).DepthUnit();
}

PlotLayout CLogPlotRenderer::Layout(const CBoreAnalystDoc& doc, const PlotViewport& viewport) const
{
    return ComputePlotLayout(doc, viewport);
}

void CLogPlotRenderer::Paint(QPainter& painter, const CBoreAnalystDoc& doc, const PlotViewport& viewport) const
{
    const PlotLayout layout = ComputePlotLayout(doc, viewport);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing, false);
    painter.setRenderHint(QPainter::TextAntialiasing, true);
    painter.fillRect(QRect(QPoint(0, 0), viewport.pixelSize), Qt::white);

    for (std::size_t t = 0; t < doc.TrackCount(); ++t) {
        const CTrack& track = doc.Track(t);
        if (track.Setting(kOwnsGrid) != 0) DrawTrackGrid(painter, track, layout.tracks[t], layout);
    }
    DrawDepthColumn(painter, layout);

    // Images first: they are opaque, and the curves must stay visible over them.
    for (std::size_t i = 0; i < doc.TraceCount(); ++i) {
        const auto* image = dynamic_cast<const CImageTrace*>(&doc.Trace(i));
        if (image == nullptr || doc.TrackAt(image->TrackIndex()) == nullptr || image->IsHidden()) continue;
        DrawImageTrace(painter, *image, layout, layout.tracks[static_cast<std::size_t>(image->TrackIndex())]);
    }

    // The curves in document order; their reduction to pixel rows is done for all of them
    // at once, so that it can be shared among the cores.
    std::vector<const CLineTrace*> lines;
    for (std::size_t i = 0; i < doc.TraceCount(); ++i) {
        const auto* line = dynamic_cast<const CLineTrace*>(&doc.Trace(i));
        if (line == nullptr || doc.TrackAt(line->TrackIndex()) == nullptr || line->IsHidden()) continue;
        lines.push_back(line);
    }
    std::vector<std::vector<CurveRun>> runs;
    if (!viewport.drawEverySample) runs = DecimateCurves(lines, layout.RowWindow());
    for (std::size_t k = 0; k < lines.size(); ++k) {
        const CLineTrace& line = *lines[k];
        const std::int32_t index = line.TrackIndex();
        const CRect32& area = doc.TrackAt(index)->Area();
        const QRectF& trackRect = layout.tracks[static_cast<std::size_t>(index)];
        if (viewport.drawEverySample)
            DrawEverySampleCurve(painter, line, layout, area, trackRect);
        else
            DrawReducedCurve(painter, line, layout, area, trackRect, runs[k]);
    }

    // The header last: nothing of the curves reaches into it.
    painter.fillRect(layout.header, Qt::white);
    DrawHeader(painter, doc, layout, viewport);
    painter.setPen(QPen(Qt::black, 0));
    const double rule = layout.trackTop - 0.5;
    painter.drawLine(QPointF(0, rule), QPointF(layout.header.right(), rule));
    painter.restore();
}

float CLogPlotRenderer::BottomDepth(const CBoreAnalystDoc& doc, const PlotViewport& viewport) const
{
    return ComputePlotLayout(doc, viewport).BottomDepth();
}

double CLogPlotRenderer::DepthAtY(const CBoreAnalystDoc& doc, const PlotViewport& viewport, double y) const
{
    return ComputePlotLayout(doc, viewport).DepthAtY(y);
}

double CLogPlotRenderer::YAtDepth(const CBoreAnalystDoc& doc, const PlotViewport& viewport, double depth) const
{
    return ComputePlotLayout(doc, viewport).YAtDepth(depth);
}

const CTrace* CLogPlotRenderer::TraceAtLegend(const CBoreAnalystDoc& doc, const PlotViewport& viewport,
                                              QPoint point) const
{
    for (const LegendBox& legend : ComputePlotLayout(doc, viewport).legends) {
        if (legend.box.contains(point)) return legend.trace;
    }
    return nullptr;
}

int CLogPlotRenderer::TrackAt(const CBoreAnalystDoc& doc, const PlotViewport& viewport, QPoint point) const
{
    const PlotLayout layout = ComputePlotLayout(doc, viewport);
    for (std::size_t t = layout.tracks.size(); t-- > 0;) {
        if (layout.tracks[t].contains(point)) return static_cast<int>(t);
    }
    return -1;
}

} // namespace ba
