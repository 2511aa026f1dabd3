#include "sonic/Semblance.h"

#include "numeric/InstructionSets.h"

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
// samples, 0 outside the record), into the stack and the energy at every t. Single
// precision: a waveform holds a few thousand counts, and the sums over a window are kept
// in double.
BA_ALSO_FOR_AVX2 void AddMovedOut(std::span<const float> x, double shift, std::vector<float>& stack,
                                  std::vector<float>& energy)
{
    const auto n = static_cast<std::ptrdiff_t>(x.size());
    const double whole = std::floor(shift);
    const auto k = static_cast<std::ptrdiff_t>(whole);
    const auto frac = static_cast<float>(shift - whole);
    const float keep = 1.0f - frac;
    const auto sample = [&](std::ptrdiff_t i) { return i >= 0 && i < n ? x[static_cast<std::size_t>(i)] : 0.0f; };
    float* __restrict sums = stack.data();
    float* __restrict energies = energy.data();
    const auto add = [&](std::ptrdiff_t t, float v) {
        sums[t] += v;
        energies[t] += v * v;
    };
    // Where both neighbours lie inside the record no test is needed.
    const std::ptrdiff_t inFirst = std::clamp<std::ptrdiff_t>(-k, 0, n);
    const std::ptrdiff_t inEnd = std::clamp<std::ptrdiff_t>(n - 1 - k, inFirst, n);
    std::ptrdiff_t t = 0;
    for (; t < inFirst; ++t) add(t, keep * sample(t + k) + frac * sample(t + k + 1));
    const float* __restrict base = x.data() + k;
    // Sixteen at a time with a fixed count, so that the compiler uses whole vectors.
    for (; t + 16 <= inEnd; t += 16) {
        for (std::ptrdiff_t j = t; j < t + 16; ++j) {
            const float v = keep * base[j] + frac * base[j + 1];
            sums[j] += v;
            energies[j] += v * v;
        }
    }
    for (; t < inEnd; ++t) add(t, keep * base[t] + frac * base[t + 1]);
    for (; t < n; ++t) add(t, keep * sample(t + k) + frac * sample(t + k + 1));
}

// ρ for every window start of one slowness, from the stack and energy at every sample.
BA_ALSO_FOR_AVX2 void WindowCoherence(const std::vector<float>& stack, const std::vector<float>& energy,
                                      std::size_t window, double receivers, double stationEnergy,
                                      std::vector<double>& numerators, std::vector<double>& denominators,
                                      float* column)
{
    const std::size_t length = stack.size();
    const std::size_t rows = length - window + 1;
    // Window sums kept running: each row adds the sample entering the window and drops
    // the one leaving it, instead of summing the whole window again.
    double numerator = 0.0;
    double denominator = 0.0;
    for (std::size_t t = 0; t < window; ++t) {
        numerator += static_cast<double>(stack[t]) * stack[t];
        denominator += energy[t];
    }
    numerators[0] = numerator;
    denominators[0] = denominator;
    for (std::size_t row = 1; row < rows; ++row) {
        const std::size_t leaving = row - 1;
        const std::size_t entering = row + window - 1;
        numerator += static_cast<double>(stack[entering]) * stack[entering] -
                     static_cast<double>(stack[leaving]) * stack[leaving];
        denominator += static_cast<double>(energy[entering]) - energy[leaving];
        numerators[row] = numerator;
        denominators[row] = denominator;
    }
    // What the running sums leave behind in a window of nothing but zeros is not a
    // coherence: windows with less than a trillionth of the station's energy read 0.
    const double silent = stationEnergy * 1e-12;
    const double* __restrict num = numerators.data();
    const double* __restrict den = denominators.data();
    float* __restrict out = column;
    const auto ratio = [&](std::size_t row) {
        // Divided whatever the denominator, then chosen, so that whole vectors go at a time.
        const double rho = num[row] / (receivers * den[row]);
        out[row] = static_cast<float>(den[row] > silent ? std::min(std::max(rho, 0.0), 1.0) : 0.0);
    };
    std::size_t row = 0;
    for (; row + 8 <= rows; row += 8) {
        for (std::size_t j = row; j < row + 8; ++j) ratio(j);
    }
    for (; row < rows; ++row) ratio(row);
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
    map.rho.resize(rows * columns);

    std::vector<float> stack(length);
    std::vector<float> energy(length);
    std::vector<double> numerators(rows);
    std::vector<double> denominators(rows);
    // The first receiver is never moved out: its samples and their squares start every
    // slowness's stack and energy.
    const std::span<const float> nearest = station.traces.front();
    std::vector<float> nearestSquares(length);
    for (std::size_t t = 0; t < length; ++t) nearestSquares[t] = nearest[t] * nearest[t];
    double stationEnergy = 0.0;
    for (const auto& trace : station.traces) {
        for (const float x : trace) stationEnergy += static_cast<double>(x) * x;
    }
    for (std::size_t c = 0; c < columns; ++c) {
        std::copy(nearest.begin(), nearest.end(), stack.begin());
        std::copy(nearestSquares.begin(), nearestSquares.end(), energy.begin());
        for (std::size_t r = 1; r < receivers; ++r) {
            const double shift = map.slowness[c] * (station.offsets[r] - station.offsets.front()) / station.sampleInterval;
            AddMovedOut(station.traces[r], shift, stack, energy);
        }
        WindowCoherence(stack, energy, window, static_cast<double>(receivers), stationEnergy, numerators, denominators,
                        map.rho.data() + c * rows);
    }
    return map;
}

} // namespace ba
