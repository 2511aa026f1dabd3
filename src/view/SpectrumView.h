#pragma once
// Draws one count-rate spectrum, channel by channel, on a linear or logarithmic scale with
// its captions (channel count, energy range, largest count rate), and reads out the energy
// and channel under the mouse. What the texts say and where a channel lands come from
// spectral/SpectrumDisplay.h; this widget only paints them.

#include "spectral/EnergyCalibration.h"
#include "spectral/SpectrumDisplay.h"

#include <QString>
#include <QWidget>

#include <span>
#include <vector>

namespace ba {

class CSpectrumView final : public QWidget {
    Q_OBJECT
public:
    explicit CSpectrumView(QWidget* parent = nullptr);

    // Shows `cps` (copied, so the caller may reuse its buffer) on `scale`, whose full scale
    // follows the largest rate when `automatic` is on.
    void SetSpectrum(std::span<const float> cps, const EnergyRange& range, const SpectrumScale& scale,
                     bool automatic);
    void Clear();

    int ChannelCount() const { return static_cast<int>(m_cps.size()); }
    const SpectrumScale& ShownScale() const { return m_shownScale; }
    QString ChannelCaption() const;
    QString EnergyCaption() const;
    QString MaxValueCaption() const;
    // The read-out of the channel last under the mouse; empty when the mouse is elsewhere.
    QString CursorText() const { return m_cursorText; }
    // Where the spectrum is drawn, in widget coordinates.
    SpectrumPlotArea PlotArea() const;

    QSize sizeHint() const override { return {520, 300}; }

signals:
    void cursorTextChanged(const QString& text);

protected:
    void paintEvent(QPaintEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;

private:
    void SetCursorText(const QString& text);

    std::vector<float> m_cps;
    EnergyRange m_range;
    SpectrumScale m_shownScale;
    float m_maxCps = 0.0f;
    QString m_cursorText;
};

} // namespace ba
