#include "base/Cp1252.h"

#include <gtest/gtest.h>

namespace ba {
namespace {

TEST(Cp1252, EveryByteDecodesAndEncodesBack)
{
    for (int b = 0; b < 256; ++b) {
        const std::string byte(1, static_cast<char>(b));
        EXPECT_EQ(Utf8ToCp1252(Cp1252ToUtf8(byte)), byte) << b;
    }
}

TEST(Cp1252, KnownCharacters)
{
    EXPECT_EQ(Cp1252ToUtf8("\x80"), "\xE2\x82\xAC");   // euro sign
    EXPECT_EQ(Cp1252ToUtf8("\xB0"), "\xC2\xB0");       // degree sign
    EXPECT_EQ(Cp1252ToUtf8("\x9F"), "\xC5\xB8");       // Y with diaeresis
    EXPECT_EQ(Utf8ToCp1252("\xCE\xA9"), "?");          // Greek omega is not in the code page
    EXPECT_EQ(Utf8ToCp1252("\xF0\x9F\x98\x80"), "?");  // nor is an emoji (one '?' for the whole character)
    EXPECT_EQ(Utf8ToCp1252("a\xC3"), "a?");            // a sequence cut short
    EXPECT_EQ(Utf8ToCp1252("\xFF" "b"), "?b");         // a byte that starts no sequence
}

TEST(Cp1252, Utf16LittleEndianWithSurrogates)
{
    EXPECT_EQ(Utf16LeToUtf8(std::string("A\0\xAC\x20", 4)), "A\xE2\x82\xAC");
    EXPECT_EQ(Utf16LeToUtf8(std::string("\x3D\xD8\x00\xDE", 4)), "\xF0\x9F\x98\x80");
    EXPECT_EQ(Utf16LeToUtf8(std::string("\x3D\xD8", 2)), "\xEF\xBF\xBD");
}

} // namespace
} // namespace ba
