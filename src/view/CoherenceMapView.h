#pragma once
// The QC view of the sonic velocities: the slowness-time coherence of the station under
// the cursor of a log plot, its arrivals labelled, drawn as the map command draws it. It
// computes one station at a time (a few milliseconds), with the settings of the document's
// last sonic velocity run or of the dialog's defaults.

#include "sonic/SonicVelocity.h"
#include "view/CoherenceMapPainter.h"

#include <QWidget>

#include <memory>
#include <optional>

namespace ba {

class CBoreAnalystDoc;

class CCoherenceMapView final : public QWidget {
    Q_OBJECT
public:
    explicit CCoherenceMapView(QWidget* parent = nullptr);

    // The document and settings the map is computed with; `reason` is shown instead while
    // there are none.
    void SetSource(CBoreAnalystDoc& doc, const SonicVelocitySettings& settings);
    void ClearSource(const QString& reason);
    const CBoreAnalystDoc* SourceDocument() const { return m_doc; }

    // The station nearest `depth` (display units of the receivers); outside the stations
    // the view says so.
    void ShowDepth(double depth);
    const std::optional<CoherenceMapPicture>& Picture() const { return m_picture; }
    const QString& Notice() const { return m_notice; }

    QSize sizeHint() const override { return {420, 520}; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    CBoreAnalystDoc* m_doc = nullptr;
    SonicVelocitySettings m_settings;
    std::optional<std::size_t> m_station;
    std::optional<CoherenceMapPicture> m_picture;
    QString m_notice;
};

} // namespace ba
