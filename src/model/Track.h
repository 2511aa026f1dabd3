#pragma once
// A plot column: a name, its area in logical units and six small settings (T1..T6) that
// the log plot view consumes. Settings are stored as 16-bit words.

#include "model/Trace.h"

#include <array>
#include <cstdint>
#include <string>

namespace ba {

class CTrack {
public:
    static constexpr std::string_view kClassName = "CTrack";

    CTrack() = default;
    CTrack(std::string name, const CRect32& area, const std::array<std::int32_t, 6>& settings)
        : m_name(std::move(name)), m_area(area), m_settings(settings)
    {
    }

    const std::string& Name() const { return m_name; }
    void SetName(std::string name) { m_name = std::move(name); }
    const CRect32& Area() const { return m_area; }
    void SetArea(const CRect32& area) { m_area = area; }
    // T1..T6 by zero-based position.
    std::int32_t Setting(std::size_t i) const { return m_settings.at(i); }
    void SetSetting(std::size_t i, std::int32_t value) { m_settings.at(i) = value; }
    const std::array<std::int32_t, 6>& Settings() const { return m_settings; }

    void Serialize(CArchiveWriter& ar) const;
    void Deserialize(CArchiveReader& ar);

private:
    std::string m_name;
    CRect32 m_area;
    std::array<std::int32_t, 6> m_settings{};
};

} // namespace ba
