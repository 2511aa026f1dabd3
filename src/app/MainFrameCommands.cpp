// The commands of the main frame's menus: file, edit, view, process and help.

#include "app/MainFrame.h"

#include "app/DocumentWindow.h"
#include "app/JobRunner.h"
#include "settings/SettingsStore.h"
#include "app/TraceClipboardBridge.h"
#include "base/LicenceCheck.h"
#include "io/Automation.h"
#include "io/ImageExport.h"
#include "io/LasExport.h"
#include "io/LasImport.h"
#include "io/TextExport.h"
#include "io/WellCadExport.h"
#include "model/DocumentChanges.h"
#include "model/LineTrace.h"
#include "model/SonicTrace.h"
#include "model/TraceClipboard.h"
#include "sonic/RawDataImportProcess.h"
#include "sonic/SonicDialogModel.h"
#include "view/CoherenceMapView.h"
#include "view/CommonLogsDlg.h"
#include "view/FormulaLogDlg.h"
#include "view/GoToDepthDlg.h"
#include "view/LogPlotView.h"
#include "view/MechanicalPropertiesDlg.h"
#include "view/PlotFileExport.h"
#include "view/SonicPropertiesDlg.h"
#include "view/SonicVelocityDlg.h"
#include "view/SpectralDlg.h"
#include "view/TracePropertiesDlg.h"
#include "view/TraceUtilityDlg.h"
#include "view/UnitConversionDlg.h"

#include <QApplication>
#include <QClipboard>
#include <QFileInfo>
#include <QMdiArea>
#include <QMessageBox>
#include <QPrintDialog>
#include <QPrintPreviewDialog>
#include <QDockWidget>
#include <QPointer>
#include <QPrinter>
#include <QStatusBar>

#include <algorithm>
#include <cmath>
#include <functional>
#include <optional>
#include <span>
#include <vector>

