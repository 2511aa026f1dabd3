#pragma once
// The main frame of the desktop application: the document area holding one sub-window
// per open document, the menus, the toolbar, the status bar with the depth and value
// under the mouse, the recent-file list, and drag-and-drop of document and LAS files.
//
// Every command has a method that takes its file name, so the same work runs from a
// menu (after a file dialog), from the command line, from a drop, and from tests.

#include "app/ShellServices.h"
#include "utilities/TraceUtilityForms.h"

#include <QMainWindow>
#include <QStringList>

#include <array>
#include <filesystem>
#include <memory>
#include <string_view>

class QAction;
class QDockWidget;
class QLabel;
class QMdiArea;
class QMenu;
class QPrinter;

namespace ba {

class CBoreAnalystDoc;
class CDocumentWindow;
class CCoherenceMapView;
class CHistoryPanel;
class CJobRunner;
class CMessageBoxSink;
class CTrace;

inline constexpr char kSettingsOrganisation[] = "Quartzline Geodata";
inline constexpr char kSettingsApplication[] = "BoreAnalyst";

class CMainFrame final : public QMainWindow {
    Q_OBJECT
public:
    explicit CMainFrame(ShellServices services = {}, QWidget* parent = nullptr);
    ~CMainFrame() override;

    IMessageSink& Sink() { return *m_sink; }
    QMdiArea* DocumentArea() const { return m_area; }
    CDocumentWindow* ActiveDocumentWindow() const;
    QList<CDocumentWindow*> DocumentWindows() const;

    // Status bar fields.
    QString DepthReadout() const;
    QString ValueReadout() const;

    QStringList RecentFiles() const;

    // --- File
    CDocumentWindow* NewDocument();
    CDocumentWindow* AddDocument(std::unique_ptr<CBoreAnalystDoc> doc);
    // Opens a ".bal" file, or brings its window forward when it is open already. Null
    // when the file cannot be read (the reason is reported).
    CDocumentWindow* OpenDocumentFile(const QString& path);
    // A ".las" or ".rd" (raw-data) file is imported into a new document; anything else is
    // opened as a document.
    CDocumentWindow* OpenOrImport(const QString& path);
    // Save to the document's own file, or ask for one when it has none yet.
    bool SaveDocument(CDocumentWindow& window);
    bool SaveDocumentAs(CDocumentWindow& window, const QString& path);
    // Imports into the active document, or into a new one when none is open.
    bool ImportLasFile(const QString& path);
    // Imports the sonic waveforms of a raw-data file into the active document, or into a
    // new one when none is open, as a job under the progress dialog, whose Stop keeps what
    // was read. Returns when the job has ended: true when traces were added.
    bool ImportRawDataFile(const QString& path);
    bool ExportLasFile(const QString& path);
    bool ExportTextFile(const QString& path);
    // Writes the one image trace selected in the active view.
    bool ExportImageFile(const QString& path);
    bool ExportWellCadFile(const QString& path);
    // ".pdf" gives a PDF page, anything else a PNG image.
    bool ExportPlotFile(const QString& path);
    void PrintTo(QPrinter& printer);

    // --- Edit, View, Process
    // Undo and redo the active document's newest change; false when there is none.
    bool UndoChange();
    bool RedoChange();
    CHistoryPanel& HistoryPanel() const { return *m_history; }
    // Runs the long jobs (raw-data import, sonic processing) one at a time.
    CJobRunner& Jobs() const { return *m_jobs; }
    // The Edit menu's texts: "Undo <what>" / "Redo <what>".
    QString UndoText() const;
    QString RedoText() const;
    // Removes the selected traces as one change described as `what` ("Delete" when empty).
    bool DeleteSelectedTraces(const QString& what = QString());
    // Puts the selected traces of the active document on the clipboard, in document order.
    bool CopySelectedTraces();
    // Copies the selected traces, then deletes them; nothing is deleted when the copy fails.
    bool CutSelectedTraces();
    // Pastes the clipboard's traces into the active document; true when any were added.
    bool PasteClipboardTraces();
    bool ZoomIn();
    bool ZoomOut();
    void GoToDepth(double depth);
    // Opens the property sheet of `trace` in the active document; true when OK changed it.
    bool EditTraceProperties(CTrace& trace);
    bool ConvertUnits();
    // The spectral processing dialog over the active document; its settings are kept in
    // the platform's settings store.
    bool ProcessSpectra();
    // The mechanical properties dialog over the active document; true when OK added traces.
    bool ComputeMechanicalProperties();
    // Process > Sonic Velocity: the dialog, then its job under the progress dialog; returns
    // when the job has ended (true when it ran).
    bool ComputeSonicVelocities();
    // The QC view of the sonic velocities (View > Coherence Map), hidden until asked for.
    CCoherenceMapView& CoherenceView() const { return *m_coherenceView; }
    QDockWidget& CoherenceDock() const { return *m_coherenceDock; }
    // The common-logs dialog over the active document; true when OK added the derived log.
    bool DeriveCommonLog();
    // The formula-log dialog over the active document; true when OK added the computed log.
    bool DeriveFormulaLog();
    // The dialog of a trace utility over the active document, starting from the first
    // trace selected in its view; true when OK applied the utility's change.
    bool RunTraceUtility(TraceUtility utility);

