#include "model/Track.h"

#include "model/Archive.h"

namespace ba {

void CTrack::Serialize(CArchiveWriter& ar) const
{
    ar.WriteString(m_name);
    ar.WriteInt32(m_area.left);
    ar.WriteInt32(m_area.top);
    ar.WriteInt32(m_area.right);
    ar.WriteInt32(m_area.bottom);
    for (const std::int32_t t : m_settings) ar.WriteWord(static_cast<std::uint16_t>(t));
}

void CTrack::Deserialize(CArchiveReader& ar)
{
    m_name = ar.ReadString();
    m_area.left = ar.ReadInt32();
    m_area.top = ar.ReadInt32();
    m_area.right = ar.ReadInt32();
    m_area.bottom = ar.ReadInt32();
    for (std::int32_t& t : m_settings) ar.ReadWordInto(t);
}

} // namespace ba
