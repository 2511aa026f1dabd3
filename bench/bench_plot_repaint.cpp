// Measures repainting a log plot of 10 line traces of 1,000,000 samples each into a view
// 1000 pixels high: the whole depth range at once, a zoomed window at the document's
// vertical scale, and scrolling (each repaint after moving the top down by 10 pixels).
// Also times the per-row reduction alone at the whole range. Prints figures only: speed
// is judged by a reader, never asserted.
//
//   bench_plot_repaint [--runs N]     (default 15, at least 3)

#include "BenchSupport.h"
#include "BenchTiming.h"

#include "model/BoreAnalystDoc.h"
#include "model/LineTrace.h"
#include "model/PlotDecimation.h"
#include "view/LogPlotRenderer.h"

#include <QGuiApplication>
#include <QImage>
#include <QPainter>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace {

using ba::bench::RunStats;
using ba::bench::TimeRuns;

constexpr std::size_t kTraceCount = 10;
constexpr std::size_t kSamplesPerTrace = 1'000'000;
constexpr float kFirstDepth = 100.0f; // metres
constexpr float kDepthStep = 0.01f;
constexpr int kViewWidth = 850;
constexpr int kViewHeight = 1000;
constexpr double kDotsPerCentimetre = 37.8;

// A gamma-ray-like curve: slow swings, beds and noise, with a short null stretch every
// 50,000 samples.
std::unique_ptr<ba::CLineTrace> MakeTrace(std::size_t index)
{
    auto trace = std::make_unique<ba::CLineTrace>(1, ba::kPenSolid, static_cast<std::int32_t>(index % 7), 0.0f,
                                                  150.0f, "CURVE " + std::to_string(index + 1), "API");
    trace->SetTrackIndex(static_cast<std::int32_t>(index % 4));
    std::mt19937 rng(static_cast<unsigned>(index + 1));
    std::normal_distribution<float> noise(0.0f, 6.0f);
    trace->StoredDepths().SetSize(kSamplesPerTrace);
    trace->Values().SetSize(kSamplesPerTrace);
    for (std::size_t i = 0; i < kSamplesPerTrace; ++i) {
        const double depth = kFirstDepth + kDepthStep * static_cast<double>(i);
        const double swing = 60.0 + 40.0 * std::sin(depth * 0.013 + static_cast<double>(index));
        const double bed = std::fmod(depth, 7.0) < 2.0 ? 25.0 : 0.0;
        const bool isNull = i % 50'000 < 20;
        trace->StoredDepths()[i] = static_cast<float>(depth);
        trace->Values()[i] = isNull ? ba::kNullValue : static_cast<float>(swing + bed) + noise(rng);
    }
    return trace;
}

void Report(const char* what, const RunStats& stats)
{
    std::printf("%-58s median %8.2f ms   min %8.2f ms   max %8.2f ms\n", what, stats.median * 1e3,
                stats.minimum * 1e3, stats.maximum * 1e3);
}

// Paints one frame; what it drew is checked after the clock stops.
QImage* Repaint(QImage& image, const ba::CBoreAnalystDoc& doc, const ba::PlotViewport& viewport)
{
    QPainter painter(&image);
    ba::CLogPlotRenderer().Paint(painter, doc, viewport);
    painter.end();
    return &image;
}

void CheckDrawn(const QImage* frame)
{
    const QImage& image = *frame;
    // The middle row of the left track must hold something besides white and grid grey.
    const int y = image.height() / 2;
    for (int x = 1; x < 249; ++x) {
        const QRgb pixel = image.pixel(x, y);
        if (qRed(pixel) != qGreen(pixel) || qGreen(pixel) != qBlue(pixel) || qRed(pixel) == 0) return;
    }
    std::fprintf(stderr, "bench_plot_repaint: the repaint drew no curve\n");
    std::exit(1);
}

constexpr ba::bench::Program kProgram{"bench_plot_repaint", "[--runs N]", 15, 3};

} // namespace

