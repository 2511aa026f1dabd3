#include "io/LasIssues.h"

#include "io/LasText.h"

#include <algorithm>
#include <cstdio>

namespace ba {
namespace {

constexpr std::size_t kMaxQuotedBytes = 40;

struct IssueText {
    Severity severity;
    const char* singular;       // "1 value is not a number"
    const char* plural;         // "5 values are not numbers"
    const char* outcomeSingular; // what was done about it
    const char* outcomePlural;
    bool showColumn;  // examples name the column
    bool quoteDetail; // the detail is file text, to be quoted
};

// Indexed by LasIssue.
constexpr IssueText kIssueTexts[kLasIssueKinds] = {
    {Severity::Warning, "value is not a number", "values are not numbers", "it was stored as null",
     "they were stored as null", true, true},
    {Severity::Note, "value is written as not-a-number text", "values are written as not-a-number text",
     "it was stored as null", "they were stored as null", true, true},
    {Severity::Warning, "value is infinite or too large for a 32-bit float",
     "values are infinite or too large for a 32-bit float", "it was stored as null", "they were stored as null", true,
     true},
    {Severity::Note, "value is empty", "values are empty", "it was stored as null", "they were stored as null", true,
     false},
    {Severity::Note, "value has a decimal comma", "values have a decimal comma", "it was read as a decimal point",
     "they were read as decimal points", true, true},
    {Severity::Note, "data line does not split into the values of a row at the file's delimiters",
     "data lines do not split into the values of a row at the file's delimiters", "it was split differently",
     "they were split differently", false, false},
    {Severity::Warning, "data line has fewer values than there are curves",
     "data lines have fewer values than there are curves", "the missing values were stored as null",
     "the missing values were stored as null", false, false},
    {Severity::Warning, "data line has more values than there are curves",
     "data lines have more values than there are curves", "the extra values were ignored",
     "the extra values were ignored", false, false},
    {Severity::Warning, "data row has no number as its index", "data rows have no number as their index",
     "it was left out", "they were left out", false, true},
    {Severity::Warning, "data row has an index too large for a 32-bit depth",
     "data rows have an index too large for a 32-bit depth", "it was left out", "they were left out", false, true},
    {Severity::Warning, "index value equals the NULL value", "index values equal the NULL value",
     "it was kept as a depth, since an index is never missing",
     "they were kept as depths, since an index is never missing", false, true},
    {Severity::Note, "data row lies inside the depth range already read",
     "data rows lie inside the depth range already read", "it was not written", "they were not written", false,
     true},
    {Severity::Warning, "data row has an index too close to the one before to be told apart as a 32-bit depth",
     "data rows have an index too close to the one before to be told apart as a 32-bit depth",
     "it was not written", "they were not written", false, true},
    {Severity::Warning, "wrapped row ends inside a line", "wrapped rows end inside a line",
     "the values after it start the next row", "the values after them start the next row", false, false},
};

std::string SeverityPrefix(Severity severity)
{
    switch (severity) {
    case Severity::Error: return "Error: ";
    case Severity::Warning: return "Warning: ";
    case Severity::Note: return "Note: ";
    case Severity::Info: return "";
    }
    return "";
}

} // namespace

std::string QuoteLasText(std::string_view text)
{
    bool wasAnsi = false;
    const std::string decoded = DecodeLasLine(text, wasAnsi);
    std::string out = "\"";
    std::size_t kept = 0;
    for (std::size_t i = 0; i < decoded.size(); ++i) {
        const auto c = static_cast<unsigned char>(decoded[i]);
        // Stop before a UTF-8 sequence that would take the text past the limit.
        if (kept >= kMaxQuotedBytes && (c & 0xC0) != 0x80) {
            out += "...";
            break;
        }
        if (c < 0x20 || c == 0x7F) {
            char hex[8];
            std::snprintf(hex, sizeof hex, "\\x%02X", static_cast<unsigned>(c));
            out += hex;
        } else {
            out.push_back(static_cast<char>(c));
        }
        ++kept;
    }
    return out + "\"";
}

void LasMessageLimiter::Report(std::string_view kind, Severity severity, std::string text)
{
    auto found = std::find_if(m_kinds.begin(), m_kinds.end(), [&](const Kind& k) { return k.name == kind; });
    if (found == m_kinds.end()) {
        m_kinds.push_back({std::string(kind), severity, 0});
        found = m_kinds.end() - 1;
    }
    if (++found->count <= kPerKind) m_sink.Report({severity, std::move(text)});
}

void LasMessageLimiter::Summarise(std::string_view file)
{
    for (const Kind& kind : m_kinds) {
        if (kind.count <= kPerKind) continue;
        m_sink.Report({kind.severity, SeverityPrefix(kind.severity) + "\"" + std::string(file) + "\": " +
                                          std::to_string(kind.count - kPerKind) + " more " + kind.name +
                                          ", treated alike and not reported one by one."});
    }
}

void LasIssueLog::Add(LasIssue issue, std::size_t line, std::size_t column, std::string_view detail)
{
    Entry& entry = m_entries[static_cast<std::size_t>(issue)];
    ++entry.count;
    if (entry.examples.size() < kExamples) entry.examples.push_back({line, column, std::string(detail)});
}

void LasIssueLog::Report(IMessageSink& sink, const LasIssueContext& context) const
{
    for (std::size_t kind = 0; kind < kLasIssueKinds; ++kind) {
        const Entry& entry = m_entries[kind];
        if (entry.count == 0) continue;
        const IssueText& text = kIssueTexts[kind];
        const bool one = entry.count == 1;
        std::string message = SeverityPrefix(text.severity) + "\"" + context.file + "\": " +
                              std::to_string(entry.count) + " " + (one ? text.singular : text.plural);
        if (static_cast<LasIssue>(kind) == LasIssue::IndexEqualsNull) message += " " + context.nullText;
        message += std::string("; ") + (one ? text.outcomeSingular : text.outcomePlural) + ". " +
                   (one ? "At " : "First at ");
        for (std::size_t e = 0; e < entry.examples.size(); ++e) {
            const Example& example = entry.examples[e];
            if (e > 0) message += ", ";
            message += "line " + std::to_string(example.line);
            if (text.showColumn && example.column > 0) {
                message += " column " + std::to_string(example.column);
                if (example.column <= context.columnNames.size()) {
                    message += " (" + context.columnNames[example.column - 1] + ")";
                }
            }
            if (!example.detail.empty()) {
                message += " " + (text.quoteDetail ? QuoteLasText(example.detail) : "(" + example.detail + ")");
            }
        }
        if (entry.count > entry.examples.size()) {
            message += ", and " + std::to_string(entry.count - entry.examples.size()) + " more";
        }
        message += ".";
        sink.Report({text.severity, std::move(message)});
    }
}

} // namespace ba
