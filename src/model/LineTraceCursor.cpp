#include "model/LineTraceCursor.h"

namespace ba {

CLineTraceCursor::CLineTraceCursor(const CLineTrace& trace)
    : m_trace(trace), m_depths(trace.StoredDepths().Data()), m_count(trace.SampleCount()),
      m_factor(DepthUnitFactor(trace.DepthUnit())), m_irregular(trace.IrregularAxis())
{
    if (m_count < 3) {
        m_delegate = true;
        return;
    }
    // ValueAt's search over three or more samples settles on the last sample before d (at
    // or before d on an irregular axis), looking no further than the next-to-last sample
    // on a regular axis and the last one on an irregular axis.
    m_lastCandidate = m_irregular ? m_count - 1 : m_count - 2;
    m_reach = 2.0f * trace.SamplingStep();
    for (std::size_t i = 1; i < m_count; ++i) {
        // Written so that a NaN depth also counts as out of order.
        if (!(DisplayDepth(i - 1) <= DisplayDepth(i))) {
            m_delegate = true;
            return;
        }
    }
}

float CLineTraceCursor::Interpolate(std::size_t i0, std::size_t i1, float d) const
{
    // The same arithmetic as CLineTrace::ValueAt, so that the results agree to the bit.
    const float v0 = m_trace.Value(i0);
    const float v1 = m_trace.Value(i1);
    if (IsNullSample(v0) || IsNullSample(v1)) return kNullValue;
    const double d0 = DisplayDepth(i0);
    const double d1 = DisplayDepth(i1);
    if (d1 == d0) return v0;
    return static_cast<float>(v0 + (d - d0) * (static_cast<double>(v1) - v0) / (d1 - d0));
}

void CLineTraceCursor::StrideForward(float d)
{
    // m_lo passes; find a sample that does not in doubling strides, then the last that does
    // between the two by halving.
    std::size_t fails = m_lastCandidate + 1;
    for (std::size_t stride = 1; m_lo < m_lastCandidate; stride *= 2) {
        const std::size_t probe = std::min(m_lastCandidate, m_lo + stride);
        if (!Passes(probe, d)) {
            fails = probe;
            break;
        }
        m_lo = probe;
    }
    while (fails - m_lo > 1) {
        const std::size_t middle = m_lo + (fails - m_lo) / 2;
        if (Passes(middle, d)) m_lo = middle;
        else fails = middle;
    }
}

float CLineTraceCursor::ValueAt(float d)
{
    if (m_delegate) return m_trace.ValueAt(d);

    // Over ascending depths "passes" holds for a leading run of samples; the search result
    // is the last sample of that run within the candidates, or sample 0 when the run is
    // empty. Move from the previous answer to the new one.
    std::size_t steps = 0;
    while (m_lo < m_lastCandidate && Passes(m_lo + 1, d)) {
        ++m_lo;
        if (++steps == kStepsBeforeStriding) {
            StrideForward(d);
            break;
        }
    }
    while (m_lo > 0 && !Passes(m_lo, d)) --m_lo;

    const std::size_t i0 = m_lo;
    const float depth0 = DisplayDepth(i0);
    if (depth0 == d) return m_trace.Value(i0);
    if (i0 + 1 < m_count && depth0 <= d && d <= DisplayDepth(i0 + 1)) return Interpolate(i0, i0 + 1, d);
    const float first = DisplayDepth(0);
    const float last = DisplayDepth(m_count - 1);
    if (d < first && first - d <= m_reach) return Interpolate(0, 0, d);
    if (d > last && d - last <= m_reach) return Interpolate(m_count - 1, m_count - 1, d);
    return kNullValue;
}

} // namespace ba
