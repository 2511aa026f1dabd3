#pragma once
// The values of a sliding window over a log, kept in ascending order, for running medians
// and median absolute deviations. Each step costs a binary search and one contiguous move
// of the values above the place (a few dozen bytes for the usual windows), which is faster
// than heaps or trees of nodes up to windows of thousands of samples; the median is then
// read directly and the median absolute deviation found by a binary search.

#include <cstddef>
#include <vector>

namespace ba {

class CSortedWindow {
public:
    explicit CSortedWindow(std::size_t capacity) { m_values.reserve(capacity); }

    std::size_t Size() const { return m_values.size(); }
    bool Empty() const { return m_values.empty(); }

    void Insert(float value);
    // Takes out one value equal to `value`, which the window must hold.
    void Erase(float value);

    // The middle value, or the mean of the two middle values of an even count. Not empty.
    double Median() const;
    // The median of the distances of the values from `median` (the middle one, or the mean
    // of the two middle ones). Not empty.
    double MedianAbsoluteDeviation(double median) const;

private:
    // The k-th smallest distance from `median` (k from 0), given that the values below
    // `median` are the first `below` ones.
    double KthDistance(std::size_t k, double median, std::size_t below) const;

    std::vector<float> m_values;
};

} // namespace ba
