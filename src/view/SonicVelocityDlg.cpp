#include "view/SonicVelocityDlg.h"

#include "model/BoreAnalystDoc.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QDoubleSpinBox>
#include <QFormLayout>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace ba {
namespace {

constexpr double kFeetPerMetre = 3.28083989501;

QDoubleSpinBox* SpinBox(QWidget* parent, const char* objectName, double low, double high, int decimals, double step,
                        const QString& suffix = QString())
{
    auto* box = new QDoubleSpinBox(parent);
    box->setObjectName(objectName);
    box->setRange(low, high);
    box->setDecimals(decimals);
    box->setSingleStep(step);
    box->setSuffix(suffix);
    return box;
}

} // namespace

CSonicVelocityDlg::CSonicVelocityDlg(CBoreAnalystDoc& doc, ISettingsStore& store, IMessageSink& sink, QWidget* parent)
    : QDialog(parent), m_doc(doc), m_sink(sink), m_model(store)
{
    setWindowTitle(tr("Sonic Velocity"));

    // Receivers and their offsets.
    auto* receivers = new QGroupBox(tr("Receivers (nearest first) and their offsets from the transmitter"), this);
    auto* grid = new QGridLayout(receivers);
    const std::vector<std::size_t> sonic = CSonicDialogModel::SonicTraces(doc);
    for (std::size_t r = 0; r < kSonicDialogReceivers; ++r) {
        m_receivers[r] = new QComboBox(receivers);
        m_receivers[r]->setObjectName(QStringLiteral("receiver%1").arg(r + 1));
        m_receivers[r]->addItem(tr("(none)"), -1);
        for (const std::size_t index : sonic) {
            m_receivers[r]->addItem(QString::fromStdString(doc.Trace(index).Name()), static_cast<int>(index));
        }
        m_offsets[r] = SpinBox(receivers, qPrintable(QStringLiteral("offset%1").arg(r + 1)), 0.0, 1000.0, 3, 0.5);
        grid->addWidget(new QLabel(tr("Receiver &%1:").arg(r + 1), receivers), static_cast<int>(r), 0);
        grid->addWidget(m_receivers[r], static_cast<int>(r), 1);
        grid->addWidget(new QLabel(tr("Offset:"), receivers), static_cast<int>(r), 2);
        grid->addWidget(m_offsets[r], static_cast<int>(r), 3);
        qobject_cast<QLabel*>(grid->itemAtPosition(static_cast<int>(r), 0)->widget())->setBuddy(m_receivers[r]);
    }

    auto* probe = new QGroupBox(tr("Probe"), this);
    auto* probeForm = new QFormLayout(probe);
    m_probeUnits = new QComboBox(probe);
    m_probeUnits->setObjectName("probeUnits");
    m_probeUnits->addItems({tr("Feet"), tr("Metres")});
    m_probeDiameter = SpinBox(probe, "probeDiameter", 0.0, 10.0, 4, 0.01);
    m_maxOffset = SpinBox(probe, "maxOffset", 0.0, 1000.0, 3, 0.5);
    probeForm->addRow(tr("Offsets and diameter &in:"), m_probeUnits);
    probeForm->addRow(tr("Probe &diameter:"), m_probeDiameter);
    probeForm->addRow(tr("&Largest offset used:"), m_maxOffset);

    auto* processing = new QGroupBox(tr("Slowness-time coherence"), this);
    auto* processingForm = new QFormLayout(processing);
    m_condition = new QCheckBox(tr("&Condition the waveforms first (DC removal, band-pass)"), processing);
    m_condition->setObjectName("condition");
    m_highPass = SpinBox(processing, "highPass", 0.01, 1000.0, 2, 0.5, tr(" kHz"));
    m_lowPass = SpinBox(processing, "lowPass", 0.01, 1000.0, 2, 0.5, tr(" kHz"));
    m_window = SpinBox(processing, "window", 1.0, 100000.0, 1, 10.0, tr(" us"));
    m_maxSlowness = SpinBox(processing, "maxSlowness", 1.0, 100000.0, 1, 10.0);
    m_multiplier = SpinBox(processing, "semblanceMultiplier", 0.01, 1.0, 2, 0.05);
    processingForm->addRow(m_condition);
    processingForm->addRow(tr("&High-pass corner:"), m_highPass);
    processingForm->addRow(tr("Lo&w-pass corner:"), m_lowPass);
    processingForm->addRow(tr("&Window length:"), m_window);
    processingForm->addRow(tr("&Slowest slowness searched:"), m_maxSlowness);
    processingForm->addRow(tr("Semblance &multiplier (coherence to pick):"), m_multiplier);

    auto* outputs = new QGroupBox(tr("Outputs"), this);
    auto* outputColumn = new QVBoxLayout(outputs);
    const std::array<QString, 3> modes = {tr("Com&pressional (DTC, COHC, TTC)"), tr("S&hear (DTS, COHS, TTS)"),
                                          tr("S&toneley (DTST, COHST, TTST)")};
    for (std::size_t m = 0; m < 3; ++m) {
        m_pick[m] = new QCheckBox(modes[m], outputs);
        m_pick[m]->setObjectName(QStringLiteral("pick%1").arg(m + 1));
        outputColumn->addWidget(m_pick[m]);
    }
    m_noAutoPick = new QCheckBox(tr("C&oherence only: pick no modes"), outputs);
    m_noAutoPick->setObjectName("noAutoPick");
    m_save = new QCheckBox(tr("&Keep the slowness-projection image (STC)"), outputs);
    m_save->setObjectName("save");
    m_newTraces = new QCheckBox(tr("Add &new traces (otherwise replace earlier ones of the same names)"), outputs);
    m_newTraces->setObjectName("newTraces");
    m_units = new QComboBox(outputs);
    m_units->setObjectName("units");
    m_units->addItems({QStringLiteral("us/ft"), QStringLiteral("us/m")});
    outputColumn->addWidget(m_noAutoPick);
    outputColumn->addWidget(m_save);
    outputColumn->addWidget(m_newTraces);
    auto* unitsForm = new QFormLayout;
    unitsForm->addRow(tr("Slowness &units:"), m_units);
    outputColumn->addLayout(unitsForm);
    connect(m_noAutoPick, &QCheckBox::toggled, this, [this](bool on) {
        for (QCheckBox* pick : m_pick) pick->setEnabled(!on);
    });
    connect(m_condition, &QCheckBox::toggled, m_highPass, &QWidget::setEnabled);
    connect(m_condition, &QCheckBox::toggled, m_lowPass, &QWidget::setEnabled);

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    m_saveAsDefault = buttons->addButton(tr("Save &As Default"), QDialogButtonBox::ActionRole);
    m_restoreDefaults = buttons->addButton(tr("&Restore Defaults"), QDialogButtonBox::ResetRole);
    connect(buttons, &QDialogButtonBox::accepted, this, &CSonicVelocityDlg::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(m_saveAsDefault, &QPushButton::clicked, this, [this] {
        Gather();
        m_model.SaveAsDefault(m_sink);
    });
    connect(m_restoreDefaults, &QPushButton::clicked, this, [this] {
        m_model.Open();
        Show(m_model.Settings());
    });

    auto* layout = new QGridLayout(this);
    layout->addWidget(receivers, 0, 0, 1, 2);
    layout->addWidget(probe, 1, 0);
    layout->addWidget(processing, 1, 1);
    layout->addWidget(outputs, 2, 0, 1, 2);
    layout->addWidget(buttons, 3, 0, 1, 2);

    m_model.Open();
    m_model.ChooseFirstReceivers(doc);
    for (std::size_t r = 0; r < kSonicDialogReceivers; ++r) {
        const auto chosen = m_model.Receivers()[r];
        m_receivers[r]->setCurrentIndex(chosen ? m_receivers[r]->findData(static_cast<int>(*chosen)) : 0);
    }
    Show(m_model.Settings());
    connect(m_units, &QComboBox::currentIndexChanged, this, &CSonicVelocityDlg::OnUnitsChanged);
}

void CSonicVelocityDlg::Show(const SonicDialogSettings& s)
{
    for (std::size_t r = 0; r < kSonicDialogReceivers; ++r) m_offsets[r]->setValue(s.offsets[r]);
    m_probeUnits->setCurrentIndex(s.probeUnits == 1 ? 1 : 0);
    m_probeDiameter->setValue(s.probeDiameter);
    m_maxOffset->setValue(s.maxOffset);
    m_condition->setChecked(s.autoProcess);
    m_highPass->setValue(s.highPassKilohertz);
    m_lowPass->setValue(s.lowPassKilohertz);
    m_highPass->setEnabled(s.autoProcess);
    m_lowPass->setEnabled(s.autoProcess);
    m_window->setValue(s.windowLength);
    m_maxSlowness->setValue(s.maxSlowness);
    m_multiplier->setValue(s.semblanceMultiplier);
    for (std::size_t m = 0; m < 3; ++m) m_pick[m]->setChecked(s.pick[m]);
    m_noAutoPick->setChecked(s.noAutoPick);
    for (QCheckBox* pick : m_pick) pick->setEnabled(!s.noAutoPick);
    m_save->setChecked(s.save);
    m_newTraces->setChecked(s.newTraces);
    m_shownUnits = s.units == 1 ? 1 : 0;
    const QSignalBlocker quiet(m_units); // the slowest slowness shown is already in this unit
    m_units->setCurrentIndex(m_shownUnits);
    m_maxSlowness->setSuffix(m_shownUnits == 1 ? QStringLiteral(" us/m") : QStringLiteral(" us/ft"));
}

void CSonicVelocityDlg::OnUnitsChanged(int index)
{
    // The slowest slowness keeps its meaning in the new unit.
    if (index == m_shownUnits) return;
    const double value = m_maxSlowness->value();
    m_maxSlowness->setValue(index == 1 ? value * kFeetPerMetre : value / kFeetPerMetre);
    m_maxSlowness->setSuffix(index == 1 ? QStringLiteral(" us/m") : QStringLiteral(" us/ft"));
    m_shownUnits = index;
}

void CSonicVelocityDlg::Gather()
{
    SonicDialogSettings& s = m_model.Settings();
    for (std::size_t r = 0; r < kSonicDialogReceivers; ++r) {
        s.offsets[r] = m_offsets[r]->value();
        const int index = m_receivers[r]->currentData().toInt();
        m_model.Receivers()[r] = index >= 0 ? std::optional<std::size_t>(static_cast<std::size_t>(index)) : std::nullopt;
    }
    s.probeUnits = m_probeUnits->currentIndex();
    s.probeDiameter = m_probeDiameter->value();
    s.maxOffset = m_maxOffset->value();
    s.autoProcess = m_condition->isChecked();
    s.highPassKilohertz = m_highPass->value();
    s.lowPassKilohertz = m_lowPass->value();
    s.windowLength = m_window->value();
    s.maxSlowness = m_maxSlowness->value();
    s.semblanceMultiplier = m_multiplier->value();
    for (std::size_t m = 0; m < 3; ++m) s.pick[m] = m_pick[m]->isChecked();
    s.noAutoPick = m_noAutoPick->isChecked();
    s.save = m_save->isChecked();
    s.newTraces = m_newTraces->isChecked();
    s.units = m_units->currentIndex();
}

void CSonicVelocityDlg::accept()
{
    Gather();
    m_job = m_model.JobSettings(m_doc, m_sink);
    if (m_job) QDialog::accept();
}

} // namespace ba
