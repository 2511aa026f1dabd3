#pragma once
// Splitting a run of samples between the machine's cores, for computations in which each
// sample depends on nothing computed for another.

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <system_error>
#include <thread>
#include <vector>

namespace ba::numeric {

// How many parts n samples are split into: one per core, but none of fewer than
// minPerPart samples, since starting a thread costs more than that saves.
inline std::size_t PartCount(std::size_t n, std::size_t minPerPart)
{
    const std::size_t cores = std::max(1u, std::thread::hardware_concurrency());
    return std::min(cores, std::max<std::size_t>(1, n / minPerPart));
}

// Calls f(part, begin, end) for `parts` contiguous ranges covering [0, n), each on a thread
// of its own, the first on the calling thread; returns when all are done. When no further
// thread can be had, the calling thread does the parts that did not start.
template <class F>
void ForEachPart(std::size_t n, std::size_t parts, F&& f)
{
    parts = std::max<std::size_t>(1, parts);
    const std::size_t chunk = (n + parts - 1) / parts;
    const auto run = [&f, n, chunk](std::size_t p) {
        const std::size_t begin = std::min(n, p * chunk);
        f(p, begin, std::min(n, begin + chunk));
    };
    std::vector<std::jthread> helpers;
    helpers.reserve(parts - 1);
    std::size_t started = 1;
    try {
        for (; started < parts; ++started) helpers.emplace_back(run, started);
    } catch (const std::system_error&) {
        // Left to the loop below.
    }
    run(0);
    for (std::size_t p = started; p < parts; ++p) run(p);
}

// Calls f(worker, begin, end) for consecutive chunks of [0, n) of `chunk` samples each,
// handed out in order to `workers` threads as each becomes free, so that a core slowed by
// other work takes fewer chunks instead of holding the others up. Each worker sees its
// chunks in ascending order; the calling thread is worker 0.
template <class F>
void ForEachChunk(std::size_t n, std::size_t chunk, std::size_t workers, F&& f)
{
    std::atomic<std::size_t> next = 0;
    ForEachPart(workers, workers, [&](std::size_t worker, std::size_t, std::size_t) {
        for (;;) {
            const std::size_t begin = next.fetch_add(chunk, std::memory_order_relaxed);
            if (begin >= n) return;
            f(worker, begin, std::min(n, begin + chunk));
        }
    });
}

} // namespace ba::numeric
