#pragma once
// The controlled vocabulary of unit labels: every accepted spelling of every canonical
// unit, and the recogniser that maps a free-text label onto a canonical unit and its type.

#include "units/UnitTypes.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace ba {

struct UnitClassification {
    UnitType type = UnitType::Unknown;
    std::string_view canonical = kUnknownUnit; // static storage; never dangles
    friend bool operator==(const UnitClassification&, const UnitClassification&) = default;
};

// The type and canonical unit of `label`: an exact, case-blind match of the whole label
// (no trimming) against the accepted spellings, or Unknown. A label that two recognisers
// accept goes to the one tried first: "US/M" is slowness, never conductivity.
UnitClassification ClassifyUnits(std::string_view label);

// One accepted spelling (upper case) and what it stands for. `recogniser` is the position
// of the recogniser that lists it in the order they are tried.
struct AcceptedSpelling {
    std::size_t recogniser = 0;
    UnitClassification unit;
    std::string spelling;
};

// Every spelling of every recogniser, in the order they are tried, duplicates included.
std::vector<AcceptedSpelling> AcceptedSpellings();

} // namespace ba
