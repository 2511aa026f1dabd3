#pragma once
// The sonic velocity dialog: up to five receivers (the document's sonic traces) with their
// offsets, the probe's unit, diameter and largest offset used, the conditioning, the
// coherence window and slowness range, the modes to pick and how the logs are delivered.
// "Save As Default" and "Restore Defaults" go through the settings store; the checks and
// the job's settings are CSonicDialogModel's. On OK the checked settings are kept for the
// caller, which runs the job under the progress dialog.

#include "base/MessageSink.h"
#include "sonic/SonicDialogModel.h"

#include <QDialog>

#include <array>
#include <optional>

class QCheckBox;
class QComboBox;
class QDoubleSpinBox;
class QPushButton;

namespace ba {

class CBoreAnalystDoc;

class CSonicVelocityDlg final : public QDialog {
    Q_OBJECT
public:
    // Starts from the remembered settings and the document's first sonic traces.
    CSonicVelocityDlg(CBoreAnalystDoc& doc, ISettingsStore& store, IMessageSink& sink, QWidget* parent = nullptr);

    // The settings OK accepted; none before.
    const std::optional<SonicVelocitySettings>& JobSettings() const { return m_job; }

    QComboBox* ReceiverCombo(std::size_t r) const { return m_receivers[r]; }
    QDoubleSpinBox* OffsetBox(std::size_t r) const { return m_offsets[r]; }
    QDoubleSpinBox* WindowBox() const { return m_window; }
    QDoubleSpinBox* MaxSlownessBox() const { return m_maxSlowness; }
    QComboBox* UnitsCombo() const { return m_units; }
    QCheckBox* PickCheck(std::size_t mode) const { return m_pick[mode]; }
    QPushButton* SaveAsDefaultButton() const { return m_saveAsDefault; }
    QPushButton* RestoreDefaultsButton() const { return m_restoreDefaults; }

public slots:
    void accept() override;

private:
    void Show(const SonicDialogSettings& s);
    void Gather();
    void OnUnitsChanged(int index);

    CBoreAnalystDoc& m_doc;
    IMessageSink& m_sink;
    CSonicDialogModel m_model;
    std::optional<SonicVelocitySettings> m_job;
    std::array<QComboBox*, kSonicDialogReceivers> m_receivers{};
    std::array<QDoubleSpinBox*, kSonicDialogReceivers> m_offsets{};
    QComboBox* m_probeUnits = nullptr;
    QDoubleSpinBox* m_probeDiameter = nullptr;
    QDoubleSpinBox* m_maxOffset = nullptr;
    QCheckBox* m_condition = nullptr;
    QDoubleSpinBox* m_highPass = nullptr;
    QDoubleSpinBox* m_lowPass = nullptr;
    QDoubleSpinBox* m_window = nullptr;
    QDoubleSpinBox* m_maxSlowness = nullptr;
    QDoubleSpinBox* m_multiplier = nullptr;
    std::array<QCheckBox*, 3> m_pick{};
    QCheckBox* m_noAutoPick = nullptr;
    QCheckBox* m_save = nullptr;
    QCheckBox* m_newTraces = nullptr;
    QComboBox* m_units = nullptr;
    QPushButton* m_saveAsDefault = nullptr;
    QPushButton* m_restoreDefaults = nullptr;
    int m_shownUnits = 0;
};

} // namespace ba
