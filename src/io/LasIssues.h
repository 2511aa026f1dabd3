#pragma once
// Repairs and problems met in the data section, counted rather than reported one by one:
// a damaged file can have a million bad values, and the user needs the first few places
// and the count, not a million messages.

#include "base/MessageSink.h"

#include <array>
#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace ba {

enum class LasIssue : std::size_t {
    ValueNotNumber,   // text where a number belongs: stored as null
    ValueNanText,     // "NaN", "null", "-1.#IND" and the like: stored as null
    ValueOutOfRange,  // infinite, or beyond a 32-bit float: stored as null
    ValueEmpty,       // nothing between two delimiters of a comma or tab file: stored as null
    DecimalComma,     // "123,45" read as 123.45
    SplitDifferently, // the line's values were found with other delimiters than the file's
    TooFewValues,     // the rest of the row stored as null
    TooManyValues,    // the values past the last curve ignored
    IndexNotNumber,   // the row left out
    IndexOutOfRange,  // the row left out
    IndexEqualsNull,  // kept: an index is a depth, never a missing value
    DepthCovered,     // the row lies inside the depth range read so far: not written
    DepthIndistinct,  // the index moved by less than a stored 32-bit depth can show
    RowEndsInsideLine, // wrapped data: a row ended before the end of its line
    Count_
};

inline constexpr std::size_t kLasIssueKinds = static_cast<std::size_t>(LasIssue::Count_);

// What the messages need to know about the data.
struct LasIssueContext {
    std::string file;                     // as shown to the user
    std::vector<std::string> columnNames; // mnemonic of each data column, the index first
    std::string nullText;                 // the NULL value as written in the file
};

class LasIssueLog {
public:
    static constexpr std::size_t kExamples = 3;

    // `column` counts from 1 (the index is column 1), 0 when the issue is about a line;
    // `detail` is the token concerned or a short remark.
    void Add(LasIssue issue, std::size_t line, std::size_t column = 0, std::string_view detail = {});
    std::size_t Count(LasIssue issue) const { return m_entries[static_cast<std::size_t>(issue)].count; }
    // One message per kind of issue met, in the order of the enumeration.
    void Report(IMessageSink& sink, const LasIssueContext& context) const;

private:
    struct Example {
        std::size_t line = 0;
        std::size_t column = 0;
        std::string detail;
    };
    struct Entry {
        std::size_t count = 0;
        std::vector<Example> examples;
    };
    std::array<Entry, kLasIssueKinds> m_entries;
};

// Passes messages on, but no more than a few of each kind: a file with a thousand bad
// header lines gets five messages about them and one that counts the rest.
class LasMessageLimiter {
public:
    static constexpr std::size_t kPerKind = 5;

    explicit LasMessageLimiter(IMessageSink& sink) : m_sink(sink) {}
    // `kind` names what the messages are about, as the summary says it: "curve lines
    // without a full stop".
    void Report(std::string_view kind, Severity severity, std::string text);
    // One message per kind over its share, saying how many more there were.
    void Summarise(std::string_view file);

private:
    struct Kind {
        std::string name;
        Severity severity = Severity::Note;
        std::size_t count = 0;
    };
    IMessageSink& m_sink;
    std::vector<Kind> m_kinds;
};

// A token from the file for a message: decoded, cut to a readable length, control bytes
// shown as \xNN, in double quotes.
std::string QuoteLasText(std::string_view text);

} // namespace ba
