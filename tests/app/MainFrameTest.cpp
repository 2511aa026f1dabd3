// The main frame: opening, saving, importing and exporting through its commands, the
// file dialogs they ask for, deleting traces, cut, copy and paste of traces, closing
// modified documents and the status bar read-out.

#include "AppTestSupport.h"

#include "app/DocumentWindow.h"
#include "app/HistoryPanel.h"
#include "app/MainFrame.h"
#include "model/LineTrace.h"
#include "model/TraceClipboard.h"
#include "support/TempDir.h"
#include "view/LogPlotView.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QFile>
#include <QImage>
#include <QListWidget>
#include <QMdiArea>
#include <QMimeData>
#include <QMouseEvent>
#include <QtTest>

#include <cmath>

using namespace ba;
using namespace ba::test;

namespace {

QAction* FindAction(QWidget& frame, const QString& text)
{
    for (QAction* action : frame.findChildren<QAction*>()) {
        if (action->text() == text) return action;
    }
    return nullptr;
}

std::filesystem::path SaveTwoTraceDocument(const TempDir& dir, const std::string& name)
{
    auto doc = MakeTwoTraceDocument();
    CollectingMessageSink sink;
    const auto path = dir.Path(name);
    if (doc->OnSaveDocument(path, sink) != SaveOutcome::Written) throw std::runtime_error("fixture not written");
    return path;
}

// The samples of line trace `i` of `doc` as (stored depth, value) pairs.
std::vector<std::pair<float, float>> Samples(const CBoreAnalystDoc& doc, std::size_t i)
{
    const auto& line = dynamic_cast<const CLineTrace&>(doc.Trace(i));
    std::vector<std::pair<float, float>> samples;
    for (std::size_t k = 0; k < line.SampleCount(); ++k) samples.emplace_back(line.StoredDepth(k), line.Value(k));
    return samples;
}

// Runs the pending deletions of closed windows.
void FlushDeletes() { QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete); }

} // namespace

class MainFrameTest : public QObject {
    Q_OBJECT
private slots:
    void initTestCase() { PrepareApplicationForTests(); }

    void opensDocumentInSubWindowOnce()
    {
        TempDir dir;
        const auto path = SaveTwoTraceDocument(dir, "well7.bal");
        CollectingMessageSink sink;
        CMainFrame frame(RecordingServices(sink));
        CDocumentWindow* window = frame.OpenDocumentFile(ToQString(path));
        QVERIFY(window);
        QCOMPARE(window->windowTitle(), QStringLiteral("well7"));
        QCOMPARE(window->Document().TraceCount(), std::size_t(2));
        QCOMPARE(frame.ActiveDocumentWindow(), window);
        // The same file again brings its window forward instead of opening a copy.
        QCOMPARE(frame.OpenDocumentFile(ToQString(path)), window);
        QCOMPARE(frame.DocumentWindows().size(), 1);
        QCOMPARE(frame.RecentFiles().value(0), QFileInfo(ToQString(path)).absoluteFilePath());
        QVERIFY(sink.messages.empty());
    }

    void unreadableDocumentIsReportedAndNotOpened()
    {
        TempDir dir;
        dir.Write("broken.bal", "not a document at all");
        CollectingMessageSink sink;
        CMainFrame frame(RecordingServices(sink));
        QVERIFY(!frame.OpenDocumentFile(ToQString(dir.Path("broken.bal"))));
        QCOMPARE(frame.DocumentWindows().size(), 0);
        QCOMPARE(sink.messages.size(), std::size_t(1));
        QVERIFY2(Texts(sink).constFirst().contains(QStringLiteral("broken.bal")), qPrintable(Texts(sink).join('\n')));
    }

    void saveAsWritesTheDocumentAndRetitlesIt()
    {
        TempDir dir;
        CollectingMessageSink sink;
        CMainFrame frame(RecordingServices(sink));
        CDocumentWindow* window = frame.AddDocument(MakeTwoTraceDocument());
        MakeUnsavedChange(window->Document());
        QCOMPARE(window->windowTitle(), QStringLiteral("BoreAnalyst1*"));

        const auto path = dir.Path("saved well.bal");
        QVERIFY(frame.SaveDocumentAs(*window, ToQString(path)));
        QVERIFY(sink.messages.empty());
        QCOMPARE(window->windowTitle(), QStringLiteral("saved well"));
        const auto reread = OpenDocument(path, sink);
        QVERIFY(reread);
        QCOMPARE(reread->TraceCount(), std::size_t(2));
        QCOMPARE(reread->Trace(1).Name(), std::string("RES"));
    }

