#pragma once
// Synthetic spectral gamma logs for tests, the demo and the benchmarks: what a 1024-channel
// NaI(Tl) tool records in formations of depth-varying potassium, uranium and thorium.
//
// Each spectrum is the sum of the photopeaks of the natural emitters (K-40 1461 keV;
// U series Bi-214 609, 1120, 1764 keV; Th series Tl-208 583, 2614 keV and Ac-228 911 keV),
// each a Gaussian whose FWHM grows with the square root of energy (7% at 662 keV), over
// the Compton continuum of every peak and the low-energy scatter of the formation. The
// detector's gain falls as the tool warms, so peaks drift down the channels with
// temperature. Expected counts are turned into Poisson counts.

#include "model/SpectralTrace.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <random>
#include <vector>

namespace ba::synth {

struct Radioelements {
    double potassiumPercent = 0.0;
    double uraniumPpm = 0.0;
    double thoriumPpm = 0.0;
};

struct Detector {
    int channels = 1024;
    double keVPerChannelAt20C = 3.0;
    double offsetKeV = 0.0;
    double gainDriftPerDegree = -0.003; // relative gain change per degree C
    double resolutionAt662 = 0.07;      // FWHM / energy
};

// Gain in keV per channel at a tool temperature.
inline double GainAt(const Detector& d, double temperature)
{
    return d.keVPerChannelAt20C * (1.0 + d.gainDriftPerDegree * (temperature - 20.0));
}

// Full width at half maximum (keV) of a peak at `energy` keV.
inline double PeakFwhm(const Detector& d, double energy) { return d.resolutionAt662 * std::sqrt(662.0 * energy); }

struct Emission {
    double energy;       // keV
    double cpsPerUnit;   // photopeak count rate per % K or ppm U or Th
    int element;         // 0 K, 1 U, 2 Th
};

// Photopeak count rates of a borehole NaI tool, per unit of concentration.
inline constexpr Emission kEmissions[] = {
    {1461.0, 6.0, 0}, // K-40
    {609.0, 2.0, 1},  // Bi-214
    {1120.0, 0.6, 1}, // Bi-214
    {1764.0, 0.7, 1}, // Bi-214
    {583.0, 0.8, 2},  // Tl-208
    {911.0, 0.6, 2},  // Ac-228
    {2614.0, 0.5, 2}, // Tl-208
};

inline double Concentration(const Radioelements& r, int element)
{
    return element == 0 ? r.potassiumPercent : element == 1 ? r.uraniumPpm : r.thoriumPpm;
}

// Expected counts per second in every channel.
inline std::vector<double> ExpectedCountRates(const Radioelements& r, double temperature, const Detector& d)
{
    const auto channels = static_cast<std::size_t>(std::max(d.channels, 0));
    std::vector<double> rates(channels, 0.0);
    const double gain = GainAt(d, temperature);
    auto channelLow = [&](std::size_t k) { return d.offsetKeV + gain * static_cast<double>(k); };
    double totalPeakRate = 0.0;
    for (const Emission& e : kEmissions) {
        const double peakRate = e.cpsPerUnit * Concentration(r, e.element);
        if (peakRate <= 0.0) continue;
        totalPeakRate += peakRate;
        const double sigma = PeakFwhm(d, e.energy) / 2.3548;
        // Compton continuum: flat up to the Compton edge, carrying more counts than the
        // photopeak, the more so at high energy.
        const double edge = e.energy * (1.0 - 1.0 / (1.0 + 2.0 * e.energy / 511.0));
        const double comptonRate = peakRate * (1.5 + e.energy / 1000.0);
        for (std::size_t k = 0; k < channels; ++k) {
            const double lo = channelLow(k);
            const double hi = lo + gain;
            const double inPeak = 0.5 * (std::erf((hi - e.energy) / (sigma * std::sqrt(2.0))) -
                                         std::erf((lo - e.energy) / (sigma * std::sqrt(2.0))));
            const double overlap = std::max(0.0, std::min(hi, edge) - std::max(lo, 0.0));
            rates[k] += peakRate * inPeak + comptonRate * overlap / edge;
        }
    }
    // Scatter in the formation and the borehole fills the low channels.
    const double scatterRate = 4.0 * totalPeakRate;
    const double scale = 120.0; // keV
    for (std::size_t k = 0; k < channels; ++k) {
        const double lo = std::max(channelLow(k), 30.0);
        const double hi = std::max(channelLow(k) + gain, 30.0);
        rates[k] += scatterRate * (std::exp(-(lo - 30.0) / scale) - std::exp(-(hi - 30.0) / scale));
    }
    return rates;
}

// Poisson counts for a live time, limited to what a 16-bit channel holds.
inline ImageRow PoissonCounts(const std::vector<double>& rates, double liveTime, std::mt19937_64& rng)
{
    ImageRow counts(rates.size(), 0);
    for (std::size_t k = 0; k < rates.size(); ++k) {
        const double mean = rates[k] * liveTime;
        if (mean <= 0.0) continue;
        std::poisson_distribution<long> draw(mean);
        counts[k] = static_cast<std::uint16_t>(std::min<long>(draw(rng), 65535));
    }
    return counts;
}

// The formation at a depth (metres): 4 m beds alternating between sandstone and shale with
// gradational contacts, a slow trend in thorium, and a uranium-rich seam at 137 to 138 m.
inline Radioelements FormationAt(double depth)
{
    const double bed = 0.5 + 0.5 * std::tanh(4.0 * std::sin(depth * 3.14159265358979 / 4.0)); // 0 sand, 1 shale
    Radioelements r;
    r.potassiumPercent = 0.6 + 2.2 * bed;
    r.uraniumPpm = 1.2 + 2.8 * bed;
    r.thoriumPpm = 4.0 + 9.0 * bed + 2.0 * std::sin(depth / 23.0);
    if (depth >= 137.0 && depth <= 138.0) r.uraniumPpm += 40.0;
    return r;
}

struct LogOptions {
    std::size_t spectra = 1000;
    double topDepth = 100.0; // metres
    double step = 0.1;       // metres per spectrum
    double liveTime = 1.0;   // seconds per spectrum
    double deadFraction = 0.02;
    double surfaceTemperature = 18.0;
    double temperatureGradient = 0.03; // degrees C per metre
    double warmUp = 8.0;               // degrees C the electronics add, reached over about half an hour
    unsigned long long seed = 1;
    Detector detector;
};

// Tool temperature of spectrum i: the borehole's temperature plus the electronics warming up.
inline double ToolTemperature(const LogOptions& o, double depth, double totalTime)
{
    return o.surfaceTemperature + o.temperatureGradient * depth + o.warmUp * (1.0 - std::exp(-totalTime / 1800.0));
}

inline std::unique_ptr<CSpectralTrace> MakeSpectralLog(const std::string& name, const LogOptions& o)
{
    auto trace = std::make_unique<CSpectralTrace>(name, 0.0f, 100.0f, "CPS");
    trace->SetText("Synthetic NaI(Tl) spectral gamma log");
    std::mt19937_64 rng(o.seed);
    std::normal_distribution<double> hvNoise(0.0, 0.4);
    const double realTime = o.liveTime / (1.0 - o.deadFraction);
    for (std::size_t i = 0; i < o.spectra; ++i) {
        const double depth = o.topDepth + o.step * static_cast<double>(i);
        const double totalTime = realTime * static_cast<double>(i + 1);
        const double temperature = ToolTemperature(o, depth, totalTime);
        const auto rates = ExpectedCountRates(FormationAt(depth), temperature, o.detector);
        trace->AppendSpectrum(static_cast<float>(depth), PoissonCounts(rates, o.liveTime, rng),
                              static_cast<float>(o.liveTime), static_cast<float>(totalTime),
                              static_cast<float>(temperature), static_cast<float>(1000.0 + hvNoise(rng)));
    }
    return trace;
}

} // namespace ba::synth