int main(int argc, char** argv)
{
    const int runs = ba::bench::ParseOptions(kProgram, argc, argv).runs;
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);

    ba::CBoreAnalystDoc doc;
    doc.Header().SetTitle("Benchmark well");
    for (std::size_t i = 0; i < kTraceCount; ++i) doc.AddTrace(MakeTrace(i));
    std::printf("%zu line traces x %zu samples, view %d x %d px, %d runs each\n", kTraceCount, kSamplesPerTrace,
                kViewWidth, kViewHeight, runs);

    QImage image(kViewWidth, kViewHeight, QImage::Format_RGB32);
    const ba::CLogPlotRenderer renderer;

    ba::PlotViewport zoomed;
    zoomed.pixelSize = QSize(kViewWidth, kViewHeight);
    zoomed.dotsPerCentimetre = kDotsPerCentimetre;
    zoomed.verticalScale = 10.0f;
    zoomed.topDepth = 5000.0f;

    // The whole range: the vertical scale that fits every sample into the track rows.
    ba::PlotViewport whole = zoomed;
    const ba::PlotLayout probe = renderer.Layout(doc, zoomed);
    const double span = kDepthStep * static_cast<double>(kSamplesPerTrace) + 1.0;
    whole.topDepth = kFirstDepth - 0.5f;
    whole.verticalScale = static_cast<float>(span * kDotsPerCentimetre / probe.rows);
    const ba::PlotLayout wholeLayout = renderer.Layout(doc, whole);
    std::printf("track area %d rows; whole range %.0f m at %.1f m/cm; zoomed %.0f m at %.0f m/cm\n",
                wholeLayout.rows, span, whole.verticalScale, probe.rows / probe.rowsPerDepth,
                zoomed.verticalScale);

    const auto checkFrame = [](const QImage* frame) { CheckDrawn(frame); };
    Report("repaint, whole depth range (about 1000 samples per row)",
           TimeRuns(runs, [&] { return Repaint(image, doc, whole); }, checkFrame));
    Report("repaint, zoomed window (about 4 samples per row)",
           TimeRuns(runs, [&] { return Repaint(image, doc, zoomed); }, checkFrame));

    ba::PlotViewport scrolling = zoomed;
    const double tenRows = 10.0 / probe.rowsPerDepth;
    Report("scroll: repaint after moving the top down by 10 px", TimeRuns(
                                                                   runs,
                                                                   [&] {
                                                                       scrolling.topDepth += static_cast<float>(tenRows);
                                                                       return Repaint(image, doc, scrolling);
                                                                   },
                                                                   checkFrame));

    // The same header, grid and labels with traces that hold no samples: what a frame
    // costs besides the curves.
    ba::CBoreAnalystDoc frameOnly;
    for (std::size_t i = 0; i < kTraceCount; ++i) {
        auto empty = std::make_unique<ba::CLineTrace>(1, ba::kPenSolid, 1, 0.0f, 150.0f, "CURVE", "API");
        empty->SetTrackIndex(static_cast<std::int32_t>(i % 4));
        frameOnly.AddTrace(std::move(empty));
    }
    Report("frame without curves (header, grid, depth labels)",
           TimeRuns(runs, [&] { return Repaint(image, frameOnly, zoomed); }, [](const QImage*) {}));

    const ba::PlotRowWindow window = wholeLayout.RowWindow();
    std::vector<const ba::CLineTrace*> lines;
    for (std::size_t i = 0; i < doc.TraceCount(); ++i) lines.push_back(static_cast<const ba::CLineTrace*>(&doc.Trace(i)));
    const auto checkRuns = [](std::size_t count) {
        if (count == 0) std::exit(1);
    };
    Report("reduction only, whole range, 10 traces, one thread", TimeRuns(
                                                                     runs,
                                                                     [&] {
                                                                         std::size_t count = 0;
                                                                         for (const ba::CLineTrace* line : lines)
                                                                             count += ba::DecimateCurve(*line, window).size();
                                                                         return count;
                                                                     },
                                                                     checkRuns));
    Report("reduction only, whole range, 10 traces, all cores", TimeRuns(
                                                                    runs,
                                                                    [&] {
                                                                        std::size_t count = 0;
                                                                        for (const auto& r : ba::DecimateCurves(lines, window))
                                                                            count += r.size();
                                                                        return count;
                                                                    },
                                                                    checkRuns));
    return 0;
}
