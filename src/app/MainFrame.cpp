#include "app/MainFrame.h"

#include "app/DocumentWindow.h"
#include "app/HistoryPanel.h"
#include "app/JobRunner.h"
#include "app/TraceClipboardBridge.h"
#include "view/CoherenceMapView.h"
#include "view/LogPlotView.h"
#include "view/MessageBoxSink.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QCloseEvent>
#include <QDockWidget>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QFileDialog>
#include <QFileInfo>
#include <QLabel>
#include <QMdiArea>
#include <QMenuBar>
#include <QMimeData>
#include <QSettings>
#include <QStatusBar>
#include <QStyle>
#include <QToolBar>

namespace ba {

namespace {

constexpr int kMaxRecentFiles = 8;
constexpr char kRecentFilesKey[] = "RecentFiles";

bool IsOpenableFile(const QString& path)
{
    const QString suffix = QFileInfo(path).suffix().toLower();
    return suffix == QLatin1String("bal") || suffix == QLatin1String("las");
}

} // namespace

CMainFrame::CMainFrame(ShellServices services, QWidget* parent)
    : QMainWindow(parent), m_services(std::move(services))
{
    if (m_services.sink) {
        m_sink = m_services.sink;
    } else {
        m_boxSink = std::make_unique<CMessageBoxSink>(this);
        m_sink = m_boxSink.get();
    }
    setWindowTitle(QStringLiteral("BoreAnalyst"));
    setAcceptDrops(true);

    m_area = new QMdiArea(this);
    m_area->setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    m_area->setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    setCentralWidget(m_area);
    connect(m_area, &QMdiArea::subWindowActivated, this, [this] { UpdateActions(); });

    m_depthLabel = new QLabel(this);
    m_depthLabel->setObjectName("depthReadout");
    m_valueLabel = new QLabel(this);
    m_valueLabel->setObjectName("valueReadout");
    const int readoutWidth = fontMetrics().horizontalAdvance(QStringLiteral("D: -0000.000")) + 8;
    m_depthLabel->setMinimumWidth(readoutWidth);
    m_valueLabel->setMinimumWidth(readoutWidth);
    statusBar()->addPermanentWidget(m_depthLabel);
    statusBar()->addPermanentWidget(m_valueLabel);

    m_history = new CHistoryPanel(this);
    m_jobs = new CJobRunner(*this);
    addDockWidget(Qt::RightDockWidgetArea, m_history);
    m_coherenceDock = new QDockWidget(tr("Coherence Map"), this);
    m_coherenceDock->setObjectName("coherenceDock");
    m_coherenceView = new CCoherenceMapView(m_coherenceDock);
    m_coherenceDock->setWidget(m_coherenceView);
    addDockWidget(Qt::RightDockWidgetArea, m_coherenceDock);
    m_coherenceDock->hide();

    CreateActions();
    CreateMenus();
    // Paste follows what the clipboard holds, whichever program put it there.
    connect(QApplication::clipboard(), &QClipboard::dataChanged, this, &CMainFrame::UpdateActions);
    UpdateRecentFilesMenu();
    UpdateActions();
    resize(1000, 800);
}

CMainFrame::~CMainFrame() = default;

CDocumentWindow* CMainFrame::ActiveDocumentWindow() const
{
    return qobject_cast<CDocumentWindow*>(m_area->activeSubWindow());
}

QList<CDocumentWindow*> CMainFrame::DocumentWindows() const
{
    QList<CDocumentWindow*> windows;
    for (QMdiSubWindow* sub : m_area->subWindowList()) {
        if (auto* window = qobject_cast<CDocumentWindow*>(sub)) windows.append(window);
    }
    return windows;
}

QString CMainFrame::DepthReadout() const { return m_depthLabel->text(); }
QString CMainFrame::ValueReadout() const { return m_valueLabel->text(); }

void CMainFrame::ShowReadout(const QString& depth, const QString& value)
{
    m_depthLabel->setText(depth);
    m_valueLabel->setText(value);
}

const ILicenceCheck& CMainFrame::Licence() const
{
    return m_services.licence ? *m_services.licence : DefaultLicenceCheck();
}

QString CMainFrame::ChooseFile(const FileDialogRequest& request)
{
    if (m_services.chooseFile) return m_services.chooseFile(request);
    QFileDialog dialog(this, request.caption, QString(), request.filter);
    if (request.mode == FileDialogRequest::Mode::Save) {
        dialog.setAcceptMode(QFileDialog::AcceptSave);
        dialog.setDefaultSuffix(request.defaultSuffix);
        dialog.selectFile(request.defaultName);
    } else {
        dialog.setFileMode(QFileDialog::ExistingFile);
    }
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return {};
    return dialog.selectedFiles().constFirst();
}

CDocumentWindow* CMainFrame::AddDocument(std::unique_ptr<CBoreAnalystDoc> doc)
{
    auto* window = new CDocumentWindow(std::move(doc));
    window->SetCloseGuard([this](CDocumentWindow& w) { return ConfirmClose(w); });
    CLogPlotView& view = window->View();
    connect(&view, &CLogPlotView::readoutChanged, this, &CMainFrame::ShowReadout);
    connect(&view, &CLogPlotView::cursorDepthChanged, this, [this, window](double depth) { ShowCoherenceAt(*window, depth); });
    connect(window, &QObject::destroyed, this, [this, doc = &window->Document()] {
        if (m_coherenceView->SourceDocument() == doc) m_coherenceView->ClearSource(tr("The document was closed."));
    });
    connect(&view, &CLogPlotView::selectionChanged, this, &CMainFrame::UpdateActions);
    connect(&view, &CLogPlotView::traceActivated, this, [this](CTrace* trace) { EditTraceProperties(*trace); });
    connect(window, &CDocumentWindow::documentChanged, this, [this] { UpdateActions(); });
    connect(window, &QObject::destroyed, this, [this] { UpdateActions(); });
    m_area->addSubWindow(window);
    window->show();
    m_area->setActiveSubWindow(window);
    UpdateActions();
    return window;
}

CDocumentWindow* CMainFrame::NewDocument()
{
    auto doc = std::make_unique<CBoreAnalystDoc>();
    // Further new documents are numbered on, as "BoreAnalyst2", "BoreAnalyst3", ...
    ++m_untitledCount;
    if (m_untitledCount > 1) doc->SetDocumentTitle("BoreAnalyst" + std::to_string(m_untitledCount));
    return AddDocument(std::move(doc));
}

CDocumentWindow* CMainFrame::OpenOrImport(const QString& path)
{
    const QString suffix = QFileInfo(path).suffix();
    const bool las = suffix.compare(QLatin1String("las"), Qt::CaseInsensitive) == 0;
    const bool rawData = suffix.compare(QLatin1String("rd"), Qt::CaseInsensitive) == 0;
    if (las || rawData) {
        CDocumentWindow* window = NewDocument();
        if (!(las ? ImportLasFile(path) : ImportRawDataFile(path))) {
            // Nothing was added: the fresh document is not kept.
            window->close();
            return nullptr;
        }
        return window;
    }
    return OpenDocumentFile(path);
}

bool CMainFrame::ConfirmClose(CDocumentWindow& window)
{
    if (!window.Document().IsModified()) return true;
    const QString title = QString::fromStdString(window.Document().DocumentTitle());
    QMessageBox::StandardButton answer;
    if (m_services.askSaveChanges) {
        answer = m_services.askSaveChanges(title);
    } else {
        answer = QMessageBox::question(this, QStringLiteral("BoreAnalyst"), tr("Save changes to %1?").arg(title),
                                       QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel,
                                       QMessageBox::Save);
    }
    if (answer == QMessageBox::Save) return SaveDocument(window);
    return answer == QMessageBox::Discard;
}

bool CMainFrame::AskYesNo(const QString& question)
{
    if (m_services.askYesNo) return m_services.askYesNo(question);
    QMessageBox box(QMessageBox::Warning, QStringLiteral("BoreAnalyst"), question,
                    QMessageBox::Yes | QMessageBox::No, this);
    return box.exec() == QMessageBox::Yes;
}

void CMainFrame::closeEvent(QCloseEvent* event)
{
    m_area->closeAllSubWindows();
    if (!m_area->subWindowList().isEmpty()) {
        event->ignore();
        return;
    }
    QMainWindow::closeEvent(event);
}

void CMainFrame::dragEnterEvent(QDragEnterEvent* event)
{
    const QMimeData* mime = event->mimeData();
    if (!mime->hasUrls()) return;
    for (const QUrl& url : mime->urls()) {
        if (url.isLocalFile() && IsOpenableFile(url.toLocalFile())) {
            event->acceptProposedAction();
            return;
        }
    }
}

void CMainFrame::dropEvent(QDropEvent* event)
{
    for (const QUrl& url : event->mimeData()->urls()) {
        if (url.isLocalFile() && IsOpenableFile(url.toLocalFile())) OpenOrImport(url.toLocalFile());
    }
    event->acceptProposedAction();
}

QStringList CMainFrame::RecentFiles() const
{
    return QSettings(kSettingsOrganisation, kSettingsApplication).value(kRecentFilesKey).toStringList();
}

void CMainFrame::AddRecentFile(const QString& path)
{
    const QString absolute = QFileInfo(path).absoluteFilePath();
    QStringList files = RecentFiles();
    files.removeAll(absolute);
    files.prepend(absolute);
    while (files.size() > kMaxRecentFiles) files.removeLast();
    QSettings(kSettingsOrganisation, kSettingsApplication).setValue(kRecentFilesKey, files);
    UpdateRecentFilesMenu();
}

void CMainFrame::UpdateRecentFilesMenu()
{
    m_recentMenu->clear();
    const QStringList files = RecentFiles();
    for (int i = 0; i < files.size(); ++i) {
        const QString path = files[i];
        QAction* action = m_recentMenu->addAction(QStringLiteral("&%1 %2").arg(i + 1).arg(QFileInfo(path).fileName()));
        action->setToolTip(path);
        connect(action, &QAction::triggered, this, [this, path] { OpenOrImport(path); });
    }
    m_recentMenu->setEnabled(!files.isEmpty());
}

void CMainFrame::CreateActions()
{
    auto make = [this](const QString& text, QKeySequence shortcut, QStyle::StandardPixmap icon, auto handler) {
        QAction* action = new QAction(text, this);
        if (!shortcut.isEmpty()) action->setShortcut(shortcut);
        if (icon != QStyle::SP_CustomBase) action->setIcon(style()->standardIcon(icon));
        connect(action, &QAction::triggered, this, handler);
        return action;
    };
    constexpr auto kNoIcon = QStyle::SP_CustomBase;
    auto& a = m_actions;
    a.newDoc = make(tr("&New"), QKeySequence::New, QStyle::SP_FileIcon, [this] { NewDocument(); });
    a.open = make(tr("&Open..."), QKeySequence::Open, QStyle::SP_DialogOpenButton, &CMainFrame::OnOpen);
    a.save = make(tr("&Save"), QKeySequence::Save, QStyle::SP_DialogSaveButton, &CMainFrame::OnSave);
    a.saveAs = make(tr("Save &As..."), QKeySequence::SaveAs, kNoIcon, &CMainFrame::OnSaveAs);
    a.importLas = make(tr("&Import LAS..."), QKeySequence(), kNoIcon, &CMainFrame::OnImportLas);
    a.importRawData = make(tr("Import &Raw Data..."), QKeySequence(), kNoIcon, &CMainFrame::OnImportRawData);
    a.exportImage = make(tr("Export &Image..."), QKeySequence(), kNoIcon, &CMainFrame::OnExportImage);
    a.exportLas = make(tr("Export &LAS..."), QKeySequence(), kNoIcon, &CMainFrame::OnExportLas);
    a.exportText = make(tr("Export &Text..."), QKeySequence(), kNoIcon, &CMainFrame::OnExportText);
    a.exportWellCad = make(tr("Export &WellCAD..."), QKeySequence(), kNoIcon, &CMainFrame::OnExportWellCad);
    a.exportPlot = make(tr("Export &Plot as PNG or PDF..."), QKeySequence(), kNoIcon, &CMainFrame::OnExportPlot);
    a.print = make(tr("&Print..."), QKeySequence::Print, kNoIcon, &CMainFrame::OnPrint);
    a.printPreview = make(tr("Print Pre&view..."), QKeySequence(), kNoIcon, &CMainFrame::OnPrintPreview);
    a.exit = make(tr("E&xit"), QKeySequence::Quit, kNoIcon, [this] { close(); });
    a.undo = make(tr("&Undo"), QKeySequence::Undo, kNoIcon, [this] { UndoChange(); });
    a.redo = make(tr("&Redo"), QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Z), kNoIcon, [this] { RedoChange(); });
    a.showHistory = m_history->toggleViewAction();
    a.showHistory->setText(tr("&History"));
    a.cut = make(tr("Cu&t"), QKeySequence::Cut, kNoIcon, [this] { CutSelectedTraces(); });
    a.copy = make(tr("&Copy"), QKeySequence::Copy, kNoIcon, [this] { CopySelectedTraces(); });
    a.paste = make(tr("&Paste"), QKeySequence::Paste, kNoIcon, [this] { PasteClipboardTraces(); });
    a.deleteTrace = make(tr("&Delete Trace"), QKeySequence::Delete, QStyle::SP_TrashIcon,
                         [this] { DeleteSelectedTraces(); });
    a.zoomIn = make(tr("Zoom &In"), QKeySequence::ZoomIn, QStyle::SP_ArrowUp, [this] { ZoomIn(); });
    a.zoomOut = make(tr("Zoom &Out"), QKeySequence::ZoomOut, QStyle::SP_ArrowDown, [this] { ZoomOut(); });
    a.goToDepth = make(tr("&Go to Depth..."), QKeySequence(Qt::CTRL | Qt::Key_G), kNoIcon, &CMainFrame::OnGoToDepth);
    a.unitConversion = make(tr("&Unit Conversion..."), QKeySequence(), kNoIcon, [this] { ConvertUnits(); });
    a.spectralProcessing =
        make(tr("&Spectral Processing..."), QKeySequence(), kNoIcon, [this] { ProcessSpectra(); });
    a.mechanicalProperties =
        make(tr("&Mechanical Properties..."), QKeySequence(), kNoIcon, [this] { ComputeMechanicalProperties(); });
    a.sonicVelocity = make(tr("&Sonic Velocity..."), QKeySequence(), kNoIcon, [this] { ComputeSonicVelocities(); });
    a.showCoherenceMap = m_coherenceDock->toggleViewAction();
    a.showCoherenceMap->setText(tr("&Coherence Map"));
    a.commonLogs = make(tr("&Common Logs..."), QKeySequence(), kNoIcon, [this] { DeriveCommonLog(); });
    a.formulaLog = make(tr("&Formula Log..."), QKeySequence(), kNoIcon, [this] { DeriveFormulaLog(); });
    // Edit > Trace Utilities, in the order of kTraceUtilities.
    constexpr std::array<const char*, kTraceUtilities.size()> kTraceUtilityTexts = {
        "Create...", "Edit...", "Depth Shift...", "Resample...", "Filter...",
        "Despike...", "Clip...", "Cut...",        "Splice..."};
    for (std::size_t i = 0; i < kTraceUtilities.size(); ++i) {
        const TraceUtility utility = kTraceUtilities[i];
        a.traceUtilities[i] =
            make(tr(kTraceUtilityTexts[i]), QKeySequence(), kNoIcon, [this, utility] { RunTraceUtility(utility); });
    }
    a.about = make(tr("&About BoreAnalyst..."), QKeySequence(), kNoIcon, &CMainFrame::OnAbout);
}

