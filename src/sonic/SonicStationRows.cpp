#include "sonic/SonicStationRows.h"

#include <utility>

namespace ba {

float SonicStationRows::FirstDepth() const
{
    return m_frontDepths.empty() ? m_backDepths.front() : m_frontDepths.back();
}

float SonicStationRows::LastDepth() const
{
    return m_backDepths.empty() ? m_frontDepths.front() : m_backDepths.back();
}

SonicStationRows::Place SonicStationRows::PlaceFor(float depth) const
{
    if (Count() == 0) return Place::Back;
    if (depth < FirstDepth()) return Place::Front;
    if (depth > LastDepth()) return Place::Back;
    return Place::Dropped;
}

void SonicStationRows::Add(Place place, float depth, ImageRow row)
{
    if (place == Place::Front) {
        m_frontDepths.push_back(depth);
        m_frontRows.push_back(std::move(row));
    } else {
        m_backDepths.push_back(depth);
        m_backRows.push_back(std::move(row));
    }
}

void SonicStationRows::MoveInto(CImageTrace& trace)
{
    trace.StoredDepths().Reserve(trace.SampleCount() + Count());
    for (std::size_t i = m_frontDepths.size(); i-- > 0;) trace.AppendRow(m_frontDepths[i], std::move(m_frontRows[i]));
    for (std::size_t i = 0; i < m_backDepths.size(); ++i) trace.AppendRow(m_backDepths[i], std::move(m_backRows[i]));
    *this = SonicStationRows();
}

} // namespace ba
