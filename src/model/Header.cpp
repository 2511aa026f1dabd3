#include "model/Header.h"

#include "model/Archive.h"

#include <algorithm>

namespace ba {

void CHeader::Serialize(CArchiveWriter& ar) const
{
    ar.WriteFixedText(m_title);
    ar.WriteString(m_title);
    ar.WriteInt32(m_area.left);
    ar.WriteInt32(m_area.top);
    ar.WriteInt32(m_area.right);
    ar.WriteInt32(m_area.bottom);
    ar.WriteWord(static_cast<std::uint16_t>(m_h1));
    ar.WriteWord(static_cast<std::uint16_t>(m_h2));
}

void CHeader::Deserialize(CArchiveReader& ar)
{
    m_title = ar.ReadFixedText();
    m_title = ar.ReadString();
    m_area.left = ar.ReadInt32();
    m_area.top = ar.ReadInt32();
    m_area.right = ar.ReadInt32();
    m_area.bottom = ar.ReadInt32();
    ar.ReadWordInto(m_h1);
    ar.ReadWordInto(m_h2);
}

void CHeader::RegisterTrace(const CTrace* trace)
{
    if (std::find(m_legendTraces.begin(), m_legendTraces.end(), trace) == m_legendTraces.end()) {
        m_legendTraces.push_back(trace);
    }
}

void CHeader::UnregisterTrace(const CTrace* trace)
{
    std::erase(m_legendTraces, trace);
}

} // namespace ba
