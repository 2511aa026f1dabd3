// Measures LAS import: a generated LAS 2.0 file of ROWS rows x CURVES curves (about 120 MB
// with the defaults) is imported into a new document, once with the depths ascending and
// once descending (a log recorded upwards, every row added at the shallow end). Prints the
// median, minimum and maximum time (wall clock and processor), the throughput in MB/s, and the peak resident memory of
// one import against the size of the samples it holds. Prints figures only: speed is
// judged by a reader, never asserted.
//
//   bench_las_import [--runs N] [--rows N] [--curves N] [--dir DIRECTORY]
//
// --runs    timed imports of each file (default 5, at least 5)
// --rows    data rows (default 1000000)
// --curves  curves after the depth (default 10)
// --dir     where the scratch directory for the files is made (default: the system
//           temporary directory); it is removed afterwards

#include "BenchSupport.h"
#include "BenchTiming.h"

#include "base/MessageSink.h"
#include "io/LasImport.h"
#include "model/BoreAnalystDoc.h"

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

using ba::bench::Mebibytes;
using ba::bench::RunStats;
using ba::bench::TimeRuns;

constexpr ba::bench::Program kProgram{.name = "bench_las_import",
                                      .usage = "[--runs N] [--rows N] [--curves N] [--dir DIRECTORY]",
                                      .defaultRuns = 5,
                                      .fewestRuns = 5};

struct Options : ba::bench::CommonOptions {
    long rows = 1'000'000;
    long curves = 10;
};

Options ParseOptions(int argc, char** argv)
{
    Options options;
    const auto sizeOption = [&](const std::string& option, const std::string& value) {
        if (option == "--rows") options.rows = ba::bench::ParseWholeNumber(kProgram, option, value, 1, 100'000'000);
        else if (option == "--curves") options.curves = ba::bench::ParseWholeNumber(kProgram, option, value, 1, 1000);
        else return false;
        return true;
    };
    ba::bench::ParseOptions(kProgram, argc, argv, options, sizeOption);
    return options;
}

// Writes the file row by row (never held whole): DEPT in metres at 0.1 m, then curves that
// look like logs, a null every 1009th value.
std::uintmax_t WriteLasFile(const std::filesystem::path& path, const Options& options, bool descending)
{
    std::FILE* file = std::fopen(path.c_str(), "wb");
    if (file == nullptr) throw std::runtime_error("cannot create " + path.string());
    const double first = 1000.0;
    const double step = 0.1;
    const double last = first + step * static_cast<double>(options.rows - 1);
    std::fprintf(file, "~VERSION INFORMATION\n VERS. 2.0 : CWLS LOG ASCII STANDARD -VERSION 2.0\n"
                       " WRAP. NO  : ONE LINE PER DEPTH STEP\n~WELL INFORMATION\n");
    std::fprintf(file, " STRT.M %.4f : START DEPTH\n STOP.M %.4f : STOP DEPTH\n STEP.M %.4f : STEP\n",
                 descending ? last : first, descending ? first : last, descending ? -step : step);
    std::fprintf(file, " NULL. -999.25 : NULL VALUE\n WELL. BENCH : WELL\n~CURVE INFORMATION\n DEPT.M : DEPTH\n");
    for (long c = 1; c <= options.curves; ++c) std::fprintf(file, " C%02ld.API : CURVE %ld\n", c, c);
    std::fprintf(file, "~A\n");
    std::string line;
    char field[32];
    for (long r = 0; r < options.rows; ++r) {
        const long i = descending ? options.rows - 1 - r : r;
        line.clear();
        std::snprintf(field, sizeof field, "%.4f", first + step * static_cast<double>(i));
        line += field;
        for (long c = 1; c <= options.curves; ++c) {
            const double x = static_cast<double>(i) * 0.001 + static_cast<double>(c);
            const bool null = (i + c) % 1009 == 0;
            std::snprintf(field, sizeof field, " %10.4f", null ? -999.25 : 75.0 + 40.0 * std::sin(x) + static_cast<double>(c));
            line += field;
        }
        line += '\n';
        if (std::fwrite(line.data(), 1, line.size(), file) != line.size()) {
            std::fclose(file);
            throw std::runtime_error("cannot write " + path.string());
        }
    }
    if (std::fclose(file) != 0) throw std::runtime_error("cannot write " + path.string());
    return std::filesystem::file_size(path);
}

