#include "view/UnitConversionDlg.h"

#include "model/BoreAnalystDoc.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QVBoxLayout>

namespace ba {

CUnitConversionDlg::CUnitConversionDlg(CBoreAnalystDoc& doc, IMessageSink& sink, QWidget* parent)
    : QDialog(parent), m_doc(doc), m_sink(sink)
{
    setWindowTitle(tr("Unit Conversion"));
    m_conversion.AddLineTracesOf(doc);

    m_traces = new QComboBox(this);
    m_traces->setObjectName("traces");
    for (std::size_t i = 0; i < m_conversion.TraceCount(); ++i) {
        m_traces->addItem(QString::fromStdString(m_conversion.TraceName(i)));
    }
    m_traces->setCurrentIndex(-1);
    m_newUnits = new QComboBox(this);
    m_newUnits->setObjectName("newUnits");
    m_status = new QLabel(QString::fromStdString(m_conversion.StatusText()), this);
    m_status->setObjectName("status");

    auto* form = new QFormLayout;
    form->addRow(tr("&Trace:"), m_traces);
    form->addRow(tr("&New units:"), m_newUnits);
    form->addRow(m_status);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addWidget(buttons);

    connect(m_traces, &QComboBox::currentIndexChanged, this, &CUnitConversionDlg::OnTraceChosen);
    connect(m_newUnits, &QComboBox::currentIndexChanged, this, &CUnitConversionDlg::OnNewUnitChosen);
    connect(buttons, &QDialogButtonBox::accepted, this, &CUnitConversionDlg::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &CUnitConversionDlg::reject);
}

void CUnitConversionDlg::OnTraceChosen(int index)
{
    if (index < 0 || !m_conversion.SelectTrace(static_cast<std::size_t>(index))) return;
    const QSignalBlocker quiet(m_newUnits);
    m_newUnits->clear();
    for (std::string_view unit : m_conversion.NewUnitChoices()) {
        m_newUnits->addItem(QString::fromUtf8(unit.data(), static_cast<qsizetype>(unit.size())));
    }
    m_newUnits->setCurrentIndex(-1);
    m_status->setText(QString::fromStdString(m_conversion.StatusText()));
}

void CUnitConversionDlg::OnNewUnitChosen(int index)
{
    if (index >= 0) m_conversion.SelectNewUnitAt(static_cast<std::size_t>(index));
}

void CUnitConversionDlg::accept()
{
    if (m_conversion.OnOk(m_doc, m_sink)) QDialog::accept();
}

} // namespace ba
