#pragma once
// The mechanical properties dialog: three lists of the document's line traces (velocity
// of compressional and shear waves, density) and the properties to derive. The checks and
// the computation are CMechanicalProperties'; this dialog gathers the choices, forwards OK
// and passes the messages on.

#include "base/MessageSink.h"
#include "sonic/MechanicalProperties.h"

#include <QDialog>

class QCheckBox;
class QComboBox;
class QPushButton;

namespace ba {

class CBoreAnalystDoc;

class CMechanicalPropertiesDlg final : public QDialog {
    Q_OBJECT
public:
    // Each trace list holds an empty entry (no trace) first, then the document's line
    // traces in document order; nothing is chosen at the start.
    CMechanicalPropertiesDlg(CBoreAnalystDoc& doc, IMessageSink& sink, QWidget* parent = nullptr);

    QComboBox* CompressionalCombo() const { return m_compressional; }
    QComboBox* ShearCombo() const { return m_shear; }
    QComboBox* DensityCombo() const { return m_density; }
    QCheckBox* BulkModulusCheck() const { return m_bulkModulus; }
    QCheckBox* LambdaMuCheck() const { return m_lambdaMu; }
    QCheckBox* PoissonRatioCheck() const { return m_poissonRatio; }
    QCheckBox* VpVsCheck() const { return m_vpVs; }
    QCheckBox* YoungModulusCheck() const { return m_youngModulus; }
    QCheckBox* RatiosCheck() const { return m_ratios; }
    QPushButton* OkButton() const { return m_ok; }

public slots:
    void accept() override;

private:
    QComboBox* MakeTraceCombo(const char* objectName);
    void Gather();

    CBoreAnalystDoc& m_doc;
    IMessageSink& m_sink;
    CMechanicalProperties m_properties;
    QComboBox* m_compressional = nullptr;
    QComboBox* m_shear = nullptr;
    QComboBox* m_density = nullptr;
    QCheckBox* m_bulkModulus = nullptr;
    QCheckBox* m_lambdaMu = nullptr;
    QCheckBox* m_poissonRatio = nullptr;
    QCheckBox* m_vpVs = nullptr;
    QCheckBox* m_youngModulus = nullptr;
    QCheckBox* m_ratios = nullptr;
    QPushButton* m_ok = nullptr;
};

} // namespace ba