    // The default file name of a save dialog for the active document: its title and `suffix`.
    QString DefaultFileName(const QString& suffix) const;

protected:
    void closeEvent(QCloseEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    void CreateActions();
    void CreateMenus();
    void UpdateActions();
    void UpdateRecentFilesMenu();
    void AddRecentFile(const QString& path);
    bool ConfirmClose(CDocumentWindow& window);
    bool AskYesNo(const QString& question);
    QString ChooseFile(const FileDialogRequest& request);
    const ILicenceCheck& Licence() const;
    void ShowReadout(const QString& depth, const QString& value);
    // Follows the cursor of `window`'s log plot in the coherence map, when it is shown.
    void ShowCoherenceAt(CDocumentWindow& window, double depth);

    // Menu handlers: ask for a file, then run the command.
    void OnOpen();
    void OnSave();
    void OnSaveAs();
    void OnImportLas();
    void OnImportRawData();
    void OnExportImage();
    void OnExportLas();
    void OnExportText();
    void OnExportWellCad();
    void OnExportPlot();
    void OnPrint();
    void OnPrintPreview();
    void OnGoToDepth();
    void OnAbout();

    ShellServices m_services;
    std::unique_ptr<CMessageBoxSink> m_boxSink;
    IMessageSink* m_sink = nullptr;
    QMdiArea* m_area = nullptr;
    QLabel* m_depthLabel = nullptr;
    QLabel* m_valueLabel = nullptr;
    QMenu* m_recentMenu = nullptr;
    CHistoryPanel* m_history = nullptr;
    CJobRunner* m_jobs = nullptr;
    QDockWidget* m_coherenceDock = nullptr;
    CCoherenceMapView* m_coherenceView = nullptr;
    int m_untitledCount = 0;

    struct Actions {
        QAction* newDoc = nullptr;
        QAction* open = nullptr;
        QAction* save = nullptr;
        QAction* saveAs = nullptr;
        QAction* importLas = nullptr;
        QAction* importRawData = nullptr;
        QAction* exportImage = nullptr;
        QAction* exportLas = nullptr;
        QAction* exportText = nullptr;
        QAction* exportWellCad = nullptr;
        QAction* exportPlot = nullptr;
        QAction* print = nullptr;
        QAction* printPreview = nullptr;
        QAction* exit = nullptr;
        QAction* undo = nullptr;
        QAction* redo = nullptr;
        QAction* showHistory = nullptr;
        QAction* cut = nullptr;
        QAction* copy = nullptr;
        QAction* paste = nullptr;
        QAction* deleteTrace = nullptr;
        QAction* zoomIn = nullptr;
        QAction* zoomOut = nullptr;
        QAction* goToDepth = nullptr;
        QAction* unitConversion = nullptr;
        QAction* spectralProcessing = nullptr;
        QAction* mechanicalProperties = nullptr;
        QAction* sonicVelocity = nullptr;
        QAction* showCoherenceMap = nullptr;
        QAction* commonLogs = nullptr;
        QAction* formulaLog = nullptr;
        std::array<QAction*, kTraceUtilities.size()> traceUtilities{}; // in the order of kTraceUtilities
        QAction* about = nullptr;
    } m_actions;
};

// The file dialog filters and suffixes of the file commands.
namespace file_filters {
inline constexpr char kDocument[] = "BoreAnalyst Files (*.bal);;All Files (*.*)";
inline constexpr char kLasImport[] = "LAS Data Files (*.las);;All Files (*.*)";
inline constexpr char kLasExport[] = "Text Files (*.las);;All Files (*.*)";
inline constexpr char kText[] = "Text Files (*.txt);;All Files (*.*)";
inline constexpr char kWellCad[] = "WellCAD Log Files (*.wcl);;All Files (*.*)";
inline constexpr char kPlot[] = "PNG Images (*.png);;PDF Files (*.pdf)";
inline constexpr char kRawData[] = "Raw Data Files (*.rd);;All Files (*.*)";
} // namespace file_filters

// A filter in the "Description|patterns|...||" form of the core's file commands, in Qt's
// "Description (patterns);;..." form: the descriptions, which name their patterns.
QString QtFileFilter(std::string_view pipeFilter);

} // namespace ba
