#include "utilities/SortedWindow.h"

#include <algorithm>
#include <iterator>
#include <stdexcept>

namespace ba {

void CSortedWindow::Insert(float value)
{
    m_values.insert(std::upper_bound(m_values.begin(), m_values.end(), value), value);
}

void CSortedWindow::Erase(float value)
{
    const auto place = std::lower_bound(m_values.begin(), m_values.end(), value);
    if (place == m_values.end() || *place != value) throw std::logic_error("CSortedWindow::Erase: value not held");
    m_values.erase(place);
}

double CSortedWindow::Median() const
{
    const std::size_t n = m_values.size();
    if (n % 2 == 1) return m_values[n / 2];
    return (static_cast<double>(m_values[n / 2 - 1]) + static_cast<double>(m_values[n / 2])) / 2.0;
}

double CSortedWindow::MedianAbsoluteDeviation(double median) const
{
    // The distances of the values below the median, read from the median outwards, ascend;
    // so do those of the values from the median up. The median distance is a selection
    // from these two sorted runs.
    const auto below = static_cast<std::size_t>(
        std::distance(m_values.begin(), std::lower_bound(m_values.begin(), m_values.end(), median,
                                                         [](float v, double m) { return v < m; })));
    const std::size_t n = m_values.size();
    if (n % 2 == 1) return KthDistance(n / 2, median, below);
    return (KthDistance(n / 2 - 1, median, below) + KthDistance(n / 2, median, below)) / 2.0;
}

double CSortedWindow::KthDistance(std::size_t k, double median, std::size_t below) const
{
    const std::size_t above = m_values.size() - below;
    // Run L: median - values[below - 1 - t]; run R: values[below + t] - median.
    const auto l = [&](std::size_t t) { return median - m_values[below - 1 - t]; };
    const auto r = [&](std::size_t t) { return m_values[below + t] - median; };
    // Take i of the k + 1 smallest from L and the rest from R: the right i is the first at
    // which the next distance of L is no smaller than the last one taken from R.
    std::size_t lo = k + 1 > above ? k + 1 - above : 0;
    std::size_t hi = std::min(k + 1, below);
    while (lo < hi) {
        const std::size_t i = lo + (hi - lo) / 2;
        if (l(i) < r(k - i)) lo = i + 1;
        else hi = i;
    }
    const std::size_t fromL = lo;
    const std::size_t fromR = k + 1 - fromL;
    if (fromL == 0) return r(fromR - 1);
    if (fromR == 0) return l(fromL - 1);
    return std::max(l(fromL - 1), r(fromR - 1));
}

} // namespace ba
