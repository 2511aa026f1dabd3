#pragma once
// The formula-log dialog: the formula text, a list of the document's line traces that a
// double click writes into the formula, the new log's name and units, and the model
// store (load a saved formula, save this one under a name with a description). The checks,
// the computed log and the repository records are CFormulaLogs'; this dialog gathers the
// entries, forwards its buttons and passes the messages on.

#include "base/MessageSink.h"
#include "evaluation/FormulaLogs.h"
#include "repository/RepositoryDatabase.h"
#include "repository/RepositoryRecordset.h"

#include <QDialog>

#include <memory>

class QComboBox;
class QGroupBox;
class QLineEdit;
class QListWidget;
class QListWidgetItem;
class QPushButton;

namespace ba {

class CBoreAnalystDoc;
class CModelBox;

class CFormulaLogDlg final : public QDialog {
    Q_OBJECT
public:
    // Opens the model repository for the life of the dialog; when it cannot be opened
    // (the reason has gone to `sink`) the model controls are disabled.
    CFormulaLogDlg(CBoreAnalystDoc& doc, IMessageSink& sink, QWidget* parent = nullptr);
    ~CFormulaLogDlg() override;

    QLineEdit* FormulaEdit() const { return m_formula; }
    QListWidget* TraceList() const { return m_traces; }
    QLineEdit* OutputNameEdit() const { return m_outputName; }
    QLineEdit* OutputUnitsEdit() const { return m_outputUnits; }
    QGroupBox* ModelGroup() const;
    QComboBox* ModelCombo() const;
    QPushButton* LoadButton() const;
    QLineEdit* ModelNameEdit() const;
    QLineEdit* ModelDescriptionEdit() const;
    QPushButton* SaveButton() const;
    QPushButton* OkButton() const { return m_ok; }
    // The computed trace after a successful OK, else null.
    CLineTrace* ComputedTrace() const { return m_computed; }

public slots:
    void accept() override;

private:
    QWidget* MakeModelBox();
    void OpenRepository();
    void RefreshModelNames(const QString& select);
    void Gather();

    void OnTraceActivated(QListWidgetItem* item);
    void OnLoadModel();
    void OnSaveModel();

    CBoreAnalystDoc& m_doc;
    IMessageSink& m_sink;
    CFormulaLogs m_logic;
    std::unique_ptr<RepositoryDatabase> m_database;
    std::unique_ptr<CFormulaLogRepository> m_models;
    CLineTrace* m_computed = nullptr;

    QLineEdit* m_formula = nullptr;
    QListWidget* m_traces = nullptr;
    QLineEdit* m_outputName = nullptr;
    QLineEdit* m_outputUnits = nullptr;
    CModelBox* m_modelBox = nullptr;
    QPushButton* m_ok = nullptr;
};

} // namespace ba
