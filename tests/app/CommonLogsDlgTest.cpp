// The common-logs dialog driven through its controls: labels that follow the equation,
// refusals, a derived log computed from typed or fitted coefficients, models saved to and
// loaded from a scratch repository, and the Process menu command that opens it.

#include "AppTestSupport.h"
#include "DialogDriving.h"

#include "app/DocumentWindow.h"
#include "app/MainFrame.h"
#include "model/LineTrace.h"
#include "support/TempDir.h"
#include "view/CommonLogsDlg.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTableWidget>
#include <QtTest>

#include <memory>

using namespace ba;
using namespace ba::test;

namespace {

// "X" from 100 m to 103 m with a missing sample, and "Y" beside it.
std::unique_ptr<CBoreAnalystDoc> MakeLogDocument()
{
    auto doc = std::make_unique<CBoreAnalystDoc>();
    AddLineTrace(*doc, "X", "API", {{100.0f, 1.0f}, {101.0f, 2.0f}, {102.0f, kNullValue}, {103.0f, 4.0f}});
    AddLineTrace(*doc, "Y", "OHM-M", {{100.0f, 10.0f}, {101.0f, 20.0f}, {102.0f, 30.0f}, {103.0f, 40.0f}}, 1);
    return doc;
}

void Choose(QComboBox& combo, const QString& name)
{
    const int index = combo.findText(name);
    QVERIFY2(index >= 0, qPrintable(name));
    combo.setCurrentIndex(index);
}

// Replaces an edit's text the way a user does: select all, then type.
void Type(QLineEdit& edit, const QString& text)
{
    edit.selectAll();
    QTest::keyClick(&edit, Qt::Key_Delete);
    QTest::keyClicks(&edit, text);
}

void AddGroundTruthRow(CCommonLogsDlg& dialog, const QString& depth, const QString& value)
{
    dialog.AddRowButton()->click();
    QTableWidget& table = *dialog.GroundTruthTable();
    const int row = table.rowCount() - 1;
    table.setItem(row, 0, new QTableWidgetItem(depth));
    table.setItem(row, 1, new QTableWidgetItem(value));
}

QStringList LogLabels(const CCommonLogsDlg& dialog)
{
    QStringList labels;
    for (std::size_t slot = 0; slot < kEquationLogSlots; ++slot) labels << dialog.LogLabel(slot)->text();
    return labels;
}

QStringList CoefficientLabels(const CCommonLogsDlg& dialog)
{
    QStringList labels;
    for (std::size_t slot = 0; slot < kEquationCoefficientSlots; ++slot) {
        labels << dialog.CoefficientLabel(slot)->text();
    }
    return labels;
}

// The linear equation on "X" with m and b typed in.
void ChooseLinearLog(CCommonLogsDlg& dialog, const QString& m, const QString& b)
{
    dialog.EquationList()->setCurrentRow(0);
    Choose(*dialog.LogCombo(0), "X");
    Type(*dialog.CoefficientEdit(0), m);
    Type(*dialog.CoefficientEdit(1), b);
}

} // namespace

class CommonLogsDlgTest : public QObject {
    Q_OBJECT
private slots:
    void initTestCase() { PrepareApplicationForTests(); }

    // Every test gets an empty repository of its own, never the one beside the program.
    void init()
    {
        m_scratch = std::make_unique<TempDir>();
        m_repository = std::make_unique<RepositoryFileForTest>(m_scratch->Path("BARepository.mdb"));
    }
    void cleanup()
    {
        m_repository.reset();
        m_scratch.reset();
    }

    void startsWithNoEquation()
    {
        auto doc = MakeLogDocument();
        CollectingMessageSink sink;
        CCommonLogsDlg dialog(*doc, sink);
        QCOMPARE(dialog.EquationList()->count(), kEquationCount);
        QCOMPARE(dialog.EquationList()->item(0)->text(), QStringLiteral("Derived log: From linear relationship"));
        QCOMPARE(dialog.EquationList()->item(16)->text(), QStringLiteral("N: For lithology cross plots"));
        QCOMPARE(dialog.EquationList()->currentRow(), -1);
        QCOMPARE(ComboItems(*dialog.LogCombo(0)), QStringList({"", "X", "Y"}));
        QCOMPARE(LogLabels(dialog), QStringList({"N/A", "N/A", "N/A"}));
        QVERIFY(!dialog.LogCombo(0)->isEnabled());
        QVERIFY(!dialog.CoefficientEdit(0)->isEnabled());
        QVERIFY(dialog.OutputNameEdit()->text().isEmpty());
        QVERIFY(dialog.ModelGroup()->isEnabled());
        QVERIFY(sink.messages.empty());
    }

