// Measures repainting a log plot that holds one sonic trace of 20,000 stations x 1,000
// samples in the left track, into a view 1000 pixels high: the whole depth range (about
// 20 stations per pixel row), a zoomed window (about two pixel rows per station), and
// the band geometry alone. Then the same for a spectrum trace of 20,000 spectra x 1,024
// channels, drawn as image cells. Prints figures only: speed is judged by a reader, never
// asserted.
//
//   bench_sonic_repaint [--runs N]     (default 15, at least 3)

#include "BenchSupport.h"
#include "BenchTiming.h"

#include "model/BoreAnalystDoc.h"
#include "model/ImageDrawing.h"
#include "model/SonicTrace.h"
#include "model/SpectralTrace.h"
#include "view/LogPlotRenderer.h"

#include <QGuiApplication>
#include <QImage>
#include <QPainter>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>

namespace {

using ba::bench::RunStats;
using ba::bench::TimeRuns;

constexpr std::size_t kStations = 20'000;
constexpr std::size_t kSamples = 1'000;
constexpr float kFirstDepth = 100.0f; // metres
constexpr float kStationStep = 0.05f;
constexpr int kViewWidth = 850;
constexpr int kViewHeight = 1000;
constexpr double kDotsPerCentimetre = 37.8;

// Waveforms: a decaying wave train whose arrival moves with depth, on the zero line.
std::unique_ptr<ba::CSonicTrace> MakeSonic()
{
    auto trace = std::make_unique<ba::CSonicTrace>("RX 1", 100.0f, 2100.0f, "us");
    ba::SonicAcquisition& a = trace->Acquisition();
    a.rxHoldoff = 10;
    a.rxSampleRate1 = 2;
    a.rxNumSamples1 = static_cast<std::int32_t>(kSamples);
    a.rxGain = 32;
    for (std::size_t s = 0; s < kStations; ++s) {
        const double arrival = 150.0 + 60.0 * std::sin(static_cast<double>(s) * 0.002);
        ba::ImageRow row(kSamples, ba::kSonicZeroLine);
        for (std::size_t j = 0; j < kSamples; ++j) {
            const double t = static_cast<double>(j) - arrival;
            if (t > 0.0) row[j] = static_cast<std::uint16_t>(2047.0 + 1800.0 * std::exp(-t / 200.0) * std::sin(t * 0.15));
        }
        trace->AppendRow(kFirstDepth + kStationStep * static_cast<float>(s), std::move(row));
    }
    return trace;
}

constexpr std::size_t kChannels = 1'024;

// Spectra: a falling continuum with three peaks whose height changes with depth.
std::unique_ptr<ba::CSpectralTrace> MakeSpectrum()
{
    auto trace = std::make_unique<ba::CSpectralTrace>("GRSP", 0.0f, 3000.0f, "cps");
    trace->SetTrackIndex(0);
    for (std::size_t s = 0; s < kStations; ++s) {
        const double swing = 1.0 + 0.5 * std::sin(static_cast<double>(s) * 0.003);
        ba::ImageRow counts(kChannels);
        for (std::size_t c = 0; c < kChannels; ++c) {
            const double x = static_cast<double>(c);
            double value = 3000.0 * std::exp(-x / 250.0);
            for (const double peak : {150.0, 480.0, 870.0}) value += 900.0 * swing * std::exp(-(x - peak) * (x - peak) / 60.0);
            counts[c] = static_cast<std::uint16_t>(std::min(4095.0, value));
        }
        trace->AppendSpectrum(kFirstDepth + kStationStep * static_cast<float>(s), std::move(counts), 60.0f, 60.0f, 25.0f,
                              900.0f);
    }
    return trace;
}

void Report(const char* what, const RunStats& stats)
{
    std::printf("%-58s median %8.2f ms   min %8.2f ms   max %8.2f ms\n", what, stats.median * 1e3,
                stats.minimum * 1e3, stats.maximum * 1e3);
}

QImage* Repaint(QImage& image, const ba::CBoreAnalystDoc& doc, const ba::PlotViewport& viewport)
{
    QPainter painter(&image);
    ba::CLogPlotRenderer().Paint(painter, doc, viewport);
    painter.end();
    return &image;
}

// The middle of the left track must hold image colours (blue 128), not white or grid grey.
void CheckDrawn(const QImage* frame)
{
    const QRgb pixel = frame->pixel(120, frame->height() / 2);
    if (qBlue(pixel) == 128) return;
    std::fprintf(stderr, "bench_sonic_repaint: the repaint drew no sonic image\n");
    std::exit(1);
}

constexpr ba::bench::Program kProgram{"bench_sonic_repaint", "[--runs N]", 15, 3};

} // namespace

