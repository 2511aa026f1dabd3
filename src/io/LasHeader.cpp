#include "io/LasHeader.h"

#include "io/LasIssues.h"
#include "io/LasNumber.h"

#include <array>
#include <cmath>

namespace ba {
namespace {

bool IsBlank(char c) { return c == ' ' || c == '\t'; }

std::string_view SkipBlanks(std::string_view text)
{
    std::size_t i = 0;
    while (i < text.size() && IsBlank(text[i])) ++i;
    return text.substr(i);
}

// The text after the first full stop, or nothing when the line has none.
std::string_view AfterFullStop(std::string_view line)
{
    const std::size_t dot = line.find('.');
    return dot == std::string_view::npos ? std::string_view{} : line.substr(dot + 1);
}

std::optional<double> NumberAt(std::string_view text)
{
    text = SkipBlanks(text);
    double value = 0.0;
    const char* first = text.data();
    const char* end = ParseLasNumber(first, first + text.size(), value);
    if (end == first) return std::nullopt;
    return value;
}

bool StartsWith(std::string_view text, std::string_view prefix) { return text.substr(0, prefix.size()) == prefix; }

// "HHMMSS", "DD/MM/YYYY-HH:MM:SS", "hh:mm:ss": only the letters of date and clock patterns
// and their separators, with at least one letter doubled.
bool IsDateOrClockPattern(std::string_view upper)
{
    if (upper.size() < 4) return false;
    bool doubled = false;
    for (std::size_t i = 0; i < upper.size(); ++i) {
        const char c = upper[i];
        const bool letter = c == 'D' || c == 'M' || c == 'Y' || c == 'H' || c == 'S';
        if (!letter && c != '/' && c != '-' && c != ':' && c != '.' && c != ' ' && c != '_') return false;
        if (letter && i > 0 && upper[i - 1] == c) doubled = true;
    }
    return doubled;
}

struct UnitEntry {
    std::string_view name;
    LasAxis axis;
    std::int32_t code;
    double toStored;
};

constexpr double kFoot = 0.3048;
constexpr std::array<UnitEntry, 41> kIndexUnits = {{
    {"M", LasAxis::Length, 1, 1.0},          {"METER", LasAxis::Length, 1, 1.0},
    {"METERS", LasAxis::Length, 1, 1.0},     {"METRE", LasAxis::Length, 1, 1.0},
    {"METRES", LasAxis::Length, 1, 1.0},     {"MTR", LasAxis::Length, 1, 1.0},
    {"CM", LasAxis::Length, 1, 0.01},        {"MM", LasAxis::Length, 1, 0.001},
    {"KM", LasAxis::Length, 1, 1000.0},      {"F", LasAxis::Length, 0, kFoot},
    {"FT", LasAxis::Length, 0, kFoot},       {"FEET", LasAxis::Length, 0, kFoot},
    {"FOOT", LasAxis::Length, 0, kFoot},     {"USFT", LasAxis::Length, 0, 1200.0 / 3937.0},
    {"FTUS", LasAxis::Length, 0, 1200.0 / 3937.0}, {"IN", LasAxis::Length, 0, 0.0254},
    {"INCH", LasAxis::Length, 0, 0.0254},    {"INCHES", LasAxis::Length, 0, 0.0254},
    {".1IN", LasAxis::Length, 0, 0.00254},   {"0.1IN", LasAxis::Length, 0, 0.00254},
    {"S", LasAxis::Time, 2, 1.0 / 60.0},     {"SEC", LasAxis::Time, 2, 1.0 / 60.0},
    {"SECS", LasAxis::Time, 2, 1.0 / 60.0},  {"SECOND", LasAxis::Time, 2, 1.0 / 60.0},
    {"SECONDS", LasAxis::Time, 2, 1.0 / 60.0}, {"MS", LasAxis::Time, 2, 1.0 / 60000.0},
    {"MSEC", LasAxis::Time, 2, 1.0 / 60000.0}, {"MIN", LasAxis::Time, 3, 1.0},
    {"MINS", LasAxis::Time, 3, 1.0},         {"MINUTE", LasAxis::Time, 3, 1.0},
    {"MINUTES", LasAxis::Time, 3, 1.0},      {"H", LasAxis::Time, 4, 60.0},
    {"HR", LasAxis::Time, 4, 60.0},          {"HRS", LasAxis::Time, 4, 60.0},
    {"HOUR", LasAxis::Time, 4, 60.0},        {"HOURS", LasAxis::Time, 4, 60.0},
    {"D", LasAxis::Time, 5, 1440.0},         {"DAY", LasAxis::Time, 5, 1440.0},
    {"DAYS", LasAxis::Time, 5, 1440.0},      {"MILLISECOND", LasAxis::Time, 2, 1.0 / 60000.0},
    {"MILLISECONDS", LasAxis::Time, 2, 1.0 / 60000.0},
}};

} // namespace

bool IsLasValueDelimiter(char c) { return c == ' ' || c == ':' || c == ',' || c == '"' || c == '\t'; }
bool IsLasMnemonicDelimiter(char c) { return IsLasValueDelimiter(c) || c == '.'; }

std::string_view TrimLasBlanks(std::string_view text)
{
    text = SkipBlanks(text);
    while (!text.empty() && IsBlank(text.back())) text.remove_suffix(1);
    return text;
}

std::string AsciiUpper(std::string_view text)
{
    std::string out(text);
    for (char& c : out) {
        if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
    }
    return out;
}

// --- sections -------------------------------------------------------------------------

LasSectionLine ClassifyLasSection(std::string_view line)
{
    LasSectionLine section;
    const std::string_view rest = line.substr(1);
    if (rest.empty() || IsBlank(rest[0])) {
        section.kind = LasSectionKind::Nameless;
        return section;
    }
    std::size_t end = 0;
    while (end < rest.size() && !IsBlank(rest[end]) && rest[end] != '|') ++end;
    section.name = std::string(rest.substr(0, end));
    const std::size_t bar = rest.find('|');
    if (bar != std::string_view::npos) {
        const std::string_view after = SkipBlanks(rest.substr(bar + 1));
        std::size_t stop = 0;
        while (stop < after.size() && !IsBlank(after[stop])) ++stop;
        section.association = std::string(after.substr(0, stop));
    }

    const std::string upper = AsciiUpper(section.name);
    const bool logNamed = StartsWith(upper, "LOG");
    if (bar != std::string_view::npos) {
        section.kind = upper[0] == 'A' || logNamed ? LasSectionKind::LogData : LasSectionKind::Data;
    } else if (upper[0] == 'V') {
        section.kind = LasSectionKind::Version;
    } else if (upper[0] == 'W') {
        section.kind = LasSectionKind::Well;
    } else if (upper.find("DEFINITION") != std::string::npos) {
        section.kind = logNamed ? LasSectionKind::Curves : LasSectionKind::Definition;
    } else if (upper[0] == 'C') {
        section.kind = LasSectionKind::Curves;
    } else if (upper[0] == 'A' || StartsWith(upper, "LOG_DATA")) {
        section.kind = LasSectionKind::LogData;
    }
    return section;
}

// --- item lines -----------------------------------------------------------------------

std::string_view LasMnemonic(std::string_view line)
{
    line = SkipBlanks(line);
    std::size_t end = 0;
    while (end < line.size() && !IsLasMnemonicDelimiter(line[end])) ++end;
    return line.substr(0, end);
}

std::string_view LasUnitToken(std::string_view line)
{
    const std::size_t dot = line.find('.');
    if (dot == std::string_view::npos) return {};
    const std::string_view after = line.substr(dot + 1);
    std::size_t end = 0;
    while (end < after.size() && !IsBlank(after[end])) ++end;
    // "GR.GAPI: gamma ray": the line's last colon closes the unit.
    const std::size_t lastColon = line.rfind(':');
    if (lastColon != std::string_view::npos && lastColon > dot && lastColon - dot - 1 < end) end = lastColon - dot - 1;
    return after.substr(0, end);
}

std::string_view LasItemValue(std::string_view line)
{
    const std::string_view value = SkipBlanks(AfterFullStop(line));
    std::size_t end = 0;
    while (end < value.size() && !IsLasValueDelimiter(value[end])) ++end;
    return TrimLasBlanks(value.substr(0, end));
}

std::string_view LasWordValue(std::string_view line)
{
    const std::string_view value = SkipBlanks(AfterFullStop(line));
    std::size_t end = 0;
    while (end < value.size() && !IsLasMnemonicDelimiter(value[end])) ++end;
    return TrimLasBlanks(value.substr(0, end));
}

std::string_view LasDataField(std::string_view line)
{
    const std::size_t dot = line.find('.');
    if (dot == std::string_view::npos) return {};
    const std::size_t unitEnd = dot + 1 + LasUnitToken(line).size();
    std::size_t end = line.rfind(':');
    if (end == std::string_view::npos || end < unitEnd) end = line.size();
    return TrimLasBlanks(line.substr(unitEnd, end - unitEnd));
}

std::optional<double> LasNumberAfterUnit(std::string_view line)
{
    const std::size_t dot = line.find('.');
    if (dot == std::string_view::npos) return std::nullopt;
    const std::string_view after = line.substr(dot + 1);
    std::size_t unitEnd = 0;
    while (unitEnd < after.size() && !IsBlank(after[unitEnd])) ++unitEnd;
    return NumberAt(after.substr(unitEnd));
}

std::optional<double> LasNumberAfterFullStop(std::string_view line)
{
    const std::size_t dot = line.find('.');
    if (dot == std::string_view::npos) return std::nullopt;
    return NumberAt(line.substr(dot + 1));
}

std::string_view LasFormatField(std::string_view line)
{
    // The braces close the description, and may themselves hold colons ("{hh:mm:ss}").
    const std::size_t colon = line.find(':');
    const std::size_t open = line.rfind('{');
    if (colon == std::string_view::npos || open == std::string_view::npos || open < colon) return {};
    const std::size_t close = line.find('}', open);
    if (close == std::string_view::npos) return {};
    return TrimLasBlanks(line.substr(open + 1, close - open - 1));
}

bool IsLasTextFormat(std::string_view format)
{
    const std::string upper = AsciiUpper(TrimLasBlanks(format));
    if (upper.empty()) return false;
    return upper[0] == 'S' || StartsWith(upper, "AS") || IsDateOrClockPattern(upper);
}

// --- the items of ~V and ~W ------------------------------------------------------------

std::string ApplyLasVersionItem(std::string_view line, LasFileHeader& header)
{
    const std::string mnemonic = AsciiUpper(LasMnemonic(line));
    if (mnemonic == "VERS") {
        header.version = std::string(LasItemValue(line));
        header.versionNumber = LasNumberAfterFullStop(line);
    } else if (mnemonic == "WRAP") {
        const std::string wrap = AsciiUpper(LasWordValue(line));
        header.wrapped = wrap == "YES";
        if (wrap != "YES" && wrap != "NO") {
            return "WRAP is \"" + wrap + "\", neither YES nor NO; the data was read as one line per row.";
        }
    } else if (mnemonic == "DLM") {
        const std::string dlm = AsciiUpper(LasItemValue(line));
        if (dlm == "COMMA") header.delimiters = LasDelimiters::Comma;
        else if (dlm == "TAB") header.delimiters = LasDelimiters::Tab;
        else if (dlm == "SPACE" || dlm == "BLANK") header.delimiters = LasDelimiters::Standard;
        else return "DLM is \"" + dlm + "\", not SPACE, TAB or COMMA; values were split at blanks.";
    }
    return {};
}

std::string ApplyLasWellItem(std::string_view line, LasFileHeader& header)
{
    const std::string mnemonic = AsciiUpper(LasMnemonic(line));
    if (mnemonic == "STRT") header.start = LasNumberAfterUnit(line);
    else if (mnemonic == "STOP") header.stop = LasNumberAfterUnit(line);
    else if (mnemonic == "STEP") header.step = LasNumberAfterUnit(line);
    if (mnemonic != "NULL") return {};

    header.nullText = std::string(LasItemValue(line));
    header.nullValue = LasNumberAfterFullStop(line);
    if (!header.nullValue) header.nullValue = LasNumberAfterUnit(line);
    if (!header.nullValue) {
        const std::string_view field = LasDataField(line);
        return (field.empty() ? std::string("the NULL line gives no value")
                              : "the NULL value " + QuoteLasText(field) + " is not a number") +
               "; no value is taken as missing.";
    }
    if (*header.nullValue == 0.0) {
        return "the NULL value is " + header.nullText + ": only values written as " +
               (std::signbit(*header.nullValue) ? "-0" : "0 without a minus sign") +
               " are taken as missing, other zeros are kept.";
    }
    return {};
}

// --- the index unit -------------------------------------------------------------------

LasIndexUnit ClassifyLasIndexUnit(std::string_view unit)
{
    std::string_view text = TrimLasBlanks(unit);
    if (text.size() >= 2 && ((text.front() == '[' && text.back() == ']') || (text.front() == '(' && text.back() == ')'))) {
        text = TrimLasBlanks(text.substr(1, text.size() - 2));
    }
    const std::string upper = AsciiUpper(text);

    LasIndexUnit result;
    for (const UnitEntry& entry : kIndexUnits) {
        if (entry.name == upper) {
            result.axis = entry.axis;
            result.depthUnitCode = entry.code;
            result.toStored = entry.toStored;
            result.recognised = true;
            return result;
        }
    }
    // Cyrillic "м", "метр", "метер": metres.
    if (StartsWith(text, "\xD0\xBC") || StartsWith(text, "\xD0\x9C")) {
        result.depthUnitCode = 1;
        result.recognised = true;
        return result;
    }
    if (IsDateOrClockPattern(upper)) {
        result.axis = LasAxis::Time;
        result.dateOrClock = true;
        return result;
    }
    // Anything else: metres when it begins with "M", feet otherwise, as the import always did.
    const bool metres = !upper.empty() && upper[0] == 'M';
    result.depthUnitCode = metres ? 1 : 0;
    result.toStored = metres ? 1.0 : kFoot;
    return result;
}

} // namespace ba
