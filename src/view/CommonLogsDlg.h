#pragma once
// The common-logs dialog: an equation from the list, up to three input logs, five
// coefficients (typed, loaded from a stored model or computed from ground truth), the
// name of the derived log and the model store. The checks, the fit, the derived log and
// the repository records are CCommonLogs'; this dialog shows that state, forwards its
// buttons and passes the messages on.

#include "base/MessageSink.h"
#include "evaluation/CommonLogs.h"
#include "repository/RepositoryDatabase.h"
#include "repository/RepositoryRecordset.h"

#include <QDialog>

#include <array>
#include <memory>

class QCheckBox;
class QComboBox;
class QGroupBox;
class QLabel;
class QLineEdit;
class QListWidget;
class QPushButton;
class QTableWidget;

namespace ba {

class CBoreAnalystDoc;
class CModelBox;

class CCommonLogsDlg final : public QDialog {
    Q_OBJECT
public:
    // Opens the model repository for the life of the dialog; when it cannot be opened
    // (the reason has gone to `sink`) the model controls are disabled.
    CCommonLogsDlg(CBoreAnalystDoc& doc, IMessageSink& sink, QWidget* parent = nullptr);
    ~CCommonLogsDlg() override;

    const CCommonLogs& Logic() const { return m_logic; }
    QListWidget* EquationList() const { return m_equations; }
    QLabel* LogCountLabel() const { return m_logCount; }
    QLabel* CoefficientCountLabel() const { return m_coefficientCount; }
    QComboBox* LogCombo(std::size_t slot) const { return m_logCombos.at(slot); }
    QLabel* LogLabel(std::size_t slot) const { return m_logLabels.at(slot); }
    QLineEdit* CoefficientEdit(std::size_t slot) const { return m_coefficientEdits.at(slot); }
    QLabel* CoefficientLabel(std::size_t slot) const { return m_coefficientLabels.at(slot); }
    QCheckBox* CalculateCheck(std::size_t slot) const { return m_calculateChecks.at(slot); }
    QTableWidget* GroundTruthTable() const { return m_groundTruth; }
    QPushButton* AddRowButton() const { return m_addRow; }
    QPushButton* RemoveRowButton() const { return m_removeRow; }
    QPushButton* CalculateButton() const { return m_calculate; }
    QLineEdit* OutputNameEdit() const { return m_outputName; }
    QGroupBox* ModelGroup() const;
    QComboBox* ModelCombo() const;
    QPushButton* LoadButton() const;
    QLineEdit* ModelNameEdit() const;
    QLineEdit* ModelDescriptionEdit() const;
    QPushButton* SaveButton() const;
    QPushButton* OkButton() const { return m_ok; }
    // The derived trace after a successful OK, else null.
    CLineTrace* DerivedTrace() const { return m_derived; }

public slots:
    void accept() override;

private:
    QWidget* MakeLogsBox();
    QWidget* MakeCoefficientsBox();
    QWidget* MakeGroundTruthBox();
    QWidget* MakeModelBox();
    void OpenRepository();
    void RefreshModelNames(const QString& select);

    void OnEquationChosen(int row);
    void OnCalculate();
    void OnLoadModel();
    void OnSaveModel();

    // Copies the controls into the dialog state; false (with a message naming the field)
    // when an edit that is needed does not hold a number.
    bool GatherCoefficients();
    bool GatherGroundTruth();
    void GatherChoices();
    void ShowCoefficients();
    void ShowEquation();

    CBoreAnalystDoc& m_doc;
    IMessageSink& m_sink;
    CCommonLogs m_logic;
    std::unique_ptr<RepositoryDatabase> m_database;
    std::unique_ptr<CEquationModelsRepository> m_models;
    CLineTrace* m_derived = nullptr;
    // Set once the user edits the output name: from then on choosing an equation no longer
    // replaces it with the equation's output kind.
    bool m_outputNameTyped = false;

    QListWidget* m_equations = nullptr;
    QLabel* m_logCount = nullptr;
    QLabel* m_coefficientCount = nullptr;
    std::array<QComboBox*, kEquationLogSlots> m_logCombos{};
    std::array<QLabel*, kEquationLogSlots> m_logLabels{};
    std::array<QLineEdit*, kEquationCoefficientSlots> m_coefficientEdits{};
    std::array<QLabel*, kEquationCoefficientSlots> m_coefficientLabels{};
    std::array<QCheckBox*, kEquationCoefficientSlots> m_calculateChecks{};
    QTableWidget* m_groundTruth = nullptr;
    QPushButton* m_addRow = nullptr;
    QPushButton* m_removeRow = nullptr;
    QPushButton* m_calculate = nullptr;
    QLineEdit* m_outputName = nullptr;
    CModelBox* m_modelBox = nullptr;
    QPushButton* m_ok = nullptr;
};

} // namespace ba