int main(int argc, char** argv)
{
    const int runs = ba::bench::ParseOptions(kProgram, argc, argv).runs;
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);

    ba::CBoreAnalystDoc doc;
    doc.Header().SetTitle("Benchmark well");
    const ba::CSonicTrace& sonic = static_cast<const ba::CSonicTrace&>(doc.AddTrace(MakeSonic()));
    std::printf("1 sonic trace, %zu stations x %zu samples, view %d x %d px, %d runs each\n", kStations, kSamples,
                kViewWidth, kViewHeight, runs);

    QImage image(kViewWidth, kViewHeight, QImage::Format_RGB32);
    const ba::CLogPlotRenderer renderer;

    ba::PlotViewport zoomed;
    zoomed.pixelSize = QSize(kViewWidth, kViewHeight);
    zoomed.dotsPerCentimetre = kDotsPerCentimetre;
    zoomed.verticalScale = 1.0f;
    zoomed.topDepth = 500.0f;

    ba::PlotViewport whole = zoomed;
    const ba::PlotLayout probe = renderer.Layout(doc, zoomed);
    const double span = kStationStep * static_cast<double>(kStations) + 1.0;
    whole.topDepth = kFirstDepth - 0.5f;
    whole.verticalScale = static_cast<float>(span * kDotsPerCentimetre / probe.rows);
    const ba::PlotLayout wholeLayout = renderer.Layout(doc, whole);
    std::printf("track area %d rows; whole range %.0f m at %.2f m/cm; zoomed %.1f m at %.0f m/cm\n", wholeLayout.rows,
                span, whole.verticalScale, probe.rows / probe.rowsPerDepth, zoomed.verticalScale);

    const auto checkFrame = [](const QImage* frame) { CheckDrawn(frame); };
    Report("repaint, whole depth range (about 20 stations per row)",
           TimeRuns(runs, [&] { return Repaint(image, doc, whole); }, checkFrame));
    Report("repaint, zoomed window (about 2 rows per station)",
           TimeRuns(runs, [&] { return Repaint(image, doc, zoomed); }, checkFrame));

    const QRectF track = wholeLayout.tracks[0];
    const ba::ImageWindow window{wholeLayout.topDepth, wholeLayout.BottomDepth(), wholeLayout.rowsPerDepth,
                                 wholeLayout.trackTop};
    const ba::ImageTrackPixels pixels{std::lround(track.left()), std::lround(track.right()), std::lround(track.bottom())};
    Report("band geometry only, whole depth range", TimeRuns(
                                                        runs, [&] { return ba::SonicBands(sonic, window, pixels); },
                                                        [](const ba::SonicImage& bands) {
                                                            if (bands.bands.empty()) std::exit(1);
                                                        }));

    ba::CBoreAnalystDoc spectra;
    const ba::CImageTrace& spectrum = static_cast<const ba::CImageTrace&>(spectra.AddTrace(MakeSpectrum()));
    std::printf("1 spectrum trace, %zu spectra x %zu channels\n", kStations, kChannels);
    Report("repaint, whole depth range (about 20 spectra per row)",
           TimeRuns(runs, [&] { return Repaint(image, spectra, whole); }, checkFrame));
    Report("repaint, zoomed window (about 2 rows per spectrum)",
           TimeRuns(runs, [&] { return Repaint(image, spectra, zoomed); }, checkFrame));
    Report("image cells only, whole depth range",
           TimeRuns(
               runs, [&] { return ba::ImageCells(spectrum, window, pixels, 0x00FFFFFF); },
               [](const std::vector<ba::ImageCell>& cells) {
                   if (cells.empty()) std::exit(1);
               }));
    return 0;
}
