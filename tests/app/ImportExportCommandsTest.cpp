// The raw-data import and the image export of the File menu, driven through their menu
// commands with the file chooser answered by the test.

#include "AppTestSupport.h"

#include "app/DocumentWindow.h"
#include "app/JobRunner.h"
#include "app/MainFrame.h"
#include "io/ImageExport.h"
#include "model/ImageTrace.h"
#include "model/SonicTrace.h"
#include "sonic/SonicImportSupport.h"
#include "support/TempDir.h"
#include "view/LogPlotView.h"
#include "view/ProgressDlg.h"

#include <QAction>
#include <QLabel>
#include <QPushButton>
#include <QtTest>

#include <fstream>
#include <memory>

using namespace ba;
using namespace ba::test;

namespace {

void Trigger(QWidget& frame, const QString& text)
{
    for (QAction* action : frame.findChildren<QAction*>()) {
        if (action->text() == text) {
            QVERIFY2(action->isEnabled(), qPrintable(text));
            action->trigger();
            return;
        }
    }
    QFAIL(qPrintable("no command " + text));
}

std::string FirstLine(const std::filesystem::path& path)
{
    std::ifstream in(path);
    std::string line;
    std::getline(in, line);
    return line;
}

CImageTrace& AddImageTrace(CBoreAnalystDoc& doc, const std::string& name)
{
    auto image = std::make_unique<CImageTrace>(name, 0.0f, 100.0f, "");
    image->AppendRow(100.0f, ImageRow{0, 4095, 65535});
    image->AppendRow(100.5f, ImageRow{7, 8, 9});
    return static_cast<CImageTrace&>(doc.AddTrace(std::move(image)));
}

} // namespace

class ImportExportCommandsTest : public QObject {
    Q_OBJECT
private slots:
    void initTestCase() { PrepareApplicationForTests(); }

    void importRawDataAddsOneSonicTracePerReceiver()
    {
        CollectingMessageSink sink;
        QList<FileDialogRequest> asked;
        ShellServices services = RecordingServices(sink);
        services.chooseFile = [&asked](const FileDialogRequest& request) {
            asked.append(request);
            return QString::fromStdString(FixturePath("sonic/data/clp_two_receivers.rd"));
        };
        CMainFrame frame(services);

        // No document open: the import makes one.
        Trigger(frame, "Import &Raw Data...");
        QCOMPARE(asked.size(), 1);
        QCOMPARE(asked[0].mode, FileDialogRequest::Mode::Open);
        QCOMPARE(asked[0].filter, QStringLiteral("Raw Data Files (*.rd);;All Files (*.*)"));
        QCOMPARE(frame.DocumentWindows().size(), 1);
        CDocumentWindow* window = frame.ActiveDocumentWindow();
        QVERIFY(window);
        const CBoreAnalystDoc& doc = window->Document();
        QCOMPARE(doc.TraceCount(), std::size_t(2));
        for (std::size_t i = 0; i < 2; ++i) {
            const auto* sonic = dynamic_cast<const CSonicTrace*>(&doc.Trace(i));
            QVERIFY(sonic);
            QCOMPARE(sonic->Name(), "RX " + std::to_string(i + 1));
            QCOMPARE(sonic->RowCount(), std::size_t(2));
        }
        QVERIFY(doc.IsModified());
        QCOMPARE(window->View().TopDepth(), doc.Trace(0).FirstDepth());

        // With a document open, the traces are added to it.
        Trigger(frame, "Import &Raw Data...");
        QCOMPARE(frame.DocumentWindows().size(), 1);
        QCOMPARE(doc.TraceCount(), std::size_t(4));
        QVERIFY2(sink.messages.empty(), qPrintable(Texts(sink).join('\n')));
    }

    // The import runs as a job under the progress dialog, with the main window disabled;
    // stop pressed twice at the third progress lets the step under way finish and keeps the
    // stations read.
    void importRawDataRunsUnderTheProgressDialogAndStopKeepsWhatWasRead()
    {
        std::vector<std::uint8_t> bytes;
        for (int s = 0; s < 400; ++s) AppendStation(bytes, static_cast<float>(s) * 0.1f, {FlatBlock(100, 0)});
        TempDir dir;
        const std::string path = dir.Path("long.rd").string();
        std::ofstream(path, std::ios::binary).write(reinterpret_cast<const char*>(bytes.data()),
                                                    static_cast<std::streamsize>(bytes.size()));
        CollectingMessageSink sink;
        CMainFrame frame(RecordingServices(sink));
        QList<int> seen;
        bool disabledWhileRunning = false;
        QString title;
        QString status;
        connect(&frame.Jobs(), &CJobRunner::Progressed, &frame, [&](int percent) {
            seen.append(percent);
            if (seen.size() != 3) return;
            disabledWhileRunning = !frame.isEnabled();
            CProgressDlg* dialog = frame.Jobs().Dialog();
            QVERIFY(dialog && dialog->isVisible());
            title = dialog->windowTitle();
            QTest::mouseClick(dialog->StopButton(), Qt::LeftButton);
            QTest::mouseClick(dialog->StopButton(), Qt::LeftButton);
            status = dialog->Status()->text();
        });
        QVERIFY(frame.ImportRawDataFile(QString::fromStdString(path)));
        QCOMPARE(seen, (QList<int>{0, 1, 2}));
        QVERIFY(disabledWhileRunning);
        QCOMPARE(title, QStringLiteral("Import Raw Data"));
        QCOMPARE(status, QString::fromUtf8(kProgressStoppingText.data(), kProgressStoppingText.size()));
        QVERIFY(frame.isEnabled());
        QVERIFY(!frame.Jobs().Running());
        QVERIFY(frame.Jobs().Dialog() == nullptr);
        const CBoreAnalystDoc& doc = frame.ActiveDocumentWindow()->Document();
        QCOMPARE(doc.TraceCount(), std::size_t(1));
        // Three steps of a hundredth of 400 equal records each.
        QCOMPARE(dynamic_cast<const CSonicTrace&>(doc.Trace(0)).RowCount(), std::size_t(12));
        QVERIFY2(sink.messages.empty(), qPrintable(Texts(sink).join('\n')));
    }

