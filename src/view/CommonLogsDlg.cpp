#include "view/CommonLogsDlg.h"

#include "view/ModelBox.h"

#include "evaluation/EquationCatalogue.h"
#include "model/BoreAnalystDoc.h"
#include "model/DerivedLineTraces.h"
#include "repository/RepositoryPath.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTableWidget>
#include <QVBoxLayout>

#include <cmath>
#include <optional>
#include <string>
#include <vector>

namespace ba {
namespace {

QString Q(std::string_view text) { return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())); }

// Checks and messages for typed numbers are the core's; the widgets only hand it text.
std::optional<float> ParseNumber(const QString& text, const QString& field, IMessageSink& sink)
{
    return ReadFieldNumber(text.toStdString(), field.toStdString(), sink);
}

QString CellText(const QTableWidget& table, int row, int column)
{
    const QTableWidgetItem* item = table.item(row, column);
    return item ? item->text() : QString();
}

} // namespace

CCommonLogsDlg::CCommonLogsDlg(CBoreAnalystDoc& doc, IMessageSink& sink, QWidget* parent)
    : QDialog(parent), m_doc(doc), m_sink(sink)
{
    setWindowTitle(tr("Common Logs"));

    m_equations = new QListWidget(this);
    m_equations->setObjectName("equations");
    for (int e = 0; e < kEquationCount; ++e) m_equations->addItem(Q(EquationAt(e).listText));
    m_equations->setCurrentRow(-1);
    m_logCount = new QLabel(this);
    m_logCount->setObjectName("logCount");
    m_coefficientCount = new QLabel(this);
    m_coefficientCount->setObjectName("coefficientCount");

    m_outputName = new QLineEdit(this);
    m_outputName->setObjectName("outputName");
    auto* outputForm = new QFormLayout;
    outputForm->addRow(tr("&Output trace name:"), m_outputName);

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    m_ok = buttons->button(QDialogButtonBox::Ok);

    auto* left = new QVBoxLayout;
    left->addWidget(new QLabel(tr("&Equation:"), this));
    left->addWidget(m_equations, 1);
    left->addWidget(m_logCount);
    left->addWidget(m_coefficientCount);
    left->addWidget(MakeLogsBox());
    auto* right = new QVBoxLayout;
    right->addWidget(MakeCoefficientsBox());
    right->addWidget(MakeGroundTruthBox(), 1);
    right->addWidget(MakeModelBox());
    auto* columns = new QHBoxLayout;
    columns->addLayout(left, 1);
    columns->addLayout(right, 1);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(columns, 1);
    layout->addLayout(outputForm);
    layout->addWidget(buttons);

    connect(m_equations, &QListWidget::currentRowChanged, this, &CCommonLogsDlg::OnEquationChosen);
    connect(m_outputName, &QLineEdit::textEdited, this,
            [this](const QString& text) { m_outputNameTyped = !text.isEmpty(); });
    connect(buttons, &QDialogButtonBox::accepted, this, &CCommonLogsDlg::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &CCommonLogsDlg::reject);

    OnEquationChosen(-1);
    OpenRepository();
}

CCommonLogsDlg::~CCommonLogsDlg() = default; // the recordset goes before its database

QWidget* CCommonLogsDlg::MakeLogsBox()
{
    auto* box = new QGroupBox(tr("Input logs"), this);
    auto* form = new QFormLayout(box);
    const std::vector<std::string> names = LineTraceNames(m_doc);
    for (std::size_t slot = 0; slot < kEquationLogSlots; ++slot) {
        auto* combo = new QComboBox(box);
        combo->setObjectName(QStringLiteral("log%1").arg(slot + 1));
        combo->addItem(QString()); // no log
        for (const std::string& name : names) combo->addItem(QString::fromStdString(name));
        combo->setCurrentIndex(-1);
        auto* label = new QLabel(box);
        label->setBuddy(combo);
        form->addRow(label, combo);
        m_logCombos[slot] = combo;
        m_logLabels[slot] = label;
    }
    return box;
}

QWidget* CCommonLogsDlg::MakeCoefficientsBox()
{
    auto* box = new QGroupBox(tr("Coefficients"), this);
    auto* grid = new QGridLayout(box);
    for (std::size_t slot = 0; slot < kEquationCoefficientSlots; ++slot) {
        const int row = static_cast<int>(slot);
        auto* label = new QLabel(box);
        auto* edit = new QLineEdit(QStringLiteral("0"), box);
        edit->setObjectName(QStringLiteral("coefficient%1").arg(slot + 1));
        label->setBuddy(edit);
        auto* calculate = new QCheckBox(tr("Calculate from ground truth"), box);
        calculate->setObjectName(QStringLiteral("calculate%1").arg(slot + 1));
        grid->addWidget(label, row, 0);
        grid->addWidget(edit, row, 1);
        grid->addWidget(calculate, row, 2);
        m_coefficientLabels[slot] = label;
        m_coefficientEdits[slot] = edit;
        m_calculateChecks[slot] = calculate;
    }
    m_calculate = new QPushButton(tr("&Calculate"), box);
    m_calculate->setObjectName("calculate");
    m_calculate->setAutoDefault(false);
    grid->addWidget(m_calculate, static_cast<int>(kEquationCoefficientSlots), 2);
    connect(m_calculate, &QPushButton::clicked, this, &CCommonLogsDlg::OnCalculate);
    return box;
}

