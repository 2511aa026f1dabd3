#pragma once
// The header lines of a LAS file: how a section line is classified, how the fields of an
// item line are taken apart, and what the unit of the index curve means.
//
// Fields are taken the way the import has always taken them: a mnemonic ends at the first
// blank, colon, comma, double quote, tab or full stop; a value starts after the first full
// stop and ends at the first blank, colon, comma, double quote or tab. LAS 2.0's own rule
// (first dot, first blank after it, last colon) gives the same answer on well-formed lines.

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace ba {

// The value delimiter set and the mnemonic delimiter set (the value set plus the full stop).
bool IsLasValueDelimiter(char c);
bool IsLasMnemonicDelimiter(char c);

std::string_view TrimLasBlanks(std::string_view text);
// ASCII letters upper-cased; other bytes (UTF-8 included) unchanged.
std::string AsciiUpper(std::string_view text);

// --- sections -------------------------------------------------------------------------

enum class LasSectionKind {
    Version,    // ~V...
    Well,       // ~W...
    Curves,     // ~C... : the curves of the log data (LAS 3.0 ~Log_Definition included)
    LogData,    // ~A... and LAS 3.0 ~Log_Data
    Definition, // LAS 3.0 ~Xxx_Definition of some other data (drilling, core, ...)
    Data,       // LAS 3.0 ~Xxx_Data | Xxx_Definition of some other data
    Nameless,   // a "~" followed by a blank: no name at all
    Ignored,    // ~P, ~O, LAS 3.0 parameter sections and anything else
};

struct LasSectionLine {
    LasSectionKind kind = LasSectionKind::Ignored;
    std::string name;        // the word after "~", as written
    std::string association; // LAS 3.0: the definition named after "|", as written
};

// `line` starts with "~" (leading blanks already trimmed).
LasSectionLine ClassifyLasSection(std::string_view line);

// --- item lines -----------------------------------------------------------------------

// The mnemonic: from the start of the line (leading blanks trimmed) to the first character
// of the mnemonic delimiter set. As written; callers upper-case it where the import does.
std::string_view LasMnemonic(std::string_view line);
// The unit token: after the first full stop, up to the first blank or tab (a colon that
// closes the unit directly, "GR.GAPI:", ends it too). Empty without a full stop.
std::string_view LasUnitToken(std::string_view line);
// The value as the import reads VERS: after the first full stop, leading blanks skipped,
// up to the first character of the value delimiter set.
std::string_view LasItemValue(std::string_view line);
// The value as the import reads WRAP: the same, ended by the mnemonic delimiter set.
std::string_view LasWordValue(std::string_view line);
// The LAS 2.0 data field: after the unit token, up to the last colon, trimmed.
std::string_view LasDataField(std::string_view line);
// The number that follows the unit token (STRT, STOP, STEP), or that follows the full stop
// directly (NULL, whose unit is empty); nullopt when there is none.
std::optional<double> LasNumberAfterUnit(std::string_view line);
std::optional<double> LasNumberAfterFullStop(std::string_view line);
// LAS 3.0 value format at the end of the description ("{F}", "{S}", "{AF;0ms}"), without
// the braces; empty when there is none.
std::string_view LasFormatField(std::string_view line);
// A curve whose format says it holds text (strings, dates, clock times) rather than numbers.
bool IsLasTextFormat(std::string_view format);

// --- the items of ~V and ~W ------------------------------------------------------------

// How the values of a data line are separated: the import's value delimiters (blank, colon,
// comma, double quote, tab), or commas or tabs alone (LAS 3.0 DLM COMMA or TAB).
enum class LasDelimiters { Standard, Comma, Tab };

struct LasFileHeader {
    std::string version; // VERS as written
    std::optional<double> versionNumber; // and read as a number: kept, not used
    bool wrapped = false;
    LasDelimiters delimiters = LasDelimiters::Standard;
    std::optional<double> start; // STRT, STOP and STEP: kept, not used
    std::optional<double> stop;
    std::optional<double> step;
    std::optional<double> nullValue;
    std::string nullText;
};

// Take in one line of ~V (VERS, WRAP, DLM) or of ~W (STRT, STOP, STEP, NULL). Each returns
// the text of a note when the line needed a repair or a choice, otherwise an empty string.
std::string ApplyLasVersionItem(std::string_view line, LasFileHeader& header);
std::string ApplyLasWellItem(std::string_view line, LasFileHeader& header);

// --- the index unit -------------------------------------------------------------------

enum class LasAxis { Length, Time };

struct LasIndexUnit {
    LasAxis axis = LasAxis::Length;
    std::int32_t depthUnitCode = 0; // display unit: 0 feet, 1 metres, 2..5 seconds..days
    double toStored = 1.0;          // file value x toStored = stored metres or minutes
    bool recognised = false;        // false: decided by the first letter (M metres, else feet)
    bool dateOrClock = false;       // a calendar date or a clock time, which no axis can hold
};

LasIndexUnit ClassifyLasIndexUnit(std::string_view unit);

} // namespace ba
