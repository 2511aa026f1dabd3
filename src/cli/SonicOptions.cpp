#include "cli/SonicOptions.h"

#include "cli/Command.h"
#include "cli/DocumentAccess.h"
#include "cli/TraceUtilityCommand.h"

namespace ba::cli {

std::vector<std::string> SplitCommas(std::string_view text)
{
    std::vector<std::string> parts;
    while (true) {
        const auto comma = text.find(',');
        parts.emplace_back(text.substr(0, comma));
        if (comma == std::string_view::npos) return parts;
        text.remove_prefix(comma + 1);
    }
}

std::vector<double> Numbers(const std::string& text, const char* option)
{
    std::vector<double> numbers;
    for (std::string part : SplitCommas(text)) {
        double value = 0.0;
        if (!DoubleInto(value)(part).empty()) {
            throw CommandFailure(kExitUsage, "Error: " + std::string(option) + ": \"" + part + "\" is not a number.");
        }
        numbers.push_back(value);
    }
    return numbers;
}

std::vector<std::size_t> ResolveReceivers(const CBoreAnalystDoc& doc, const std::string& list, const std::string& docPath)
{
    std::vector<std::size_t> indices;
    for (const std::string& ref : SplitCommas(list)) indices.push_back(ResolveTrace(doc, ref, docPath));
    return indices;
}

LengthUnit LengthUnitOf(const std::string& text) { return text == "m" ? LengthUnit::Metres : LengthUnit::Feet; }

LengthUnit SlownessLengthUnitOf(const std::string& text) { return text == "us/m" ? LengthUnit::Metres : LengthUnit::Feet; }

} // namespace ba::cli
