#pragma once
// Reads the "depth,value" sample files of add-trace.
//
// Rules (also in the add-trace help text):
//  - one sample per line: a depth and a value separated by one comma; spaces and tabs
//    around either field are ignored; LF or CRLF line ends; a UTF-8 byte-order mark at the
//    start is skipped;
//  - blank lines, and lines whose first non-blank character is '#', are skipped;
//  - the first line that is neither may be a header: it is skipped when neither of its
//    two fields is a number ("depth,value");
//  - numbers are decimal floats ("12.5", "-3", "1e3", "+4"), read to the nearest 32-bit
//    float; infinities, NaN and numbers beyond the float range are refused; the null value
//    -9999.99 is an ordinary value and marks a missing sample;
//  - depths are in stored units (metres, or minutes for a time axis) and must increase
//    strictly, since every depth search of a trace assumes ascending order and one depth
//    names one sample: a depth equal to or below the previous good line's is an error;
//  - every bad line is reported as "FILE:LINE: what is wrong", and a file with any bad line
//    or without samples gives no trace at all.

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace ba::cli {

struct SamplesCsv {
    std::vector<float> depths;
    std::vector<float> values;
    // "FILE:LINE: what is wrong", for the first kMaxListedProblems bad lines.
    std::vector<std::string> problems;
    std::size_t badLineCount = 0;
};

inline constexpr std::size_t kMaxListedProblems = 20;

// Parses the text of a sample file; `source` names the file in the messages.
SamplesCsv ParseSamplesCsv(std::string_view text, std::string_view source);

} // namespace ba::cli
