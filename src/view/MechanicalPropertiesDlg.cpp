#include "view/MechanicalPropertiesDlg.h"

#include "model/BoreAnalystDoc.h"
#include "model/DerivedLineTraces.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QPushButton>
#include <QVBoxLayout>

namespace ba {
namespace {

// The pass runs under the wait cursor, but a message box must not: the first message
// restores the normal cursor before it is shown.
class WaitCursorSink final : public IMessageSink {
public:
    explicit WaitCursorSink(IMessageSink& target) : m_target(target)
    {
        QApplication::setOverrideCursor(Qt::WaitCursor);
    }
    ~WaitCursorSink() override { Restore(); }
    WaitCursorSink(const WaitCursorSink&) = delete;
    WaitCursorSink& operator=(const WaitCursorSink&) = delete;

    void Report(const Message& message) override
    {
        Restore();
        m_target.Report(message);
    }

private:
    void Restore()
    {
        if (m_waiting) QApplication::restoreOverrideCursor();
        m_waiting = false;
    }

    IMessageSink& m_target;
    bool m_waiting = true;
};

std::string ChosenName(const QComboBox& combo) { return combo.currentText().toStdString(); }

} // namespace

CMechanicalPropertiesDlg::CMechanicalPropertiesDlg(CBoreAnalystDoc& doc, IMessageSink& sink, QWidget* parent)
    : QDialog(parent), m_doc(doc), m_sink(sink)
{
    setWindowTitle(tr("Mechanical Properties"));

    m_compressional = MakeTraceCombo("compressional");
    m_shear = MakeTraceCombo("shear");
    m_density = MakeTraceCombo("density");
    auto* inputs = new QGroupBox(tr("Input traces"), this);
    auto* inputForm = new QFormLayout(inputs);
    inputForm->addRow(tr("&Compressional velocity:"), m_compressional);
    inputForm->addRow(tr("&Shear velocity:"), m_shear);
    inputForm->addRow(tr("&Density (g/cc):"), m_density);

    auto* outputs = new QGroupBox(tr("Properties to compute"), this);
    auto* outputColumn = new QVBoxLayout(outputs);
    auto check = [outputs, outputColumn](const QString& caption, const char* objectName) {
        auto* box = new QCheckBox(caption, outputs);
        box->setObjectName(objectName);
        outputColumn->addWidget(box);
        return box;
    };
    m_bulkModulus = check(tr("&Bulk Modulus"), "bulkModulus");
    m_lambdaMu = check(tr("&Lambda and Shear Modulus - Mu"), "lambdaMu");
    m_poissonRatio = check(tr("&Poisson's Ratio"), "poissonRatio");
    m_vpVs = check(tr("&Vp/Vs"), "vpVs");
    m_youngModulus = check(tr("&Young's Modulus"), "youngModulus");
    m_ratios = check(tr("&Ratios: Mu/Lambda, Rho/Lambda and Rho/Mu"), "ratios");

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    m_ok = buttons->button(QDialogButtonBox::Ok);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(inputs);
    layout->addWidget(outputs);
    layout->addWidget(buttons);

    connect(buttons, &QDialogButtonBox::accepted, this, &CMechanicalPropertiesDlg::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &CMechanicalPropertiesDlg::reject);
}

QComboBox* CMechanicalPropertiesDlg::MakeTraceCombo(const char* objectName)
{
    auto* combo = new QComboBox(this);
    combo->setObjectName(objectName);
    combo->addItem(QString()); // no trace
    for (const std::string& name : LineTraceNames(m_doc)) {
        combo->addItem(QString::fromStdString(name));
    }
    combo->setCurrentIndex(-1);
    return combo;
}

void CMechanicalPropertiesDlg::Gather()
{
    m_properties.compressionalTrace = ChosenName(*m_compressional);
    m_properties.shearTrace = ChosenName(*m_shear);
    m_properties.densityTrace = ChosenName(*m_density);
    MechanicalOutputs& out = m_properties.outputs;
    out.bulkModulus = m_bulkModulus->isChecked();
    out.lambdaMu = m_lambdaMu->isChecked();
    out.poissonRatio = m_poissonRatio->isChecked();
    out.vpVs = m_vpVs->isChecked();
    out.youngModulus = m_youngModulus->isChecked();
    out.ratios = m_ratios->isChecked();
}

void CMechanicalPropertiesDlg::accept()
{
    Gather();
    bool done = false;
    {
        WaitCursorSink sink(m_sink);
        done = m_properties.OnOk(m_doc, sink);
    }
    if (done) QDialog::accept();
}

} // namespace ba
