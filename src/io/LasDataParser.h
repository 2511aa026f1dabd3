#pragma once
// The data section of a LAS file: lines into rows, rows into depth-ordered columns.
//
// A line is split at the value delimiters (blank, colon, comma, double quote, tab; runs of
// them count as one), or at commas or tabs alone when the file declares DLM COMMA or TAB
// (then an empty field is a missing value and a double-quoted field may hold delimiters
// and even line ends). The first value is the index, the rest follow the curves in order.
// Wrapped files (WRAP YES) continue a row over as many lines as it takes to reach the
// number of curves.

#include "io/LasColumns.h"
#include "io/LasHeader.h"
#include "io/LasIssues.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ba {

struct LasDataLayout {
    std::size_t columns = 0;          // values per row, the index included
    std::vector<bool> textColumns;    // per column: text, read past but not stored
    bool wrapped = false;
    LasDelimiters delimiters = LasDelimiters::Standard;
    std::optional<double> nullValue;  // the file's NULL
    double indexToStored = 1.0;       // file index x this = stored depth (metres or minutes)
};

class LasDataParser {
public:
    // `rows` receives one column for the index and one per column that is not text.
    LasDataParser(LasDataLayout layout, LasDepthOrderedRows& rows, LasIssueLog& issues);

    void Line(std::string_view line, std::size_t lineNumber);
    // Ends the section: a wrapped row still short of values is dropped and reported.
    void Finish();

    std::size_t DataLines() const { return m_dataLines; }
    std::size_t RowsRead() const { return m_rowsRead; }
    // Line and text of the first index that was not a number, for the message when no row
    // has one.
    std::size_t FirstBadIndexLine() const { return m_firstBadIndexLine; }
    const std::string& FirstBadIndexText() const { return m_firstBadIndexText; }
    std::size_t IncompleteRowLine() const { return m_incompleteRowLine; }
    std::size_t IncompleteRowValues() const { return m_incompleteRowValues; }

private:
    enum class Split { Standard, Blanks, Comma, Tab };

    // The fast path: a line of plain decimals, exactly one per column. False when the line
    // needs the general path (which then starts the row afresh).
    bool PlainLine(std::string_view line, std::size_t lineNumber);
    void SplitLine(std::string_view line, Split split);
    bool SplitCommaLine(std::string_view line, bool startsInQuote);
    void BeginRow(std::size_t lineNumber);
    void AddToken(std::string_view token, std::size_t lineNumber, bool commaIsDecimal);
    void EndRow();
    bool IsNull(double value) const;

    LasDataLayout m_layout;
    LasDepthOrderedRows& m_rows;
    LasIssueLog& m_issues;
    std::vector<std::ptrdiff_t> m_storeColumn; // data column -> store column, -1 for text
    std::vector<std::string_view> m_tokens;
    std::vector<float> m_row;
    std::size_t m_rowValues = 0;    // values given so far in the current row
    std::size_t m_rowLine = 0;      // line the current row started on
    bool m_rowOpen = false;
    bool m_rowIndexBad = false;
    double m_rowIndex = 0.0;
    bool m_inQuote = false;         // comma data: a quoted field runs on to the next line
    double m_deepIndex = 0.0;       // file index of the deepest row written
    double m_shallowIndex = 0.0;    // file index of the shallowest row written
    std::size_t m_lastLine = 0;
    bool m_plainLines = false; // unwrapped data split at the standard delimiters
    std::size_t m_dataLines = 0;
    std::size_t m_rowsRead = 0;
    std::size_t m_firstBadIndexLine = 0;
    std::string m_firstBadIndexText;
    std::size_t m_incompleteRowLine = 0;
    std::size_t m_incompleteRowValues = 0;
};

} // namespace ba
