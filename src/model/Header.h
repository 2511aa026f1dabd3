#pragma once
// The plot header block: the borehole identification shown above the tracks, its area and
// two small settings (H1, H2) stored as 16-bit words. The header also keeps the list of
// traces whose legend boxes it lays out, in document order.

#include "model/Trace.h"

#include <cstdint>
#include <string>
#include <vector>

namespace ba {

class CHeader {
public:
    static constexpr std::string_view kClassName = "CHeader";

    const std::string& Title() const { return m_title; }
    void SetTitle(std::string title) { m_title = std::move(title); }
    const CRect32& Area() const { return m_area; }
    void SetArea(const CRect32& area) { m_area = area; }
    std::int32_t H1() const { return m_h1; }
    std::int32_t H2() const { return m_h2; }
    void SetH1(std::int32_t value) { m_h1 = value; }
    void SetH2(std::int32_t value) { m_h2 = value; }

    // The title twice: cut to 25 bytes, then whole as a length-prefixed string (the copy
    // that a reader keeps).
    void Serialize(CArchiveWriter& ar) const;
    void Deserialize(CArchiveReader& ar);

    // Legend registration: the traces that get a legend box, in document order.
    void RegisterTrace(const CTrace* trace);
    void UnregisterTrace(const CTrace* trace);
    void ClearRegistrations() { m_legendTraces.clear(); }
    const std::vector<const CTrace*>& LegendTraces() const { return m_legendTraces; }

private:
    std::string m_title;
    CRect32 m_area;
    std::int32_t m_h1 = 0;
    std::int32_t m_h2 = 0;
    std::vector<const CTrace*> m_legendTraces;
};

} // namespace ba
