// Measures the import of CLP sonic raw-data files: a generated file of about MEGABYTES MB
// (4 receivers, 512 samples at 4 us and 256 at 8 us each, so every row is expanded to 1024
// words) is imported into a new document, once with the stations recorded downwards and
// once upwards (every station goes in front of the ones before). Prints the median,
// minimum and maximum time, the throughput in MB/s at the median, and the peak resident
// memory of one import against the size of the rows it holds. Prints figures only: speed
// is judged by a reader, never asserted.
//
//   bench_rd_import [--runs N] [--megabytes N] [--dir DIRECTORY]
//
// --runs       timed imports of each file (default 5, at least 3)
// --megabytes  approximate file size (default 500)
// --dir        where the scratch directory for the files is made (default: the system
//              temporary directory); it is removed afterwards

#include "BenchSupport.h"
#include "BenchTiming.h"

#include "base/MessageSink.h"
#include "model/BoreAnalystDoc.h"
#include "model/SonicTrace.h"
#include "sonic/RawDataImport.h"
#include "sonic/RawDataSynth.h"

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <span>
#include <stdexcept>
#include <string>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

using ba::bench::Mebibytes;
using ba::bench::RunStats;
using ba::bench::TimeRuns;

constexpr ba::bench::Program kProgram{.name = "bench_rd_import",
                                      .usage = "[--runs N] [--megabytes N] [--dir DIRECTORY]",
                                      .defaultRuns = 5,
                                      .fewestRuns = 3};

struct Options : ba::bench::CommonOptions {
    long megabytes = 500;
};

Options ParseOptions(int argc, char** argv)
{
    Options options;
    ba::bench::ParseOptions(kProgram, argc, argv, options, [&](const std::string& option, const std::string& value) {
        if (option != "--megabytes") return false;
        options.megabytes = ba::bench::ParseWholeNumber(kProgram, option, value, 1, 8000);
        return true;
    });
    return options;
}

ba::synth::SurveyPlan Plan(const Options& options, bool descending)
{
    ba::synth::SurveyPlan plan;
    plan.offsetsFeet = {3.0, 5.0, 7.0, 9.0};
    plan.block.sampleRate1 = 4;
    plan.block.sampleRate2 = 8;
    plan.block.n1 = 512;
    plan.block.n2 = 256;
    plan.block.holdoff = 20;
    plan.block.gainExponent = 5;
    plan.descending = descending;
    plan.otherRecords = true;
    const std::size_t recordBytes = 15 + plan.offsetsFeet.size() * (12 + 2 * (512 + 256)) + 18 + 10;
    const auto stations = static_cast<double>(options.megabytes) * 1e6 / static_cast<double>(recordBytes);
    plan.top = 100.0;
    plan.step = 0.05;
    plan.bottom = plan.top + plan.step * (std::floor(stations) - 1.0) + plan.step / 2;
    return plan;
}

std::uintmax_t WriteFile(const std::filesystem::path& path, const ba::synth::SurveyPlan& plan)
{
    std::FILE* file = std::fopen(path.c_str(), "wb");
    if (file == nullptr) throw std::runtime_error("cannot create " + path.string());
    bool ok = true;
    ba::synth::WriteSurvey(plan, [&](std::span<const std::uint8_t> piece) {
        ok = ok && std::fwrite(piece.data(), 1, piece.size(), file) == piece.size();
    });
    if (std::fclose(file) != 0 || !ok) throw std::runtime_error("cannot write " + path.string());
    return std::filesystem::file_size(path);
}

std::unique_ptr<ba::CBoreAnalystDoc> Import(const std::filesystem::path& path, std::size_t stations)
{
    ba::CollectingMessageSink sink;
    auto doc = std::make_unique<ba::CBoreAnalystDoc>();
    const ba::RawDataImportResult result = ba::ImportRawData(*doc, path, sink);
    if (!result.complete || doc->TraceCount() != 4 ||
        dynamic_cast<const ba::CSonicTrace&>(doc->Trace(3)).RowCount() != stations) {
        std::string messages;
        for (const auto& m : sink.messages) messages += "\n  " + m.text;
        throw std::runtime_error("importing " + path.string() + " gave the wrong result" + messages);
    }
    return doc;
}

// One import in a child process, so that its peak resident memory is its own.
void MeasurePeakMemory(const std::filesystem::path& path, std::size_t stations)
{
    const double held = static_cast<double>(stations) * 4.0 * (1024.0 * 2.0 + 4.0);
    ba::bench::MeasurePeakMemory(kProgram, "rows held", held, [&] { Import(path, stations); });
}

void BenchOne(const std::filesystem::path& path, const Options& options, bool descending)
{
    std::printf("%s stations\n", descending ? "Descending (recorded upwards)" : "Ascending");
    const ba::synth::SurveyPlan plan = Plan(options, descending);
    const std::size_t stations = plan.Stations();
    const std::uintmax_t bytes = WriteFile(path, plan);
    std::printf("  file: %s, %.1f MB (%ju bytes), %zu stations x 4 receivers\n", path.string().c_str(),
                static_cast<double>(bytes) / 1e6, bytes, stations);
    MeasurePeakMemory(path, stations);
    const RunStats s = TimeRuns(options.runs, [&] { return Import(path, stations); },
                                [](const std::unique_ptr<ba::CBoreAnalystDoc>&) {});
    const double mb = static_cast<double>(bytes) / 1e6;
    std::printf("  import, %d runs, wall clock: median %.3f s, min %.3f s, max %.3f s; %.0f MB/s at the median "
                "(target 300 MB/s: %s)\n\n",
                options.runs, s.median, s.minimum, s.maximum, mb / s.median, mb / s.median >= 300.0 ? "met" : "MISSED");
    std::filesystem::remove(path);
}

} // namespace

int main(int argc, char** argv)
{
    const Options options = ParseOptions(argc, argv);
    return ba::bench::RunMeasurements(kProgram, [&] {
        const ba::bench::ScratchDirectory scratch(options.scratchParent, kProgram);
        std::printf("Raw-data sonic import (MB = 10^6 bytes; the file is read just after being written, so it is "
                    "usually cached)\n\n");
        BenchOne(scratch.Path() / "ascending.rd", options, false);
        BenchOne(scratch.Path() / "descending.rd", options, true);
    });
}
