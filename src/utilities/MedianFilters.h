#pragma once
// Filters built on the running median of a log: the median filter and the despiker.
// Windows are `window` samples (odd) centred on each sample; near the ends a window holds
// only the samples that exist, and samples that are not usable (see IsUsableSample) are
// left out of every window and copied as they are. A window with an even number of usable
// samples has the mean of its two middle values as its median.

#include <cstddef>
#include <span>

namespace ba {

// Writes to `out` (as long as `values`) the running median of each usable sample's window.
void MedianFilter(std::span<const float> values, std::size_t window, std::span<float> out);

// Copies `values` to `out`, except that a usable sample farther than `k` times its
// window's median absolute deviation from the window's median becomes that median.
void Despike(std::span<const float> values, std::size_t window, double k, std::span<float> out);

} // namespace ba
