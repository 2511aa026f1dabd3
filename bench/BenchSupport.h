#pragma once
// What every benchmark program does around its measurements: read its command line, keep
// its files in a scratch directory of its own, and report a failure on standard error.

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <string>
#include <system_error>
#include <utility>

#include <stdexcept>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace ba::bench {

// A benchmark program: its name, as its messages and scratch directory carry it, its usage
// line, and how many timed runs it makes of each operation unless told otherwise, and at
// the fewest.
struct Program {
    const char* name;  // "bench_export"
    const char* usage; // "[--runs N] [--dir DIRECTORY]"
    int defaultRuns = 5;
    int fewestRuns = 5;
};

[[noreturn]] inline void UsageError(const Program& program, const std::string& what)
{
    std::fprintf(stderr, "%s: %s\nusage: %s %s\n", program.name, what.c_str(), program.name, program.usage);
    std::exit(2);
}

inline long ParseWholeNumber(const Program& program, const std::string& option, const std::string& value, long minimum,
                             long maximum)
{
    char* end = nullptr;
    const long n = std::strtol(value.c_str(), &end, 10);
    if (end == value.c_str() || *end != '\0' || n < minimum || n > maximum) {
        UsageError(program, option + " needs a whole number from " + std::to_string(minimum) + " to " +
                                std::to_string(maximum) + ", not \"" + value + "\"");
    }
    return n;
}

// The options every benchmark takes: --runs N, timed runs of each operation, and --dir
// DIRECTORY, where the scratch directory is made.
struct CommonOptions {
    int runs = 0;
    std::filesystem::path scratchParent = std::filesystem::temp_directory_path();
};

inline constexpr long kMostRuns = 1000;

// Reads "--option value" pairs into `options`: --runs (from the program's fewest runs to
// kMostRuns) and --dir here, any other option through `other(option, value)`, which returns
// false for an option it does not know.
template <typename OtherOption>
void ParseOptions(const Program& program, int argc, char** argv, CommonOptions& options, OtherOption&& other)
{
    options.runs = program.defaultRuns;
    for (int i = 1; i < argc; ++i) {
        const std::string option = argv[i];
        if (i + 1 >= argc) UsageError(program, "missing value after " + option);
        const std::string value = argv[++i];
        if (option == "--runs") {
            options.runs = static_cast<int>(ParseWholeNumber(program, option, value, program.fewestRuns, kMostRuns));
        } else if (option == "--dir") {
            options.scratchParent = value;
        } else if (!other(option, value)) {
            UsageError(program, "unknown option " + option);
        }
    }
}

inline CommonOptions ParseOptions(const Program& program, int argc, char** argv)
{
    CommonOptions options;
    ParseOptions(program, argc, argv, options, [](const std::string&, const std::string&) { return false; });
    return options;
}

// A directory of its own for the program's files, removed again however the program ends
// its normal course.
class ScratchDirectory {
public:
    ScratchDirectory(const std::filesystem::path& parent, const Program& program)
        : m_path(parent / (std::string(program.name) + "-" + std::to_string(::getpid())))
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

// Runs the measurements; a failure among them is reported and gives exit status 1.
template <typename Measurements>
int RunMeasurements(const Program& program, Measurements&& measure)
{
    try {
        std::forward<Measurements>(measure)();
    } catch (const std::exception& e) {
        std::fprintf(stderr, "%s: %s\n", program.name, e.what());
        return 1;
    }
    return 0;
}

// Runs `work` once in a child process, so that the peak resident memory is the work's own,
// and prints that peak against `heldBytes`, what the work's result must hold (described
// by `heldWhat`). Throws when the child fails; `work` reports its own failures by throwing.
template <typename Work>
void MeasurePeakMemory(const Program& program, const char* heldWhat, double heldBytes, Work&& work)
{
    std::fflush(stdout);
    const pid_t child = ::fork();
    if (child < 0) throw std::runtime_error("fork failed");
    if (child == 0) {
        rusage before{};
        ::getrusage(RUSAGE_SELF, &before);
        int status = 0;
        try {
            std::forward<Work>(work)();
            rusage after{};
            ::getrusage(RUSAGE_SELF, &after);
            const double peak = static_cast<double>(after.ru_maxrss) * 1024.0;
            const double start = static_cast<double>(before.ru_maxrss) * 1024.0;
            constexpr double kMebibyte = 1024.0 * 1024.0;
            std::printf("  peak resident memory: %.1f MiB (%.1f MiB at the start); %s: %.1f MiB; "
                        "growth / held = %.2f\n",
                        peak / kMebibyte, start / kMebibyte, heldWhat, heldBytes / kMebibyte,
                        (peak - start) / heldBytes);
        } catch (const std::exception& e) {
            std::fprintf(stderr, "%s: %s\n", program.name, e.what());
            status = 1;
        }
        std::fflush(stdout);
        ::_exit(status);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) throw std::runtime_error("the measuring child failed");
}

} // namespace ba::bench
