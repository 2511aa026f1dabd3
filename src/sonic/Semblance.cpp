#include "sonic/Semblance.h"

#include <algorithm>
#include <cmath>

namespace ba {

std::size_t SlownessGrid::Count() const
{
    if (!(step > 0.0) || !(last >= first)) return 0;
    return static_cast<std::size_t>(std::floor((last - first) / step + 0.5)) + 1;
}

std::size_t WindowSamples(double windowMicroseconds, double sampleInterval)
{
    if (!(sampleInterval > 0.0) || !(windowMicroseconds > 0.0)) return 1;
    return std::max<std::size_t>(1, static_cast<std::size_t>(std::lround(windowMicroseconds / sampleInterval)));
}

namespace {

// Adds receiver `x`, moved out by `shift` samples (read at t + shift, linearly between
// samples, 0 outside the record), into the stack and the energy at every t.
void AddMovedOut(std::span<const float> x, double shift, std::vector<double>& stack, std::vector<double>& energy)
{
    const auto n = static_cast<std::ptrdiff_t>(x.size());
    const double whole = std::floor(shift);
    const auto k = static_cast<std::ptrdiff_t>(whole);
    const double frac = shift - whole;
    const auto sample = [&](std::ptrdiff_t i) { return i >= 0 && i < n ? static_cast<double>(x[static_cast<std::size_t>(i)]) : 0.0; };
    // Where both neighbours lie inside the record no test is needed.
    const std::ptrdiff_t inFirst = std::clamp<std::ptrdiff_t>(-k, 0, n);
    const std::ptrdiff_t inEnd = std::clamp<std::ptrdiff_t>(n - 1 - k, inFirst, n);
    for (std::ptrdiff_t t = 0; t < inFirst; ++t) {
        const double v = (1.0 - frac) * sample(t + k) + frac * sample(t + k + 1);
        stack[static_cast<std::size_t>(t)] += v;
        energy[static_cast<std::size_t>(t)] += v * v;
    }
    const float* base = x.data() + k;
    for (std::ptrdiff_t t = inFirst; t < inEnd; ++t) {
        const double v = (1.0 - frac) * static_cast<double>(base[t]) + frac * static_cast<double>(base[t + 1]);
        stack[static_cast<std::size_t>(t)] += v;
        energy[static_cast<std::size_t>(t)] += v * v;
    }
    for (std::ptrdiff_t t = inEnd; t < n; ++t) {
        const double v = (1.0 - frac) * sample(t + k) + frac * sample(t + k + 1);
        stack[static_cast<std::size_t>(t)] += v;
        energy[static_cast<std::size_t>(t)] += v * v;
    }
}

} // namespace

CoherenceMap ComputeCoherenceMap(const ReceiverWaveforms& station, const SlownessGrid& grid,
                                 double windowMicroseconds)
{
    CoherenceMap map;
    const std::size_t receivers = station.traces.size();
    if (receivers < 2 || station.offsets.size() != receivers || !(station.sampleInterval > 0.0)) return map;
    const std::size_t length = station.traces.front().size();
    for (const auto& trace : station.traces) {
        if (trace.size() != length) return map;
    }
    const std::size_t window = WindowSamples(windowMicroseconds, station.sampleInterval);
    const std::size_t columns = grid.Count();
    if (length < window || columns == 0) return map;
    const std::size_t rows = length - window + 1;

    map.slowness.resize(columns);
    for (std::size_t c = 0; c < columns; ++c) map.slowness[c] = grid.At(c);
    map.time.resize(rows);
    for (std::size_t r = 0; r < rows; ++r) map.time[r] = station.startTime + static_cast<double>(r) * station.sampleInterval;
    map.rho.assign(rows * columns, 0.0f);

    std::vector<double> stack(length);
    std::vector<double> energy(length);
    const double m = static_cast<double>(receivers);
    for (std::size_t c = 0; c < columns; ++c) {
        std::fill(stack.begin(), stack.end(), 0.0);
        std::fill(energy.begin(), energy.end(), 0.0);
        for (std::size_t r = 0; r < receivers; ++r) {
            const double shift = map.slowness[c] * (station.offsets[r] - station.offsets.front()) / station.sampleInterval;
            AddMovedOut(station.traces[r], shift, stack, energy);
        }
        // Window sums kept running: each row adds the sample entering the window and drops
        // the one leaving it, instead of summing the whole window again. What the running
        // sums leave behind in a window of nothing but zeros is not a coherence: windows with
        // less than a trillionth of the record's energy read 0.
        double recordEnergy = 0.0;
        for (const double e : energy) recordEnergy += e;
        const double silent = recordEnergy * 1e-12;
        double numerator = 0.0;
        double denominator = 0.0;
        for (std::size_t t = 0; t < window; ++t) {
            numerator += stack[t] * stack[t];
            denominator += energy[t];
        }
        for (std::size_t row = 0;; ++row) {
            const double rho = denominator > silent ? numerator / (m * denominator) : 0.0;
            map.rho[row * columns + c] = static_cast<float>(std::clamp(rho, 0.0, 1.0));
            if (row + 1 == rows) break;
            const std::size_t leaving = row;
            const std::size_t entering = row + window;
            numerator += stack[entering] * stack[entering] - stack[leaving] * stack[leaving];
            denominator += energy[entering] - energy[leaving];
        }
    }
    return map;
}

} // namespace ba
