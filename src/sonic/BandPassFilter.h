#pragma once
// A zero-phase Butterworth band-pass for waveforms: a high-pass at the low corner and a
// low-pass at the high corner, each a Butterworth filter of the order asked for (2 to 4),
// designed by the bilinear transform with the corners pre-warped, as second-order (and,
// for order 3, first-order) sections. The waveform is filtered forward and then backward,
// so arrivals keep their times; each corner's gain is then 1/2 (two passes of 1/√2).
// The ends are extended by odd reflection (three periods of the low corner at most) before filtering so that a waveform that starts
// or ends away from zero does not ring.

#include "base/MessageSink.h"

#include <optional>
#include <span>
#include <string>
#include <vector>

namespace ba {

struct BandPass {
    double lowHz = 1000.0;
    double highHz = 25000.0;
    int order = 4;
    friend bool operator==(const BandPass&, const BandPass&) = default;
};

// What is wrong with the band for waveforms sampled every `sampleIntervalMicroseconds`:
// none when it can be used.
std::optional<std::string> BandPassProblem(const BandPass& band, double sampleIntervalMicroseconds);

class CBandPassFilter {
public:
    // The band must have no problem (BandPassProblem).
    CBandPassFilter(const BandPass& band, double sampleIntervalMicroseconds);

    void ApplyZeroPhase(std::span<float> waveform) const;

private:
    struct Section {
        double b0, b1, b2, a1, a2; // a0 = 1
    };
    void RunSections(std::vector<double>& x) const;

    std::vector<Section> m_sections;
    std::size_t m_pad = 0;
};

} // namespace ba
