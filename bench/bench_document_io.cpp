// Measures how long a large document takes to encode, save, open and decode, and how the
// cost of a ValueAt lookup grows with the length of a trace. Prints figures only: speed
// is judged by a reader, never asserted.
//
//   bench_document_io [--runs N] [--dir DIRECTORY]
//
// --runs    timed runs of every operation (default 7, at least 5); median, min and max
//           are printed
// --dir     where the scratch directory for saved files is made (default: the system
//           temporary directory); the directory and its files are removed afterwards

#include "BenchCurves.h"
#include "BenchSupport.h"
#include "BenchTiming.h"

#include "base/MessageSink.h"
#include "model/BoreAnalystDoc.h"
#include "model/LineTrace.h"

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <random>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace {

using ba::bench::Mebibytes;
using ba::bench::RunStats;
using ba::bench::TimeRuns;
using Options = ba::bench::CommonOptions;

constexpr ba::bench::Program kProgram{.name = "bench_document_io",
                                      .usage = "[--runs N] [--dir DIRECTORY]",
                                      .defaultRuns = 7,
                                      .fewestRuns = 5};

constexpr std::size_t kTraceCount = 20;
constexpr std::size_t kSamplesPerTrace = 1'000'000;
constexpr double kFirstDepth = 100.0; // metres
constexpr double kDepthStep = 0.01;   // 1 cm sampling: a million samples span 10 km
constexpr double kTargetSeconds = 1.0;
constexpr std::size_t kLookupsPerRun = 1'000'000;
constexpr std::size_t kLookupTraceSizes[] = {1'000, 10'000, 100'000, 1'000'000};

// The traces alternate between the two tracks, as a real document's would.
std::unique_ptr<ba::CLineTrace> MakeLineTrace(std::string name, std::size_t samples, std::size_t seed)
{
    auto trace = ba::bench::MakeGammaRayTrace(std::move(name), samples, kFirstDepth, kDepthStep, seed);
    trace->SetTrackIndex(static_cast<std::int32_t>(seed % 2));
    return trace;
}

std::unique_ptr<ba::CBoreAnalystDoc> MakeLargeDocument()
{
    auto doc = std::make_unique<ba::CBoreAnalystDoc>();
    doc->Header().SetTitle("Benchmark well");
    for (std::size_t t = 0; t < kTraceCount; ++t) {
        char name[16];
        std::snprintf(name, sizeof name, "CURVE%02zu", t + 1);
        doc->AddTrace(MakeLineTrace(name, kSamplesPerTrace, t));
    }
    return doc;
}

void RequireLargeDocument(const ba::CBoreAnalystDoc* doc, std::string_view what)
{
    if (doc == nullptr) throw std::runtime_error(std::string(what) + " produced no document");
    if (doc->TraceCount() != kTraceCount || doc->Trace(kTraceCount - 1).SampleCount() != kSamplesPerTrace) {
        throw std::runtime_error(std::string(what) + " produced a document of the wrong shape");
    }
}

void BenchDocumentIo(const Options& options)
{
    ba::NullMessageSink sink;
    ba::bench::ScratchDirectory scratch(options.scratchParent, kProgram);
    const std::filesystem::path file = scratch.Path() / "large.bal";

    std::printf("Document input and output\n");
    std::printf("  document: %zu line traces x %zu samples (depth and value floats)\n", kTraceCount,
                kSamplesPerTrace);

    std::unique_ptr<ba::CBoreAnalystDoc> doc;
    const RunStats build = TimeRuns(
        1, [] { return MakeLargeDocument(); }, [&](std::unique_ptr<ba::CBoreAnalystDoc>& made) { doc = std::move(made); });
    std::printf("  built in memory in %.3f s\n", build.median);

    std::vector<std::uint8_t> encoded;
    const RunStats encode = TimeRuns(
        options.runs, [&] { return ba::WriteDocumentBytes(*doc); },
        [&](std::vector<std::uint8_t>& bytes) {
            if (bytes.size() < kTraceCount * kSamplesPerTrace * 8) throw std::runtime_error("encoding is too short");
            encoded = std::move(bytes);
        });
    std::printf("  encoded size: %zu bytes (%.1f MiB)\n", encoded.size(), Mebibytes(encoded.size()));
    std::printf("  saved to: %s (removed afterwards)\n", file.string().c_str());
    std::printf("  runs per operation: %d\n\n", options.runs);

    const RunStats save = TimeRuns(
        options.runs, [&] { return doc->OnSaveDocument(file, sink); },
        [&](ba::SaveOutcome outcome) {
            if (outcome != ba::SaveOutcome::Written) throw std::runtime_error("saving " + file.string() + " failed");
        });
    const RunStats open = TimeRuns(
        options.runs, [&] { return ba::OpenDocument(file, sink); },
        [](const std::unique_ptr<ba::CBoreAnalystDoc>& opened) { RequireLargeDocument(opened.get(), "opening"); });
    const RunStats decode = TimeRuns(
        options.runs, [&] { return ba::ReadDocumentBytes(encoded, sink, "memory"); },
        [](const std::unique_ptr<ba::CBoreAnalystDoc>& decoded) { RequireLargeDocument(decoded.get(), "decoding"); });

    const ba::bench::TimingTable table(30, kTargetSeconds);
    table.PrintHeading("operation");
    table.PrintRow("encode to bytes", encode, encoded.size(), false);
    table.PrintRow("save to file (with fsync)", save, encoded.size(), true);
    table.PrintRow("open file (read + decode)", open, encoded.size(), true);
    table.PrintRow("decode bytes in memory", decode, encoded.size(), false);
    std::printf("  (the file is opened straight after saving, so its pages are usually still cached)\n\n");
}

// The time of one ValueAt lookup, averaged over many random depths within a trace's range.
void BenchValueAt(const Options& options)
{
    std::printf("ValueAt lookup on line traces of growing length\n");
    std::printf("  %zu random depths within the trace's range per run, %d runs per length\n", kLookupsPerRun,
                options.runs);
    std::printf("  %12s %12s %10s %10s %8s %16s %14s\n", "samples", "median ns", "min ns", "max ns", "log2(n)",
                "ns per log2(n)", "x vs smallest");

    double smallestMedian = 0.0;
    volatile double keep = 0.0; // the results feed this so the lookups cannot be optimised away
    for (const std::size_t samples : kLookupTraceSizes) {
        const auto trace = MakeLineTrace("LOOKUP", samples, samples);
        std::mt19937_64 random(samples);
        std::uniform_real_distribution<double> pick(trace->FirstDepth(), trace->LastDepth());
        std::vector<float> depths(kLookupsPerRun);
        for (float& d : depths) d = static_cast<float>(pick(random));

        const RunStats s = TimeRuns(
            options.runs,
            [&] {
                double sum = 0.0;
                for (const float d : depths) sum += static_cast<double>(trace->ValueAt(d));
                return sum;
            },
            [&](double sum) {
                if (!std::isfinite(sum)) throw std::runtime_error("ValueAt returned a non-finite value");
                keep = keep + sum;
            });
        const double perLookup = 1.0e9 / static_cast<double>(kLookupsPerRun);
        const double median = s.median * perLookup;
        if (smallestMedian == 0.0) smallestMedian = median;
        const double log2n = std::log2(static_cast<double>(samples));
        std::printf("  %12zu %12.1f %10.1f %10.1f %8.1f %16.2f %14.2f\n", samples, median, s.minimum * perLookup,
                    s.maximum * perLookup, log2n, median / log2n, median / smallestMedian);
    }
    std::printf("  (a search that grew linearly would cost about 1000x more at 1,000,000 samples than at 1,000)\n");
}

} // namespace

int main(int argc, char** argv)
{
    const Options options = ba::bench::ParseOptions(kProgram, argc, argv);
    return ba::bench::RunMeasurements(kProgram, [&] {
        BenchDocumentIo(options);
        BenchValueAt(options);
    });
}
