#include "view/SpectrumView.h"

#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QPolygonF>

namespace ba {
namespace {

// Room around the plot: the captions above it, the cursor read-out below.
constexpr int kMargin = 8;

} // namespace

CSpectrumView::CSpectrumView(QWidget* parent) : QWidget(parent)
{
    setMouseTracking(true);
    setAutoFillBackground(true);
    QPalette colours = palette();
    colours.setColor(QPalette::Window, Qt::white);
    colours.setColor(QPalette::WindowText, Qt::black);
    setPalette(colours);
    setMinimumSize(240, 160);
}

void CSpectrumView::SetSpectrum(std::span<const float> cps, const EnergyRange& range, const SpectrumScale& scale,
                                bool automatic)
{
    m_cps.assign(cps.begin(), cps.end());
    m_range = range;
    m_maxCps = MaxCountRate(m_cps);
    m_shownScale = DisplayedScale(scale, automatic, m_maxCps);
    update();
}

void CSpectrumView::Clear()
{
    m_cps.clear();
    m_range = {};
    m_maxCps = 0.0f;
    SetCursorText(QString());
    update();
}

QString CSpectrumView::ChannelCaption() const { return QString::fromStdString(ChannelCountCaption(ChannelCount())); }
QString CSpectrumView::EnergyCaption() const { return QString::fromStdString(EnergyRangeCaption(m_range)); }
QString CSpectrumView::MaxValueCaption() const { return QString::fromStdString(ba::MaxValueCaption(m_maxCps)); }

SpectrumPlotArea CSpectrumView::PlotArea() const
{
    const int line = fontMetrics().height();
    return SpectrumPlotArea{.left = double(kMargin),
                            .top = double(kMargin + line + kMargin),
                            .right = double(width() - kMargin),
                            .bottom = double(height() - kMargin - line - kMargin)};
}

void CSpectrumView::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    const SpectrumPlotArea area = PlotArea();
    const QRectF frame(QPointF(area.left, area.top), QPointF(area.right, area.bottom));
    painter.setPen(palette().color(QPalette::WindowText));
    painter.drawRect(frame);
    if (m_cps.empty()) return;

    const int line = fontMetrics().height();
    const QRectF captions(area.left, kMargin, area.Width(), line);
    painter.drawText(captions, Qt::AlignLeft | Qt::AlignVCenter, ChannelCaption());
    painter.drawText(captions, Qt::AlignHCenter | Qt::AlignVCenter, EnergyCaption());
    painter.drawText(captions, Qt::AlignRight | Qt::AlignVCenter, MaxValueCaption());
    if (!m_cursorText.isEmpty()) {
        painter.drawText(QRectF(area.left, area.bottom + kMargin, area.Width(), line),
                         Qt::AlignRight | Qt::AlignVCenter, m_cursorText);
    }

    // A step line: each channel is a flat segment at its count rate across its width.
    const int channels = ChannelCount();
    QPolygonF steps;
    steps.reserve(2 * channels);
    for (int c = 0; c < channels; ++c) {
        const double y = CountRateY(area, m_shownScale, m_cps[static_cast<std::size_t>(c)]);
        steps << QPointF(ChannelX(area, channels, c), y) << QPointF(ChannelX(area, channels, c + 1), y);
    }
    painter.setClipRect(frame);
    painter.setPen(QPen(QColor(0, 0, 160), 0));
    painter.drawPolyline(steps);
}

void CSpectrumView::mouseMoveEvent(QMouseEvent* event)
{
    const SpectrumPlotArea area = PlotArea();
    const QPointF at = event->position();
    const bool inside = at.x() >= area.left && at.x() < area.right && at.y() >= area.top && at.y() <= area.bottom;
    if (m_cps.empty() || !inside) {
        SetCursorText(QString());
        return;
    }
    const int channels = ChannelCount();
    const int bin = ChannelAtX(area, channels, at.x());
    SetCursorText(QString::fromStdString(CursorReadout(BinEnergy(m_range, channels, bin), bin)));
}

void CSpectrumView::leaveEvent(QEvent*) { SetCursorText(QString()); }

void CSpectrumView::SetCursorText(const QString& text)
{
    if (text == m_cursorText) return;
    m_cursorText = text;
    update();
    emit cursorTextChanged(text);
}

} // namespace ba
