#include "io/LasNumber.h"

#include <cmath>

namespace ba {
namespace {

char LowerAscii(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

bool EqualsIgnoringCase(std::string_view a, std::string_view lowerB)
{
    if (a.size() != lowerB.size()) return false;
    for (std::size_t i = 0; i < a.size(); ++i) {
        if (LowerAscii(a[i]) != lowerB[i]) return false;
    }
    return true;
}

bool ContainsIgnoringCase(std::string_view text, std::string_view lowerNeedle)
{
    for (std::size_t i = 0; i + lowerNeedle.size() <= text.size(); ++i) {
        if (EqualsIgnoringCase(text.substr(i, lowerNeedle.size()), lowerNeedle)) return true;
    }
    return false;
}

// Spellings of "no number here" written by other programs: C's "nan" and "(null)",
// Microsoft's "-1.#IND" and "1.#QNAN", spreadsheets' "#N/A".
bool IsNotANumberSpelling(std::string_view token)
{
    static constexpr std::string_view kSpellings[] = {"null", "(null)", "none", "na", "n/a", "#n/a", "nan(ind)",
                                                      "-nan(ind)"};
    for (const std::string_view s : kSpellings) {
        if (EqualsIgnoringCase(token, s)) return true;
    }
    return ContainsIgnoringCase(token, "#ind") || ContainsIgnoringCase(token, "#qnan") ||
           ContainsIgnoringCase(token, "#snan");
}

} // namespace

LasToken ParseLasToken(std::string_view token, bool commaIsDecimal, double& value, bool& usedDecimalComma)
{
    usedDecimalComma = false;
    if (token.empty()) return LasToken::Empty;
    const char* first = token.data();
    const char* last = first + token.size();
    const char* end = ParseLasNumber(first, last, value);
    if (end != last && commaIsDecimal && end != first && *end == ',') {
        end = ParseLasNumber(first, last, value, ',');
        usedDecimalComma = end == last;
    }
    if (end == last) {
        if (std::isnan(value)) return LasToken::NotANumberText;
        if (std::isinf(value)) return LasToken::Infinite;
        return LasToken::Number;
    }
    if (IsNotANumberSpelling(token)) return LasToken::NotANumberText;
    if (ContainsIgnoringCase(token, "#inf")) return LasToken::Infinite;
    return LasToken::NotNumber;
}

} // namespace ba