std::unique_ptr<ba::CBoreAnalystDoc> Import(const std::filesystem::path& path, const Options& options)
{
    ba::CollectingMessageSink sink;
    auto doc = std::make_unique<ba::CBoreAnalystDoc>();
    const ba::LasImportResult result = ba::ImportLas(*doc, path, sink);
    if (!result.imported || result.tracesAdded != static_cast<std::size_t>(options.curves) ||
        result.samplesPerTrace != static_cast<std::size_t>(options.rows)) {
        std::string messages;
        for (const auto& m : sink.messages) messages += "\n  " + m.text;
        throw std::runtime_error("importing " + path.string() + " gave the wrong result" + messages);
    }
    return doc;
}

// User and system time of this process so far.
double CpuSeconds()
{
    rusage usage{};
    ::getrusage(RUSAGE_SELF, &usage);
    auto seconds = [](const timeval& t) { return static_cast<double>(t.tv_sec) + static_cast<double>(t.tv_usec) / 1e6; };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

// One import in a child process, so that its peak resident memory is its own.
void MeasurePeakMemory(const std::filesystem::path& path, const Options& options)
{
    const double held = 8.0 * static_cast<double>(options.rows) * static_cast<double>(options.curves);
    ba::bench::MeasurePeakMemory(kProgram, "samples held (depth and value floats)", held,
                                 [&] { Import(path, options); });
}

void BenchOne(const std::filesystem::path& path, const Options& options, bool descending)
{
    std::printf("%s depths\n", descending ? "Descending" : "Ascending");
    const std::uintmax_t bytes = WriteLasFile(path, options, descending);
    std::printf("  file: %s, %.1f MB (%ju bytes), %ld rows x %ld curves\n", path.string().c_str(),
                static_cast<double>(bytes) / 1e6, bytes, options.rows, options.curves);
    MeasurePeakMemory(path, options);
    // Processor time is printed beside wall time: on a busy machine it is the steadier figure.
    std::vector<double> cpuSeconds;
    const RunStats wall = TimeRuns(
        options.runs,
        [&] {
            const double start = CpuSeconds();
            auto doc = Import(path, options);
            cpuSeconds.push_back(CpuSeconds() - start);
            return doc;
        },
        [](const std::unique_ptr<ba::CBoreAnalystDoc>&) {});
    const RunStats cpu = ba::bench::Summarise(cpuSeconds);
    const double mb = static_cast<double>(bytes) / 1e6;
    for (const auto& [clock, s] : {std::pair{"wall clock", wall}, std::pair{"processor time", cpu}}) {
        std::printf("  import, %d runs, %s: median %.3f s, min %.3f s, max %.3f s; %.0f MB/s at the median\n",
                    options.runs, clock, s.median, s.minimum, s.maximum, mb / s.median);
    }
    std::printf("\n");
    std::filesystem::remove(path);
}

} // namespace

int main(int argc, char** argv)
{
    const Options options = ParseOptions(argc, argv);
    return ba::bench::RunMeasurements(kProgram, [&] {
        const ba::bench::ScratchDirectory scratch(options.scratchParent, kProgram);
        std::printf("LAS import (MB = 10^6 bytes; the file is read just after being written, so it is usually cached)\n\n");
        BenchOne(scratch.Path() / "ascending.las", options, false);
        BenchOne(scratch.Path() / "descending.las", options, true);
    });
}