    void labelsFollowTheEquation_data()
    {
        QTest::addColumn<int>("equation");
        QTest::addColumn<QString>("logCount");
        QTest::addColumn<QString>("coefficientCount");
        QTest::addColumn<QStringList>("logLabels");
        QTest::addColumn<QStringList>("coefficientLabels");
        QTest::addColumn<QString>("outputName");
        QTest::newRow("linear") << 0 << "One log required" << "Two coefficients must be defined"
                                << QStringList{"Source log", "N/A", "N/A"}
                                << QStringList{"m", "b", "N/A", "N/A", "N/A"} << "Derived log";
        QTest::newRow("Archie with clay and resistive fluids")
            << 6 << "Three logs required" << "Four coefficients must be defined" << QStringList{"R", "Rw", "Vsh"}
            << QStringList{"a", "m", "Cs", "Rsh", "N/A"} << "Porosity";
        QTest::newRow("neutron with clay") << 13 << "Two logs required" << "One coefficient must be defined"
                                           << QStringList{"PHIn", "Vsh", "N/A"}
                                           << QStringList{"PHIn,sh", "N/A", "N/A", "N/A", "N/A"} << "Porosity";
        QTest::newRow("Jorgensen") << 14 << "One log required" << "One coefficient must be defined"
                                   << QStringList{"PHI", "N/A", "N/A"}
                                   << QStringList{"m", "N/A", "N/A", "N/A", "N/A"} << "Permeability";
    }

    void labelsFollowTheEquation()
    {
        QFETCH(int, equation);
        QFETCH(QString, logCount);
        QFETCH(QString, coefficientCount);
        QFETCH(QStringList, logLabels);
        QFETCH(QStringList, coefficientLabels);
        QFETCH(QString, outputName);
        auto doc = MakeLogDocument();
        CollectingMessageSink sink;
        CCommonLogsDlg dialog(*doc, sink);
        // Start from another equation so that every label has to change.
        dialog.EquationList()->setCurrentRow(equation == 6 ? 0 : 6);
        dialog.EquationList()->setCurrentRow(equation);

        QCOMPARE(dialog.LogCountLabel()->text(), logCount);
        QCOMPARE(dialog.CoefficientCountLabel()->text(), coefficientCount);
        QCOMPARE(LogLabels(dialog), logLabels);
        QCOMPARE(CoefficientLabels(dialog), coefficientLabels);
        for (std::size_t slot = 0; slot < kEquationLogSlots; ++slot) {
            QCOMPARE(dialog.LogCombo(slot)->isEnabled(), logLabels[int(slot)] != "N/A");
        }
        for (std::size_t slot = 0; slot < kEquationCoefficientSlots; ++slot) {
            const bool used = coefficientLabels[int(slot)] != "N/A";
            QCOMPARE(dialog.CoefficientEdit(slot)->isEnabled(), used);
            QCOMPARE(dialog.CalculateCheck(slot)->isEnabled(), used);
        }
        QCOMPARE(dialog.OutputNameEdit()->text(), outputName);
    }

    void typedOutputNameIsKept()
    {
        auto doc = MakeLogDocument();
        CollectingMessageSink sink;
        CCommonLogsDlg dialog(*doc, sink);
        dialog.EquationList()->setCurrentRow(1);
        QCOMPARE(dialog.OutputNameEdit()->text(), QStringLiteral("Shale Volume"));
        Type(*dialog.OutputNameEdit(), "VSH-GR");
        dialog.EquationList()->setCurrentRow(3);
        QCOMPARE(dialog.OutputNameEdit()->text(), QStringLiteral("VSH-GR"));
    }

    void okRefuses_data()
    {
        QTest::addColumn<int>("equation");
        QTest::addColumn<QString>("log");
        QTest::addColumn<QString>("m");
        QTest::addColumn<QStringList>("messages");
        QTest::newRow("no equation") << -1 << "" << "" << QStringList{"Error: No equation selected."};
        QTest::newRow("no log") << 0 << "" << "2" << QStringList{"Error: Not enough logs selected."};
        QTest::newRow("coefficient not a number")
            << 0 << "X" << "2,5x" << QStringList{"Error: Coefficient 1 (m) must be a number; \"2,5x\" is not."};
        QTest::newRow("coefficient left empty")
            << 0 << "X" << "" << QStringList{"Error: Coefficient 1 (m) must be a number; \"\" is not."};
    }

