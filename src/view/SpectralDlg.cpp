#include "view/SpectralDlg.h"

#include "model/BoreAnalystDoc.h"
#include "view/SpectrumView.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QDoubleSpinBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QSlider>
#include <QSpinBox>
#include <QVBoxLayout>

#include <algorithm>
#include <optional>
#include <utility>

namespace ba {
namespace {

// Wide enough that a remembered value is shown as it is rather than clamped; the checks on
// OK, not the edits, decide what is acceptable.
constexpr double kLargestEntry = 1.0e9;

QDoubleSpinBox* MakeNumberEdit(QWidget* parent, const char* name, double low, int decimals, double value)
{
    auto* edit = new QDoubleSpinBox(parent);
    edit->setObjectName(name);
    edit->setRange(low, kLargestEntry);
    edit->setDecimals(decimals);
    edit->setValue(value);
    edit->setKeyboardTracking(false); // redraw when a value is complete, not on every digit
    return edit;
}

const CSpectralTrace* SpectralTraceAt(const CBoreAnalystDoc& doc, const std::optional<std::size_t>& index)
{
    if (!index || *index >= doc.TraceCount()) return nullptr;
    return dynamic_cast<const CSpectralTrace*>(&doc.Trace(*index));
}

} // namespace

CSpectralDlg::CSpectralDlg(const CBoreAnalystDoc& doc, ISettingsStore& store, IMessageSink& sink, QWidget* parent)
    : QDialog(parent), m_doc(doc), m_sink(sink), m_model(store)
{
    setWindowTitle(tr("Spectral Processing"));
    m_model.Open(sink);
    SpectralDialogSettings& s = m_model.Settings();

    m_traces = new QComboBox(this);
    m_traces->setObjectName("traces");
    for (std::size_t i = 0; i < doc.TraceCount(); ++i) {
        if (dynamic_cast<const CSpectralTrace*>(&doc.Trace(i))) {
            m_traces->addItem(QString::fromStdString(doc.Trace(i).Name()), QVariant::fromValue(qulonglong(i)));
        }
    }
    m_traces->setCurrentIndex(-1);
    m_sample = new QSlider(Qt::Horizontal, this);
    m_sample->setObjectName("sample");
    m_depth = new QLabel(this);
    m_depth->setObjectName("depth");
    m_depth->setMinimumWidth(fontMetrics().horizontalAdvance(QStringLiteral("Depth: -00000.000")));

    m_sumDepth = new QCheckBox(tr("Sum by &depth"), this);
    m_sumDepth->setChecked(s.sumDepth);
    m_depthSum = MakeNumberEdit(this, "depthSum", 0.0, 3, s.depthSum);
    m_timeSum = MakeNumberEdit(this, "timeSum", 0.0, 2, s.timeSum);
    m_timeSum->setSuffix(tr(" s"));

    m_logPlot = new QCheckBox(tr("&Logarithmic plot"), this);
    m_logPlot->setChecked(s.logPlot);
    m_plottingScale = MakeNumberEdit(this, "plottingScale", 0.0, 2, s.plottingScale);
    m_plottingScale->setSuffix(tr(" CPS"));
    m_decades = new QSpinBox(this);
    m_decades->setObjectName("decades");
    m_decades->setRange(0, 99);
    m_decades->setValue(s.decades);
    m_automatic = new QCheckBox(tr("&Automatic scale"), this);
    m_automatic->setChecked(s.automatic);
    m_timeTempCal = new QCheckBox(tr("Energy scale follows total &time (not temperature)"), this);
    m_timeTempCal->setChecked(s.timeTempCal);

    m_view = new CSpectrumView(this);
    m_view->setObjectName("spectrumView");
    m_status = new QLabel(this);
    m_status->setObjectName("status");

    auto* sampleRow = new QHBoxLayout;
    sampleRow->addWidget(m_sample, 1);
    sampleRow->addWidget(m_depth);
    auto* choices = new QFormLayout;
    choices->addRow(tr("&Spectrum trace:"), m_traces);
    choices->addRow(tr("Sa&mple:"), sampleRow);

    auto* summing = new QGroupBox(tr("Summing"), this);
    auto* summingForm = new QFormLayout(summing);
    summingForm->addRow(m_sumDepth);
    summingForm->addRow(tr("Depth s&um:"), m_depthSum);
    summingForm->addRow(tr("T&ime sum:"), m_timeSum);
    auto* plotting = new QGroupBox(tr("Plotting"), this);
    auto* plottingForm = new QFormLayout(plotting);
    plottingForm->addRow(m_logPlot);
    plottingForm->addRow(tr("&Plotting scale:"), m_plottingScale);
    plottingForm->addRow(tr("D&ecades:"), m_decades);
    plottingForm->addRow(m_automatic);

    auto* calibrations = new QHBoxLayout;
    calibrations->addWidget(MakeCalibrationBox(tr("First calibration"), s.first, m_first));
    calibrations->addWidget(MakeCalibrationBox(tr("Second calibration"), s.second, m_second));
    auto* calibrate = new QPushButton(tr("Apply &Calibration"), this);
    calibrate->setObjectName("applyCalibration");
    calibrate->setAutoDefault(false);

    auto* settingsRow = new QHBoxLayout;
    settingsRow->addWidget(summing);
    settingsRow->addWidget(plotting);
    auto* calibrationRow = new QHBoxLayout;
    calibrationRow->addWidget(m_timeTempCal, 1);
    calibrationRow->addWidget(calibrate);

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(choices);
    layout->addWidget(m_view, 1);
    layout->addWidget(m_status);
    layout->addLayout(settingsRow);
    layout->addLayout(calibrations);
    layout->addLayout(calibrationRow);
    layout->addWidget(buttons);

    auto changed = [this] {
        UpdateEnabling();
        Refresh();
    };
    connect(m_sample, &QSlider::valueChanged, this, [this] { Refresh(); });
    connect(m_sumDepth, &QCheckBox::toggled, this, [this, changed](bool on) {
        m_model.Settings().sumDepth = on;
        changed();
    });
    connect(m_depthSum, &QDoubleSpinBox::valueChanged, this, [this, changed](double v) {
        m_model.Settings().depthSum = v;
        changed();
    });
    connect(m_timeSum, &QDoubleSpinBox::valueChanged, this, [this, changed](double v) {
        m_model.Settings().timeSum = v;
        changed();
    });
    connect(m_logPlot, &QCheckBox::toggled, this, [this, changed](bool on) {
        m_model.Settings().logPlot = on;
        changed();
    });
    connect(m_plottingScale, &QDoubleSpinBox::valueChanged, this, [this, changed](double v) {
        m_model.Settings().plottingScale = v;
        changed();
    });
    connect(m_decades, &QSpinBox::valueChanged, this, [this, changed](int v) {
        m_model.Settings().decades = v;
        changed();
    });
    connect(m_automatic, &QCheckBox::toggled, this, [this, changed](bool on) {
        m_model.Settings().automatic = on;
        changed();
    });
    connect(m_timeTempCal, &QCheckBox::toggled, this, [this, changed](bool on) {
        m_model.Settings().timeTempCal = on;
        changed();
    });
    connect(calibrate, &QPushButton::clicked, this, [this] { ApplyCalibration(); });
    connect(m_traces, &QComboBox::currentIndexChanged, this, &CSpectralDlg::OnTraceChosen);
    connect(buttons, &QDialogButtonBox::accepted, this, &CSpectralDlg::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &CSpectralDlg::reject);

    UpdateEnabling();
    if (m_traces->count() > 0) m_traces->setCurrentIndex(0);
    else Refresh();
}

QGroupBox* CSpectralDlg::MakeCalibrationBox(const QString& title, CalibrationState& state, CalibrationEdits& edits)
{
    auto* box = new QGroupBox(title, this);
    edits.binOne = MakeNumberEdit(box, "binOne", -kLargestEntry, 2, state.binOne);
    edits.energyOne = MakeNumberEdit(box, "energyOne", -kLargestEntry, 2, state.energyOne);
    edits.binTwo = MakeNumberEdit(box, "binTwo", -kLargestEntry, 2, state.binTwo);
    edits.energyTwo = MakeNumberEdit(box, "energyTwo", -kLargestEntry, 2, state.energyTwo);
    edits.x = MakeNumberEdit(box, "timeTemp", -kLargestEntry, 2, state.x);
    auto* form = new QFormLayout(box);
    form->addRow(tr("Bin one:"), edits.binOne);
    form->addRow(tr("Energy one (keV):"), edits.energyOne);
    form->addRow(tr("Bin two:"), edits.binTwo);
    form->addRow(tr("Energy two (keV):"), edits.energyTwo);
    form->addRow(tr("Temperature or time:"), edits.x);
    // The edits write straight into the settings; the energy scale changes only when the
    // calibration is applied, so that half-typed values raise no messages.
    const std::pair<QDoubleSpinBox*, double*> fields[] = {{edits.binOne, &state.binOne},
                                                          {edits.energyOne, &state.energyOne},
                                                          {edits.binTwo, &state.binTwo},
                                                          {edits.energyTwo, &state.energyTwo},
                                                          {edits.x, &state.x}};
    for (const auto& [edit, field] : fields) {
        connect(edit, &QDoubleSpinBox::valueChanged, this, [field](double v) { *field = v; });
    }
    return box;
}

bool CSpectralDlg::ApplyCalibration()
{
    const bool applied = m_model.Calibrate(m_sink);
    Refresh();
    return applied;
}

void CSpectralDlg::OnTraceChosen(int index)
{
    std::optional<std::size_t> traceIndex;
    if (index >= 0) traceIndex = static_cast<std::size_t>(m_traces->itemData(index).toULongLong());
    m_model.SelectTrace(traceIndex);
    const CSpectralTrace* trace = SpectralTraceAt(m_doc, traceIndex);
    const int rows = trace ? static_cast<int>(trace->RowCount()) : 0;
    const QSignalBlocker quiet(m_sample);
    m_sample->setRange(0, std::max(rows - 1, 0));
    m_sample->setValue(0);
    m_sample->setPageStep(std::max(rows / 20, 1));
    m_sample->setEnabled(rows > 0);
    Refresh();
}

void CSpectralDlg::UpdateEnabling()
{
    const SpectralDialogSettings& s = m_model.Settings();
    m_depthSum->setEnabled(s.sumDepth);
    m_timeSum->setEnabled(!s.sumDepth);
    m_decades->setEnabled(s.logPlot);
}

void CSpectralDlg::Refresh()
{
    const CSpectralTrace* trace = SpectralTraceAt(m_doc, m_model.SelectedTrace());
    if (!trace || trace->RowCount() == 0) {
        m_view->Clear();
        m_status->clear();
        m_depth->clear();
        return;
    }
    const auto sample = static_cast<std::size_t>(m_sample->value());
    SumSpectraAround(*trace, sample, m_model.Target(), m_summed);
    m_view->SetSpectrum(m_summed.cps, m_model.EnergyRangeAt(*trace, sample), m_model.Scale(),
                        m_model.Settings().automatic);
    m_status->setText(QString::fromStdString(SpectrumStatusLine(*trace, sample)));
    m_depth->setText(tr("Depth: %1").arg(double(trace->Depth(sample)), 0, 'f', 3));
}

void CSpectralDlg::accept()
{
    if (m_model.OnOk(m_sink)) QDialog::accept();
}

} // namespace ba