QWidget* CCommonLogsDlg::MakeGroundTruthBox()
{
    auto* box = new QGroupBox(tr("Ground truth"), this);
    m_groundTruth = new QTableWidget(0, 2, box);
    m_groundTruth->setObjectName("groundTruth");
    m_groundTruth->setHorizontalHeaderLabels({tr("Depth"), tr("Value")});
    m_groundTruth->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
    m_groundTruth->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_addRow = new QPushButton(tr("&Add Row"), box);
    m_addRow->setObjectName("addRow");
    m_addRow->setAutoDefault(false);
    m_removeRow = new QPushButton(tr("&Remove Row"), box);
    m_removeRow->setObjectName("removeRow");
    m_removeRow->setAutoDefault(false);
    auto* rowButtons = new QHBoxLayout;
    rowButtons->addWidget(m_addRow);
    rowButtons->addWidget(m_removeRow);
    rowButtons->addStretch(1);
    auto* layout = new QVBoxLayout(box);
    layout->addWidget(m_groundTruth, 1);
    layout->addLayout(rowButtons);

    connect(m_addRow, &QPushButton::clicked, this, [this] {
        const int row = m_groundTruth->rowCount();
        m_groundTruth->insertRow(row);
        m_groundTruth->setCurrentCell(row, 0);
    });
    // Removes the current row, or the last one when none is current.
    connect(m_removeRow, &QPushButton::clicked, this, [this] {
        const int rows = m_groundTruth->rowCount();
        if (rows == 0) return;
        const int current = m_groundTruth->currentRow();
        m_groundTruth->removeRow(current >= 0 && current < rows ? current : rows - 1);
    });
    return box;
}

QGroupBox* CCommonLogsDlg::ModelGroup() const { return m_modelBox; }
QComboBox* CCommonLogsDlg::ModelCombo() const { return m_modelBox->Combo(); }
QPushButton* CCommonLogsDlg::LoadButton() const { return m_modelBox->LoadButton(); }
QLineEdit* CCommonLogsDlg::ModelNameEdit() const { return m_modelBox->NameEdit(); }
QLineEdit* CCommonLogsDlg::ModelDescriptionEdit() const { return m_modelBox->DescriptionEdit(); }
QPushButton* CCommonLogsDlg::SaveButton() const { return m_modelBox->SaveButton(); }

QWidget* CCommonLogsDlg::MakeModelBox()
{
    m_modelBox = new CModelBox(tr("&Name:"), tr("Sa&ve"), this);
    connect(m_modelBox, &CModelBox::LoadRequested, this, &CCommonLogsDlg::OnLoadModel);
    connect(m_modelBox, &CModelBox::SaveRequested, this, &CCommonLogsDlg::OnSaveModel);
    return m_modelBox;
}

void CCommonLogsDlg::OpenRepository()
{
    m_database = RepositoryDatabase::Open(DefaultRepositoryPath(), m_sink);
    if (m_database) {
        m_models = std::make_unique<CEquationModelsRepository>(*m_database);
        if (!m_models->Open()) m_models.reset(); // the recordset has reported why
    }
    m_modelBox->setEnabled(m_models != nullptr);
    RefreshModelNames(QString());
}

void CCommonLogsDlg::RefreshModelNames(const QString& select)
{
    m_modelBox->ShowNames(m_models ? m_models->Names() : std::vector<std::string>{}, select);
}

void CCommonLogsDlg::OnEquationChosen(int row)
{
    m_logic.equation = IsEquationIndex(row) ? row : -1;
    const bool chosen = m_logic.equation >= 0;
    const EquationDefinition* definition = chosen ? &EquationAt(m_logic.equation) : nullptr;
    m_logCount->setText(chosen ? Q(LogCountMessage(definition->logCount)) : QString());
    m_coefficientCount->setText(chosen ? Q(CoefficientCountMessage(definition->coefficientCount)) : QString());
    for (std::size_t slot = 0; slot < kEquationLogSlots; ++slot) {
        m_logLabels[slot]->setText(chosen ? Q(LogSlotLabel(m_logic.equation, slot)) : Q(kUnusedSlotLabel));
        m_logCombos[slot]->setEnabled(chosen && slot < definition->logCount);
    }
    for (std::size_t slot = 0; slot < kEquationCoefficientSlots; ++slot) {
        m_coefficientLabels[slot]->setText(chosen ? Q(CoefficientSlotLabel(m_logic.equation, slot))
                                                  : Q(kUnusedSlotLabel));
        const bool used = chosen && slot < definition->coefficientCount;
        m_coefficientEdits[slot]->setEnabled(used);
        m_calculateChecks[slot]->setEnabled(used);
    }
    if (chosen && !m_outputNameTyped) m_outputName->setText(Q(definition->outputName));
}

