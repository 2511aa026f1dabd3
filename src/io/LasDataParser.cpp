#include "io/LasDataParser.h"

#include "io/LasNumber.h"
#include "model/Trace.h"

#include <array>
#include <cmath>
#include <cstdio>
#include <stdexcept>

namespace ba {
namespace {

struct DelimiterTable {
    std::array<bool, 256> standard{};
    std::array<bool, 256> blanks{};
    constexpr DelimiterTable()
    {
        for (const unsigned char c : {' ', ':', ',', '"', '\t'}) standard[c] = true;
        for (const unsigned char c : {' ', '\t'}) blanks[c] = true;
    }
};
constexpr DelimiterTable kDelimiters;

bool IsBlank(char c) { return c == ' ' || c == '\t'; }

std::string_view TrimBlanks(std::string_view text)
{
    while (!text.empty() && IsBlank(text.front())) text.remove_prefix(1);
    while (!text.empty() && IsBlank(text.back())) text.remove_suffix(1);
    return text;
}

std::string NumberText(double value)
{
    char text[32];
    std::snprintf(text, sizeof text, "%.10g", value);
    return text;
}

} // namespace

LasDataParser::LasDataParser(LasDataLayout layout, LasDepthOrderedRows& rows, LasIssueLog& issues)
    : m_layout(std::move(layout)), m_rows(rows), m_issues(issues)
{
    m_layout.textColumns.resize(m_layout.columns, false);
    m_storeColumn.assign(m_layout.columns, -1);
    std::ptrdiff_t next = 0;
    for (std::size_t c = 0; c < m_layout.columns; ++c) {
        if (c == 0 || !m_layout.textColumns[c]) m_storeColumn[c] = next++;
    }
    if (static_cast<std::size_t>(next) != rows.Columns()) {
        throw std::logic_error("LAS data parser: the row store does not match the numeric columns");
    }
    m_row.assign(rows.Columns(), kNullValue);
    m_plainLines = !m_layout.wrapped && m_layout.delimiters == LasDelimiters::Standard;
}

void LasDataParser::SplitLine(std::string_view line, Split split)
{
    m_tokens.clear();
    if (split == Split::Comma) {
        SplitCommaLine(line, false);
        return;
    }
    if (split == Split::Tab) {
        std::size_t start = 0;
        for (;;) {
            const std::size_t tab = line.find('\t', start);
            const std::size_t end = tab == std::string_view::npos ? line.size() : tab;
            m_tokens.push_back(TrimBlanks(line.substr(start, end - start)));
            if (tab == std::string_view::npos || tab + 1 == line.size()) break; // a closing tab ends the line
            start = tab + 1;
        }
        return;
    }
    const auto& table = split == Split::Standard ? kDelimiters.standard : kDelimiters.blanks;
    const char* p = line.data();
    const char* end = p + line.size();
    while (p != end) {
        while (p != end && table[static_cast<unsigned char>(*p)]) ++p;
        if (p == end) break;
        const char* start = p;
        while (p != end && !table[static_cast<unsigned char>(*p)]) ++p;
        m_tokens.emplace_back(start, static_cast<std::size_t>(p - start));
    }
}

bool LasDataParser::SplitCommaLine(std::string_view line, bool startsInQuote)
{
    m_tokens.clear();
    std::size_t i = 0;
    const std::size_t n = line.size();
    if (startsInQuote) {
        // The rest of a quoted field from the line before; its text is already counted.
        const std::size_t close = line.find('"');
        if (close == std::string_view::npos) return true;
        const std::size_t comma = line.find(',', close + 1);
        if (comma == std::string_view::npos) return false;
        i = comma + 1;
        if (i == n) return false;
    }
    for (;;) {
        while (i < n && IsBlank(line[i])) ++i;
        if (i < n && line[i] == '"') {
            const std::size_t close = line.find('"', i + 1);
            if (close == std::string_view::npos) {
                m_tokens.push_back(line.substr(i + 1));
                return true;
            }
            m_tokens.push_back(line.substr(i + 1, close - i - 1));
            const std::size_t comma = line.find(',', close + 1);
            if (comma == std::string_view::npos || comma + 1 == n) return false;
            i = comma + 1;
            continue;
        }
        const std::size_t comma = line.find(',', i);
        const std::size_t end = comma == std::string_view::npos ? n : comma;
        m_tokens.push_back(TrimBlanks(line.substr(i, end - i)));
        if (comma == std::string_view::npos || comma + 1 == n) return false; // a closing comma ends the line
        i = comma + 1;
    }
}

bool LasDataParser::PlainLine(std::string_view line, std::size_t lineNumber)
{
    const auto& delimiters = kDelimiters.standard;
    const char* p = line.data();
    const char* end = p + line.size();
    const std::size_t columns = m_layout.columns;
    const std::ptrdiff_t* storeColumn = m_storeColumn.data();
    float* row = m_row.data();
    const bool hasNull = m_layout.nullValue.has_value();
    const double null = hasNull ? *m_layout.nullValue : 0.0;
    std::size_t column = 0;
    for (;;) {
        while (p != end && delimiters[static_cast<unsigned char>(*p)]) ++p;
        if (p == end) break;
        if (column == columns) return false;
        double value = 0.0;
        p = ParseLasPlainDecimal(p, end, delimiters, value);
        if (p == nullptr) return false;
        if (column == 0) {
            m_rowIndex = value;
        } else if (const std::ptrdiff_t store = storeColumn[column]; store >= 0) {
            row[store] = hasNull && value == null && IsNull(value) ? kNullValue : static_cast<float>(value);
        }
        ++column;
    }
    if (column != columns) return false;
    m_rowOpen = true;
    m_rowValues = column;
    m_rowLine = lineNumber;
    m_rowIndexBad = false;
    EndRow();
    return true;
}

void LasDataParser::Line(std::string_view line, std::size_t lineNumber)
{
    ++m_dataLines;
    m_lastLine = lineNumber;
    // Most lines of most files: plain numbers, one per curve.
    if (m_plainLines && PlainLine(line, lineNumber)) return;
    const Split declared = m_layout.delimiters == LasDelimiters::Comma ? Split::Comma
                           : m_layout.delimiters == LasDelimiters::Tab ? Split::Tab
                                                                       : Split::Standard;
    if (m_layout.wrapped) {
        SplitLine(line, declared);
        bool reported = false;
        for (std::size_t t = 0; t < m_tokens.size(); ++t) {
            if (!m_rowOpen) BeginRow(lineNumber);
            AddToken(m_tokens[t], lineNumber, declared == Split::Tab);
            if (m_rowValues == m_layout.columns) {
                EndRow();
                if (t + 1 < m_tokens.size() && !reported) {
                    m_issues.Add(LasIssue::RowEndsInsideLine, lineNumber);
                    reported = true;
                }
            }
        }
        return;
    }

    if (m_inQuote) {
        m_inQuote = SplitCommaLine(line, true);
        for (const std::string_view token : m_tokens) AddToken(token, lineNumber, false);
        if (!m_inQuote) EndRow();
        return;
    }

    Split used = declared;
    bool open = false;
    if (declared == Split::Comma) open = SplitCommaLine(line, false);
    else SplitLine(line, declared);
    if (!open && m_tokens.size() != m_layout.columns) {
        // Try the other ways of splitting a line before taking it as short or long.
        bool found = false;
        for (const Split other : {Split::Blanks, Split::Standard, Split::Comma, Split::Tab}) {
            if (other == declared) continue;
            SplitLine(line, other);
            if (m_tokens.size() == m_layout.columns) {
                found = true;
                used = other;
                break;
            }
        }
        if (found) {
            static constexpr const char* kSplitNames[] = {"at blanks, colons, commas, quotes and tabs",
                                                          "at blanks only", "at commas", "at tabs"};
            m_issues.Add(LasIssue::SplitDifferently, lineNumber, 0, kSplitNames[static_cast<int>(used)]);
        } else {
            SplitLine(line, declared);
        }
    }
    BeginRow(lineNumber);
    const bool commaIsDecimal = used == Split::Blanks || used == Split::Tab;
    for (const std::string_view token : m_tokens) AddToken(token, lineNumber, commaIsDecimal);
    if (open) {
        m_inQuote = true;
        return;
    }
    EndRow();
}

void LasDataParser::BeginRow(std::size_t lineNumber)
{
    m_rowOpen = true;
    m_rowValues = 0;
    m_rowLine = lineNumber;
    m_rowIndexBad = false;
    std::fill(m_row.begin(), m_row.end(), kNullValue);
}

bool LasDataParser::IsNull(double value) const
{
    if (!m_layout.nullValue || value != *m_layout.nullValue) return false;
    // A NULL of -0.0 marks only negative zeros: plain zeros in such files are real values.
    return value != 0.0 || std::signbit(value) == std::signbit(*m_layout.nullValue);
}

void LasDataParser::AddToken(std::string_view token, std::size_t lineNumber, bool commaIsDecimal)
{
    const std::size_t column = m_rowValues++;
    if (column >= m_layout.columns) return; // counted when the row ends
    const std::ptrdiff_t store = m_storeColumn[column];
    if (store < 0) return; // a text curve
    double value = 0.0;
    bool decimalComma = false;
    const LasToken parsed = ParseLasToken(token, commaIsDecimal, value, decimalComma);
    if (decimalComma) m_issues.Add(LasIssue::DecimalComma, lineNumber, column + 1, token);
    if (column == 0) {
        if (parsed == LasToken::Number) {
            m_rowIndex = value;
            return;
        }
        m_rowIndexBad = true;
        m_issues.Add(LasIssue::IndexNotNumber, lineNumber, 1, token);
        if (m_firstBadIndexLine == 0) {
            m_firstBadIndexLine = lineNumber;
            m_firstBadIndexText = std::string(token);
        }
        return;
    }
    float stored = kNullValue;
    switch (parsed) {
    case LasToken::Number:
        if (std::fabs(value) >= kLasFloatOverflow) m_issues.Add(LasIssue::ValueOutOfRange, lineNumber, column + 1, token);
        else if (!IsNull(value)) stored = static_cast<float>(value);
        break;
    case LasToken::Empty: m_issues.Add(LasIssue::ValueEmpty, lineNumber, column + 1); break;
    case LasToken::NotANumberText: m_issues.Add(LasIssue::ValueNanText, lineNumber, column + 1, token); break;
    case LasToken::NotNumber: m_issues.Add(LasIssue::ValueNotNumber, lineNumber, column + 1, token); break;
    case LasToken::Infinite: m_issues.Add(LasIssue::ValueOutOfRange, lineNumber, column + 1, token); break;
    }
    m_row[static_cast<std::size_t>(store)] = stored;
}

void LasDataParser::EndRow()
{
    m_rowOpen = false;
    if (m_rowValues == 0) return;
    ++m_rowsRead;
    if (m_rowValues < m_layout.columns) {
        m_issues.Add(LasIssue::TooFewValues, m_rowLine, 0, std::to_string(m_rowValues) + " of " + std::to_string(m_layout.columns));
    } else if (m_rowValues > m_layout.columns) {
        m_issues.Add(LasIssue::TooManyValues, m_rowLine, 0, std::to_string(m_rowValues) + " for " + std::to_string(m_layout.columns));
    }
    if (m_rowIndexBad) return;
    const double stored = m_rowIndex * m_layout.indexToStored;
    if (!(std::fabs(stored) < kLasFloatOverflow)) {
        m_issues.Add(LasIssue::IndexOutOfRange, m_rowLine, 1, NumberText(m_rowIndex));
        if (m_firstBadIndexLine == 0) {
            m_firstBadIndexLine = m_rowLine;
            m_firstBadIndexText = NumberText(m_rowIndex);
        }
        return;
    }
    if (IsNull(m_rowIndex)) m_issues.Add(LasIssue::IndexEqualsNull, m_rowLine, 1);
    m_row[0] = static_cast<float>(stored);
    switch (m_rows.Add(m_row.data())) {
    case LasDepthOrderedRows::Placement::DeepEnd:
        m_deepIndex = m_rowIndex;
        if (m_rows.Rows() == 1) m_shallowIndex = m_rowIndex;
        break;
    case LasDepthOrderedRows::Placement::ShallowEnd: m_shallowIndex = m_rowIndex; break;
    case LasDepthOrderedRows::Placement::Covered: {
        const bool sameAsDeep = m_row[0] == m_rows.Deepest() && m_rowIndex != m_deepIndex;
        const bool sameAsShallow = m_row[0] == m_rows.Shallowest() && m_rowIndex != m_shallowIndex;
        const LasIssue issue = sameAsDeep || sameAsShallow ? LasIssue::DepthIndistinct : LasIssue::DepthCovered;
        const bool wantsExample = m_issues.Count(issue) < LasIssueLog::kExamples;
        m_issues.Add(issue, m_rowLine, 1, wantsExample ? NumberText(m_rowIndex) : std::string());
        break;
    }
    }
}

void LasDataParser::Finish()
{
    if (m_inQuote) {
        m_inQuote = false;
        EndRow();
        return;
    }
    if (m_layout.wrapped && m_rowOpen && m_rowValues > 0) {
        m_incompleteRowLine = m_rowLine;
        m_incompleteRowValues = m_rowValues;
        m_rowOpen = false;
    }
}

} // namespace ba
