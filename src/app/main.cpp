// Start-up of the desktop application: one main frame, then the document named on the
// command line or a new one. Without a display the program cannot show windows; it then
// says so, or, given --demo-png, draws the named document's log plot into a PNG file.

#include "app/DocumentWindow.h"
#include "app/MainFrame.h"
#include "io/LasImport.h"
#include "model/BoreAnalystDoc.h"
#include "view/LogPlotView.h"
#include "view/PlotFileExport.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QFileInfo>
#include <QGuiApplication>

#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <optional>

namespace {

// No X server and no Wayland compositor: fall back to the offscreen platform rather
// than letting Qt abort while it looks for a display.
void ChooseOffscreenWithoutDisplay()
{
#if defined(Q_OS_UNIX) && !defined(Q_OS_MACOS)
    const bool haveDisplay = !qEnvironmentVariableIsEmpty("DISPLAY") || !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
    if (!haveDisplay && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
#endif
}

class StderrSink final : public ba::IMessageSink {
public:
    void Report(const ba::Message& message) override { std::cerr << message.text << '\n'; }
};

// Reads a ".bal" document, or imports a ".las" file into a new one.
std::unique_ptr<ba::CBoreAnalystDoc> LoadForDemo(const QString& path, ba::IMessageSink& sink)
{
    const std::filesystem::path file(path.toStdU16String());
    if (QFileInfo(path).suffix().compare(QLatin1String("las"), Qt::CaseInsensitive) != 0) {
        return ba::OpenDocument(file, sink);
    }
    auto doc = std::make_unique<ba::CBoreAnalystDoc>();
    if (!ba::ImportLas(*doc, file, sink).imported) return nullptr;
    return doc;
}

// Where a view starts: the depth at its top and its vertical scale, when given on the
// command line.
struct StartView {
    std::optional<float> topDepth;
    std::optional<float> verticalScale;
};

int RenderDemo(const QStringList& files, const QString& pngPath, const StartView& start)
{
    StderrSink sink;
    if (files.size() != 1) {
        std::cerr << "Error: --demo-png needs exactly one document or LAS file to draw.\n";
        return EXIT_FAILURE;
    }
    auto doc = LoadForDemo(files.constFirst(), sink);
    if (!doc) return EXIT_FAILURE;
    const ba::PlotFilePage page{start.topDepth.value_or(ba::LasViewTopDepth(*doc)),
                                start.verticalScale.value_or(doc->VerticalScale()),
                                QSize(doc->PlotWidth(), doc->PlotHeight())};
    const std::filesystem::path png(pngPath.toStdU16String());
    if (!ba::WritePlotFile(*doc, page, png, ba::PlotFileFormat::Png, sink)) return EXIT_FAILURE;
    std::cout << "No display available: wrote the log plot of " << files.constFirst().toStdString() << " to "
              << pngPath.toStdString() << '\n';
    return EXIT_SUCCESS;
}

// Reads a number option into `value`; false, with a message, when it is not a number in
// [lowest, highest].
bool ReadNumberOption(const QCommandLineParser& parser, const QCommandLineOption& option, float lowest,
                      float highest, std::optional<float>& value)
{
    if (!parser.isSet(option)) return true;
    bool ok = false;
    const float number = parser.value(option).toFloat(&ok);
    if (!ok || !(number >= lowest && number <= highest)) {
        std::cerr << "Error: --" << option.names().constFirst().toStdString() << ": \""
                  << parser.value(option).toStdString() << "\" is not a number from " << lowest << " to " << highest
                  << ".\n";
        return false;
    }
    value = number;
    return true;
}

} // namespace

int main(int argc, char* argv[])
{
    ChooseOffscreenWithoutDisplay();
    QApplication app(argc, argv);
    QApplication::setOrganizationName(ba::kSettingsOrganisation);
    QApplication::setApplicationName(ba::kSettingsApplication);
    QApplication::setApplicationDisplayName(QStringLiteral("BoreAnalyst"));
    QApplication::setApplicationVersion(QStringLiteral(BA_VERSION));

    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Borehole geophysical log processing and plotting."));
    parser.addHelpOption();
    parser.addVersionOption();
    const QCommandLineOption demoPng(QStringLiteral("demo-png"),
                                     QStringLiteral("Without a display, draw the log plot of FILE into PATH."),
                                     QStringLiteral("PATH"));
    parser.addOption(demoPng);
    const QCommandLineOption topOption(QStringLiteral("top"),
                                       QStringLiteral("Show the first document from depth D (display units) down."),
                                       QStringLiteral("D"));
    const QCommandLineOption scaleOption(
        QStringLiteral("scale"), QStringLiteral("Show the first document at S depth units per centimetre."),
        QStringLiteral("S"));
    parser.addOption(topOption);
    parser.addOption(scaleOption);
    parser.addPositionalArgument(QStringLiteral("FILE"), QStringLiteral("A document (.bal) or LAS file to open."),
                                 QStringLiteral("[FILE]"));
    parser.process(app);
    const QStringList files = parser.positionalArguments();
    StartView start;
    if (!ReadNumberOption(parser, topOption, -1.0e7f, 1.0e7f, start.topDepth) ||
        !ReadNumberOption(parser, scaleOption, 0.001f, 1.0e6f, start.verticalScale))
        return EXIT_FAILURE;

    const bool offscreen = QGuiApplication::platformName() == QLatin1String("offscreen");
    if (parser.isSet(demoPng)) {
        if (!offscreen) {
            std::cerr << "Error: --demo-png draws only where no display is available (offscreen platform).\n";
            return EXIT_FAILURE;
        }
        return RenderDemo(files, parser.value(demoPng), start);
    }
    if (offscreen) {
        std::cerr << "No display available: BoreAnalyst cannot show its windows here. "
                     "Use --demo-png PATH to draw a document's log plot into a PNG file.\n";
        return EXIT_FAILURE;
    }

    ba::CMainFrame frame;
    frame.show();
    if (files.isEmpty()) {
        frame.NewDocument();
    } else {
        // --top and --scale place the first document's view; the others open as usual.
        for (qsizetype i = 0; i < files.size(); ++i) {
            ba::CDocumentWindow* window = frame.OpenOrImport(files[i]);
            if (window == nullptr || i > 0) continue;
            if (start.verticalScale) window->View().SetVerticalScale(*start.verticalScale);
            if (start.topDepth) window->View().SetTopDepth(*start.topDepth);
        }
    }
    return QApplication::exec();
}