    void okRefuses()
    {
        QFETCH(int, equation);
        QFETCH(QString, log);
        QFETCH(QString, m);
        QFETCH(QStringList, messages);
        auto doc = MakeLogDocument();
        CollectingMessageSink sink;
        CCommonLogsDlg dialog(*doc, sink);
        if (equation >= 0) {
            dialog.EquationList()->setCurrentRow(equation);
            if (!log.isEmpty()) Choose(*dialog.LogCombo(0), log);
            Type(*dialog.CoefficientEdit(0), m);
        }
        dialog.OkButton()->click();

        QCOMPARE(Texts(sink), messages);
        QCOMPARE(dialog.result(), int(QDialog::Rejected));
        QVERIFY(!dialog.DerivedTrace());
        QCOMPARE(doc->TraceCount(), std::size_t(2));
        QVERIFY(!doc->IsModified());
    }

    void okDerivesTheLinearLog()
    {
        auto doc = MakeLogDocument();
        int redraws = 0;
        doc->AddViewUpdater([&redraws] { ++redraws; });
        CollectingMessageSink sink;
        CCommonLogsDlg dialog(*doc, sink);
        ChooseLinearLog(dialog, "2", "1");
        dialog.OkButton()->click();

        QCOMPARE(Texts(sink), QStringList());
        QCOMPARE(dialog.result(), int(QDialog::Accepted));
        QCOMPARE(doc->TraceCount(), std::size_t(3));
        QCOMPARE(redraws, 1);
        const auto* derived = dynamic_cast<const CLineTrace*>(doc->FindTrace("Derived log"));
        QVERIFY(derived);
        QCOMPARE(derived, dialog.DerivedTrace());
        const auto& x = dynamic_cast<const CLineTrace&>(doc->Trace(0));
        QCOMPARE(derived->SampleCount(), x.SampleCount());
        for (std::size_t i = 0; i < x.SampleCount(); ++i) {
            QCOMPARE(derived->Depth(i), x.Depth(i));
            if (IsNullSample(x.Value(i))) QCOMPARE(derived->Value(i), kNullValue);
            else QCOMPARE(derived->Value(i), 2.0f * x.Value(i) + 1.0f);
        }
    }

    void calculateFitsTheTickedCoefficients()
    {
        auto doc = MakeLogDocument();
        CollectingMessageSink sink;
        CCommonLogsDlg dialog(*doc, sink);
        ChooseLinearLog(dialog, "0", "0");
        dialog.CalculateCheck(0)->click();
        dialog.CalculateCheck(1)->click();
        AddGroundTruthRow(dialog, "100", "3");
        AddGroundTruthRow(dialog, "101", "5");
        AddGroundTruthRow(dialog, "", ""); // a row left blank plays no part
        dialog.CalculateButton()->click();

        QCOMPARE(Texts(sink), QStringList());
        QVERIFY(std::abs(dialog.CoefficientEdit(0)->text().toDouble() - 2.0) < 1e-4);
        QVERIFY(std::abs(dialog.CoefficientEdit(1)->text().toDouble() - 1.0) < 1e-4);
        QCOMPARE(doc->TraceCount(), std::size_t(2)); // Calculate derives nothing yet
    }

    void groundTruthRowsAreCheckedAndRemovable()
    {
        auto doc = MakeLogDocument();
        CollectingMessageSink sink;
        CCommonLogsDlg dialog(*doc, sink);
        ChooseLinearLog(dialog, "2", "7"); // b is computed: what was typed is replaced
        dialog.CalculateCheck(1)->click();
        AddGroundTruthRow(dialog, "100", "3");
        AddGroundTruthRow(dialog, "1O1", "5");
        dialog.CalculateButton()->click();
        QCOMPARE(Texts(sink),
                 QStringList{"Error: The depth in ground truth row 2 must be a number; \"1O1\" is not."});

        dialog.GroundTruthTable()->setCurrentCell(1, 0);
        dialog.RemoveRowButton()->click();
        QCOMPARE(dialog.GroundTruthTable()->rowCount(), 1);
        dialog.CalculateButton()->click();
        QCOMPARE(sink.messages.size(), std::size_t(1));
        QVERIFY(std::abs(dialog.CoefficientEdit(1)->text().toDouble() - 1.0) < 1e-4);
    }

