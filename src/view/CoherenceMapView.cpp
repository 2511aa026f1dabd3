#include "view/CoherenceMapView.h"

#include "base/MessageSink.h"
#include "model/BoreAnalystDoc.h"

#include <QPainter>

namespace ba {

CCoherenceMapView::CCoherenceMapView(QWidget* parent) : QWidget(parent)
{
    setObjectName("coherenceMapView");
    m_notice = tr("Move the mouse over a log plot with sonic waveforms.");
}

void CCoherenceMapView::SetSource(CBoreAnalystDoc& doc, const SonicVelocitySettings& settings)
{
    m_doc = &doc;
    m_settings = settings;
    m_station.reset();
    m_picture.reset();
    m_notice = tr("Move the mouse over the log plot.");
    update();
}

void CCoherenceMapView::ClearSource(const QString& reason)
{
    m_doc = nullptr;
    m_station.reset();
    m_picture.reset();
    m_notice = reason;
    update();
}

void CCoherenceMapView::ShowDepth(double depth)
{
    if (m_doc == nullptr) return;
    // The document may have changed since the settings were made: check them again, quietly.
    CollectingMessageSink quiet;
    if (!CheckSonicVelocitySettings(*m_doc, m_settings, quiet)) {
        m_picture.reset();
        m_notice = QString::fromStdString(quiet.Texts().empty() ? std::string() : quiet.Texts().front());
        update();
        return;
    }
    const CSonicVelocityProcess job(*m_doc, m_settings);
    const std::optional<std::size_t> station = job.StationNear(depth);
    if (!station) {
        m_picture.reset();
        m_station.reset();
        m_notice = tr("No station at %1.").arg(depth, 0, 'f', 3);
        update();
        return;
    }
    if (station == m_station && m_picture) return;
    m_station = station;
    CoherenceMap map = job.StationMap(*station);
    const ModePicks picks = job.StationLabels(map);
    m_picture = CoherenceMapPicture{std::move(map), picks, QString::fromUtf8(SlownessUnitText(m_settings.outputUnit)),
                                    tr("Station at %1").arg(job.StationDepth(*station), 0, 'f', 3)};
    update();
}

void CCoherenceMapView::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    if (m_picture) {
        DrawCoherenceMap(painter, QRectF(rect()), *m_picture);
        return;
    }
    painter.fillRect(rect(), palette().window());
    painter.drawText(rect().adjusted(12, 12, -12, -12), Qt::AlignCenter | Qt::TextWordWrap, m_notice);
}

} // namespace ba
