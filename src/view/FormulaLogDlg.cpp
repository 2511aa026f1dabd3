#include "view/FormulaLogDlg.h"

#include "view/ModelBox.h"

#include "evaluation/FormulaParser.h"
#include "model/BoreAnalystDoc.h"
#include "model/DerivedLineTraces.h"
#include "repository/RepositoryPath.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

#include <string>
#include <vector>

namespace ba {
namespace {

QString Q(const std::string& text) { return QString::fromStdString(text); }

} // namespace

CFormulaLogDlg::CFormulaLogDlg(CBoreAnalystDoc& doc, IMessageSink& sink, QWidget* parent)
    : QDialog(parent), m_doc(doc), m_sink(sink)
{
    setWindowTitle(tr("Formula Log"));

    m_formula = new QLineEdit(this);
    m_formula->setObjectName("formula");
    m_formula->setPlaceholderText(tr("e.g. SQRT(0.62/PHI^2.15*RW/RT)"));
    m_traces = new QListWidget(this);
    m_traces->setObjectName("traces");
    for (const std::string& name : LineTraceNames(m_doc)) m_traces->addItem(Q(name));
    m_outputName = new QLineEdit(this);
    m_outputName->setObjectName("outputName");
    m_outputUnits = new QLineEdit(this);
    m_outputUnits->setObjectName("outputUnits");

    auto* traceLabel = new QLabel(tr("&Traces (double-click to insert):"), this);
    traceLabel->setBuddy(m_traces);
    auto* form = new QFormLayout;
    form->addRow(tr("&Formula:"), m_formula);
    form->addRow(tr("Output &name:"), m_outputName);
    form->addRow(tr("Output &units:"), m_outputUnits);

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    m_ok = buttons->button(QDialogButtonBox::Ok);

    auto* left = new QVBoxLayout;
    left->addWidget(traceLabel);
    left->addWidget(m_traces, 1);
    auto* right = new QVBoxLayout;
    right->addLayout(form);
    right->addWidget(MakeModelBox());
    right->addStretch(1);
    auto* columns = new QHBoxLayout;
    columns->addLayout(left, 1);
    columns->addLayout(right, 2);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(columns, 1);
    layout->addWidget(buttons);

    connect(m_traces, &QListWidget::itemDoubleClicked, this, &CFormulaLogDlg::OnTraceActivated);
    connect(buttons, &QDialogButtonBox::accepted, this, &CFormulaLogDlg::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &CFormulaLogDlg::reject);

    OpenRepository();
    resize(720, 360);
}

CFormulaLogDlg::~CFormulaLogDlg() = default; // the recordset goes before its database

QGroupBox* CFormulaLogDlg::ModelGroup() const { return m_modelBox; }
QComboBox* CFormulaLogDlg::ModelCombo() const { return m_modelBox->Combo(); }
QPushButton* CFormulaLogDlg::LoadButton() const { return m_modelBox->LoadButton(); }
QLineEdit* CFormulaLogDlg::ModelNameEdit() const { return m_modelBox->NameEdit(); }
QLineEdit* CFormulaLogDlg::ModelDescriptionEdit() const { return m_modelBox->DescriptionEdit(); }
QPushButton* CFormulaLogDlg::SaveButton() const { return m_modelBox->SaveButton(); }

QWidget* CFormulaLogDlg::MakeModelBox()
{
    m_modelBox = new CModelBox(tr("Model na&me:"), tr("Sa&ve Model"), this);
    connect(m_modelBox, &CModelBox::LoadRequested, this, &CFormulaLogDlg::OnLoadModel);
    connect(m_modelBox, &CModelBox::SaveRequested, this, &CFormulaLogDlg::OnSaveModel);
    return m_modelBox;
}

void CFormulaLogDlg::OpenRepository()
{
    m_database = RepositoryDatabase::Open(DefaultRepositoryPath(), m_sink);
    if (m_database) {
        m_models = std::make_unique<CFormulaLogRepository>(*m_database);
        if (!m_models->Open()) m_models.reset(); // the recordset has reported why
    }
    m_modelBox->setEnabled(m_models != nullptr);
    RefreshModelNames(QString());
}

void CFormulaLogDlg::RefreshModelNames(const QString& select)
{
    m_modelBox->ShowNames(m_models ? m_models->Names() : std::vector<std::string>{}, select);
}

void CFormulaLogDlg::Gather()
{
    m_logic.formula = m_formula->text().toStdString();
    m_logic.outputName = m_outputName->text().toStdString();
    m_logic.outputUnits = m_outputUnits->text().toStdString();
    m_logic.modelName = m_modelBox->NameEdit()->text().toStdString();
    m_logic.modelDescription = m_modelBox->DescriptionEdit()->text().toStdString();
}

void CFormulaLogDlg::OnTraceActivated(QListWidgetItem* item)
{
    if (item == nullptr) return;
    m_formula->insert(Q(FormulaTraceReference(item->text().toStdString())));
    m_formula->setFocus();
}

void CFormulaLogDlg::OnLoadModel()
{
    if (!m_models) return;
    if (!m_logic.OnLoadModel(*m_models, m_modelBox->Combo()->currentText().toStdString(), m_sink)) return;
    m_formula->setText(Q(m_logic.formula));
    m_outputName->setText(Q(m_logic.outputName));
    m_modelBox->NameEdit()->setText(Q(m_logic.modelName));
    m_modelBox->DescriptionEdit()->setText(Q(m_logic.modelDescription));
}

void CFormulaLogDlg::OnSaveModel()
{
    if (!m_models) return;
    Gather();
    if (m_logic.OnSaveModel(*m_models, m_sink)) RefreshModelNames(Q(m_logic.modelName));
}

void CFormulaLogDlg::accept()
{
    Gather();
    m_computed = m_logic.OnOk(m_doc, m_sink);
    if (m_computed) QDialog::accept();
}

} // namespace ba