    void modelsAreSavedAndLoadedBack()
    {
        auto doc = MakeLogDocument();
        CollectingMessageSink sink;
        {
            CCommonLogsDlg dialog(*doc, sink);
            ChooseLinearLog(dialog, "2.5", "-1");
            Type(*dialog.ModelNameEdit(), "Linear");
            Type(*dialog.ModelDescriptionEdit(), "Two and a half times plus minus one");
            dialog.SaveButton()->click();
            QCOMPARE(ComboItems(*dialog.ModelCombo()), QStringList{"Linear"});
            QCOMPARE(dialog.ModelCombo()->currentText(), QStringLiteral("Linear"));
            dialog.SaveButton()->click();
            QCOMPARE(Texts(sink), QStringList{"Error: A model with this name already exists in the repository!"});
        }
        sink.messages.clear();
        CCommonLogsDlg dialog(*doc, sink);
        QCOMPARE(ComboItems(*dialog.ModelCombo()), QStringList{"Linear"});
        QCOMPARE(dialog.ModelCombo()->currentIndex(), -1);
        dialog.LoadButton()->click();
        QCOMPARE(Texts(sink), QStringList{"Error: No model selected."});

        dialog.ModelCombo()->setCurrentIndex(0);
        dialog.LoadButton()->click();
        QCOMPARE(sink.messages.size(), std::size_t(1));
        QCOMPARE(dialog.EquationList()->currentRow(), 0);
        QCOMPARE(dialog.CoefficientLabel(1)->text(), QStringLiteral("b"));
        QCOMPARE(dialog.CoefficientEdit(0)->text(), QStringLiteral("2.5"));
        QCOMPARE(dialog.CoefficientEdit(1)->text(), QStringLiteral("-1"));
        QCOMPARE(dialog.ModelNameEdit()->text(), QStringLiteral("Linear"));
        QCOMPARE(dialog.ModelDescriptionEdit()->text(), QStringLiteral("Two and a half times plus minus one"));
        QCOMPARE(dialog.OutputNameEdit()->text(), QStringLiteral("Derived log"));
    }

    void unavailableRepositoryDisablesTheModelControls()
    {
        RepositoryFileForTest unreachable(m_scratch->Path("no-such-folder") / "BARepository.mdb");
        auto doc = MakeLogDocument();
        CollectingMessageSink sink;
        CCommonLogsDlg dialog(*doc, sink);
        QCOMPARE(sink.messages.size(), std::size_t(1));
        QVERIFY(sink.messages[0].text.starts_with("Error: "));
        QVERIFY(!dialog.ModelGroup()->isEnabled());
        QCOMPARE(dialog.ModelCombo()->count(), 0);
        // The rest of the dialog still works.
        ChooseLinearLog(dialog, "2", "1");
        dialog.OkButton()->click();
        QCOMPARE(dialog.result(), int(QDialog::Accepted));
    }

    void processMenuOpensTheDialogOverTheActiveDocument()
    {
        CollectingMessageSink sink;
        CMainFrame frame(RecordingServices(sink));
        QAction* command = FindMenuAction(frame, QStringLiteral("&Common Logs..."));
        QVERIFY(command);
        QVERIFY(!command->isEnabled());
        CDocumentWindow* window = frame.AddDocument(MakeLogDocument());
        QVERIFY(command->isEnabled());

        WhenModalDialogOpens<CCommonLogsDlg>([](CCommonLogsDlg& dialog) {
            dialog.OkButton()->click(); // no equation: refused, stays open
            QVERIFY(dialog.isVisible());
            ChooseLinearLog(dialog, "2", "1");
            Type(*dialog.OutputNameEdit(), "2X+1");
            dialog.OkButton()->click();
        });
        command->trigger();

        QCOMPARE(Texts(sink), QStringList{"Error: No equation selected."});
        QCOMPARE(window->Document().TraceCount(), std::size_t(3));
        QVERIFY(window->Document().FindTrace("2X+1"));
        // The document's views were told: the window title now shows the unsaved change.
        QCOMPARE(window->windowTitle(), QStringLiteral("BoreAnalyst1*"));
    }

private:
    std::unique_ptr<TempDir> m_scratch;
    std::unique_ptr<RepositoryFileForTest> m_repository;
};

QTEST_MAIN(CommonLogsDlgTest)
#include "CommonLogsDlgTest.moc"
