#include "cli/NumberText.h"

#include <charconv>
#include <cmath>
#include <system_error>

namespace ba::cli {
namespace {

// from_chars takes no '+'; a sign written out by a spreadsheet is still a number.
std::string_view WithoutPlusSign(std::string_view text)
{
    if (text.size() > 1 && text[0] == '+' && text[1] != '-' && text[1] != '+') text.remove_prefix(1);
    return text;
}

template <typename T>
NumberProblem ParseWhole(std::string_view text, T& value)
{
    if (text.empty()) return NumberProblem::Empty;
    text = WithoutPlusSign(text);
    T parsed{};
    const auto [end, ec] = std::from_chars(text.data(), text.data() + text.size(), parsed);
    if (ec == std::errc::result_out_of_range) return NumberProblem::OutOfRange;
    if (ec != std::errc{} || end != text.data() + text.size()) return NumberProblem::NotANumber;
    value = parsed;
    return NumberProblem::None;
}

} // namespace

NumberProblem ParseFloat(std::string_view text, float& value)
{
    if (text.empty()) return NumberProblem::Empty;
    text = WithoutPlusSign(text);
    float parsed = 0.0f;
    const auto [end, ec] = std::from_chars(text.data(), text.data() + text.size(), parsed,
                                           std::chars_format::general);
    if (ec == std::errc::result_out_of_range) return NumberProblem::OutOfRange;
    if (ec != std::errc{} || end != text.data() + text.size()) return NumberProblem::NotANumber;
    if (!std::isfinite(parsed)) return NumberProblem::NotFinite;
    value = parsed;
    return NumberProblem::None;
}

NumberProblem ParseInt(std::string_view text, std::int32_t& value) { return ParseWhole(text, value); }

NumberProblem ParseIndex(std::string_view text, std::size_t& value)
{
    if (!text.empty() && (text[0] == '-' || text[0] == '+')) return NumberProblem::NotANumber;
    return ParseWhole(text, value);
}

std::string DescribeFloatProblem(NumberProblem problem)
{
    switch (problem) {
    case NumberProblem::None: return "is a number";
    case NumberProblem::Empty: return "is empty";
    case NumberProblem::NotANumber: return "is not a number";
    case NumberProblem::OutOfRange: return "is out of range for a 32-bit float";
    case NumberProblem::NotFinite: return "is not a finite number";
    }
    return "is not a number";
}

std::string ShortestText(float value)
{
    char buffer[64];
    const auto [end, ec] = std::to_chars(buffer, buffer + sizeof buffer, value);
    // 64 characters hold any float in its shortest form, so to_chars cannot run out of room.
    return ec == std::errc{} ? std::string(buffer, end) : std::string("nan");
}

std::string QuoteForMessage(std::string_view text)
{
    constexpr std::size_t kShown = 40;
    static constexpr char kHex[] = "0123456789ABCDEF";
    std::string quoted = "\"";
    for (std::size_t i = 0; i < text.size() && i < kShown; ++i) {
        const auto byte = static_cast<unsigned char>(text[i]);
        if (byte < 0x20 || byte >= 0x7F) {
            quoted += "\\x";
            quoted += kHex[byte >> 4];
            quoted += kHex[byte & 0x0F];
        } else {
            if (byte == '"' || byte == '\\') quoted += '\\';
            quoted += static_cast<char>(byte);
        }
    }
    if (text.size() > kShown) quoted += "...";
    quoted += '"';
    return quoted;
}

} // namespace ba::cli
