#pragma once
// What the sonic processing commands share on their command lines: comma lists of numbers
// and of receivers (sonic traces by name or "#index"), and length units.

#include "model/BoreAnalystDoc.h"
#include "sonic/SonicVelocity.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace ba::cli {

std::vector<std::string> SplitCommas(std::string_view text);

// A comma list of decimal numbers; a usage failure names the option.
std::vector<double> Numbers(const std::string& text, const char* option);

// The document indices of a comma list of trace references; a failure names the document.
std::vector<std::size_t> ResolveReceivers(const CBoreAnalystDoc& doc, const std::string& list, const std::string& docPath);

// "ft" or "m"; "us/ft" or "us/m".
LengthUnit LengthUnitOf(const std::string& text);
LengthUnit SlownessLengthUnitOf(const std::string& text);

} // namespace ba::cli