void CMainFrame::CreateMenus()
{
    auto& a = m_actions;
    QMenu* file = menuBar()->addMenu(tr("&File"));
    file->addActions({a.newDoc, a.open, a.save, a.saveAs});
    file->addSeparator();
    file->addActions({a.importLas, a.importRawData, a.exportLas, a.exportText, a.exportImage, a.exportWellCad,
                      a.exportPlot});
    file->addSeparator();
    file->addActions({a.print, a.printPreview});
    file->addSeparator();
    m_recentMenu = file->addMenu(tr("Recent &Files"));
    file->addSeparator();
    file->addAction(a.exit);

    QMenu* edit = menuBar()->addMenu(tr("&Edit"));
    edit->addActions({a.undo, a.redo, a.showHistory});
    edit->addSeparator();
    edit->addActions({a.cut, a.copy, a.paste});
    edit->addSeparator();
    edit->addAction(a.deleteTrace);
    edit->addSeparator();
    QMenu* utilities = edit->addMenu(tr("Trace Uti&lities"));
    for (QAction* action : a.traceUtilities) utilities->addAction(action);
    QMenu* view = menuBar()->addMenu(tr("&View"));
    view->addActions({a.zoomIn, a.zoomOut, a.goToDepth});
    view->addSeparator();
    view->addAction(a.showCoherenceMap);
    menuBar()->addMenu(tr("&Process"))
        ->addActions({a.unitConversion, a.spectralProcessing, a.mechanicalProperties, a.sonicVelocity, a.commonLogs,
                       a.formulaLog});
    menuBar()->addMenu(tr("&Help"))->addAction(a.about);

    QToolBar* tools = addToolBar(tr("Standard"));
    tools->setObjectName("standardToolBar");
    tools->addActions({a.newDoc, a.open, a.save});
    tools->addSeparator();
    tools->addActions({a.deleteTrace, a.zoomIn, a.zoomOut});
}

