#pragma once
// Repeated wall-clock timing for the benchmark programs. Figures are printed for a
// reader to judge; nothing here decides whether a figure is good enough.

#include <algorithm>
#include <chrono>
#include <cstddef>
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

} // namespace ba::bench
