#pragma once
// Moving averages of a log over a window of samples centred on each sample.

#include <cstddef>
#include <span>

namespace ba {

enum class AverageWeights {
    Boxcar,   // every sample of the window counts the same
    Triangle, // weight h + 1 - |offset| for a window of 2h + 1 samples
};

// Writes to `out` (as long as `values`) the weighted mean of the usable samples among the
// `window` samples centred on each sample (`window` odd). A sample that is not usable (see
// IsUsableSample) is copied as it is and left out of every window; near the ends a window
// holds only the samples that exist. Runs in time proportional to the sample count,
// whatever the window.
void MovingAverage(std::span<const float> values, std::size_t window, AverageWeights weights, std::span<float> out);

} // namespace ba
