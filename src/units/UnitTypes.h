#pragma once
// The physical types a unit label can belong to, their display names, and the canonical
// units offered for each type. Canonical unit strings are what the user sees and what a
// converted trace is relabelled with.

#include <cstdint>
#include <span>
#include <string_view>

namespace ba {

// Type codes as the conversion dialog stores them. Codes 6, 7 and 8 are reserved: the
// recogniser never produces them, they have an empty name and no units.
enum class UnitType : std::int32_t {
    Unknown = 0,
    Length = 1,
    VelocitySlowness = 2,
    ResistivityConductivity = 3,
    Flow = 4,
    Transmissivity = 5,
    Time = 9,
    Volume = 10,
    Temperature = 11,
};

// The canonical unit of a label that names no known unit.
inline constexpr std::string_view kUnknownUnit = "Unknown";

// "Length", "Velocity-Slowness", ...; "Unknown" for code 0 and "" for codes with no type.
std::string_view UnitTypeName(UnitType type);

// The canonical units a trace of `type` can be converted to, in the order they are
// offered; empty for Unknown and the reserved codes.
std::span<const std::string_view> OfferedUnits(UnitType type);

} // namespace ba
