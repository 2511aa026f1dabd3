#include "model/Archive.h"

#include "support/Bytes.h"

#include <gtest/gtest.h>

#include <string>

namespace ba {
namespace {

using test::Hex;
using test::ToHex;

std::vector<std::uint8_t> StringBytes(const std::string& s)
{
    CArchiveWriter w;
    w.WriteString(s);
    return w.Bytes();
}

TEST(ArchiveWriter, PrimitivesAreLittleEndianWithoutPadding)
{
    CArchiveWriter w;
    w.WriteByte(0xAB);
    w.WriteWord(0x1234);
    w.WriteInt32(-2);
    w.WriteFloat(1.0f);
    w.WriteDouble(1.0);
    EXPECT_EQ(ToHex(w.Bytes()), ToHex(Hex("ab 34 12 fe ff ff ff 00 00 80 3f 00 00 00 00 00 00 f0 3f")));
}

TEST(ArchiveString, LengthPrefixFormsAtTheirBoundaries)
{
    struct Case {
        std::size_t length;
        std::string prefix;
    };
    const Case cases[] = {
        {0, "00"},
        {2, "02"},
        {254, "fe"},
        {255, "ff ff 00"},
        {0xFFFD, "ff fd ff"},
        {0xFFFE, "ff ff ff fe ff 00 00"},
    };
    for (const auto& c : cases) {
        const std::string text(c.length, 'x');
        const auto bytes = StringBytes(text);
        const auto prefix = Hex(c.prefix);
        ASSERT_EQ(bytes.size(), prefix.size() + c.length) << c.length;
        EXPECT_EQ(ToHex({bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(prefix.size())}), ToHex(prefix))
            << c.length;
        CArchiveReader r(bytes);
        EXPECT_EQ(r.ReadString(), text) << c.length;
        EXPECT_EQ(r.Remaining(), 0u);
    }
}

TEST(ArchiveString, TextIsWrittenAsWindows1252AndReadBackAsUtf8)
{
    EXPECT_EQ(ToHex(StringBytes("GR")), "02 47 52");
    EXPECT_EQ(ToHex(StringBytes("\xC2\xB5s/ft")), "05 b5 73 2f 66 74");   // µs/ft
    EXPECT_EQ(ToHex(StringBytes("\xE2\x82\xAC")), "01 80");                // €
    EXPECT_EQ(ToHex(StringBytes("\xE2\x86\x92")), "01 3f");                // → has no code page byte
    const auto bytes = Hex("05 b5 73 2f 66 74 01 80");
    CArchiveReader r(bytes);
    EXPECT_EQ(r.ReadString(), "\xC2\xB5s/ft");
    EXPECT_EQ(r.ReadString(), "\xE2\x82\xAC");
}

TEST(ArchiveString, UnicodeFormIsRead)
{
    const auto bytes = Hex("ff fe ff 02 47 00 52 00 | ff fe ff 01 ac 20 | ff fe ff ff 00 01" + std::string(1024, '0'));
    CArchiveReader r(bytes);
    EXPECT_EQ(r.ReadString(), "GR");
    EXPECT_EQ(r.ReadString(), "\xE2\x82\xAC");
    EXPECT_EQ(r.ReadString(), std::string(256, '\0'));
    EXPECT_EQ(r.Remaining(), 0u);
}

TEST(ArchiveString, LengthBeyondTheInputIsRefusedWithItsOffset)
{
    const auto bytes = Hex("00 00 | ff 10 27 41 42");
    CArchiveReader r(bytes);
    r.ReadWord();
    r.SetContext("the header");
    try {
        r.ReadString();
        FAIL() << "expected a count error";
    } catch (const ArchiveException& e) {
        EXPECT_EQ(e.Fault(), ArchiveFault::BadCount);
        EXPECT_EQ(e.Offset(), 2u);
        EXPECT_STREQ(e.what(), "the header: a string claims 10000 characters but only 2 bytes remain (byte offset 2)");
    }
}

TEST(ArchiveFixedText, IsCutPaddedAndReadUpToTheFirstNul)
{
    struct Case {
        std::string text;
        std::string expectedField; // the 25 bytes
        std::string readBack;
    };
    const std::string exact25 = "ABCDEFGHIJKLMNOPQRSTUVWXY";
    const Case cases[] = {
        {"GR", std::string("GR") + std::string(23, '\0'), "GR"},
        {exact25, exact25, exact25},
        {exact25 + "Z", exact25, exact25},
        {"\xC2\xB0" "C", std::string("\xB0" "C") + std::string(23, '\0'), "\xC2\xB0" "C"},
    };
    for (const auto& c : cases) {
        CArchiveWriter w;
        w.WriteFixedText(c.text);
        ASSERT_EQ(w.Bytes().size(), 25u);
        EXPECT_EQ(std::string(w.Bytes().begin(), w.Bytes().end()), c.expectedField) << c.text;
        CArchiveReader r(w.Bytes());
        EXPECT_EQ(r.ReadFixedText(), c.readBack);
    }
    // Bytes after the first NUL are not part of the text.
    auto garbage = Hex("'AB' 00 'CD'");
    garbage.resize(25, 'x');
    CArchiveReader r(garbage);
    EXPECT_EQ(r.ReadFixedText(), "AB");
}

TEST(ArchiveWord, ReplacesOnlyTheLowSixteenBits)
{
    const auto bytes = Hex("34 12 ff ff");
    CArchiveReader r(bytes);
    std::int32_t field = 0x7ABC0000;
    r.ReadWordInto(field);
    EXPECT_EQ(field, 0x7ABC1234);
    std::int32_t negative = -1;
    r.ReadWordInto(negative);
    EXPECT_EQ(negative, -1);
}

TEST(ArchiveCount, UsesTheEscapeFromFfff)
{
    CArchiveWriter w;
    w.WriteCount(3);
    w.WriteCount(0xFFFE);
    w.WriteCount(0xFFFF);
    w.WriteCount(70000);
    EXPECT_EQ(ToHex(w.Bytes()), "03 00 fe ff ff ff ff ff 00 00 ff ff 70 11 01 00");
    CArchiveReader r(w.Bytes());
    EXPECT_EQ(r.ReadCount(), 3u);
    EXPECT_EQ(r.ReadCount(), 0xFFFEu);
    EXPECT_EQ(r.ReadCount(), 0xFFFFu);
    EXPECT_EQ(r.ReadCount(), 70000u);
}

// Two objects of one class, one of another, then the first object again: class and object
// indices come from one counter.
TEST(ArchiveObjects, TagsShareOneMapIndex)
{
    int line1 = 0, line2 = 0, image = 0, image2 = 0;
    CArchiveWriter w;
    EXPECT_TRUE(w.BeginObject(&line1, "CLineTrace", 1));
    EXPECT_TRUE(w.BeginObject(&line2, "CLineTrace", 1));
    EXPECT_TRUE(w.BeginObject(&image, "CImageTrace", 1));
    EXPECT_TRUE(w.BeginObject(&image2, "CImageTrace", 1));
    EXPECT_FALSE(w.BeginObject(&line1, "CLineTrace", 1));
    EXPECT_FALSE(w.BeginObject(nullptr, "CLineTrace", 1));
    EXPECT_EQ(ToHex(w.Bytes()), ToHex(Hex("ff ff 01 00 0a 00 'CLineTrace' | 01 80 |"
                                          "ff ff 01 00 0b 00 'CImageTrace' | 04 80 | 02 00 | 00 00")));

    CArchiveReader r(w.Bytes());
    const ObjectRecord first = r.ReadObjectHeader();
    EXPECT_EQ(first.kind, ObjectRecord::Kind::NewObject);
    EXPECT_EQ(first.className, "CLineTrace");
    EXPECT_EQ(first.schema, 1);
    EXPECT_EQ(first.index, 2u);
    EXPECT_EQ(r.ReadObjectHeader().className, "CLineTrace");
    const ObjectRecord third = r.ReadObjectHeader();
    EXPECT_EQ(third.className, "CImageTrace");
    EXPECT_EQ(third.index, 5u);
    EXPECT_EQ(r.ReadObjectHeader().className, "CImageTrace");
    const ObjectRecord again = r.ReadObjectHeader();
    EXPECT_EQ(again.kind, ObjectRecord::Kind::BackReference);
    EXPECT_EQ(again.index, 2u);
    EXPECT_EQ(r.ReadObjectHeader().kind, ObjectRecord::Kind::Null);
}

TEST(ArchiveObjects, BigTagsAreReadThroughTheEscape)
{
    // A class index written through the 7FFF escape with the class bit in the double word.
    const auto bytes = Hex("ff ff 01 00 01 00 'C' | ff 7f 01 00 00 80 | ff 7f 02 00 00 00");
    CArchiveReader r(bytes);
    EXPECT_EQ(r.ReadObjectHeader().index, 2u);
    const ObjectRecord second = r.ReadObjectHeader();
    EXPECT_EQ(second.kind, ObjectRecord::Kind::NewObject);
    EXPECT_EQ(second.className, "C");
    const ObjectRecord ref = r.ReadObjectHeader();
    EXPECT_EQ(ref.kind, ObjectRecord::Kind::BackReference);
    EXPECT_EQ(ref.index, 2u);
}

TEST(ArchiveObjects, HostileTagsAreRefused)
{
    struct Case {
        const char* name;
        std::string bytes;
        ArchiveFault fault;
    };
    const Case cases[] = {
        {"class tag before any class", "01 80", ArchiveFault::BadIndex},
        {"class tag naming an object", "ff ff 01 00 01 00 'C' | 02 80", ArchiveFault::BadIndex},
        {"object reference past the map", "ff ff 01 00 01 00 'C' | 05 00", ArchiveFault::BadIndex},
        {"object reference naming a class", "ff ff 01 00 01 00 'C' | 01 00", ArchiveFault::BadIndex},
        {"class name of 64 bytes", "ff ff 01 00 40 00" + std::string(128, '4'), ArchiveFault::BadClass},
        {"class name cut short", "ff ff 01 00 0a 00 'CLine'", ArchiveFault::EndOfFile},
        {"tag cut short", "ff", ArchiveFault::EndOfFile},
    };
    for (const auto& c : cases) {
        const auto bytes = Hex(c.bytes);
        CArchiveReader r(bytes);
        try {
            for (int i = 0; i < 3; ++i) r.ReadObjectHeader();
            ADD_FAILURE() << c.name << ": no error";
        } catch (const ArchiveException& e) {
            EXPECT_EQ(e.Fault(), c.fault) << c.name << ": " << e.what();
        }
    }
}

TEST(ArchiveReader, ElementCountsMustFitTheRemainingBytes)
{
    const auto bytes = Hex("ff ff ff ff | 03 00 00 00 | 01 02 03 04 05 06 07 08 09 0a 0b");
    CArchiveReader r(bytes);
    EXPECT_THROW(r.ReadElementCount("the depths", 4), ArchiveException);
    CArchiveReader r2({bytes.data() + 4, bytes.size() - 4});
    try {
        r2.ReadElementCount("the depths", 4);
        FAIL();
    } catch (const ArchiveException& e) {
        EXPECT_EQ(e.Fault(), ArchiveFault::BadCount);
        EXPECT_STREQ(e.what(), "count 3 for the depths needs 12 bytes but only 11 bytes remain (byte offset 0)");
    }
    const auto fits = Hex("02 00 00 00 | 01 02 03 04 05 06 07 08");
    CArchiveReader r3(fits);
    EXPECT_EQ(r3.ReadElementCount("the depths", 4), 2u);
}

TEST(ArchiveReader, ReadsPastTheEndThrowEndOfFileWithContext)
{
    const auto bytes = Hex("01 02 03");
    CArchiveReader r(bytes);
    r.SetContext("trace entry 1 of 1");
    try {
        r.ReadInt32();
        FAIL();
    } catch (const ArchiveException& e) {
        EXPECT_EQ(e.Fault(), ArchiveFault::EndOfFile);
        EXPECT_STREQ(e.what(),
                     "trace entry 1 of 1: the file ends inside a 32-bit field: 4 bytes needed, 3 bytes left (byte offset 0)");
    }
    CFloatArray floats;
    EXPECT_THROW(r.ReadFloats(1, floats), ArchiveException);
    EXPECT_EQ(floats.Size(), 0u);
}

} // namespace
} // namespace ba