    void unlicensedSaveShowsTheMessageAndWritesNothing()
    {
        TempDir dir;
        CollectingMessageSink sink;
        const UnlicensedInstallation unlicensed;
        CMainFrame frame(RecordingServices(sink, &unlicensed));
        CDocumentWindow* window = frame.AddDocument(MakeTwoTraceDocument());
        MakeUnsavedChange(window->Document());
        const auto path = dir.Path("refused.bal");
        frame.SaveDocumentAs(*window, ToQString(path));
        QCOMPARE(Texts(sink), QStringList{QStringLiteral("Error: Unlicesed installation.  Saving disabled.")});
        QVERIFY(!std::filesystem::exists(path));
        QVERIFY(window->Document().IsModified());
    }

    void fileCommandsAskWithTheirFiltersAndNames_data()
    {
        QTest::addColumn<QString>("action");
        QTest::addColumn<int>("mode");
        QTest::addColumn<QString>("filter");
        QTest::addColumn<QString>("defaultName");
        const int open = int(FileDialogRequest::Mode::Open);
        const int save = int(FileDialogRequest::Mode::Save);
        QTest::newRow("open") << "&Open..." << open << "BoreAnalyst Files (*.bal);;All Files (*.*)" << "";
        QTest::newRow("save as") << "Save &As..." << save << "BoreAnalyst Files (*.bal);;All Files (*.*)"
                                 << "deep hole.bal";
        QTest::newRow("import las") << "&Import LAS..." << open << "LAS Data Files (*.las);;All Files (*.*)" << "";
        QTest::newRow("import raw data") << "Import &Raw Data..." << open << "Raw Data Files (*.rd);;All Files (*.*)"
                                         << "";
        QTest::newRow("export las") << "Export &LAS..." << save << "Text Files (*.las);;All Files (*.*)"
                                    << "deep hole.las";
        QTest::newRow("export text") << "Export &Text..." << save << "Text Files (*.txt);;All Files (*.*)"
                                     << "deep hole.txt";
        QTest::newRow("export wellcad") << "Export &WellCAD..." << save
                                        << "WellCAD Log Files (*.wcl);;All Files (*.*)" << "deep hole.wcl";
        QTest::newRow("export plot") << "Export &Plot as PNG or PDF..." << save << "PNG Images (*.png);;PDF Files (*.pdf)"
                                     << "deep hole.png";
    }

    void fileCommandsAskWithTheirFiltersAndNames()
    {
        QFETCH(QString, action);
        QFETCH(int, mode);
        QFETCH(QString, filter);
        QFETCH(QString, defaultName);
        CollectingMessageSink sink;
        QList<FileDialogRequest> asked;
        ShellServices services = RecordingServices(sink);
        services.chooseFile = [&asked](const FileDialogRequest& request) {
            asked.append(request);
            return QString(); // cancelled
        };
        CMainFrame frame(services);
        CDocumentWindow* window = frame.AddDocument(MakeTwoTraceDocument());
        window->Document().SetDocumentTitle("deep hole");
        QAction* command = FindAction(frame, action);
        QVERIFY(command);
        command->trigger();
        QCOMPARE(asked.size(), 1);
        QCOMPARE(int(asked[0].mode), mode);
        QCOMPARE(asked[0].filter, filter);
        QCOMPARE(asked[0].defaultName, defaultName);
        QVERIFY(sink.messages.empty());
    }

