#pragma once
// Reads a line trace's values at a run of depths that move in one direction, as the rows
// of an export do. Each answer is exactly what CLineTrace::ValueAt gives at that depth, but
// the search for the samples around the depth continues from where the previous one
// ended instead of starting again, so a whole pass over a trace costs one walk along it.

#include "model/LineTrace.h"

#include <cstddef>

namespace ba {

class CLineTraceCursor {
public:
    explicit CLineTraceCursor(const CLineTrace& trace);

    // The value at display depth d, equal to trace.ValueAt(d). Any order of depths gives
    // the right answer; depths that keep moving one way give it in amortised constant time.
    float ValueAt(float d);

private:
    float DisplayDepth(std::size_t i) const
    {
        return static_cast<float>(static_cast<double>(m_depths[i]) * m_factor);
    }
    // Whether the sample search passes sample i on its way to d.
    bool Passes(std::size_t i, float d) const { return m_irregular ? DisplayDepth(i) <= d : DisplayDepth(i) < d; }
    float Interpolate(std::size_t i0, std::size_t i1, float d) const;
    // After this many single steps forward the walk takes long strides, so that a reader
    // skipping far ahead (a thread taking the next share of a computation) pays little.
    static constexpr std::size_t kStepsBeforeStriding = 16;
    void StrideForward(float d);

    const CLineTrace& m_trace;
    const float* m_depths;
    std::size_t m_count;
    double m_factor;
    bool m_irregular;
    std::size_t m_lastCandidate = 0; // the last index the search may settle on
    float m_reach = 0.0f;            // how far beyond the end samples a depth still finds them
    // Traces with fewer than three samples, or whose display depths do not ascend, are
    // answered by ValueAt itself: a walk cannot reproduce its search over unordered depths.
    bool m_delegate = false;
    std::size_t m_lo = 0; // the sample the previous search settled on
};

} // namespace ba
