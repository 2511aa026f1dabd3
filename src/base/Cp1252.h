#pragma once
// Text inside the program is UTF-8; text fields of documents and clipboard blocks are
// ANSI bytes in the Windows-1252 code page. These convert between the two.

#include <string>
#include <string_view>

namespace ba {

// Encodes UTF-8 text as Windows-1252 bytes. A character the code page cannot hold, and
// every malformed UTF-8 sequence, becomes '?'.
std::string Utf8ToCp1252(std::string_view utf8);

// Decodes Windows-1252 bytes to UTF-8. The five bytes the code page leaves undefined
// (0x81, 0x8D, 0x8F, 0x90, 0x9D) map to the C1 control characters of the same value,
// as Windows itself does.
std::string Cp1252ToUtf8(std::string_view bytes);

// Decodes UTF-16LE code units (two bytes each) to UTF-8; unpaired surrogates become U+FFFD.
std::string Utf16LeToUtf8(std::string_view bytes);

// Appends the UTF-8 form of one code point.
void AppendUtf8(std::string& out, char32_t codePoint);

} // namespace ba
