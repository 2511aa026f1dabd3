#include "utilities/MovingAverage.h"

#include "utilities/UsableSample.h"

#include <algorithm>
#include <cstdint>

namespace ba {
namespace {

// The window sums are carried from one sample to the next and computed afresh at the
// start of every block of samples, so rounding can never build up along a long log. For
// ordinary logs the carried sums are exact anyway: a double holds the sum of floats of
// similar size without loss.
constexpr std::size_t kFreshSumInterval = 4096;

// A sample's part in a window sum: its value and weight, both zero for a sample that is
// not usable or lies beyond either end.
struct Term {
    double value = 0.0;
    std::int64_t count = 0;
};

class SampleTerms {
public:
    explicit SampleTerms(std::span<const float> values)
        : m_values(values), m_count(static_cast<std::ptrdiff_t>(values.size()))
    {
    }

    Term At(std::ptrdiff_t j) const
    {
        if (j < 0 || j >= m_count) return {};
        const float v = m_values[static_cast<std::size_t>(j)];
        const bool usable = IsUsableSample(v);
        return {usable ? v : 0.0, usable ? 1 : 0};
    }

private:
    std::span<const float> m_values;
    std::ptrdiff_t m_count;
};

struct WeightedSum {
    double sum = 0.0;
    std::int64_t weight = 0;

    void Add(const Term& t, std::int64_t times = 1)
    {
        sum += t.value * static_cast<double>(times);
        weight += t.count * times;
    }
    void Remove(const Term& t)
    {
        sum -= t.value;
        weight -= t.count;
    }
    void Add(const WeightedSum& other)
    {
        sum += other.sum;
        weight += other.weight;
    }
    void Remove(const WeightedSum& other)
    {
        sum -= other.sum;
        weight -= other.weight;
    }
};

float MeanOrSample(float sample, const WeightedSum& window)
{
    // A usable sample is inside its own window, so the weight is never zero there.
    return IsUsableSample(sample) ? static_cast<float>(window.sum / static_cast<double>(window.weight)) : sample;
}

std::ptrdiff_t FreshSumInterval(std::ptrdiff_t h)
{
    return std::max<std::ptrdiff_t>(static_cast<std::ptrdiff_t>(kFreshSumInterval), 8 * h + 4);
}

void Boxcar(std::span<const float> values, std::ptrdiff_t h, std::span<float> out)
{
    const SampleTerms terms(values);
    const auto n = static_cast<std::ptrdiff_t>(values.size());
    const std::ptrdiff_t fresh = FreshSumInterval(h);
    for (std::ptrdiff_t start = 0; start < n; start += fresh) {
        WeightedSum window;
        for (std::ptrdiff_t j = start - h; j <= start + h; ++j) window.Add(terms.At(j));
        out[static_cast<std::size_t>(start)] = MeanOrSample(values[static_cast<std::size_t>(start)], window);
        const std::ptrdiff_t end = std::min(n, start + fresh);
        for (std::ptrdiff_t i = start + 1; i < end; ++i) {
            window.Add(terms.At(i + h));
            window.Remove(terms.At(i - h - 1));
            out[static_cast<std::size_t>(i)] = MeanOrSample(values[static_cast<std::size_t>(i)], window);
        }
    }
}

// The triangle's sum moves from sample i to i + 1 by the half-window sums around it:
//   T(i + 1) = T(i) + R(i) - L(i),  L(i) = sum of x(i - h .. i),  R(i) = sum of x(i + 1 .. i + 1 + h),
// since every weight right of i grows by one and every weight from i - h to i shrinks by one.
void Triangle(std::span<const float> values, std::ptrdiff_t h, std::span<float> out)
{
    const SampleTerms terms(values);
    const auto n = static_cast<std::ptrdiff_t>(values.size());
    const std::ptrdiff_t fresh = FreshSumInterval(h);
    for (std::ptrdiff_t start = 0; start < n; start += fresh) {
        WeightedSum window; // T(i)
        WeightedSum left;   // L(i)
        WeightedSum right;  // R(i)
        for (std::ptrdiff_t j = start - h; j <= start + h; ++j) {
            const std::ptrdiff_t offset = j < start ? start - j : j - start;
            window.Add(terms.At(j), h + 1 - offset);
            if (j <= start) left.Add(terms.At(j));
        }
        for (std::ptrdiff_t j = start + 1; j <= start + 1 + h; ++j) right.Add(terms.At(j));
        out[static_cast<std::size_t>(start)] = MeanOrSample(values[static_cast<std::size_t>(start)], window);
        const std::ptrdiff_t end = std::min(n, start + fresh);
        for (std::ptrdiff_t i = start + 1; i < end; ++i) {
            window.Add(right);
            window.Remove(left);
            const Term entering = terms.At(i);
            left.Add(entering);
            left.Remove(terms.At(i - 1 - h));
            right.Add(terms.At(i + 1 + h));
            right.Remove(entering);
            out[static_cast<std::size_t>(i)] = MeanOrSample(values[static_cast<std::size_t>(i)], window);
        }
    }
}

} // namespace

void MovingAverage(std::span<const float> values, std::size_t window, AverageWeights weights, std::span<float> out)
{
    const auto h = static_cast<std::ptrdiff_t>(window / 2);
    if (weights == AverageWeights::Boxcar) Boxcar(values, h, out);
    else Triangle(values, h, out);
}

} // namespace ba
