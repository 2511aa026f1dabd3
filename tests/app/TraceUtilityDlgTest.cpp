// The trace utilities' dialog driven through its widgets: a depth shift from the Edit >
// Trace Utilities menu on the selected trace, then Edit > Undo; a refused entry that keeps
// the dialog open and the document untouched; a splice of two traces.

#include "AppTestSupport.h"
#include "DialogDriving.h"

#include "app/DocumentWindow.h"
#include "app/MainFrame.h"
#include "model/LineTrace.h"
#include "view/LogPlotView.h"
#include "view/TraceUtilityDlg.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QtTest>

#include <vector>

using namespace ba;
using namespace ba::test;

namespace {

QComboBox& Combo(const CTraceUtilityDlg& dialog, std::size_t field)
{
    return *qobject_cast<QComboBox*>(dialog.FieldWidget(field));
}

QLineEdit& Edit(const CTraceUtilityDlg& dialog, std::size_t field)
{
    return *qobject_cast<QLineEdit*>(dialog.FieldWidget(field));
}

// Replaces an edit's text the way a user does: select all, then type.
void Type(QLineEdit& edit, const QString& text)
{
    edit.selectAll();
    QTest::keyClick(&edit, Qt::Key_Delete);
    QTest::keyClicks(&edit, text);
}

std::vector<float> Depths(const CTrace& trace)
{
    std::vector<float> depths;
    for (std::size_t i = 0; i < trace.SampleCount(); ++i) depths.push_back(trace.Depth(i));
    return depths;
}

std::vector<float> Values(const CTrace& trace)
{
    const auto& line = dynamic_cast<const CLineTrace&>(trace);
    return {line.Values().Items().begin(), line.Values().Items().end()};
}

} // namespace

class TraceUtilityDlgTest : public QObject {
    Q_OBJECT
private slots:
    void initTestCase() { PrepareApplicationForTests(); }

    void depthShiftOfTheSelectedTraceUndoes()
    {
        CollectingMessageSink sink;
        CMainFrame frame(RecordingServices(sink));
        QAction* command = FindMenuAction(frame, QStringLiteral("Depth Shift..."));
        QVERIFY(command);
        QVERIFY(!command->isEnabled());
        CDocumentWindow* window = frame.AddDocument(MakeTwoTraceDocument());
        QVERIFY(command->isEnabled());
        CBoreAnalystDoc& doc = window->Document();
        const auto before = WriteDocumentBytes(doc);
        window->View().SelectTrace(&doc.Trace(1), false);

        WhenModalDialogOpens<CTraceUtilityDlg>([](CTraceUtilityDlg& dialog) {
            QCOMPARE(dialog.windowTitle(), QStringLiteral("Depth Shift"));
            QCOMPARE(Combo(dialog, 0).currentText(), QStringLiteral("RES")); // the selected trace
            QCOMPARE(dialog.FieldLabel(2)->text(), QStringLiteral("Shift (m):"));
            QVERIFY(Edit(dialog, 2).isEnabled());
            QVERIFY(!Edit(dialog, 3).isEnabled()); // tie points: another choice
            Type(Edit(dialog, 2), "2.5");
            dialog.OkButton()->click();
        });
        command->trigger();
        QCOMPARE(Depths(doc.Trace(1)), (std::vector<float>{102.5f, 107.5f, 112.5f}));
        QCOMPARE(Depths(doc.Trace(0)), (std::vector<float>{100, 105, 110}));

        QAction* undo = FindMenuAction(frame, QStringLiteral("&Undo Depth Shift RES"));
        QVERIFY(undo);
        undo->trigger();
        QCOMPARE(WriteDocumentBytes(doc), before);
        QVERIFY(sink.messages.empty());
    }

    void refusedEntryKeepsTheDialogOpen()
    {
        auto doc = MakeTwoTraceDocument();
        const auto before = WriteDocumentBytes(*doc);
        CollectingMessageSink sink;
        CTraceUtilityDlg dialog(*doc, TraceUtility::Filter, sink);
        dialog.show();
        QCOMPARE(Combo(dialog, 0).currentText(), QStringLiteral("GR"));
        QCOMPARE(ComboItems(Combo(dialog, 1)),
                 (QStringList{"Moving average", "Triangular average", "Median"}));
        Type(Edit(dialog, 2), "three");
        dialog.OkButton()->click();
        QCOMPARE(Texts(sink), QStringList{"Error: Window must be a whole number; \"three\" is not."});
        QVERIFY(dialog.isVisible());
        QCOMPARE(WriteDocumentBytes(*doc), before);
        QCOMPARE(doc->History().Size(), std::size_t(0));

        // Corrected, the same dialog applies the filter: (10+50)/2, (10+50+90)/3, (50+90)/2.
        Type(Edit(dialog, 2), "3");
        dialog.OkButton()->click();
        QVERIFY(!dialog.isVisible());
        QCOMPARE(dialog.result(), int(QDialog::Accepted));
        QCOMPARE(Values(doc->Trace(0)), (std::vector<float>{30, 50, 70}));
        QCOMPARE(doc->History().UndoDescription(), std::string("Filter GR"));
    }

    void spliceJoinsTwoChosenTraces()
    {
        CBoreAnalystDoc doc;
        AddLineTrace(doc, "A", "API", {{100.0f, 1.0f}, {101.0f, 2.0f}});
        AddLineTrace(doc, "IGNORED", "API", {{100.0f, 5.0f}});
        AddLineTrace(doc, "B", "API", {{101.0f, 20.0f}, {102.0f, 30.0f}});
        CollectingMessageSink sink;
        CTraceUtilityDlg dialog(doc, TraceUtility::Splice, sink);
        Combo(dialog, 1).setCurrentText("B");
        Combo(dialog, 2).setCurrentText("Average of both");
        Type(Edit(dialog, 3), "AB");
        dialog.OkButton()->click();
        QVERIFY2(sink.messages.empty(), sink.messages.empty() ? "" : sink.messages[0].text.c_str());
        QCOMPARE(dialog.result(), int(QDialog::Accepted));
        QCOMPARE(doc.TraceCount(), std::size_t(4));
        const CTrace& spliced = doc.Trace(3);
        QCOMPARE(spliced.Name(), std::string("AB"));
        QCOMPARE(Depths(spliced), (std::vector<float>{100, 101, 102}));
        QCOMPARE(Values(spliced), (std::vector<float>{1, 11, 30})); // (2 + 20) / 2 at 101
    }
};

QTEST_MAIN(TraceUtilityDlgTest)
#include "TraceUtilityDlgTest.moc"
