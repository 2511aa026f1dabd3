// The formula-log dialog driven through its controls: traces inserted by double click,
// refusals that keep it open, a computed log, models saved to and loaded from a scratch
// repository, and the Process menu command that opens it.

#include "AppTestSupport.h"
#include "DialogDriving.h"

#include "app/DocumentWindow.h"
#include "app/MainFrame.h"
#include "model/LineTrace.h"
#include "support/TempDir.h"
#include "view/FormulaLogDlg.h"

#include <QComboBox>
#include <QGroupBox>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QtTest>

#include <memory>

using namespace ba;
using namespace ba::test;

namespace {

// "GR" and "RT shallow" at 100..102 m.
std::unique_ptr<CBoreAnalystDoc> MakeLogDocument()
{
    auto doc = std::make_unique<CBoreAnalystDoc>();
    AddLineTrace(*doc, "GR", "API", {{100.0f, 20.0f}, {101.0f, 40.0f}, {102.0f, 60.0f}});
    AddLineTrace(*doc, "RT shallow", "OHM-M", {{100.0f, 2.0f}, {101.0f, 4.0f}, {102.0f, 5.0f}}, 1);
    return doc;
}

// Replaces an edit's text the way a user does: select all, then type.
void Type(QLineEdit& edit, const QString& text)
{
    edit.selectAll();
    QTest::keyClick(&edit, Qt::Key_Delete);
    QTest::keyClicks(&edit, text);
}

void DoubleClickTrace(CFormulaLogDlg& dialog, const QString& name)
{
    QListWidget& list = *dialog.TraceList();
    const QList<QListWidgetItem*> found = list.findItems(name, Qt::MatchExactly);
    QCOMPARE(found.size(), 1);
    // A double click begins with a press on the item, as a user's does.
    const QPoint at = list.visualItemRect(found[0]).center();
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, at);
    QTest::mouseDClick(list.viewport(), Qt::LeftButton, {}, at);
}

} // namespace

class FormulaLogDlgTest : public QObject {
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

    void doubleClickInsertsTracesAndOkComputesTheLog()
    {
        auto doc = MakeLogDocument();
        CollectingMessageSink sink;
        CFormulaLogDlg dialog(*doc, sink);
        QCOMPARE(dialog.TraceList()->count(), 2);
        dialog.show();
        QVERIFY(QTest::qWaitForWindowExposed(&dialog));

        DoubleClickTrace(dialog, "GR");
        QTest::keyClicks(dialog.FormulaEdit(), " / ");
        DoubleClickTrace(dialog, "RT shallow");
        QCOMPARE(dialog.FormulaEdit()->text(), QStringLiteral("GR / [RT shallow]"));

        dialog.OkButton()->click(); // no output name yet
        QCOMPARE(Texts(sink), QStringList{"Error: The trace name must not be empty."});
        QVERIFY(dialog.isVisible());
        Type(*dialog.OutputNameEdit(), "GR/RT");
        Type(*dialog.OutputUnitsEdit(), "API/OHM-M");
        dialog.OkButton()->click();

        QCOMPARE(Texts(sink).size(), 1);
        QCOMPARE(dialog.result(), int(QDialog::Accepted));
        QCOMPARE(doc->TraceCount(), std::size_t(3));
        const auto* log = dynamic_cast<const CLineTrace*>(doc->FindTrace("GR/RT"));
        QVERIFY(log);
        QCOMPARE(log, dialog.ComputedTrace());
        QCOMPARE(log->Units(), std::string("API/OHM-M"));
        // 20 / 2, 40 / 4 and 60 / 5 at the samples of GR.
        QCOMPARE(log->SampleCount(), std::size_t(3));
        QCOMPARE(log->Value(0), 10.0f);
        QCOMPARE(log->Value(2), 12.0f);
        QCOMPARE(doc->History().UndoDescription(), std::string("Formula Log GR/RT"));
    }

    void syntaxErrorKeepsTheDialogOpen()
    {
        auto doc = MakeLogDocument();
        CollectingMessageSink sink;
        CFormulaLogDlg dialog(*doc, sink);
        Type(*dialog.FormulaEdit(), "GR * (2");
        Type(*dialog.OutputNameEdit(), "X");
        dialog.OkButton()->click();
        QCOMPARE(Texts(sink),
                 QStringList{"Error: Syntax error at column 8: expected an operator or \")\", found the end of the "
                             "formula."});
        QCOMPARE(dialog.result(), int(QDialog::Rejected));
        QCOMPARE(doc->TraceCount(), std::size_t(2));
        QVERIFY(!doc->IsModified());
    }

    void modelsAreSavedAndLoadedBack()
    {
        auto doc = MakeLogDocument();
        CollectingMessageSink sink;
        {
            CFormulaLogDlg dialog(*doc, sink);
            Type(*dialog.FormulaEdit(), "GR * 2");
            Type(*dialog.OutputNameEdit(), "GR2");
            Type(*dialog.ModelNameEdit(), "Double");
            Type(*dialog.ModelDescriptionEdit(), "Twice the gamma ray");
            dialog.SaveButton()->click();
            QCOMPARE(ComboItems(*dialog.ModelCombo()), QStringList{"Double"});
            QCOMPARE(dialog.ModelCombo()->currentText(), QStringLiteral("Double"));
            dialog.SaveButton()->click();
            QCOMPARE(Texts(sink), QStringList{"Error: A model with this name already exists in the repository!"});
        }
        sink.messages.clear();
        CFormulaLogDlg dialog(*doc, sink);
        QVERIFY(dialog.ModelGroup()->isEnabled());
        dialog.LoadButton()->click();
        QCOMPARE(Texts(sink), QStringList{"Error: No model selected."});
        dialog.ModelCombo()->setCurrentIndex(0);
        dialog.LoadButton()->click();
        QCOMPARE(sink.messages.size(), std::size_t(1));
        QCOMPARE(dialog.FormulaEdit()->text(), QStringLiteral("GR * 2"));
        QCOMPARE(dialog.OutputNameEdit()->text(), QStringLiteral("GR2"));
        QCOMPARE(dialog.ModelNameEdit()->text(), QStringLiteral("Double"));
        QCOMPARE(dialog.ModelDescriptionEdit()->text(), QStringLiteral("Twice the gamma ray"));
    }

    void processMenuOpensTheDialogOverTheActiveDocument()
    {
        CollectingMessageSink sink;
        CMainFrame frame(RecordingServices(sink));
        QAction* command = FindMenuAction(frame, QStringLiteral("&Formula Log..."));
        QVERIFY(command);
        QVERIFY(!command->isEnabled());
        CDocumentWindow* window = frame.AddDocument(MakeLogDocument());
        QVERIFY(command->isEnabled());

        WhenModalDialogOpens<CFormulaLogDlg>([](CFormulaLogDlg& dialog) {
            Type(*dialog.FormulaEdit(), "GR + 1");
            Type(*dialog.OutputNameEdit(), "GR+1");
            dialog.OkButton()->click();
        });
        command->trigger();

        QCOMPARE(Texts(sink), QStringList());
        QCOMPARE(window->Document().TraceCount(), std::size_t(3));
        QVERIFY(window->Document().FindTrace("GR+1"));
        QCOMPARE(window->windowTitle(), QStringLiteral("BoreAnalyst1*"));
    }

private:
    std::unique_ptr<TempDir> m_scratch;
    std::unique_ptr<RepositoryFileForTest> m_repository;
};

QTEST_MAIN(FormulaLogDlgTest)
#include "FormulaLogDlgTest.moc"
