#pragma once
// The conversion factors between the canonical units of each type, and the rule that
// applies a factor to a value.

#include "units/UnitTypes.h"

#include <optional>
#include <span>
#include <string_view>

namespace ba {

// new = old * factor, or new = factor / old when `reciprocal`; temperatures add or remove
// the 32 degree offset on top (see ConvertValue).
struct ConversionFactor {
    float factor = 1.0f;
    bool reciprocal = false;
    friend bool operator==(const ConversionFactor&, const ConversionFactor&) = default;
};

struct ConversionEntry {
    std::string_view from;
    std::string_view to;
    ConversionFactor conversion;
};

// The table of `type`: one entry per ordered pair of different units; empty for Unknown
// and the reserved codes. The factors are single-precision constants, kept exactly as they
// have always been stored (yards^3 to ft^3 is 26.999998, not 27).
std::span<const ConversionEntry> ConversionTable(UnitType type);

// The conversion from `from` to `to` looked up in the table of `type` only: the table's
// entry, factor 1.0 for a unit offered for `type` converted to itself, or nothing when
// the pair is not in the table (a flow label classified "g/min" finds nothing).
std::optional<ConversionFactor> FindConversion(UnitType type, std::string_view from, std::string_view to);

// One value converted, computed in double precision and rounded to float:
//   reciprocal:                       factor / value (0 gives an infinity)
//   any type but Temperature:         value * factor
//   Temperature, factor below 0.9:    (value - 32) * factor     (Fahrenheit to Celsius)
//   Temperature, factor above 1.1:    value * factor + 32       (Celsius to Fahrenheit)
//   Temperature, any other factor:    value unchanged
// The null value is converted like any other number.
float ConvertValue(float value, UnitType type, ConversionFactor conversion);

// Every value of `values` converted in place.
void ConvertValues(std::span<float> values, UnitType type, ConversionFactor conversion);

} // namespace ba