    void importOfAMissingFileKeepsNoDocument()
    {
        CollectingMessageSink sink;
        CMainFrame frame(RecordingServices(sink));
        TempDir dir;
        QVERIFY(!frame.ImportRawDataFile(ToQString(dir.Path("absent.rd"))));
        QTRY_COMPARE(frame.DocumentWindows().size(), 0); // the window is deleted later
        QCOMPARE(sink.messages.size(), std::size_t(1));
        QVERIFY(Texts(sink).first().contains(QStringLiteral("absent.rd")));
    }

    void exportImageFollowsTheSelection_data()
    {
        QTest::addColumn<QStringList>("selected");
        QTest::addColumn<QString>("message"); // empty: written

        QTest::newRow("nothing") << QStringList{} << QString::fromUtf8(kNoImageTraceSelectedMessage.data());
        QTest::newRow("only a line trace") << QStringList{"GR"}
                                           << QString::fromUtf8(kNoImageTraceSelectedMessage.data());
        QTest::newRow("two images") << QStringList{"IMG", "IMG2"}
                                    << QString::fromUtf8(kSeveralImageTracesSelectedMessage.data());
        QTest::newRow("image and line trace") << QStringList{"GR", "IMG"} << QString();
    }

    void exportImageFollowsTheSelection()
    {
        QFETCH(QStringList, selected);
        QFETCH(QString, message);
        TempDir dir;
        const auto target = dir.Path("out.dat");
        CollectingMessageSink sink;
        QList<FileDialogRequest> asked;
        ShellServices services = RecordingServices(sink);
        services.chooseFile = [&](const FileDialogRequest& request) {
            asked.append(request);
            return ToQString(target);
        };
        CMainFrame frame(services);
        CDocumentWindow* window = frame.AddDocument(MakeTwoTraceDocument());
        CBoreAnalystDoc& doc = window->Document();
        doc.SetDocumentTitle("deep hole");
        AddImageTrace(doc, "IMG");
        AddImageTrace(doc, "IMG2");
        for (const QString& name : selected) window->View().SelectTrace(doc.FindTrace(name.toStdString()), true);

        Trigger(frame, "Export &Image...");

        if (!message.isEmpty()) {
            QCOMPARE(Texts(sink), QStringList{message});
            QVERIFY(asked.isEmpty()); // refused before any file is asked for
            QVERIFY(!std::filesystem::exists(target));
            return;
        }
        QVERIFY2(sink.messages.empty(), qPrintable(Texts(sink).join('\n')));
        QCOMPARE(asked.size(), 1);
        QCOMPARE(asked[0].mode, FileDialogRequest::Mode::Save);
        QCOMPARE(asked[0].filter, QStringLiteral("Data Files (*.dat);;All Files (*.*)"));
        QCOMPARE(asked[0].defaultName, QStringLiteral("deep hole.dat"));
        QCOMPARE(asked[0].defaultSuffix, QStringLiteral("dat"));
        QCOMPARE(FirstLine(target), std::string("  100.000,     0,  4095, 65535"));
    }

    void pipeFiltersBecomeQtFilters_data()
    {
        QTest::addColumn<QString>("pipe");
        QTest::addColumn<QString>("qt");
        QTest::newRow("two kinds") << "Data Files (*.dat)|*.dat|All Files (*.*)|*.*||"
                                   << "Data Files (*.dat);;All Files (*.*)";
        QTest::newRow("one kind, no end mark") << "Text Files (*.txt)|*.txt" << "Text Files (*.txt)";
        QTest::newRow("empty") << "" << "";
    }

    void pipeFiltersBecomeQtFilters()
    {
        QFETCH(QString, pipe);
        QFETCH(QString, qt);
        const QByteArray bytes = pipe.toUtf8();
        QCOMPARE(QtFileFilter(std::string_view(bytes.constData(), std::size_t(bytes.size()))), qt);
    }
};

QTEST_MAIN(ImportExportCommandsTest)
#include "ImportExportCommandsTest.moc"