namespace ba {

namespace {

std::filesystem::path ToPath(const QString& path) { return std::filesystem::path(path.toStdU16String()); }

QString DepthUnitName(const CBoreAnalystDoc& doc)
{
    const std::int32_t code = doc.TraceCount() > 0 ? doc.Trace(0).DepthUnit() : kDepthMetres;
    switch (code) {
    case kDepthFeet: return QStringLiteral("ft");
    case kDepthMetres: return QStringLiteral("m");
    case kTimeSeconds: return QStringLiteral("s");
    case kTimeMinutes: return QStringLiteral("min");
    case kTimeHours: return QStringLiteral("h");
    case kTimeDays: return QStringLiteral("d");
    default: return QString();
    }
}

// Hands the core's paste questions to the main frame's asker.
class CFrameQuestion final : public IYesNoQuestion {
public:
    explicit CFrameQuestion(std::function<bool(const QString&)> ask) : m_ask(std::move(ask)) {}
    bool AskYesNo(const std::string& text) override { return m_ask(QString::fromStdString(text)); }

private:
    std::function<bool(const QString&)> m_ask;
};

// The progress dialog of a raw-data import counts in thousandths of the file.

// The selected traces of a window in document order, so that "the first image trace" is the
// first in the document, not the first clicked.
std::vector<const CTrace*> SelectedInDocumentOrder(CDocumentWindow& window)
{
    const CBoreAnalystDoc& doc = window.Document();
    const auto& selected = window.View().SelectedTraces();
    std::vector<const CTrace*> traces;
    for (std::size_t i = 0; i < doc.TraceCount(); ++i) {
        if (selected.count(&doc.Trace(i))) traces.push_back(&doc.Trace(i));
    }
    return traces;
}

} // namespace

QString QtFileFilter(std::string_view pipeFilter)
{
    QStringList descriptions;
    bool isDescription = true;
    for (const QString& part : QString::fromUtf8(pipeFilter.data(), qsizetype(pipeFilter.size())).split(u'|')) {
        if (part.isEmpty()) break; // the "||" that ends the list
        if (isDescription) descriptions << part;
        isDescription = !isDescription;
    }
    return descriptions.join(QStringLiteral(";;"));
}

QString CMainFrame::DefaultFileName(const QString& suffix) const
{
    CDocumentWindow* window = ActiveDocumentWindow();
    if (!window) return {};
    return QString::fromStdString(window->Document().DocumentTitle()) + suffix;
}

// --- File

CDocumentWindow* CMainFrame::OpenDocumentFile(const QString& path)
{
    const QString absolute = QFileInfo(path).absoluteFilePath();
    for (CDocumentWindow* window : DocumentWindows()) {
        const auto& own = window->Document().PathName();
        if (!own.empty() && QFileInfo(QString::fromStdU16String(own.u16string())).absoluteFilePath() == absolute) {
            m_area->setActiveSubWindow(window);
            return window;
        }
    }
    std::unique_ptr<CBoreAnalystDoc> doc = OpenDocument(ToPath(path), *m_sink);
    if (!doc) return nullptr;
    AddRecentFile(path);
    return AddDocument(std::move(doc));
}

bool CMainFrame::SaveDocument(CDocumentWindow& window)
{
    const auto& own = window.Document().PathName();
    if (!own.empty()) return SaveDocumentAs(window, QString::fromStdU16String(own.u16string()));
    m_area->setActiveSubWindow(&window);
    const QString path = ChooseFile({FileDialogRequest::Mode::Save, tr("Save As"), file_filters::kDocument,
                                     DefaultFileName(QStringLiteral(".bal")), QStringLiteral("bal")});
    return !path.isEmpty() && SaveDocumentAs(window, path);
}

bool CMainFrame::SaveDocumentAs(CDocumentWindow& window, const QString& path)
{
    if (!SavingAllowed(Licence(), *m_sink)) {
        // A refusal counts as handled: the message has been shown; the document keeps its
        // unsaved changes but takes the name it was to be saved under.
        window.Document().SetPathName(ToPath(path));
        window.DocumentChanged();
        return true;
    }
    const SaveOutcome outcome = window.Document().OnSaveDocument(ToPath(path), *m_sink);
    window.DocumentChanged();
    if (outcome == SaveOutcome::Written) AddRecentFile(path);
    return outcome != SaveOutcome::Failed;
}

bool CMainFrame::ImportLasFile(const QString& path)
{
    CDocumentWindow* window = ActiveDocumentWindow();
    if (!window) window = NewDocument();
    QApplication::setOverrideCursor(Qt::WaitCursor);
    const LasImportResult result = ImportLas(window->Document(), ToPath(path), *m_sink);
    QApplication::restoreOverrideCursor();
    if (!result.imported) return false;
    window->View().SetTopDepth(result.viewTopDepth);
    return true;
}

bool CMainFrame::ImportRawDataFile(const QString& path)
{
    if (m_jobs->Running()) return false;
    auto source = OpenRawDataFile(ToPath(path), *m_sink);
    if (!source) return false;
    CDocumentWindow* window = ActiveDocumentWindow();
    const bool freshDocument = window == nullptr;
    if (freshDocument) window = NewDocument();
    const QPointer<CDocumentWindow> target = window;
    RawDataImportResult outcome;
    CBoreAnalystDoc& doc = window->Document();
    const bool emptyBefore = doc.TraceCount() == 0;
    m_jobs->Start(std::make_unique<CRawDataImportProcess>(doc, std::move(source), ToPath(path).string(), *m_sink,
                                                          [&outcome](const RawDataImportResult& r) { outcome = r; }));
    m_jobs->WaitUntilIdle();
    if (target == nullptr) return false;
    if (outcome.tracesAdded == 0) {
        // Nothing was added: the fresh document is not kept.
        if (freshDocument) target->close();
        return false;
    }
    // A document that held nothing shows the new traces from their top.
    if (emptyBefore) target->View().SetTopDepth(doc.Trace(doc.TraceCount() - outcome.tracesAdded).FirstDepth());
    UpdateActions();
    return true;
}

bool CMainFrame::ExportLasFile(const QString& path)
{
    CDocumentWindow* window = ActiveDocumentWindow();
    return window && ExportLas(window->Document(), ToPath(path), *m_sink);
}

bool CMainFrame::ExportTextFile(const QString& path)
{
    CDocumentWindow* window = ActiveDocumentWindow();
    return window && ExportText(window->Document(), ToPath(path), *m_sink);
}

bool CMainFrame::ExportImageFile(const QString& path)
{
    CDocumentWindow* window = ActiveDocumentWindow();
    if (!window) return false;
    const CImageTrace* image = ImageTraceToExport(SelectedInDocumentOrder(*window), *m_sink);
    if (!image) return false;
    QApplication::setOverrideCursor(Qt::WaitCursor);
    const bool exported = ExportImageAscii(*image, ToPath(path), *m_sink);
    QApplication::restoreOverrideCursor();
    return exported;
}

bool CMainFrame::ExportWellCadFile(const QString& path)
{
    CDocumentWindow* window = ActiveDocumentWindow();
    if (!window) return false;
    const auto factory = MakePlatformAutomationFactory();
    QApplication::setOverrideCursor(Qt::WaitCursor);
    const bool exported = ExportWellCad(window->Document(), path.toStdString(), *factory, *m_sink,
                                        [this](const std::string& text) {
                                            statusBar()->showMessage(QString::fromStdString(text));
                                            QApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
                                        });
    QApplication::restoreOverrideCursor();
    statusBar()->clearMessage();
    return exported;
}

bool CMainFrame::ExportPlotFile(const QString& path)
{
    CDocumentWindow* window = ActiveDocumentWindow();
    if (!window) return false;
    const std::optional<PlotFileFormat> format = PlotFileFormatOf(ToPath(path), *m_sink);
    if (!format) return false;
    const CBoreAnalystDoc& doc = window->Document();
    const CLogPlotView& view = window->View();
    const PlotFilePage page{view.TopDepth(), view.VerticalScale(), QSize(doc.PlotWidth(), doc.PlotHeight())};
    return WritePlotFile(doc, page, ToPath(path), *format, *m_sink);
}

void CMainFrame::PrintTo(QPrinter& printer)
{
    CDocumentWindow* window = ActiveDocumentWindow();
    if (!window) return;
    const CLogPlotView& view = window->View();
    PlotViewport viewport = view.Viewport();
    viewport.selected.clear();
    if (!PaintPlotPage(printer, window->Document(), viewport)) {
        m_sink->Error("Error: cannot print " + window->Document().DocumentTitle() + ": the printer refused the page.");
    }
}

// --- Edit, View, Process

bool CMainFrame::DeleteSelectedTraces(const QString& what)
{
    CDocumentWindow* window = ActiveDocumentWindow();
    if (!window || window->View().SelectedTraces().empty()) return false;
    CBoreAnalystDoc& doc = window->Document();
    const auto selected = window->View().SelectedTraces();
    std::vector<std::size_t> indices;
    for (std::size_t i = 0; i < doc.TraceCount(); ++i) {
        if (selected.count(&doc.Trace(i))) indices.push_back(i);
    }
    const std::string description = (what.isEmpty() ? tr("Delete") : what).toStdString() + " " +
                                    (indices.size() == 1 ? doc.Trace(indices.front()).Name()
                                                         : std::to_string(indices.size()) + " Traces");
    doc.Apply(MakeRemoveTracesChange(description, std::move(indices)));
    UpdateActions();
    return true;
}

// QClipboard has no failure to open, empty or set the clipboard (the platform layer keeps
// such errors to itself), so the copy and paste here report only what the core reports.
bool CMainFrame::CopySelectedTraces()
{
    CDocumentWindow* window = ActiveDocumentWindow();
    if (!window || window->View().SelectedTraces().empty()) return false;
    const CBoreAnalystDoc& doc = window->Document();
    const auto& selected = window->View().SelectedTraces();
    std::vector<const CTrace*> traces;
    for (std::size_t i = 0; i < doc.TraceCount(); ++i) {
        if (selected.count(&doc.Trace(i))) traces.push_back(&doc.Trace(i));
    }
    const auto block = CopyTraces(traces, *m_sink);
    if (!block) return false;
    QApplication::clipboard()->setMimeData(MakeTraceMimeData(*block));
    UpdateActions();
    return true;
}

bool CMainFrame::CutSelectedTraces() { return CopySelectedTraces() && DeleteSelectedTraces(tr("Cut")); }

bool CMainFrame::PasteClipboardTraces()
{
    CDocumentWindow* window = ActiveDocumentWindow();
    if (!window) return false;
    const std::optional<QByteArray> bytes = ReadTraceBlock(QApplication::clipboard()->mimeData());
    std::optional<std::span<const std::uint8_t>> block;
    if (bytes) {
        block = std::span(reinterpret_cast<const std::uint8_t*>(bytes->constData()),
                          static_cast<std::size_t>(bytes->size()));
    }
    CFrameQuestion question([this](const QString& text) { return AskYesNo(text); });
    const PasteResult result = PasteTraces(window->Document(), block, "the clipboard", question, *m_sink);
    // The view scrolls by depth, so it takes the top depth itself rather than a scroll position.
    if (result.freshDocument && result.topDepth) window->View().SetTopDepth(static_cast<float>(*result.topDepth));
    UpdateActions();
    return result.added > 0;
}

bool CMainFrame::ZoomIn()
{
    CDocumentWindow* window = ActiveDocumentWindow();
    return window && window->View().ZoomIn();
}

bool CMainFrame::ZoomOut()
{
    CDocumentWindow* window = ActiveDocumentWindow();
    return window && window->View().ZoomOut();
}

void CMainFrame::GoToDepth(double depth)
{
    if (CDocumentWindow* window = ActiveDocumentWindow()) window->View().SetTopDepth(static_cast<float>(depth));
}

bool CMainFrame::EditTraceProperties(CTrace& trace)
{
    CDocumentWindow* window = ActiveDocumentWindow();
    if (!window) return false;
    // Image traces have their own pages: the sonic one with the tool's acquisition text.
    if (auto* sonic = dynamic_cast<CSonicTrace*>(&trace)) {
        CSonicPropertiesDlg dialog(window->Document(), *sonic, *m_sink, this);
        return dialog.exec() == QDialog::Accepted;
    }
    if (auto* image = dynamic_cast<CImageTrace*>(&trace)) {
        CImagePropertiesDlg dialog(window->Document(), *image, *m_sink, this);
        return dialog.exec() == QDialog::Accepted;
    }
    CTracePropertiesDlg dialog(window->Document(), trace, *m_sink, this);
    return dialog.exec() == QDialog::Accepted;
}

bool CMainFrame::ConvertUnits()
{
    CDocumentWindow* window = ActiveDocumentWindow();
    if (!window) return false;
    CUnitConversionDlg dialog(window->Document(), *m_sink, this);
    return dialog.exec() == QDialog::Accepted;
}

bool CMainFrame::ProcessSpectra()
{
    CDocumentWindow* window = ActiveDocumentWindow();
    if (!window) return false;
    const std::unique_ptr<ISettingsStore> store = MakeDefaultSettingsStore();
    CSpectralDlg dialog(window->Document(), *store, *m_sink, this);
    return dialog.exec() == QDialog::Accepted;
}

bool CMainFrame::ComputeMechanicalProperties()
{
    CDocumentWindow* window = ActiveDocumentWindow();
    if (!window) return false;
    CMechanicalPropertiesDlg dialog(window->Document(), *m_sink, this);
    return dialog.exec() == QDialog::Accepted;
}

bool CMainFrame::ComputeSonicVelocities()
{
    CDocumentWindow* window = ActiveDocumentWindow();
    if (!window || m_jobs->Running()) return false;
    const std::unique_ptr<ISettingsStore> store = MakeDefaultSettingsStore();
    CSonicVelocityDlg dialog(window->Document(), *store, *m_sink, this);
    if (dialog.exec() != QDialog::Accepted || !dialog.JobSettings()) return false;
    const SonicVelocitySettings& settings = *dialog.JobSettings();
    window->SetSonicSettings(settings);
    if (m_coherenceView->SourceDocument() == &window->Document()) m_coherenceView->SetSource(window->Document(), settings);
    const QPointer<CDocumentWindow> target = window;
    if (!m_jobs->Start(std::make_unique<CSonicVelocityProcess>(window->Document(), settings))) return false;
    m_jobs->WaitUntilIdle();
    if (target != nullptr) UpdateActions();
    return true;
}

void CMainFrame::ShowCoherenceAt(CDocumentWindow& window, double depth)
{
    if (m_coherenceDock->isHidden() || m_jobs->Running()) return;
    CBoreAnalystDoc& doc = window.Document();
    if (m_coherenceView->SourceDocument() != &doc) {
        if (window.SonicSettings()) {
            m_coherenceView->SetSource(doc, *window.SonicSettings());
        } else {
            // Not run yet on this document: the dialog's remembered settings and its first
            // sonic traces.
            const std::unique_ptr<ISettingsStore> store = MakeDefaultSettingsStore();
            CSonicDialogModel model(*store);
            model.Open();
            model.ChooseFirstReceivers(doc);
            CollectingMessageSink quiet;
            const auto settings = model.JobSettings(doc, quiet);
            if (!settings) {
                m_coherenceView->ClearSource(QString::fromStdString(quiet.Texts().empty() ? std::string()
                                                                                           : quiet.Texts().front()) +
                                             tr("\nChoose the receivers in Process > Sonic Velocity."));
                return;
            }
            m_coherenceView->SetSource(doc, *settings);
        }
    }
    m_coherenceView->ShowDepth(depth);
}

bool CMainFrame::DeriveCommonLog()
{
    CDocumentWindow* window = ActiveDocumentWindow();
    if (!window) return false;
    CCommonLogsDlg dialog(window->Document(), *m_sink, this);
    return dialog.exec() == QDialog::Accepted;
}

bool CMainFrame::DeriveFormulaLog()
{
    CDocumentWindow* window = ActiveDocumentWindow();
    if (!window) return false;
    CFormulaLogDlg dialog(window->Document(), *m_sink, this);
    return dialog.exec() == QDialog::Accepted;
}

bool CMainFrame::RunTraceUtility(TraceUtility utility)
{
    CDocumentWindow* window = ActiveDocumentWindow();
    if (!window) return false;
    CBoreAnalystDoc& doc = window->Document();
    std::optional<std::size_t> selected;
    const std::vector<const CTrace*> traces = SelectedInDocumentOrder(*window);
    if (!traces.empty()) selected = static_cast<std::size_t>(doc.IndexOfTrace(*traces.front()));
    CTraceUtilityDlg dialog(doc, utility, *m_sink, selected, this);
    return dialog.exec() == QDialog::Accepted;
}

// --- Menu handlers

void CMainFrame::OnOpen()
{
    const QString path =
        ChooseFile({FileDialogRequest::Mode::Open, tr("Open"), file_filters::kDocument, QString(), QString()});
    if (!path.isEmpty()) OpenDocumentFile(path);
}

void CMainFrame::OnSave()
{
    if (CDocumentWindow* window = ActiveDocumentWindow()) SaveDocument(*window);
}

void CMainFrame::OnSaveAs()
{
    CDocumentWindow* window = ActiveDocumentWindow();
    if (!window) return;
    const QString path = ChooseFile({FileDialogRequest::Mode::Save, tr("Save As"), file_filters::kDocument,
                                     DefaultFileName(QStringLiteral(".bal")), QStringLiteral("bal")});
    if (!path.isEmpty()) SaveDocumentAs(*window, path);
}

void CMainFrame::OnImportLas()
{
    const QString path =
        ChooseFile({FileDialogRequest::Mode::Open, tr("Import LAS"), file_filters::kLasImport, QString(), QString()});
    if (!path.isEmpty()) ImportLasFile(path);
}

void CMainFrame::OnImportRawData()
{
    const QString path = ChooseFile(
        {FileDialogRequest::Mode::Open, tr("Import Raw Data"), file_filters::kRawData, QString(), QString()});
    if (!path.isEmpty()) ImportRawDataFile(path);
}

void CMainFrame::OnExportImage()
{
    CDocumentWindow* window = ActiveDocumentWindow();
    if (!window) return;
    // The selection is checked before the file is asked for, so a wrong selection costs no dialog.
    if (!ImageTraceToExport(SelectedInDocumentOrder(*window), *m_sink)) return;
    const QString path =
        ChooseFile({FileDialogRequest::Mode::Save, tr("Export Image"), QtFileFilter(kImageExportFileFilter),
                    QString::fromStdString(ImageExportDefaultFileName(window->Document())),
                    QString::fromUtf8(kImageExportExtension.data(), qsizetype(kImageExportExtension.size()))});
    if (!path.isEmpty()) ExportImageFile(path);
}

void CMainFrame::OnExportLas()
{
    const QString path = ChooseFile({FileDialogRequest::Mode::Save, tr("Export LAS"), file_filters::kLasExport,
                                     DefaultFileName(QStringLiteral(".las")), QStringLiteral("las")});
    if (!path.isEmpty()) ExportLasFile(path);
}

void CMainFrame::OnExportText()
{
    const QString path = ChooseFile({FileDialogRequest::Mode::Save, tr("Export Text"), file_filters::kText,
                                     DefaultFileName(QStringLiteral(".txt")), QStringLiteral("txt")});
    if (!path.isEmpty()) ExportTextFile(path);
}

void CMainFrame::OnExportWellCad()
{
    const QString path = ChooseFile({FileDialogRequest::Mode::Save, tr("Export WellCAD"), file_filters::kWellCad,
                                     DefaultFileName(QStringLiteral(".wcl")), QStringLiteral("wcl")});
    if (!path.isEmpty()) ExportWellCadFile(path);
}

void CMainFrame::OnExportPlot()
{
    const QString path = ChooseFile({FileDialogRequest::Mode::Save, tr("Export Plot"), file_filters::kPlot,
                                     DefaultFileName(QStringLiteral(".png")), QStringLiteral("png")});
    if (!path.isEmpty()) ExportPlotFile(path);
}

void CMainFrame::OnPrint()
{
    if (!ActiveDocumentWindow()) return;
    QPrinter printer(QPrinter::HighResolution);
    QPrintDialog dialog(&printer, this);
    if (dialog.exec() == QDialog::Accepted) PrintTo(printer);
}

void CMainFrame::OnPrintPreview()
{
    if (!ActiveDocumentWindow()) return;
    QPrinter printer(QPrinter::HighResolution);
    QPrintPreviewDialog preview(&printer, this);
    connect(&preview, &QPrintPreviewDialog::paintRequested, this, [this](QPrinter* p) { PrintTo(*p); });
    preview.exec();
}

void CMainFrame::OnGoToDepth()
{
    CDocumentWindow* window = ActiveDocumentWindow();
    if (!window) return;
    CGoToDepthDlg dialog(window->View().TopDepth(), DepthUnitName(window->Document()), this);
    if (dialog.exec() == QDialog::Accepted) GoToDepth(dialog.Depth());
}

void CMainFrame::OnAbout()
{
    QMessageBox::about(this, tr("About BoreAnalyst"),
                       tr("<p><b>BoreAnalyst</b> version %1</p>"
                          "<p>Processing, interpretation and plotting of borehole geophysical logs.</p>"
                          "<p>Quartzline Geodata</p>")
                           .arg(QStringLiteral(BA_VERSION)));
}

} // namespace ba
