#pragma once
// Waveforms of a station made of Ricker arrivals, for tests of the sonic methods.

#include "sonic/Semblance.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <random>
#include <vector>

namespace ba::test {

struct Arrival {
    double slowness;  // µs/ft
    double frequency; // Hz
    double amplitude;
};

// Ricker wavelets arriving at each receiver at offset × slowness (plus one period, so that
// each wavelet starts inside the record), with Gaussian noise of `noise` times the weakest
// arrival's amplitude.
inline std::vector<std::vector<float>> Synthesise(const std::vector<double>& offsets, const std::vector<Arrival>& arrivals,
                                           double dt, std::size_t n, double noise, unsigned seed)
{
    std::mt19937 rng(seed);
    double weakest = arrivals.empty() ? 1.0 : arrivals.front().amplitude;
    for (const Arrival& a : arrivals) weakest = std::min(weakest, a.amplitude);
    std::normal_distribution<double> gauss(0.0, noise * weakest);
    std::vector<std::vector<float>> traces;
    for (const double z : offsets) {
        std::vector<float> x(n);
        for (std::size_t i = 0; i < n; ++i) {
            const double t = static_cast<double>(i) * dt;
            double v = gauss(rng);
            for (const Arrival& a : arrivals) {
                const double u = std::numbers::pi * a.frequency * 1e-6 * (t - z * a.slowness - 1e6 / a.frequency);
                v += a.amplitude * (1.0 - 2.0 * u * u) * std::exp(-u * u);
            }
            x[i] = static_cast<float>(v);
        }
        traces.push_back(std::move(x));
    }
    return traces;
}

inline ReceiverWaveforms Station(const std::vector<std::vector<float>>& traces, const std::vector<double>& offsets, double dt)
{
    ReceiverWaveforms station;
    for (const auto& t : traces) station.traces.emplace_back(t);
    station.offsets = offsets;
    station.sampleInterval = dt;
    return station;
}

} // namespace ba::test
