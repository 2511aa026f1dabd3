#include "utilities/MedianFilters.h"

#include "utilities/SortedWindow.h"
#include "utilities/UsableSample.h"

#include <cmath>

namespace ba {
namespace {

// Slides a sorted window along `values` and calls visit(i, window) for every usable
// sample i, with the usable samples of its window.
template <typename Visit>
void SlideWindow(std::span<const float> values, std::size_t window, Visit&& visit)
{
    const std::size_t n = values.size();
    const std::size_t h = window / 2;
    CSortedWindow sorted(window);
    for (std::size_t j = 0; j <= h && j < n; ++j) {
        if (IsUsableSample(values[j])) sorted.Insert(values[j]);
    }
    for (std::size_t i = 0; i < n; ++i) {
        if (i > 0) {
            if (i + h < n && IsUsableSample(values[i + h])) sorted.Insert(values[i + h]);
            if (i > h && IsUsableSample(values[i - h - 1])) sorted.Erase(values[i - h - 1]);
        }
        if (IsUsableSample(values[i])) visit(i, sorted);
    }
}

} // namespace

void MedianFilter(std::span<const float> values, std::size_t window, std::span<float> out)
{
    for (std::size_t i = 0; i < values.size(); ++i) out[i] = values[i];
    SlideWindow(values, window,
                [&](std::size_t i, const CSortedWindow& sorted) { out[i] = static_cast<float>(sorted.Median()); });
}

void Despike(std::span<const float> values, std::size_t window, double k, std::span<float> out)
{
    for (std::size_t i = 0; i < values.size(); ++i) out[i] = values[i];
    SlideWindow(values, window, [&](std::size_t i, const CSortedWindow& sorted) {
        const double median = sorted.Median();
        if (std::abs(values[i] - median) > k * sorted.MedianAbsoluteDeviation(median)) {
            out[i] = static_cast<float>(median);
        }
    });
}

} // namespace ba
