// Measures the exports of a large document: LAS and text files of 10 line traces of
// 1,000,000 samples each (about a million rows), and the WellCAD export's calls into an
// automation backend that records nothing. Also times one pass of the trace cursor the
// exports use against the same lookups made with ValueAt. Prints figures only: speed is
// judged by a reader, never asserted.
//
//   bench_export [--runs N] [--dir DIRECTORY]
//
// --runs    timed runs of every export (default 5, at least 3); median, min and max are printed
// --dir     where the scratch directory for the exported files is made (default: the system
//           temporary directory); the directory and its files are removed afterwards

#include "BenchCurves.h"
#include "BenchSupport.h"
#include "BenchTiming.h"

#include "base/MessageSink.h"
#include "io/AutomationRecorder.h"
#include "io/LasExport.h"
#include "model/LineTraceCursor.h"
#include "io/TextExport.h"
#include "io/WellCadExport.h"
#include "model/BoreAnalystDoc.h"
#include "model/LineTrace.h"

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>

namespace {

using ba::bench::Mebibytes;
using ba::bench::RunStats;
using ba::bench::TimeRuns;
using Options = ba::bench::CommonOptions;

constexpr ba::bench::Program kProgram{.name = "bench_export",
                                      .usage = "[--runs N] [--dir DIRECTORY]",
                                      .defaultRuns = 5,
                                      .fewestRuns = 3};

constexpr std::size_t kTraceCount = 10;
constexpr std::size_t kSamplesPerTrace = 1'000'000;
constexpr double kFirstDepth = 100.0; // metres
constexpr double kDepthStep = 0.01;
constexpr double kTargetSeconds = 2.0;

// Each trace starts a little deeper than the one before, so the rows also read the
// traces' ends.
std::unique_ptr<ba::CLineTrace> MakeLineTrace(std::size_t index)
{
    const double firstDepth = kFirstDepth + 0.003 * static_cast<double>(index);
    return ba::bench::MakeGammaRayTrace("CURVE " + std::to_string(index + 1), kSamplesPerTrace, firstDepth,
                                        kDepthStep, index);
}

std::unique_ptr<ba::CBoreAnalystDoc> MakeLargeDocument()
{
    auto doc = std::make_unique<ba::CBoreAnalystDoc>();
    doc->SetDocumentTitle("Benchmark well");
    for (std::size_t t = 0; t < kTraceCount; ++t) doc->AddTrace(MakeLineTrace(t));
    return doc;
}

constexpr ba::bench::TimingTable kTable(34, kTargetSeconds);

// Times an export into `file` and returns the file's size.
template <typename Export>
std::uintmax_t TimeFileExport(const Options& options, const std::filesystem::path& file, std::string_view label,
                              Export exportTo)
{
    ba::CollectingMessageSink sink;
    const RunStats stats = TimeRuns(
        options.runs, [&] { return exportTo(file, sink); },
        [&](bool ok) {
            if (!ok) throw std::runtime_error(std::string(label) + " failed");
        });
    const std::uintmax_t bytes = std::filesystem::file_size(file);
    kTable.PrintRow(label, stats, bytes, true);
    return bytes;
}

void BenchExports(const Options& options)
{
    ba::bench::ScratchDirectory scratch(options.scratchParent, kProgram);
    std::printf("Exports of a large document\n");
    std::printf("  document: %zu line traces x %zu samples, 1 cm apart\n", kTraceCount, kSamplesPerTrace);
    const auto doc = MakeLargeDocument();
    std::printf("  files in: %s (removed afterwards); runs per export: %d\n\n", scratch.Path().string().c_str(),
                options.runs);
    kTable.PrintHeading("export");

    const auto lasBytes = TimeFileExport(options, scratch.Path() / "large.las", "LAS (with fsync)",
                                         [&](const std::filesystem::path& file, ba::IMessageSink& sink) {
                                             return ba::ExportLas(*doc, file, sink);
                                         });
    const auto textBytes = TimeFileExport(options, scratch.Path() / "large.txt", "text (with fsync)",
                                          [&](const std::filesystem::path& file, ba::IMessageSink& sink) {
                                              return ba::ExportText(*doc, file, sink);
                                          });

    std::size_t calls = 0;
    ba::CRecordingAutomationFactory factory([&](const ba::RecordedCall&) { ++calls; });
    ba::CollectingMessageSink sink;
    const RunStats wellcad = TimeRuns(
        options.runs, [&] { return ba::ExportWellCad(*doc, "large.wcl", factory, sink, {}); },
        [&](bool ok) {
            if (!ok) throw std::runtime_error("the WellCAD export failed");
        });
    kTable.PrintRow("WellCAD calls into a recorder", wellcad, 0, false);
    std::printf("  LAS file %.1f MiB, text file %.1f MiB, %zu automation calls per WellCAD export\n\n",
                Mebibytes(lasBytes), Mebibytes(textBytes), calls / static_cast<std::size_t>(options.runs));
}

// One trace read at a million ascending depths, by the cursor and by ValueAt.
void BenchCursor(const Options& options)
{
    const auto trace = MakeLineTrace(0);
    const std::size_t rows = kSamplesPerTrace;
    const auto depthOf = [&](std::size_t k) {
        return static_cast<float>(kFirstDepth + static_cast<double>(k) * kDepthStep * 0.999);
    };
    volatile double keep = 0.0;
    const auto check = [&](double sum) {
        if (!std::isfinite(sum)) throw std::runtime_error("a lookup gave a non-finite value");
        keep = keep + sum;
    };
    const RunStats cursor = TimeRuns(
        options.runs,
        [&] {
            ba::CLineTraceCursor c(*trace);
            double sum = 0.0;
            for (std::size_t k = 0; k < rows; ++k) sum += static_cast<double>(c.ValueAt(depthOf(k)));
            return sum;
        },
        check);
    const RunStats lookup = TimeRuns(
        options.runs,
        [&] {
            double sum = 0.0;
            for (std::size_t k = 0; k < rows; ++k) sum += static_cast<double>(trace->ValueAt(depthOf(k)));
            return sum;
        },
        check);
    const double perRow = 1.0e9 / static_cast<double>(rows);
    std::printf("Reading one trace of %zu samples at %zu ascending depths\n", kSamplesPerTrace, rows);
    std::printf("  %-34s %9.1f ns per depth (median of %d runs)\n", "cursor", cursor.median * perRow, options.runs);
    std::printf("  %-34s %9.1f ns per depth\n", "ValueAt", lookup.median * perRow);
}

} // namespace

int main(int argc, char** argv)
{
    const Options options = ba::bench::ParseOptions(kProgram, argc, argv);
    return ba::bench::RunMeasurements(kProgram, [&] {
        BenchExports(options);
        BenchCursor(options);
    });
}