    void importLasAddsTracesAndMovesTheView()
    {
        CollectingMessageSink sink;
        CMainFrame frame(RecordingServices(sink));
        CDocumentWindow* window = frame.NewDocument();
        QVERIFY(frame.ImportLasFile(QString::fromStdString(FixturePath("io/data/las/basic_metres.las"))));
        QVERIFY2(sink.messages.empty(), qPrintable(Texts(sink).join('\n')));
        const CBoreAnalystDoc& doc = window->Document();
        QCOMPARE(doc.TraceCount(), std::size_t(2));
        QCOMPARE(doc.Trace(0).Name(), std::string("GR"));
        QCOMPARE(doc.Trace(1).Name(), std::string("RHOB"));
        QCOMPARE(doc.Trace(0).SampleCount(), std::size_t(4));
        QCOMPARE(window->View().TopDepth(), 1200.0f);
        QCOMPARE(window->windowTitle(), QStringLiteral("basic_metres*"));
    }

    void importOfAMissingLasAddsNothing()
    {
        TempDir dir;
        CollectingMessageSink sink;
        CMainFrame frame(RecordingServices(sink));
        CDocumentWindow* window = frame.NewDocument();
        QVERIFY(!frame.ImportLasFile(ToQString(dir.Path("absent.las"))));
        QCOMPARE(window->Document().TraceCount(), std::size_t(0));
        QVERIFY(!window->Document().IsModified());
        QCOMPARE(sink.messages.size(), std::size_t(1));
    }

    void droppedOrNamedLasFileOpensAsNewDocument()
    {
        CollectingMessageSink sink;
        CMainFrame frame(RecordingServices(sink));
        CDocumentWindow* window = frame.OpenOrImport(QString::fromStdString(FixturePath("io/data/las/basic_metres.las")));
        QVERIFY(window);
        QCOMPARE(window->Document().TraceCount(), std::size_t(2));
        QCOMPARE(frame.DocumentWindows().size(), 1);
    }

