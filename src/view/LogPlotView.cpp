#include "view/LogPlotView.h"

#include "model/BoreAnalystDoc.h"
#include "model/LineTrace.h"

#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>
#include <QWheelEvent>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace ba {

namespace {

// The plot scales the zoom commands step through, in display depth units per centimetre.
constexpr std::array<float, 12> kVerticalScales{0.5f, 1.0f, 2.0f, 5.0f, 10.0f, 20.0f,
                                                 50.0f, 100.0f, 200.0f, 500.0f, 1000.0f, 2000.0f};

struct DepthRange {
    double shallowest = 0.0;
    double deepest = 0.0;
};

// The depths every trace of the document covers, in display units.
std::optional<DepthRange> DocumentDepthRange(const CBoreAnalystDoc& doc)
{
    std::optional<DepthRange> range;
    for (std::size_t i = 0; i < doc.TraceCount(); ++i) {
        const CTrace& trace = doc.Trace(i);
        if (trace.SampleCount() == 0) continue;
        const double first = trace.FirstDepth();
        const double last = trace.LastDepth();
        if (!range) {
            range = DepthRange{first, last};
        } else {
            range->shallowest = std::min(range->shallowest, first);
            range->deepest = std::max(range->deepest, last);
        }
    }
    return range;
}

int ToScrollSteps(double depth)
{
    const double steps = std::round(depth * CLogPlotView::kScrollStepsPerDepthUnit);
    return static_cast<int>(std::clamp(steps, double(std::numeric_limits<int>::min() / 2),
                                       double(std::numeric_limits<int>::max() / 2)));
}

} // namespace

QString DepthReadoutText(const PlotReadout& readout)
{
    return readout.depth ? QString::asprintf("D: %8.3f", *readout.depth) : QString();
}

QString ValueReadoutText(const PlotReadout& readout)
{
    return readout.value ? QString::asprintf("V: %8.3f", double(*readout.value)) : QString();
}

CLogPlotView::CLogPlotView(CBoreAnalystDoc& doc, QWidget* parent)
    : QAbstractScrollArea(parent), m_doc(doc), m_verticalScale(doc.VerticalScale())
{
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    viewport()->setMouseTracking(true);
    viewport()->setAttribute(Qt::WA_OpaquePaintEvent);
    viewport()->setBackgroundRole(QPalette::Base);
    setMinimumSize(200, 200);
    if (const auto range = DocumentDepthRange(doc)) m_topDepth = static_cast<float>(std::floor(range->shallowest));
    UpdateScrollRange();
}

PlotViewport CLogPlotView::Viewport() const
{
    PlotViewport vp;
    vp.topDepth = m_topDepth;
    vp.verticalScale = m_verticalScale;
    vp.pixelSize = viewport()->size();
    vp.dotsPerCentimetre = logicalDpiY() / 2.54;
    vp.selected = m_selected;
    return vp;
}

void CLogPlotView::SetTopDepth(float depth)
{
    if (!std::isfinite(depth) || depth == m_topDepth) return;
    m_topDepth = depth;
    UpdateScrollRange();
    viewport()->update();
}

void CLogPlotView::SetVerticalScale(float scale)
{
    if (!(scale > 0.0f) || !std::isfinite(scale) || scale == m_verticalScale) return;
    m_verticalScale = scale;
    UpdateScrollRange();
    viewport()->update();
    emit verticalScaleChanged(scale);
}

bool CLogPlotView::ZoomIn()
{
    const auto finer = std::find_if(kVerticalScales.rbegin(), kVerticalScales.rend(),
                                     [this](float s) { return s < m_verticalScale; });
    if (finer == kVerticalScales.rend()) return false;
    SetVerticalScale(*finer);
    return true;
}

bool CLogPlotView::ZoomOut()
{
    const auto coarser = std::find_if(kVerticalScales.begin(), kVerticalScales.end(),
                                      [this](float s) { return s > m_verticalScale; });
    if (coarser == kVerticalScales.end()) return false;
    SetVerticalScale(*coarser);
    return true;
}

void CLogPlotView::SelectTrace(const CTrace* trace, bool addToSelection)
{
    if (!addToSelection) m_selected.clear();
    if (trace) {
        // Ctrl-clicking a selected legend takes it out of the selection again.
        if (addToSelection && m_selected.count(trace)) m_selected.erase(trace);
        else m_selected.insert(trace);
    }
    viewport()->update();
    emit selectionChanged();
}

void CLogPlotView::ClearSelection()
{
    if (m_selected.empty()) return;
    m_selected.clear();
    viewport()->update();
    emit selectionChanged();
}

CTrace* CLogPlotView::FirstSelectedTrace()
{
    for (std::size_t i = 0; i < m_doc.TraceCount(); ++i) {
        if (m_selected.count(&m_doc.Trace(i))) return &m_doc.Trace(i);
    }
    return nullptr;
}

