#include "base/Cp1252.h"

#include <array>
#include <cstdint>

namespace ba {
namespace {

// Code points of bytes 0x80..0x9F; the rest of the code page equals Latin-1.
constexpr std::array<char16_t, 32> kHighControls = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
    0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,
    0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
    0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178,
};

char EncodeCodePoint(char32_t cp)
{
    if (cp < 0x80 || (cp >= 0xA0 && cp <= 0xFF)) return static_cast<char>(cp);
    for (std::size_t i = 0; i < kHighControls.size(); ++i) {
        if (kHighControls[i] == cp) return static_cast<char>(0x80 + i);
    }
    return '?';
}

// Reads one UTF-8 sequence at pos; returns U+FFFFFFFF for a malformed one and advances
// past at least one byte.
char32_t NextCodePoint(std::string_view s, std::size_t& pos)
{
    const auto lead = static_cast<std::uint8_t>(s[pos++]);
    if (lead < 0x80) return lead;
    int extra = 0;
    char32_t cp = 0;
    if ((lead & 0xE0) == 0xC0) { extra = 1; cp = lead & 0x1F; }
    else if ((lead & 0xF0) == 0xE0) { extra = 2; cp = lead & 0x0F; }
    else if ((lead & 0xF8) == 0xF0) { extra = 3; cp = lead & 0x07; }
    else return 0xFFFFFFFF;
    for (int k = 0; k < extra; ++k) {
        if (pos >= s.size()) return 0xFFFFFFFF;
        const auto b = static_cast<std::uint8_t>(s[pos]);
        if ((b & 0xC0) != 0x80) return 0xFFFFFFFF;
        cp = (cp << 6) | (b & 0x3F);
        ++pos;
    }
    return cp;
}

} // namespace

void AppendUtf8(std::string& out, char32_t cp)
{
    if (cp < 0x80) {
        out.push_back(static_cast<char>(cp));
    } else if (cp < 0x800) {
        out.push_back(static_cast<char>(0xC0 | (cp >> 6)));
        out.push_back(static_cast<char>(0x80 | (cp & 0x3F)));
    } else if (cp < 0x10000) {
        out.push_back(static_cast<char>(0xE0 | (cp >> 12)));
        out.push_back(static_cast<char>(0x80 | ((cp >> 6) & 0x3F)));
        out.push_back(static_cast<char>(0x80 | (cp & 0x3F)));
    } else {
        out.push_back(static_cast<char>(0xF0 | (cp >> 18)));
        out.push_back(static_cast<char>(0x80 | ((cp >> 12) & 0x3F)));
        out.push_back(static_cast<char>(0x80 | ((cp >> 6) & 0x3F)));
        out.push_back(static_cast<char>(0x80 | (cp & 0x3F)));
    }
}

std::string Utf8ToCp1252(std::string_view utf8)
{
    std::string out;
    out.reserve(utf8.size());
    std::size_t pos = 0;
    while (pos < utf8.size()) out.push_back(EncodeCodePoint(NextCodePoint(utf8, pos)));
    return out;
}

std::string Cp1252ToUtf8(std::string_view bytes)
{
    std::string out;
    out.reserve(bytes.size());
    for (const char c : bytes) {
        const auto b = static_cast<std::uint8_t>(c);
        if (b < 0x80) out.push_back(c);
        else if (b < 0xA0) AppendUtf8(out, kHighControls[b - 0x80]);
        else AppendUtf8(out, b);
    }
    return out;
}

std::string Utf16LeToUtf8(std::string_view bytes)
{
    std::string out;
    out.reserve(bytes.size());
    const std::size_t units = bytes.size() / 2;
    auto unitAt = [&](std::size_t i) {
        return static_cast<char16_t>(static_cast<std::uint8_t>(bytes[2 * i]) |
                                     (static_cast<std::uint8_t>(bytes[2 * i + 1]) << 8));
    };
    for (std::size_t i = 0; i < units; ++i) {
        const char16_t u = unitAt(i);
        if (u >= 0xD800 && u <= 0xDBFF && i + 1 < units) {
            const char16_t low = unitAt(i + 1);
            if (low >= 0xDC00 && low <= 0xDFFF) {
                AppendUtf8(out, 0x10000 + ((static_cast<char32_t>(u) - 0xD800) << 10) + (low - 0xDC00));
                ++i;
                continue;
            }
        }
        if (u >= 0xD800 && u <= 0xDFFF) AppendUtf8(out, 0xFFFD);
        else AppendUtf8(out, u);
    }
    return out;
}

} // namespace ba
