#pragma once
// Helpers for tests that pin byte sequences.

#include <cctype>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace ba::test {

// Parses hex digit pairs; spaces, newlines and '|' separators are ignored, and "'text'"
// stands for the ASCII bytes of text.
inline std::vector<std::uint8_t> Hex(std::string_view text)
{
    std::vector<std::uint8_t> out;
    for (std::size_t i = 0; i < text.size();) {
        const char c = text[i];
        if (c == '\'') {
            const auto end = text.find('\'', i + 1);
            if (end == std::string_view::npos) throw std::invalid_argument("unterminated quote");
            for (std::size_t k = i + 1; k < end; ++k) out.push_back(static_cast<std::uint8_t>(text[k]));
            i = end + 1;
        } else if (std::isxdigit(static_cast<unsigned char>(c))) {
            if (i + 1 >= text.size()) throw std::invalid_argument("odd hex digit");
            out.push_back(static_cast<std::uint8_t>(std::stoi(std::string(text.substr(i, 2)), nullptr, 16)));
            i += 2;
        } else {
            ++i;
        }
    }
    return out;
}

inline std::vector<std::uint8_t> Zeros(std::size_t n) { return std::vector<std::uint8_t>(n, 0); }

inline std::vector<std::uint8_t> Concat(std::initializer_list<std::vector<std::uint8_t>> parts)
{
    std::vector<std::uint8_t> out;
    for (const auto& p : parts) out.insert(out.end(), p.begin(), p.end());
    return out;
}

// A fixed 25-byte text field holding `text` padded with zeros.
inline std::vector<std::uint8_t> Fixed25(std::string_view text)
{
    std::vector<std::uint8_t> out(text.begin(), text.end());
    out.resize(25, 0);
    return out;
}

inline std::string ToHex(const std::vector<std::uint8_t>& bytes)
{
    static const char* digits = "0123456789abcdef";
    std::string s;
    for (const auto b : bytes) {
        if (!s.empty()) s.push_back(' ');
        s.push_back(digits[b >> 4]);
        s.push_back(digits[b & 15]);
    }
    return s;
}

} // namespace ba::test
