#include "io/LasText.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace ba {
namespace {

std::vector<std::string> ReadLines(std::string_view bytes, std::size_t chunkBytes)
{
    LasMemorySource source(bytes);
    LasLineReader reader(source, chunkBytes);
    std::vector<std::string> lines;
    std::string_view line;
    while (reader.Next(line)) {
        lines.emplace_back(line);
        EXPECT_EQ(reader.LineNumber(), lines.size());
    }
    return lines;
}

// Chunk sizes that put chunk boundaries everywhere, including between CR and LF and inside
// UTF-16 code units and surrogate pairs, and the default.
const std::size_t kChunkSizes[] = {1, 2, 3, 5, 7, 64, LasLineReader::kDefaultChunkBytes};

TEST(LasLineReader, LineEndsAtLfCrLfAndLoneCrWhateverTheChunkSize)
{
    struct Case {
        const char* name;
        std::string bytes;
        std::vector<std::string> lines;
    };
    const Case cases[] = {
        {"LF", "~V\nVERS. 2.0\n", {"~V", "VERS. 2.0"}},
        {"CR LF", "~V\r\nVERS. 2.0\r\n", {"~V", "VERS. 2.0"}},
        {"lone CR", "~V\rVERS. 2.0\r", {"~V", "VERS. 2.0"}},
        {"mixed", "a\r\nb\rc\nd", {"a", "b", "c", "d"}},
        {"no final line end", "a\nb", {"a", "b"}},
        {"empty lines kept", "a\n\n\r\n\rb\n", {"a", "", "", "", "b"}},
        {"CR LF split across reads", "ab\r\ncd\r\n", {"ab", "cd"}},
        {"nothing", "", {}},
    };
    for (const Case& c : cases) {
        for (const std::size_t chunk : kChunkSizes) {
            EXPECT_EQ(ReadLines(c.bytes, chunk), c.lines) << c.name << ", chunks of " << chunk;
        }
    }
}

TEST(LasLineReader, DecodesUtf16IntoUtf8WithOrWithoutByteOrderMark)
{
    // "~V µ\n𝄞\n" with a character outside the basic plane (a surrogate pair).
    const std::string le = std::string("~\0V\0 \0\xB5\0\n\0", 10) + std::string("\x34\xD8\x1E\xDD\n\0", 6);
    std::string be;
    for (std::size_t i = 0; i < le.size(); i += 2) be += std::string{le[i + 1], le[i]};
    const std::vector<std::string> expected = {"~V \xC2\xB5", "\xF0\x9D\x84\x9E"};
    struct Case {
        const char* name;
        std::string bytes;
        LasEncoding encoding;
        bool withoutBom;
    };
    const Case cases[] = {
        {"LE with BOM", "\xFF\xFE" + le, LasEncoding::Utf16Le, false},
        {"BE with BOM", "\xFE\xFF" + be, LasEncoding::Utf16Be, false},
        {"LE without BOM", le, LasEncoding::Utf16Le, true},
        {"BE without BOM", be, LasEncoding::Utf16Be, true},
    };
    for (const Case& c : cases) {
        for (const std::size_t chunk : kChunkSizes) {
            EXPECT_EQ(ReadLines(c.bytes, chunk), expected) << c.name << ", chunks of " << chunk;
            LasMemorySource source(c.bytes);
            const LasLineReader reader(source, chunk);
            EXPECT_EQ(reader.Encoding().encoding, c.encoding) << c.name;
            EXPECT_EQ(reader.Encoding().withoutBom, c.withoutBom) << c.name;
        }
    }
}

TEST(LasLineReader, BrokenUtf16BecomesReplacementCharacters)
{
    // A lone low surrogate, then a high surrogate with no low one after it at the end.
    const std::string bytes = std::string("\xFF\xFE", 2) + std::string("a\0\x00\xDC", 4) + std::string("b\0\x00\xD8", 4);
    for (const std::size_t chunk : kChunkSizes) {
        EXPECT_EQ(ReadLines(bytes, chunk), std::vector<std::string>{"a\xEF\xBF\xBD" "b\xEF\xBF\xBD"}) << chunk;
    }
}

TEST(LasLineReader, Utf8ByteOrderMarkIsDropped)
{
    EXPECT_EQ(ReadLines("\xEF\xBB\xBF~V\n", 2), std::vector<std::string>{"~V"});
}

TEST(LasLineReader, RefusesALineLongerThanTheLimit)
{
    const std::string huge(LasLineReader::kMaxLineBytes + 2, 'x');
    LasMemorySource source(huge);
    LasLineReader reader(source);
    std::string_view line;
    EXPECT_THROW(reader.Next(line), LasInputError);
}

TEST(LasEncoding, DetectionFromTheFirstBytes)
{
    struct Case {
        std::string head;
        LasEncoding encoding;
        std::size_t bomBytes;
    };
    const Case cases[] = {
        {"~VERSION\n", LasEncoding::Utf8OrAnsi, 0},
        {"\xEF\xBB\xBF~V", LasEncoding::Utf8WithBom, 3},
        {"\xFF\xFE~\0", LasEncoding::Utf16Le, 2},
        {"\xFE\xFF\0~", LasEncoding::Utf16Be, 2},
        {std::string("~\0V\0E\0R\0", 8), LasEncoding::Utf16Le, 0},
        {std::string("\0~\0V\0E\0R", 8), LasEncoding::Utf16Be, 0},
        // Windows-1252 text with high bytes is still 8-bit text.
        {"~W \xB5s/ft \xB0" "C\n", LasEncoding::Utf8OrAnsi, 0},
        {"", LasEncoding::Utf8OrAnsi, 0},
    };
    for (const Case& c : cases) {
        const LasEncodingGuess guess = DetectLasEncoding(c.head);
        EXPECT_EQ(guess.encoding, c.encoding) << c.head;
        EXPECT_EQ(guess.bomBytes, c.bomBytes) << c.head;
    }
}

TEST(LasEncoding, EightBitLinesDecodeAsUtf8OrElseWindows1252)
{
    struct Case {
        std::string line;
        std::string utf8;
        bool ansi;
    };
    const Case cases[] = {
        {"DT  .US/M  : sonic", "DT  .US/M  : sonic", false},
        {"DT  .\xC2\xB5s/ft", "DT  .\xC2\xB5s/ft", false},           // UTF-8 µ stays
        {"DT  .\xB5s/ft", "DT  .\xC2\xB5s/ft", true},                   // Windows-1252 µ
        {"TEMP.\xB0" "C", "TEMP.\xC2\xB0" "C", true},                   // Windows-1252 °
        {"R .\x80", "R .\xE2\x82\xAC", true},                           // euro sign, 0x80 in Windows-1252
        {"RES.\xD0\x9E\xD0\xBC", "RES.\xD0\x9E\xD0\xBC", false},         // Cyrillic in UTF-8
        {"bad \xC0\xAF overlong", "bad \xC3\x80\xC2\xAF overlong", true}, // overlong UTF-8 is not UTF-8
        {"cut \xE2\x82", "cut \xC3\xA2\xE2\x80\x9A", true},              // sequence cut short
    };
    for (const Case& c : cases) {
        bool ansi = false;
        EXPECT_EQ(DecodeLasLine(c.line, ansi), c.utf8) << c.line;
        EXPECT_EQ(ansi, c.ansi) << c.line;
    }
}

TEST(LasFileSource, MissingFileAndFolderDoNotOpen)
{
    EXPECT_EQ(LasFileSource::Open("/nonexistent/folder/x.las"), nullptr);
    EXPECT_EQ(LasFileSource::Open(BA_TEST_DATA_DIR), nullptr);
}

} // namespace
} // namespace ba
