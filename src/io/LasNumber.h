#pragma once
// Number parsing for LAS text: fast_float, with the leading '+' that it does not accept
// itself, a choice of decimal mark for files written with decimal commas, a fast path for
// the plain decimals that make up nearly all data, and the classification of tokens that
// are not numbers.

#include <fast_float/fast_float.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace ba {

// Doubles from here on round to infinity as floats (halfway past FLT_MAX rounds up, since
// FLT_MAX has an odd significand).
inline constexpr double kLasFloatOverflow = 0x1.ffffffp127;

// Reads a number at the start of [first, last). Returns the end of what was read, or
// `first` when no number starts there. "nan" and "inf" are read as such (callers decide
// what they mean); nothing before the number is skipped.
inline const char* ParseLasNumber(const char* first, const char* last, double& value, char decimalMark = '.')
{
    const char* start = first;
    if (start != last && *start == '+' && start + 1 != last &&
        ((start[1] >= '0' && start[1] <= '9') || start[1] == decimalMark)) {
        ++start;
    }
    const fast_float::parse_options options(fast_float::chars_format::general, decimalMark);
    const auto result = fast_float::from_chars_advanced(start, last, value, options);
    if (result.ec != std::errc()) return first;
    return result.ptr;
}

inline constexpr double kLasPowersOfTen[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                             1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                             1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};

// The common case of a data value, "-123.4567" at the start of [p, end) (p != end): at most
// 18 digits, no exponent, followed by a delimiter or the end. The digits make an integer
// below 2^53 and the power of ten is exact, so one division gives the correctly rounded
// value, the same as ParseLasNumber. Returns null for anything else.
inline const char* ParseLasPlainDecimal(const char* p, const char* end, const std::array<bool, 256>& delimiters,
                                        double& value)
{
    const bool negative = *p == '-';
    if (negative || *p == '+') ++p;
    std::uint64_t mantissa = 0;
    const char* start = p;
    while (p != end && static_cast<unsigned>(*p - '0') < 10) {
        mantissa = mantissa * 10 + static_cast<unsigned>(*p - '0');
        ++p;
    }
    std::ptrdiff_t digits = p - start;
    std::ptrdiff_t fraction = 0;
    if (p != end && *p == '.') {
        const char* fractionStart = ++p;
        while (p != end && static_cast<unsigned>(*p - '0') < 10) {
            mantissa = mantissa * 10 + static_cast<unsigned>(*p - '0');
            ++p;
        }
        fraction = p - fractionStart;
        digits += fraction;
    }
    if (digits == 0 || digits > 18 || mantissa > (std::uint64_t{1} << 53)) return nullptr;
    if (p != end && !delimiters[static_cast<unsigned char>(*p)]) return nullptr;
    const double magnitude = static_cast<double>(mantissa) / kLasPowersOfTen[fraction];
    value = negative ? -magnitude : magnitude;
    return p;
}

enum class LasToken {
    Number,         // a finite number
    Empty,          // nothing between two delimiters
    NotANumberText, // "NaN", "null", "-1.#IND", "#N/A" and the like
    NotNumber,      // any other text
    Infinite,       // "inf", "1.#INF"
};

// Classifies a whole token and reads it when it is a number. With `commaIsDecimal`, a
// token that reads as a number only with a decimal comma ("123,45") is read that way and
// `usedDecimalComma` says so.
LasToken ParseLasToken(std::string_view token, bool commaIsDecimal, double& value, bool& usedDecimalComma);

} // namespace ba
