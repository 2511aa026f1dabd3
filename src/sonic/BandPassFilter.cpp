#include "sonic/BandPassFilter.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <sstream>

namespace ba {
namespace {

std::string Kilohertz(double hz)
{
    std::ostringstream out;
    out << hz / 1000.0;
    return out.str();
}

} // namespace

std::optional<std::string> BandPassProblem(const BandPass& band, double sampleIntervalMicroseconds)
{
    const double nyquist = 0.5e6 / sampleIntervalMicroseconds;
    const std::string range = "the band-pass from " + Kilohertz(band.lowHz) + " to " + Kilohertz(band.highHz) + " kHz";
    if (band.order < 2 || band.order > 4) {
        return "Error: the band-pass order must be 2, 3 or 4; " + std::to_string(band.order) + " was given.";
    }
    if (!(band.lowHz > 0.0) || !(band.highHz > band.lowHz)) {
        return "Error: " + range + " must have a low corner above 0 and below its high corner.";
    }
    if (!(band.highHz < nyquist)) {
        return "Error: " + range + " must stay below half the sampling rate, " + Kilohertz(nyquist) +
               " kHz for samples every " + Kilohertz(sampleIntervalMicroseconds * 1000.0) + " us.";
    }
    return std::nullopt;
}

CBandPassFilter::CBandPassFilter(const BandPass& band, double sampleIntervalMicroseconds)
{
    const double fs = 1e6 / sampleIntervalMicroseconds;
    const int n = band.order;
    const auto addSections = [&](double corner, bool highPass) {
        const double w0 = 2.0 * std::numbers::pi * corner / fs;
        const double cosw = std::cos(w0);
        // Second-order sections: the pole pairs of the Butterworth prototype.
        for (int k = 1; k <= n / 2; ++k) {
            const double q = 1.0 / (2.0 * std::sin((2.0 * k - 1.0) * std::numbers::pi / (2.0 * n)));
            const double alpha = std::sin(w0) / (2.0 * q);
            const double a0 = 1.0 + alpha;
            const double g = highPass ? (1.0 + cosw) / 2.0 : (1.0 - cosw) / 2.0;
            m_sections.push_back({g / a0, (highPass ? -2.0 : 2.0) * g / a0, g / a0, -2.0 * cosw / a0, (1.0 - alpha) / a0});
        }
        // Odd orders: the real pole, as a first-order section.
        if (n % 2 == 1) {
            const double t = std::tan(w0 / 2.0);
            const double a1 = (t - 1.0) / (t + 1.0);
            const double b0 = highPass ? 1.0 / (1.0 + t) : t / (1.0 + t);
            m_sections.push_back({b0, highPass ? -b0 : b0, 0.0, a1, 0.0});
        }
    };
    // The ends are extended by three periods of the low corner: the high-pass's transient
    // dies out within them.
    m_pad = static_cast<std::size_t>(std::ceil(3.0 * fs / band.lowHz));
    addSections(band.lowHz, true);
    addSections(band.highHz, false);
}

void CBandPassFilter::RunSections(std::vector<double>& x) const
{
    for (const Section& s : m_sections) {
        double z1 = 0.0, z2 = 0.0; // transposed direct form II
        for (double& v : x) {
            const double y = s.b0 * v + z1;
            z1 = s.b1 * v - s.a1 * y + z2;
            z2 = s.b2 * v - s.a2 * y;
            v = y;
        }
    }
}

void CBandPassFilter::ApplyZeroPhase(std::span<float> waveform) const
{
    const std::size_t n = waveform.size();
    if (n < 2) return;
    const std::size_t pad = std::min(n - 1, m_pad);
    std::vector<double> x(n + 2 * pad);
    for (std::size_t i = 0; i < pad; ++i) {
        x[pad - 1 - i] = 2.0 * waveform[0] - waveform[i + 1];
        x[pad + n + i] = 2.0 * waveform[n - 1] - waveform[n - 2 - i];
    }
    for (std::size_t i = 0; i < n; ++i) x[pad + i] = waveform[i];
    RunSections(x);
    std::reverse(x.begin(), x.end());
    RunSections(x);
    std::reverse(x.begin(), x.end());
    for (std::size_t i = 0; i < n; ++i) waveform[i] = static_cast<float>(x[pad + i]);
}

} // namespace ba
