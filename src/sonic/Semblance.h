#pragma once
// Slowness-time coherence (Kimball and Marzetta, 1984) of one station's waveforms: for a
// slowness s and a time τ, how alike the receivers' waveforms are in a window of length T
// that starts at τ on the first receiver and s·(z_r - z_1) later on receiver r,
//
//   ρ(s, τ) = Σ_t (Σ_r x_r(t + s·(z_r - z_1)))²  /  (M · Σ_t Σ_r x_r(t + s·(z_r - z_1))²),
//
// t running over the window, M receivers. ρ lies in 0..1 and is 1 where every receiver holds
// the same signal moved out by the slowness. Move-outs that fall between samples are read
// by linear interpolation; outside a record a receiver reads 0.

#include <cstddef>
#include <span>
#include <vector>

namespace ba {

// One station as the coherence sees it: the receivers' waveforms, all of the same length,
// sampled alike.
struct ReceiverWaveforms {
    std::vector<std::span<const float>> traces;
    std::vector<double> offsets;  // transmitter to receiver, increasing, in the slowness's length unit
    double sampleInterval = 1.0;  // µs
    double startTime = 0.0;       // µs of the first sample
};

// Slownesses from `first` to `last` (inclusive, within half a step) every `step`.
struct SlownessGrid {
    double first = 40.0;
    double last = 240.0;
    double step = 1.0;
    std::size_t Count() const;
    double At(std::size_t i) const { return first + static_cast<double>(i) * step; }
};

// ρ over the grid's slownesses (across) and the window's start times (down): a row for
// each sample of the first receiver at which a whole window fits in its record.
struct CoherenceMap {
    std::vector<double> slowness; // µs per length unit
    std::vector<double> time;     // window start on the first receiver, µs
    std::vector<float> rho;       // a slowness at a time: rho[column * time.size() + row]

    float At(std::size_t row, std::size_t column) const { return rho[column * time.size() + row]; }
};

// The window in samples for a length in µs: at least 1.
std::size_t WindowSamples(double windowMicroseconds, double sampleInterval);

// Computes ρ for every slowness of `grid` and every window start. Requires two receivers or
// more, of equal lengths, and a window no longer than the record (checked by the caller's
// validation; here an unusable input gives an empty map).
CoherenceMap ComputeCoherenceMap(const ReceiverWaveforms& station, const SlownessGrid& grid,
                                 double windowMicroseconds);

} // namespace ba
