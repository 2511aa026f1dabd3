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

#include "BenchTiming.h"

#include "app/MessageSink.h"
#include "model/BoreAnalystDoc.h"
#include "model/LineTrace.h"

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <random>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include <unistd.h>

namespace {

using ba::bench::RunStats;
using ba::bench::TimeRuns;

constexpr std::size_t kTraceCount = 20;
constexpr std::size_t kSamplesPerTrace = 1'000'000;
constexpr double kFirstDepth = 100.0; // metres
constexpr double kDepthStep = 0.01;   // 1 cm sampling: a million samples span 10 km
constexpr double kTargetSeconds = 1.0;
constexpr std::size_t kLookupsPerRun = 1'000'000;
constexpr std::size_t kLookupTraceSizes[] = {1'000, 10'000, 100'000, 1'000'000};

struct Options {
    int runs = 7;
    std::filesystem::path scratchParent = std::filesystem::temp_directory_path();
};

[[noreturn]] void UsageError(const std::string& what)
{
    std::fprintf(stderr, "bench_document_io: %s\nusage: bench_document_io [--runs N] [--dir DIRECTORY]\n",
                 what.c_str());
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
            if (end == value.c_str() || *end != '\0' || runs < 5 || runs > 1000) {
                UsageError("--runs needs a whole number from 5 to 1000, not \"" + value + "\"");
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

// A directory of its own for the saved files, removed again however the program ends
// its normal course.
class ScratchDirectory {
public:
    explicit ScratchDirectory(const std::filesystem::path& parent)
        : m_path(parent / ("bench_document_io-" + std::to_string(::getpid())))
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

float StoredDepthOf(std::size_t i) { return static_cast<float>(kFirstDepth + static_cast<double>(i) * kDepthStep); }

// A gamma-ray-like curve with a null every 997th sample, so the values are not all alike.
std::unique_ptr<ba::CLineTrace> MakeLineTrace(std::string name, std::size_t samples, std::size_t seed)
{
    auto trace = std::make_unique<ba::CLineTrace>(1, ba::kPenSolid, static_cast<std::int32_t>(seed % 7), 0.0f,
                                                  150.0f, std::move(name), "API");
    trace->SetTrackIndex(static_cast<std::int32_t>(seed % 2));
    trace->StoredDepths().Reserve(samples);
    trace->Values().Reserve(samples);
    const double phase = static_cast<double>(seed);
    for (std::size_t i = 0; i < samples; ++i) {
        const double x = static_cast<double>(i) * 0.001 + phase;
        const float value = i % 997 == 0 ? ba::kNullValue : static_cast<float>(75.0 + 40.0 * std::sin(x) + 10.0 * std::sin(7.3 * x));
        trace->AppendSample(StoredDepthOf(i), value);
    }
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

double Megabytes(std::size_t bytes) { return static_cast<double>(bytes) / (1024.0 * 1024.0); }

void PrintRow(std::string_view label, const RunStats& s, std::size_t bytes, bool hasTarget)
{
    const double mbPerSecond = s.median > 0.0 ? Megabytes(bytes) / s.median : 0.0;
    std::printf("  %-30s %9.3f %9.3f %9.3f %10.0f", std::string(label).c_str(), s.median, s.minimum, s.maximum,
                mbPerSecond);
    if (hasTarget) std::printf("   %s", s.median < kTargetSeconds ? "met" : "MISSED");
    std::printf("\n");
}

void BenchDocumentIo(const Options& options)
{
    ba::NullMessageSink sink;
    ScratchDirectory scratch(options.scratchParent);
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
    std::printf("  encoded size: %zu bytes (%.1f MiB)\n", encoded.size(), Megabytes(encoded.size()));
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

    std::printf("  %-30s %9s %9s %9s %10s   %s\n", "operation", "median s", "min s", "max s", "MiB/s",
                "target < 1 s");
    PrintRow("encode to bytes", encode, encoded.size(), false);
    PrintRow("save to file (with fsync)", save, encoded.size(), true);
    PrintRow("open file (read + decode)", open, encoded.size(), true);
    PrintRow("decode bytes in memory", decode, encoded.size(), false);
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
    const Options options = ParseOptions(argc, argv);
    try {
        BenchDocumentIo(options);
        BenchValueAt(options);
    } catch (const std::exception& e) {
        std::fprintf(stderr, "bench_document_io: %s\n", e.what());
        return 1;
    }
    return 0;
}
