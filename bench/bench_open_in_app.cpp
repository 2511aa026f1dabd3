// Measures what a user waits for when opening a large document in the desktop
// application: from choosing the file to its log plot on screen, i.e. reading the
// document, making its window and painting the first frame. The document holds 10 line
// traces of 1,000,000 samples each; the main window is 1200 x 1000 pixels. Runs on the
// offscreen platform when there is no display. Prints figures only.
//
//   bench_open_in_app [--runs N] [--dir DIRECTORY]     (default 5 runs, at least 3)

#include "BenchCurves.h"
#include "BenchSupport.h"
#include "BenchTiming.h"

#include "app/DocumentWindow.h"
#include "app/MainFrame.h"
#include "base/FileIO.h"
#include "model/BoreAnalystDoc.h"
#include "view/LogPlotView.h"

#include <QApplication>
#include <QImage>
#include <QMdiArea>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>

namespace {

constexpr std::size_t kTraceCount = 10;
constexpr std::size_t kSamplesPerTrace = 1'000'000;

constexpr ba::bench::Program kProgram{"bench_open_in_app", "[--runs N] [--dir DIRECTORY]", 5, 3};

std::filesystem::path WriteLargeDocument(const std::filesystem::path& folder)
{
    ba::CBoreAnalystDoc doc;
    for (std::size_t t = 0; t < kTraceCount; ++t) {
        auto trace = ba::bench::MakeGammaRayTrace("CURVE " + std::to_string(t + 1), kSamplesPerTrace, 100.0, 0.01, t);
        trace->SetTrackIndex(static_cast<std::int32_t>(t % 4));
        doc.AddTrace(std::move(trace));
    }
    const std::filesystem::path file = folder / "large.bal";
    ba::CollectingMessageSink sink;
    if (doc.OnSaveDocument(file, sink) != ba::SaveOutcome::Written) {
        throw std::runtime_error("cannot write " + file.string() +
                                 (sink.messages.empty() ? "" : ": " + sink.messages.front().text));
    }
    return file;
}

} // namespace

int main(int argc, char* argv[])
{
    if (qEnvironmentVariableIsEmpty("DISPLAY") && qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    const ba::bench::CommonOptions options = ba::bench::ParseOptions(kProgram, argc, argv);
    const int runs = options.runs;
    return ba::bench::RunMeasurements(kProgram, [&] {
    const ba::bench::ScratchDirectory folder(options.scratchParent, kProgram);
    const std::filesystem::path file = WriteLargeDocument(folder.Path());
    std::printf("%zu line traces x %zu samples, %.1f MB document, main window 1200 x 1000 px, %d runs\n",
                kTraceCount, kSamplesPerTrace, static_cast<double>(std::filesystem::file_size(file)) / 1e6, runs);

    ba::CMainFrame frame;
    frame.resize(1200, 1000);
    frame.show();
    const QString path = QString::fromStdString(file.string());
    const auto stats = ba::bench::TimeRuns(
        runs,
        [&] {
            ba::CDocumentWindow* window = frame.OpenDocumentFile(path);
            if (window == nullptr) return QImage();
            window->showMaximized();
            // grab() paints the view now, as the first expose would.
            QImage shown = window->View().grab().toImage();
            window->close();
            QApplication::processEvents();
            return shown;
        },
        [](const QImage& shown) {
            if (shown.isNull() || shown.height() < 100) {
                std::fprintf(stderr, "error: the document was not shown\n");
                std::exit(1);
            }
        });
    std::printf("open and show, 10 x 1M samples    median %8.1f ms   min %8.1f ms   max %8.1f ms\n",
                stats.median * 1e3, stats.minimum * 1e3, stats.maximum * 1e3);
    });
}