void CCommonLogsDlg::GatherChoices()
{
    for (std::size_t slot = 0; slot < kEquationLogSlots; ++slot) {
        const QComboBox& combo = *m_logCombos[slot];
        // A log chosen for a slot the equation does not use plays no part.
        m_logic.logs[slot] = combo.isEnabled() ? combo.currentText().toStdString() : std::string();
    }
    for (std::size_t slot = 0; slot < kEquationCoefficientSlots; ++slot) {
        m_logic.calculate[slot] = m_calculateChecks[slot]->isEnabled() && m_calculateChecks[slot]->isChecked();
    }
    m_logic.outputName = m_outputName->text().toStdString();
    m_logic.modelName = m_modelBox->NameEdit()->text().toStdString();
    m_logic.modelDescription = m_modelBox->DescriptionEdit()->text().toStdString();
}

bool CCommonLogsDlg::GatherCoefficients()
{
    for (std::size_t slot = 0; slot < kEquationCoefficientSlots; ++slot) {
        // Unused slots keep what they hold; a coefficient to be computed needs no value.
        if (!m_coefficientEdits[slot]->isEnabled() || m_logic.calculate[slot]) continue;
        const QString field = tr("Coefficient %1 (%2)").arg(slot + 1).arg(m_coefficientLabels[slot]->text());
        const auto value = ParseNumber(m_coefficientEdits[slot]->text(), field, m_sink);
        if (!value) return false;
        m_logic.coefficients[slot] = *value;
    }
    return true;
}

bool CCommonLogsDlg::GatherGroundTruth()
{
    m_logic.groundTruth.clear();
    for (int row = 0; row < m_groundTruth->rowCount(); ++row) {
        const QString depthText = CellText(*m_groundTruth, row, 0);
        const QString valueText = CellText(*m_groundTruth, row, 1);
        if (depthText.trimmed().isEmpty() && valueText.trimmed().isEmpty()) continue; // a row left blank
        const auto depth = ParseNumber(depthText, tr("The depth in ground truth row %1").arg(row + 1), m_sink);
        if (!depth) return false;
        const auto value = ParseNumber(valueText, tr("The value in ground truth row %1").arg(row + 1), m_sink);
        if (!value) return false;
        m_logic.groundTruth.push_back({*depth, *value});
    }
    return true;
}

void CCommonLogsDlg::ShowCoefficients()
{
    for (std::size_t slot = 0; slot < kEquationCoefficientSlots; ++slot) {
        m_coefficientEdits[slot]->setText(QString::fromStdString(FieldNumberText(m_logic.coefficients[slot])));
    }
}

void CCommonLogsDlg::ShowEquation()
{
    {
        const QSignalBlocker quiet(m_equations);
        m_equations->setCurrentRow(m_logic.equation);
    }
    OnEquationChosen(m_logic.equation);
}

void CCommonLogsDlg::OnCalculate()
{
    GatherChoices();
    if (!GatherCoefficients() || !GatherGroundTruth()) return;
    if (m_logic.OnCalculate(m_doc, m_sink)) ShowCoefficients();
}

void CCommonLogsDlg::OnLoadModel()
{
    if (!m_models) return;
    if (!m_logic.OnLoadModel(*m_models, m_modelBox->Combo()->currentText().toStdString(), m_sink)) return;
    ShowEquation();
    ShowCoefficients();
    m_modelBox->NameEdit()->setText(QString::fromStdString(m_logic.modelName));
    m_modelBox->DescriptionEdit()->setText(QString::fromStdString(m_logic.modelDescription));
}

void CCommonLogsDlg::OnSaveModel()
{
    if (!m_models) return;
    GatherChoices();
    if (!GatherCoefficients()) return;
    if (m_logic.OnSaveModel(*m_models, m_sink)) RefreshModelNames(QString::fromStdString(m_logic.modelName));
}

void CCommonLogsDlg::accept()
{
    GatherChoices();
    if (!GatherCoefficients() || !GatherGroundTruth()) return;
    m_derived = m_logic.OnOk(m_doc, m_sink);
    if (!m_derived) return;
    ShowCoefficients();
    QDialog::accept();
}

} // namespace ba
