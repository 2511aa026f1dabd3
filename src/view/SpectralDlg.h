#pragma once
// The spectral processing dialog: which spectrum trace, which sample, how far to sum
// around it, how to plot the summed count-rate spectrum and the two energy calibrations.
// The settings, the checks on OK, summing and the energy scale belong to
// CSpectralDialogModel; this dialog gathers the choices, shows the spectrum and passes the
// model's messages on.

#include "base/MessageSink.h"
#include "settings/SettingsStore.h"
#include "spectral/SpectralDialogModel.h"
#include "spectral/SpectrumSumming.h"

#include <QDialog>

#include <vector>

class QCheckBox;
class QComboBox;
class QDoubleSpinBox;
class QGroupBox;
class QLabel;
class QSlider;
class QSpinBox;

namespace ba {

class CBoreAnalystDoc;
class CSpectrumView;

class CSpectralDlg final : public QDialog {
    Q_OBJECT
public:
    // Loads the remembered settings from `store` (a stored calibration is applied, with its
    // messages to `sink`) and lists the document's spectrum traces, the first one chosen.
    CSpectralDlg(const CBoreAnalystDoc& doc, ISettingsStore& store, IMessageSink& sink, QWidget* parent = nullptr);

    const CSpectralDialogModel& Model() const { return m_model; }
    QComboBox* TraceCombo() const { return m_traces; }
    QSlider* SampleSlider() const { return m_sample; }
    QLabel* DepthLabel() const { return m_depth; }
    QCheckBox* SumDepthCheck() const { return m_sumDepth; }
    QDoubleSpinBox* DepthSumEdit() const { return m_depthSum; }
    QDoubleSpinBox* TimeSumEdit() const { return m_timeSum; }
    QCheckBox* LogPlotCheck() const { return m_logPlot; }
    QDoubleSpinBox* PlottingScaleEdit() const { return m_plottingScale; }
    QSpinBox* DecadesEdit() const { return m_decades; }
    QCheckBox* AutomaticCheck() const { return m_automatic; }
    QCheckBox* TimeTempCalCheck() const { return m_timeTempCal; }
    CSpectrumView* View() const { return m_view; }
    QLabel* StatusLabel() const { return m_status; }
    // The summed spectrum on show.
    const SummedSpectrum& Summed() const { return m_summed; }

    // The edits of one calibration: bin and energy of two peaks and the reference value.
    struct CalibrationEdits {
        QDoubleSpinBox* binOne = nullptr;
        QDoubleSpinBox* energyOne = nullptr;
        QDoubleSpinBox* binTwo = nullptr;
        QDoubleSpinBox* energyTwo = nullptr;
        QDoubleSpinBox* x = nullptr;
    };
    const CalibrationEdits& FirstCalibration() const { return m_first; }
    const CalibrationEdits& SecondCalibration() const { return m_second; }
    // Derives the energy scale from both calibrations as edited, then redraws.
    bool ApplyCalibration();

public slots:
    void accept() override;

private:
    QGroupBox* MakeCalibrationBox(const QString& title, CalibrationState& state, CalibrationEdits& edits);
    void OnTraceChosen(int index);
    void UpdateEnabling();
    // Sums around the chosen sample and shows the result; called on every change.
    void Refresh();

    const CBoreAnalystDoc& m_doc;
    IMessageSink& m_sink;
    CSpectralDialogModel m_model;
    SummedSpectrum m_summed; // reused, so that dragging through the log allocates nothing

    QComboBox* m_traces = nullptr;
    QSlider* m_sample = nullptr;
    QLabel* m_depth = nullptr;
    QCheckBox* m_sumDepth = nullptr;
    QDoubleSpinBox* m_depthSum = nullptr;
    QDoubleSpinBox* m_timeSum = nullptr;
    QCheckBox* m_logPlot = nullptr;
    QDoubleSpinBox* m_plottingScale = nullptr;
    QSpinBox* m_decades = nullptr;
    QCheckBox* m_automatic = nullptr;
    QCheckBox* m_timeTempCal = nullptr;
    CalibrationEdits m_first;
    CalibrationEdits m_second;
    CSpectrumView* m_view = nullptr;
    QLabel* m_status = nullptr;
};

} // namespace ba