    void droppedFilesOpenWhenTheyAreDocumentsOrLas()
    {
        TempDir dir;
        dir.Write("notes.txt", "not a log");
        CollectingMessageSink sink;
        CMainFrame frame(RecordingServices(sink));
        QMimeData mime;
        mime.setUrls({QUrl::fromLocalFile(ToQString(dir.Path("notes.txt")))});
        QDragEnterEvent refused(QPoint(5, 5), Qt::CopyAction, &mime, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(&frame, &refused);
        QVERIFY(!refused.isAccepted());

        mime.setUrls({QUrl::fromLocalFile(ToQString(dir.Path("notes.txt"))),
                      QUrl::fromLocalFile(QString::fromStdString(FixturePath("io/data/las/basic_metres.las")))});
        QDragEnterEvent accepted(QPoint(5, 5), Qt::CopyAction, &mime, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(&frame, &accepted);
        QVERIFY(accepted.isAccepted());
        QDropEvent drop(QPointF(5, 5), Qt::CopyAction, &mime, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(&frame, &drop);
        QCOMPARE(frame.DocumentWindows().size(), 1);
        QCOMPARE(frame.DocumentWindows().constFirst()->Document().TraceCount(), std::size_t(2));
        QVERIFY(sink.messages.empty());
    }

    void exportsWriteTheirFiles()
    {
        TempDir dir;
        CollectingMessageSink sink;
        CMainFrame frame(RecordingServices(sink));
        frame.AddDocument(MakeTwoTraceDocument());
        QVERIFY(frame.ExportLasFile(ToQString(dir.Path("out.las"))));
        QVERIFY(dir.Read("out.las").starts_with("~V\n"));
        QVERIFY(frame.ExportTextFile(ToQString(dir.Path("out.txt"))));
        QVERIFY(dir.Read("out.txt").starts_with("\"Depth\"     \"GR\"     \"RES\"     \n"));
        QVERIFY(frame.ExportPlotFile(ToQString(dir.Path("plot.png"))));
        const QImage image(ToQString(dir.Path("plot.png")));
        QCOMPARE(image.size(), QSize(850, 1100));
        QVERIFY(frame.ExportPlotFile(ToQString(dir.Path("plot.pdf"))));
        QVERIFY(dir.Read("plot.pdf").starts_with("%PDF"));
        QVERIFY2(sink.messages.empty(), qPrintable(Texts(sink).join('\n')));
    }

    void exportOfADocumentWithoutLineTracesIsRefused()
    {
        TempDir dir;
        CollectingMessageSink sink;
        CMainFrame frame(RecordingServices(sink));
        frame.NewDocument();
        QVERIFY(!frame.ExportLasFile(ToQString(dir.Path("out.las"))));
        QVERIFY(!frame.ExportTextFile(ToQString(dir.Path("out.txt"))));
        QCOMPARE(Texts(sink), QStringList({QStringLiteral("Error: No line traces present to export."),
                                           QStringLiteral("Error: No line traces present to export.")}));
        QVERIFY(dir.FileNames().empty());
    }

    void plotExportOfANameNeitherPngNorPdfIsRefused()
    {
        TempDir dir;
        CollectingMessageSink sink;
        CMainFrame frame(RecordingServices(sink));
        frame.AddDocument(MakeTwoTraceDocument());
        const QString path = ToQString(dir.Path("plot.jpg"));
        QVERIFY(!frame.ExportPlotFile(path));
        QCOMPARE(Texts(sink), QStringList({"Error: cannot tell the format of \"" + path +
                                           "\": the output name must end in .png or .pdf."}));
        QVERIFY(dir.FileNames().empty());
    }

    void deleteTraceRemovesTheSelectedTraces()
    {
        CollectingMessageSink sink;
        CMainFrame frame(RecordingServices(sink));
        CDocumentWindow* window = frame.AddDocument(MakeTwoTraceDocument());
        QAction* deleteAction = FindAction(frame, QStringLiteral("&Delete Trace"));
        QVERIFY(deleteAction);
        QVERIFY(!deleteAction->isEnabled());

        CBoreAnalystDoc& doc = window->Document();
        window->View().SelectTrace(&doc.Trace(0), false);
        QVERIFY(deleteAction->isEnabled());
        deleteAction->trigger();
        QCOMPARE(doc.TraceCount(), std::size_t(1));
        QCOMPARE(doc.Trace(0).Name(), std::string("RES"));
        QVERIFY(window->View().SelectedTraces().empty());
        QVERIFY(!deleteAction->isEnabled());
        QCOMPARE(window->windowTitle(), QStringLiteral("BoreAnalyst1*"));

        // Edit > Undo names the change and takes it back; the History panel follows.
        QAction* undo = FindAction(frame, QStringLiteral("&Undo Delete GR"));
        QVERIFY(undo);
        QCOMPARE(undo->shortcut(), QKeySequence(QKeySequence::Undo));
        QListWidget* history = frame.HistoryPanel().List();
        QCOMPARE(history->count(), 2);
        QCOMPARE(history->item(1)->text(), QStringLiteral("Delete GR"));
        QCOMPARE(history->currentRow(), 1);
        undo->trigger();
        QCOMPARE(doc.TraceCount(), std::size_t(2));
        QCOMPARE(doc.Trace(0).Name(), std::string("GR"));
        QCOMPARE(window->windowTitle(), QStringLiteral("BoreAnalyst1"));
        QCOMPARE(history->currentRow(), 0);
        QAction* redo = FindAction(frame, QStringLiteral("&Redo Delete GR"));
        QVERIFY(redo);
        QCOMPARE(redo->shortcut(), QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Z));
        QVERIFY(!FindAction(frame, QStringLiteral("&Undo"))->isEnabled());
        // A click on the history's last row redoes the change.
        history->setCurrentRow(1);
        QCOMPARE(doc.TraceCount(), std::size_t(1));
        QVERIFY(FindAction(frame, QStringLiteral("&Undo Delete GR")));
    }

    void copyAndPasteMoveATraceBetweenDocuments()
    {
        QApplication::clipboard()->clear();
        CollectingMessageSink sink;
        CMainFrame frame(RecordingServices(sink));
        CDocumentWindow* source = frame.AddDocument(MakeTwoTraceDocument());
        QAction* copy = FindAction(frame, QStringLiteral("&Copy"));
        QAction* cut = FindAction(frame, QStringLiteral("Cu&t"));
        QAction* paste = FindAction(frame, QStringLiteral("&Paste"));
        QVERIFY(copy && cut && paste);
        QVERIFY(!copy->isEnabled());
        QVERIFY(!cut->isEnabled());
        QVERIFY(!paste->isEnabled());

        source->View().SelectTrace(&source->Document().Trace(0), false);
        QVERIFY(copy->isEnabled());
        copy->trigger();
        const QMimeData* data = QApplication::clipboard()->mimeData();
        QVERIFY(data->hasFormat(QStringLiteral("BoreAnalystTraceData")));
        QVERIFY(paste->isEnabled());
        QCOMPARE(source->Document().TraceCount(), std::size_t(2));

        CDocumentWindow* target = frame.NewDocument();
        QVERIFY(!copy->isEnabled()); // nothing selected in the new document
        QVERIFY(paste->isEnabled());
        paste->trigger();
        QVERIFY(sink.messages.empty());
        QCOMPARE(target->Document().TraceCount(), std::size_t(1));
        QCOMPARE(target->Document().Trace(0).Name(), std::string("GR"));
        QVERIFY(Samples(target->Document(), 0) == Samples(source->Document(), 0));
        // A fresh document's view starts at the first depth lowered to a multiple of 100.
        QCOMPARE(target->View().TopDepth(), 100.0f);
        QVERIFY(target->Document().IsModified());

        // A second paste adds beside the first, of the same axis, without asking.
        QVERIFY(frame.PasteClipboardTraces());
        QCOMPARE(target->Document().TraceCount(), std::size_t(2));
        QVERIFY(Samples(target->Document(), 1) == Samples(source->Document(), 0));
    }

    void cutCopiesThenRemovesTheSelectedTraces()
    {
        QApplication::clipboard()->clear();
        CollectingMessageSink sink;
        CMainFrame frame(RecordingServices(sink));
        CDocumentWindow* source = frame.AddDocument(MakeTwoTraceDocument());
        const auto expected = Samples(source->Document(), 1);
        source->View().SelectTrace(&source->Document().Trace(1), false);
        FindAction(frame, QStringLiteral("Cu&t"))->trigger();
        QCOMPARE(source->Document().TraceCount(), std::size_t(1));
        QCOMPARE(source->Document().Trace(0).Name(), std::string("GR"));
        QVERIFY(!FindAction(frame, QStringLiteral("Cu&t"))->isEnabled());

        CDocumentWindow* target = frame.NewDocument();
        QVERIFY(frame.PasteClipboardTraces());
        QCOMPARE(target->Document().TraceCount(), std::size_t(1));
        QCOMPARE(target->Document().Trace(0).Name(), std::string("RES"));
        QVERIFY(Samples(target->Document(), 0) == expected);
        QVERIFY(sink.messages.empty());
    }

    void pasteReadsTheBlockUnderEitherName_data()
    {
        QTest::addColumn<QString>("format");
        QTest::newRow("bare") << QStringLiteral("BoreAnalystTraceData");
        QTest::newRow("wrapped by Windows")
            << QStringLiteral("application/x-qt-windows-mime;value=\"BoreAnalystTraceData\"");
        QTest::newRow("other format") << QStringLiteral("application/octet-stream");
    }

    void pasteReadsTheBlockUnderEitherName()
    {
        QFETCH(QString, format);
        const bool known = format != QStringLiteral("application/octet-stream");
        auto source = MakeTwoTraceDocument();
        CollectingMessageSink sink;
        const CTrace* traces[] = {&source->Trace(0)};
        const auto block = CopyTraces(traces, sink);
        QVERIFY(block);
        auto* data = new QMimeData;
        data->setData(format, QByteArray(reinterpret_cast<const char*>(block->data()),
                                         static_cast<qsizetype>(block->size())));
        QApplication::clipboard()->setMimeData(data);

        CMainFrame frame(RecordingServices(sink));
        CDocumentWindow* target = frame.NewDocument();
        QCOMPARE(FindAction(frame, QStringLiteral("&Paste"))->isEnabled(), known);
        QCOMPARE(frame.PasteClipboardTraces(), known);
        QCOMPARE(target->Document().TraceCount(), std::size_t(known ? 1 : 0));
        if (known) QVERIFY(Samples(target->Document(), 0) == Samples(*source, 0));
        QVERIFY(sink.messages.empty());
    }

    void pasteOfATimeTraceIntoADepthDocumentAsks_data()
    {
        QTest::addColumn<bool>("answer");
        QTest::newRow("No keeps the trace as pasted") << false;
        QTest::newRow("Yes needs a Time trace") << true;
    }

    void pasteOfATimeTraceIntoADepthDocumentAsks()
    {
        QFETCH(bool, answer);
        QApplication::clipboard()->clear();
        CollectingMessageSink sink;
        QStringList questions;
        ShellServices services = RecordingServices(sink);
        services.askYesNo = [&](const QString& question) {
            questions << question;
            return answer;
        };
        CMainFrame frame(services);
        auto timeDoc = std::make_unique<CBoreAnalystDoc>();
        CTrace& timed = AddLineTrace(*timeDoc, "TEMP", "DEG C", {{1.0f, 20.0f}, {2.0f, 21.0f}});
        timed.SetDepthUnit(kTimeSeconds);
        CDocumentWindow* source = frame.AddDocument(std::move(timeDoc));
        source->View().SelectTrace(&source->Document().Trace(0), false);
        QVERIFY(frame.CopySelectedTraces());

        CDocumentWindow* target = frame.AddDocument(MakeTwoTraceDocument());
        QVERIFY(frame.PasteClipboardTraces());
        QCOMPARE(questions, QStringList{QString::fromUtf8(kSyncWithTimeQuestion.data(),
                                                          static_cast<qsizetype>(kSyncWithTimeQuestion.size()))});
        const CBoreAnalystDoc& doc = target->Document();
        QCOMPARE(doc.TraceCount(), std::size_t(3));
        // Without a "Time" trace there is nothing to re-index through, whatever the answer.
        QCOMPARE(doc.Trace(2).DepthUnit(), std::int32_t(kTimeSeconds));
        QVERIFY(Samples(doc, 2) == Samples(source->Document(), 0));
        const QStringList expectedMessages =
            answer ? QStringList{QStringLiteral("Error: No trace named \"Time\" found for syncronization.")}
                   : QStringList{};
        QCOMPARE(Texts(sink), expectedMessages);
    }

    void closingAModifiedDocumentAsks_data()
    {
        QTest::addColumn<int>("answer");
        QTest::addColumn<bool>("closed");
        QTest::addColumn<bool>("saved");
        QTest::newRow("cancel") << int(QMessageBox::Cancel) << false << false;
        QTest::newRow("discard") << int(QMessageBox::Discard) << true << false;
        QTest::newRow("save") << int(QMessageBox::Save) << true << true;
    }

    void closingAModifiedDocumentAsks()
    {
        QFETCH(int, answer);
        QFETCH(bool, closed);
        QFETCH(bool, saved);
        TempDir dir;
        CollectingMessageSink sink;
        QStringList asked;
        ShellServices services = RecordingServices(sink);
        services.askSaveChanges = [&](const QString& title) {
            asked << title;
            return QMessageBox::StandardButton(answer);
        };
        services.chooseFile = [&dir](const FileDialogRequest&) { return ToQString(dir.Path("kept.bal")); };
        CMainFrame frame(services);
        CDocumentWindow* window = frame.AddDocument(MakeTwoTraceDocument());
        MakeUnsavedChange(window->Document());
        window->close();
        FlushDeletes();
        QCOMPARE(asked, QStringList{QStringLiteral("BoreAnalyst1")});
        QCOMPARE(frame.DocumentWindows().isEmpty(), closed);
        QCOMPARE(std::filesystem::exists(dir.Path("kept.bal")), saved);
    }

    void unmodifiedDocumentClosesWithoutAsking()
    {
        CollectingMessageSink sink;
        ShellServices services = RecordingServices(sink);
        int asked = 0;
        services.askSaveChanges = [&asked](const QString&) {
            ++asked;
            return QMessageBox::Cancel;
        };
        CMainFrame frame(services);
        frame.AddDocument(MakeTwoTraceDocument())->close();
        FlushDeletes();
        QCOMPARE(asked, 0);
        QVERIFY(frame.DocumentWindows().isEmpty());
    }

    void zoomStepsThroughThePlotScales()
    {
        CollectingMessageSink sink;
        CMainFrame frame(RecordingServices(sink));
        CDocumentWindow* window = frame.AddDocument(MakeTwoTraceDocument());
        QCOMPARE(window->View().VerticalScale(), 10.0f);
        QVERIFY(frame.ZoomIn());
        QCOMPARE(window->View().VerticalScale(), 5.0f);
        QVERIFY(frame.ZoomOut());
        QVERIFY(frame.ZoomOut());
        QCOMPARE(window->View().VerticalScale(), 20.0f);
        while (frame.ZoomIn()) {
        }
        QCOMPARE(window->View().VerticalScale(), 0.5f);
        frame.GoToDepth(104.5);
        QCOMPARE(window->View().TopDepth(), 104.5f);
    }

    void statusBarReadsDepthAndValueUnderTheMouse()
    {
        CollectingMessageSink sink;
        CMainFrame frame(RecordingServices(sink));
        CDocumentWindow* window = frame.AddDocument(MakeTwoTraceDocument());
        frame.show();
        CLogPlotView& view = window->View();
        view.SetTopDepth(100.0f);
        CBoreAnalystDoc& doc = window->Document();
        view.SelectTrace(&doc.Trace(0), false);

        const CLogPlotRenderer renderer;
        const PlotViewport vp = view.Viewport();
        // A point in the left track at 105 m, where GR has data, and one above the tracks.
        const int y = static_cast<int>(std::lround(renderer.YAtDepth(doc, vp, 105.0)));
        QPoint inTrack(-1, -1);
        for (int x = 0; x < vp.pixelSize.width() && inTrack.x() < 0; x += 2) {
            if (renderer.TrackAt(doc, vp, QPoint(x, y)) == 0) inTrack = QPoint(x, y);
        }
        QVERIFY(inTrack.x() >= 0);
        const QPoint inHeader(inTrack.x(), 2);
        QCOMPARE(renderer.TrackAt(doc, vp, inHeader), -1);

        auto moveTo = [&view](QPoint p) {
            QMouseEvent move(QEvent::MouseMove, QPointF(p), view.viewport()->mapToGlobal(QPointF(p)), Qt::NoButton,
                             Qt::NoButton, Qt::NoModifier);
            QCoreApplication::sendEvent(view.viewport(), &move);
        };
        moveTo(inTrack);
        const double depth = renderer.DepthAtY(doc, vp, inTrack.y());
        QCOMPARE(frame.DepthReadout(), QString::asprintf("D: %8.3f", depth));
        const float value = static_cast<const CLineTrace&>(doc.Trace(0)).ValueAt(static_cast<float>(depth));
        QVERIFY(!IsNullSample(value));
        QCOMPARE(frame.ValueReadout(), QString::asprintf("V: %8.3f", double(value)));
        const double depthPerPixel = renderer.DepthAtY(doc, vp, y + 1) - renderer.DepthAtY(doc, vp, y);
        QVERIFY(std::abs(depth - 105.0) <= depthPerPixel);

        moveTo(inHeader);
        QCOMPARE(frame.DepthReadout(), QString());
        QCOMPARE(frame.ValueReadout(), QString());
    }

    void readoutTextsUseTheFixedWidthFormat_data()
    {
        QTest::addColumn<double>("depth");
        QTest::addColumn<QString>("depthText");
        QTest::newRow("short") << 5.0 << "D:    5.000";
        QTest::newRow("rounded") << 1234.56789 << "D: 1234.568";
        QTest::newRow("wide") << -12345.5 << "D: -12345.500";
    }

    void readoutTextsUseTheFixedWidthFormat()
    {
        QFETCH(double, depth);
        QFETCH(QString, depthText);
        QCOMPARE(DepthReadoutText({depth, 2.5f}), depthText);
        QCOMPARE(ValueReadoutText({depth, 2.5f}), QStringLiteral("V:    2.500"));
        QCOMPARE(ValueReadoutText({depth, std::nullopt}), QString());
        QCOMPARE(DepthReadoutText({}), QString());
    }
};

QTEST_MAIN(MainFrameTest)
#include "MainFrameTest.moc"
