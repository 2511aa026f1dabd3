#pragma once
// The log plot window of one document: paints the plot with the shared renderer, scrolls
// through depth (scroll bar, wheel), zooms by vertical scale (Ctrl+wheel or the zoom
// commands), selects traces by their legend boxes (Ctrl adds) and reports the depth and
// the selected trace's value under the mouse.

#include "view/LogPlotRenderer.h"

#include <QAbstractScrollArea>
#include <QString>

#include <optional>
#include <set>

namespace ba {

class CBoreAnalystDoc;
class CTrace;

// What the status bar shows for a point of the view: the depth when the point lies in a
// track, and the value of the selected line trace at that depth when there is one.
struct PlotReadout {
    std::optional<double> depth;
    std::optional<float> value;
};

// "D: %8.3f" / "V: %8.3f", or empty when there is nothing to read out.
QString DepthReadoutText(const PlotReadout& readout);
QString ValueReadoutText(const PlotReadout& readout);

class CLogPlotView final : public QAbstractScrollArea {
    Q_OBJECT
public:
    explicit CLogPlotView(CBoreAnalystDoc& doc, QWidget* parent = nullptr);

    CBoreAnalystDoc& Document() { return m_doc; }
    const CBoreAnalystDoc& Document() const { return m_doc; }

    // The viewport the renderer is given for the current window size.
    PlotViewport Viewport() const;

    float TopDepth() const { return m_topDepth; }
    void SetTopDepth(float depth);
    float VerticalScale() const { return m_verticalScale; }
    void SetVerticalScale(float scale);
    // Steps the vertical scale through the usual plot scales; fewer depth units per
    // centimetre shows more detail. Returns false at the end of the range.
    bool ZoomIn();
    bool ZoomOut();

    const std::set<const CTrace*>& SelectedTraces() const { return m_selected; }
    void SelectTrace(const CTrace* trace, bool addToSelection);
    void ClearSelection();
    // The selected trace that comes first in the document, or null.
    CTrace* FirstSelectedTrace();

    PlotReadout ReadoutAt(QPoint point) const;

    // Called when the document changed: drops selections of removed traces, refreshes the
    // depth range of the scroll bar and repaints.
    void DocumentChanged();

    // The scroll bar counts tenths of a display depth unit.
    static constexpr double kScrollStepsPerDepthUnit = 10.0;

signals:
    void readoutChanged(const QString& depthText, const QString& valueText);
    // The display depth under the mouse, when it is over the tracks.
    void cursorDepthChanged(double depth);
    void selectionChanged();
    void traceActivated(ba::CTrace* trace);
    void verticalScaleChanged(float scale);

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;
    void wheelEvent(QWheelEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;

private:
    void UpdateScrollRange();
    void PruneSelection();

    CBoreAnalystDoc& m_doc;
    CLogPlotRenderer m_renderer;
    float m_topDepth = 0.0f;
    float m_verticalScale;
    std::set<const CTrace*> m_selected;
    bool m_updatingScrollBar = false;
};

} // namespace ba
