#pragma once
// Numbers as the command-line tool reads and writes them: every float is read with
// std::from_chars (so "0.1" becomes exactly the float a document would hold) and written in
// the shortest text that reads back to the same 32-bit float.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace ba::cli {

enum class NumberProblem {
    None,
    Empty,      // nothing to parse
    NotANumber, // not a decimal number, or text left over after it
    OutOfRange, // a number too large (or too small) for the type
    NotFinite,  // "inf" or "nan"
};

// Parses the whole of `text` as a decimal float; one leading '+' is accepted. Infinities
// and NaN are refused: no depth, value or scale of a document can be one.
NumberProblem ParseFloat(std::string_view text, float& value);

// Parses the whole of `text` as a decimal integer (optional leading '+' or '-').
NumberProblem ParseInt(std::string_view text, std::int32_t& value);
NumberProblem ParseIndex(std::string_view text, std::size_t& value);

// "is not a number", "is out of range for a 32-bit float", ... : the end of a sentence
// whose subject is the quoted text.
std::string DescribeFloatProblem(NumberProblem problem);

// The shortest decimal text that reads back to the same float ("-9999.99", "0.1", "100").
std::string ShortestText(float value);

// `text` in double quotes, cut to a readable length and with control and non-ASCII bytes
// shown as \xNN, for messages about input that may be binary.
std::string QuoteForMessage(std::string_view text);

} // namespace ba::cli
