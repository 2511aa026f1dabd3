#pragma once
// Repeated wall-clock timing for the benchmark programs, and the table that prints it.
// Figures are printed for a reader to judge; nothing here decides whether a figure is good
// enough (a target is only marked as met or missed beside it).

#include <algorithm>
#include <chrono>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace ba::bench {

struct RunStats {
    double minimum = 0.0; // seconds
    double median = 0.0;
    double maximum = 0.0;
};

inline RunStats Summarise(std::vector<double> seconds)
{
    RunStats stats;
    if (seconds.empty()) return stats;
    std::sort(seconds.begin(), seconds.end());
    const std::size_t n = seconds.size();
    stats.minimum = seconds.front();
    stats.maximum = seconds.back();
    stats.median = n % 2 == 1 ? seconds[n / 2] : (seconds[n / 2 - 1] + seconds[n / 2]) / 2.0;
    return stats;
}

// Runs `operation` `runs` times and summarises the wall-clock time of each run. Whatever
// the operation returns is kept alive until its clock has stopped, so freeing a large
// result (a whole document, a byte buffer) is not counted as part of the operation.
// `check` sees each result after timing, so a run that silently did nothing is caught.
template <typename Operation, typename Check>
RunStats TimeRuns(int runs, Operation&& operation, Check&& check)
{
    using Clock = std::chrono::steady_clock;
    std::vector<double> seconds;
    seconds.reserve(static_cast<std::size_t>(runs));
    for (int r = 0; r < runs; ++r) {
        const auto start = Clock::now();
        auto result = operation();
        const auto stop = Clock::now();
        seconds.push_back(std::chrono::duration<double>(stop - start).count());
        check(result);
    }
    return Summarise(std::move(seconds));
}

inline constexpr double kBytesPerMebibyte = 1024.0 * 1024.0;

inline double Mebibytes(double bytes) { return bytes / kBytesPerMebibyte; }

template <std::integral Bytes>
double Mebibytes(Bytes bytes)
{
    return static_cast<double>(bytes) / kBytesPerMebibyte;
}

// A table of timed operations, a row each: the median, minimum and maximum seconds, the
// MiB/s at the median, and whether the median is within the target time.
class TimingTable {
public:
    constexpr TimingTable(int labelWidth, double targetSeconds)
        : m_labelWidth(labelWidth), m_targetSeconds(targetSeconds)
    {
    }

    void PrintHeading(const char* operationHeading) const
    {
        std::printf("  %-*s %9s %9s %9s %10s   target < %g s\n", m_labelWidth, operationHeading, "median s", "min s",
                    "max s", "MiB/s", m_targetSeconds);
    }

    // `bytes` is what one run handled (0: no throughput is shown); only rows with
    // `judged` set are held against the target.
    void PrintRow(std::string_view label, const RunStats& s, std::uintmax_t bytes, bool judged) const
    {
        std::printf("  %-*s %9.3f %9.3f %9.3f", m_labelWidth, std::string(label).c_str(), s.median, s.minimum,
                    s.maximum);
        if (bytes > 0 && s.median > 0.0) std::printf(" %10.0f", Mebibytes(bytes) / s.median);
        else std::printf(" %10s", "-");
        if (judged) std::printf("   %s", s.median < m_targetSeconds ? "met" : "MISSED");
        std::printf("\n");
    }

private:
    int m_labelWidth;
    double m_targetSeconds;
};

} // namespace ba::bench
