#pragma once
// Reader and writer of the framework object archive that documents and clipboard blocks
// are made of: little-endian numbers without padding, fixed-size ANSI texts,
// length-prefixed strings, 16-bit words, and object records whose class tags and object
// back-references share one map index.
//
// The reader works on bytes already in memory and checks every read against what
// remains, so a damaged or hostile input ends in an ArchiveException that carries the
// byte offset and the part of the file being read, never in a crash or an allocation
// the input cannot justify.

#include "model/GrowableArray.h"

#include <cstdint>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace ba {

enum class ArchiveFault {
    EndOfFile,  // the input ends before a field does
    BadSchema,  // a signature or class schema that is not the expected one
    BadClass,   // a class record naming a class that is unknown or not expected here
    BadIndex,   // a tag referring to a map entry that does not exist or is of the wrong sort
    BadCount,   // a count that is negative or larger than the bytes that remain can hold
};

class ArchiveException : public std::runtime_error {
public:
    ArchiveException(ArchiveFault fault, std::uint64_t offset, const std::string& what)
        : std::runtime_error(what), m_fault(fault), m_offset(offset)
    {
    }
    ArchiveFault Fault() const { return m_fault; }
    std::uint64_t Offset() const { return m_offset; }

private:
    ArchiveFault m_fault;
    std::uint64_t m_offset;
};

inline constexpr std::size_t kFixedTextSize = 25;
inline constexpr std::uint16_t kNullTag = 0x0000;
inline constexpr std::uint16_t kNewClassTag = 0xFFFF;
inline constexpr std::uint16_t kClassTag = 0x8000;
inline constexpr std::uint16_t kBigObjectTag = 0x7FFF;
inline constexpr std::uint32_t kBigClassTag = 0x80000000;
inline constexpr std::uint32_t kMaxMapCount = 0x3FFFFFFE;
inline constexpr std::size_t kMaxClassNameLength = 63;

class CArchiveWriter {
public:
    void WriteByte(std::uint8_t value) { m_bytes.push_back(value); }
    void WriteWord(std::uint16_t value);
    void WriteInt32(std::int32_t value);
    void WriteUInt32(std::uint32_t value);
    void WriteFloat(float value);
    void WriteDouble(double value);
    void WriteBytes(std::span<const std::uint8_t> bytes);
    void WriteFloats(std::span<const float> values);
    void WriteWords(std::span<const std::uint16_t> values);

    // Exactly `size` bytes: the text in Windows-1252, cut to `size` bytes, and when
    // shorter a NUL followed by zeros.
    void WriteFixedText(std::string_view utf8, std::size_t size = kFixedTextSize);

    // A length-prefixed ANSI string (Windows-1252, no Unicode marker).
    void WriteString(std::string_view utf8);

    // The collection count: a word below 0xFFFF, otherwise FFFF and a double word.
    void WriteCount(std::uint32_t count);

    // Starts the record of `object`. A first-time object gets its class tag (with the
    // class description at the class's first use) and a map index, and the call returns
    // true: the caller then writes the object's fields. An object written before gets only
    // its back-reference tag, and the call returns false.
    bool BeginObject(const void* object, std::string_view className, std::uint16_t schema);

    const std::vector<std::uint8_t>& Bytes() const { return m_bytes; }
    std::vector<std::uint8_t> TakeBytes() { return std::move(m_bytes); }
    void Reserve(std::size_t n) { m_bytes.reserve(n); }

private:
    void WriteTag(std::uint32_t index, bool isClass);

    std::vector<std::uint8_t> m_bytes;
    std::unordered_map<const void*, std::uint32_t> m_objectIndex;
    std::unordered_map<std::string, std::uint32_t> m_classIndex;
    std::uint32_t m_mapCount = 1; // index 0 is the null pointer
};

// What ReadObjectHeader found.
struct ObjectRecord {
    enum class Kind { Null, BackReference, NewObject };
    Kind kind = Kind::Null;
    std::string className;     // for a new object
    std::uint16_t schema = 0;  // for a new object: the schema its class record gave
    std::uint32_t index = 0;   // map index of the new object, or the one referred to
    std::uint64_t offset = 0;  // where the tag starts
};

class CArchiveReader {
public:
    explicit CArchiveReader(std::span<const std::uint8_t> bytes) : m_bytes(bytes) {}

    std::uint8_t ReadByte();
    std::uint16_t ReadWord();
    std::int32_t ReadInt32();
    std::uint32_t ReadUInt32();
    float ReadFloat();
    double ReadDouble();
    std::span<const std::uint8_t> ReadBytes(std::size_t n);

    // Reads n floats into `into` (appending), after checking the bytes are there.
    void ReadFloats(std::size_t n, CFloatArray& into);
    void ReadWords(std::size_t n, CWordArray& into);

    // A fixed-size text decoded up to its first NUL.
    std::string ReadFixedText(std::size_t size = kFixedTextSize);

    // A length-prefixed string in either the ANSI or the Unicode (FF FE FF) form.
    std::string ReadString();

    // Reads a 16-bit word into an int32 field: only the low 16 bits are replaced, the
    // high 16 bits keep what the field held.
    void ReadWordInto(std::int32_t& field);

    std::uint32_t ReadCount();

    // Reads an int32 count of elements of `elementSize` bytes each and checks that it is
    // not negative and that the remaining bytes can hold that many elements.
    std::size_t ReadElementCount(std::string_view what, std::size_t elementSize);

    // Checks a count read earlier (at `countOffset`) against the bytes that remain now,
    // for formats that put fixed fields between a count and its elements.
    std::size_t CheckElementCount(std::int32_t count, std::size_t countOffset, std::string_view what,
                                  std::size_t elementSize) const;

    // Reads an object tag, and a class description when one follows. Class tags must name
    // a class read before; back-references must name an object read before.
    ObjectRecord ReadObjectHeader();

    std::size_t Offset() const { return m_pos; }
    std::size_t Remaining() const { return m_bytes.size() - m_pos; }
    std::size_t Size() const { return m_bytes.size(); }

    // Names the part of the input being read; it is put into every exception message.
    void SetContext(std::string context) { m_context = std::move(context); }
    const std::string& Context() const { return m_context; }

    [[noreturn]] void Fail(ArchiveFault fault, const std::string& detail) const;
    [[noreturn]] void FailAt(ArchiveFault fault, std::uint64_t offset, const std::string& detail) const;

private:
    void Require(std::size_t n, std::string_view what);

    struct MapEntry {
        bool isClass = false;
        std::string className;
        std::uint16_t schema = 0;
    };

    std::span<const std::uint8_t> m_bytes;
    std::size_t m_pos = 0;
    std::string m_context;
    std::vector<MapEntry> m_map{MapEntry{}}; // entry 0 is the null pointer
};

} // namespace ba