PlotReadout CLogPlotView::ReadoutAt(QPoint point) const
{
    PlotReadout readout;
    const PlotViewport vp = Viewport();
    if (m_renderer.TrackAt(m_doc, vp, point) < 0) return readout;
    const double depth = m_renderer.DepthAtY(m_doc, vp, point.y());
    readout.depth = depth;
    for (std::size_t i = 0; i < m_doc.TraceCount(); ++i) {
        const CTrace& trace = m_doc.Trace(i);
        if (!m_selected.count(&trace)) continue;
        if (const auto* line = dynamic_cast<const CLineTrace*>(&trace)) {
            const float value = line->ValueAt(static_cast<float>(depth));
            if (!IsNullSample(value)) readout.value = value;
        }
        break;
    }
    return readout;
}

void CLogPlotView::DocumentChanged()
{
    PruneSelection();
    UpdateScrollRange();
    viewport()->update();
}

void CLogPlotView::PruneSelection()
{
    std::set<const CTrace*> kept;
    for (std::size_t i = 0; i < m_doc.TraceCount(); ++i) {
        if (m_selected.count(&m_doc.Trace(i))) kept.insert(&m_doc.Trace(i));
    }
    if (kept.size() == m_selected.size()) return;
    m_selected = std::move(kept);
    emit selectionChanged();
}

void CLogPlotView::UpdateScrollRange()
{
    const auto range = DocumentDepthRange(m_doc);
    double shallowest = range ? std::floor(range->shallowest) : 0.0;
    double deepest = range ? std::ceil(range->deepest) : 0.0;
    // The view may have been put above or below the data (go to depth): the range grows
    // to hold it, so the scroll bar never moves the view on its own.
    shallowest = std::min(shallowest, double(m_topDepth));
    deepest = std::max(deepest, double(m_topDepth));

    const double visibleSpan =
        std::max(0.0, double(m_renderer.BottomDepth(m_doc, Viewport())) - double(m_topDepth));
    m_updatingScrollBar = true;
    QScrollBar* bar = verticalScrollBar();
    bar->setRange(ToScrollSteps(shallowest), ToScrollSteps(deepest));
    bar->setPageStep(std::max(1, ToScrollSteps(visibleSpan)));
    bar->setSingleStep(std::max(1, ToScrollSteps(visibleSpan) / 20));
    bar->setValue(ToScrollSteps(m_topDepth));
    m_updatingScrollBar = false;
}

void CLogPlotView::paintEvent(QPaintEvent*)
{
    QPainter painter(viewport());
    m_renderer.Paint(painter, m_doc, Viewport());
}

void CLogPlotView::resizeEvent(QResizeEvent* event)
{
    QAbstractScrollArea::resizeEvent(event);
    UpdateScrollRange();
}

void CLogPlotView::scrollContentsBy(int, int)
{
    if (m_updatingScrollBar) return;
    m_topDepth = static_cast<float>(verticalScrollBar()->value() / kScrollStepsPerDepthUnit);
    viewport()->update();
}

void CLogPlotView::wheelEvent(QWheelEvent* event)
{
    const int delta = event->angleDelta().y();
    if (delta == 0) {
        QAbstractScrollArea::wheelEvent(event);
        return;
    }
    if (event->modifiers() & Qt::ControlModifier) {
        if (delta > 0) ZoomIn();
        else ZoomOut();
        event->accept();
        return;
    }
    QAbstractScrollArea::wheelEvent(event);
}

void CLogPlotView::mousePressEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton) {
        QAbstractScrollArea::mousePressEvent(event);
        return;
    }
    const CTrace* hit = m_renderer.TraceAtLegend(m_doc, Viewport(), event->position().toPoint());
    const bool add = event->modifiers() & Qt::ControlModifier;
    if (hit || !add) SelectTrace(hit, add);
    event->accept();
}

void CLogPlotView::mouseDoubleClickEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton) {
        QAbstractScrollArea::mouseDoubleClickEvent(event);
        return;
    }
    const CTrace* hit = m_renderer.TraceAtLegend(m_doc, Viewport(), event->position().toPoint());
    if (!hit) return;
    for (std::size_t i = 0; i < m_doc.TraceCount(); ++i) {
        if (&m_doc.Trace(i) == hit) {
            SelectTrace(hit, false);
            emit traceActivated(&m_doc.Trace(i));
            return;
        }
    }
}

void CLogPlotView::mouseMoveEvent(QMouseEvent* event)
{
    const PlotReadout readout = ReadoutAt(event->position().toPoint());
    emit readoutChanged(DepthReadoutText(readout), ValueReadoutText(readout));
    if (readout.depth) emit cursorDepthChanged(*readout.depth);
    QAbstractScrollArea::mouseMoveEvent(event);
}

void CLogPlotView::leaveEvent(QEvent* event)
{
    emit readoutChanged(QString(), QString());
    QAbstractScrollArea::leaveEvent(event);
}

} // namespace ba
