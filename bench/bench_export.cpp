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

#include "BenchTiming.h"

#include "app/MessageSink.h"
#include "io/AutomationRecorder.h"
#include "io/LasExport.h"
#include "io/LineTraceCursor.h"
#include "io/TextExport.h"
#include "io/WellCadExport.h"
#include "model/BoreAnalystDoc.h"
#include "model/LineTrace.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>

#include <unistd.h>

namespace {

using ba::bench::RunStats;
using ba::bench::TimeRuns;

constexpr std::size_t kTraceCount = 10;
constexpr std::size_t kSamplesPerTrace = 1'000'000;
constexpr double kFirstDepth = 100.0; // metres
constexpr double kDepthStep = 0.01;
constexpr double kTargetSeconds = 2.0;

struct Options {
    int runs = 5;
    std::filesystem::path scratchParent = std::filesystem::temp_directory_path();
};

[[noreturn]] void UsageError(const std::string& what)
{
    std::fprintf(stderr, "bench_export: %s\nusage: bench_export [--runs N] [--dir DIRECTORY]\n", what.c_str());
    std::exit(2);
}

Options ParseOptions(int argc, char** argv)
{
    Options options;
    for (int i = 1; i < argc; ++i) {
        const std::string_view arg = argv[i];
        if (i + 1 >= argc) UsageError("missing value after " + std::string(arg));
        const std::string value = argv[++i];
        if (arg == "--runs") {
            char* end = nullptr;
            const long runs = std::strtol(value.c_str(), &end, 10);
            if (end == value.c_str() || *end != '\0' || runs < 3 || runs > 1000) {
                UsageError("--runs needs a whole number from 3 to 1000, not \"" + value + "\"");
            }
            options.runs = static_cast<int>(runs);
        } else if (arg == "--dir") {
            options.scratchParent = value;
        } else {
            UsageError("unknown option " + std::string(arg));
        }
    }
    return options;
}

class ScratchDirectory {
public:
    explicit ScratchDirectory(const std::filesystem::path& parent)
        : m_path(parent / ("bench_export-" + std::to_string(::getpid())))
    {
        std::filesystem::create_directories(m_path);
    }
    ~ScratchDirectory()
    {
        std::error_code ignored; // nothing useful can be done about a leftover scratch file here
        std::filesystem::remove_all(m_path, ignored);
    }
    ScratchDirectory(const ScratchDirectory&) = delete;
    ScratchDirectory& operator=(const ScratchDirectory&) = delete;
    const std::filesystem::path& Path() const { return m_path; }

private:
    std::filesystem::path m_path;
};

// A gamma-ray-like curve with a null every 997th sample; each trace starts a little
// deeper than the one before, so the rows also read the traces' ends.
std::unique_ptr<ba::CLineTrace> MakeLineTrace(std::size_t index)
{
    auto trace = std::make_unique<ba::CLineTrace>(1, ba::kPenSolid, static_cast<std::int32_t>(index % 7), 0.0f,
                                                  150.0f, "CURVE " + std::to_string(index + 1), "API");
    trace->StoredDepths().Reserve(kSamplesPerTrace);
    trace->Values().Reserve(kSamplesPerTrace);
    const double phase = static_cast<double>(index);
    const double start = kFirstDepth + 0.003 * phase;
    for (std::size_t i = 0; i < kSamplesPerTrace; ++i) {
        const double x = static_cast<double>(i) * 0.001 + phase;
        const float value =
            i % 997 == 0 ? ba::kNullValue : static_cast<float>(75.0 + 40.0 * std::sin(x) + 10.0 * std::sin(7.3 * x));
        trace->AppendSample(static_cast<float>(start + static_cast<double>(i) * kDepthStep), value);
    }
    return trace;
}

std::unique_ptr<ba::CBoreAnalystDoc> MakeLargeDocument()
{
    auto doc = std::make_unique<ba::CBoreAnalystDoc>();
    doc->SetDocumentTitle("Benchmark well");
    for (std::size_t t = 0; t < kTraceCount; ++t) doc->AddTrace(MakeLineTrace(t));
    return doc;
}

double Megabytes(std::uintmax_t bytes) { return static_cast<double>(bytes) / (1024.0 * 1024.0); }

void PrintRow(std::string_view label, const RunStats& s, std::uintmax_t bytes, bool hasTarget)
{
    std::printf("  %-34s %9.3f %9.3f %9.3f", std::string(label).c_str(), s.median, s.minimum, s.maximum);
    if (bytes > 0) std::printf(" %10.0f", Megabytes(bytes) / s.median);
    else std::printf(" %10s", "-");
    if (hasTarget) std::printf("   %s", s.median < kTargetSeconds ? "met" : "MISSED");
    std::printf("\n");
}

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
    PrintRow(label, stats, bytes, true);
    return bytes;
}

void BenchExports(const Options& options)
{
    ScratchDirectory scratch(options.scratchParent);
    std::printf("Exports of a large document\n");
    std::printf("  document: %zu line traces x %zu samples, 1 cm apart\n", kTraceCount, kSamplesPerTrace);
    const auto doc = MakeLargeDocument();
    std::printf("  files in: %s (removed afterwards); runs per export: %d\n\n", scratch.Path().string().c_str(),
                options.runs);
    std::printf("  %-34s %9s %9s %9s %10s   %s\n", "export", "median s", "min s", "max s", "MiB/s", "target < 2 s");

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
    PrintRow("WellCAD calls into a recorder", wellcad, 0, false);
    std::printf("  LAS file %.1f MiB, text file %.1f MiB, %zu automation calls per WellCAD export\n\n",
                Megabytes(lasBytes), Megabytes(textBytes), calls / static_cast<std::size_t>(options.runs));
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
    const Options options = ParseOptions(argc, argv);
    try {
        BenchExports(options);
        BenchCursor(options);
    } catch (const std::exception& e) {
        std::fprintf(stderr, "bench_export: %s\n", e.what());
        return 1;
    }
    return 0;
}