QString CMainFrame::UndoText() const
{
    CDocumentWindow* window = ActiveDocumentWindow();
    if (!window || !window->Document().CanUndo()) return tr("&Undo");
    return tr("&Undo %1").arg(QString::fromStdString(window->Document().History().UndoDescription()));
}

QString CMainFrame::RedoText() const
{
    CDocumentWindow* window = ActiveDocumentWindow();
    if (!window || !window->Document().CanRedo()) return tr("&Redo");
    return tr("&Redo %1").arg(QString::fromStdString(window->Document().History().RedoDescription()));
}

bool CMainFrame::UndoChange()
{
    CDocumentWindow* window = ActiveDocumentWindow();
    if (!window || !window->Document().CanUndo()) return false;
    window->Document().Undo();
    return true;
}

bool CMainFrame::RedoChange()
{
    CDocumentWindow* window = ActiveDocumentWindow();
    if (!window || !window->Document().CanRedo()) return false;
    window->Document().Redo();
    return true;
}

void CMainFrame::UpdateActions()
{
    CDocumentWindow* window = ActiveDocumentWindow();
    const bool hasDoc = window != nullptr;
    auto& a = m_actions;
    for (QAction* action : {a.save, a.saveAs, a.exportLas, a.exportText, a.exportImage, a.exportWellCad, a.exportPlot,
                            a.print, a.printPreview, a.zoomIn, a.zoomOut, a.goToDepth, a.unitConversion,
                            a.spectralProcessing, a.mechanicalProperties, a.sonicVelocity, a.commonLogs,
                            a.formulaLog}) {
        action->setEnabled(hasDoc);
    }
    for (QAction* action : a.traceUtilities) action->setEnabled(hasDoc);
    a.undo->setEnabled(hasDoc && window->Document().CanUndo());
    a.redo->setEnabled(hasDoc && window->Document().CanRedo());
    a.undo->setText(UndoText());
    a.redo->setText(RedoText());
    m_history->ShowDocument(hasDoc ? &window->Document() : nullptr);
    const bool hasSelection = hasDoc && !window->View().SelectedTraces().empty();
    for (QAction* action : {a.cut, a.copy, a.deleteTrace}) action->setEnabled(hasSelection);
    a.paste->setEnabled(hasDoc && HasTraceBlock(QApplication::clipboard()->mimeData()));
}

} // namespace ba
