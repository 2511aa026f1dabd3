#pragma once
// Splits a logger raw-data file into its records. Every record starts with a 16-bit
// little-endian length that counts the whole record (the length itself included), then a
// 32-bit float depth and a 16-bit record type; the body follows from byte 8.
//
// The bytes are read in large pieces, and the records come out exactly as if the file had
// been read one record at a time; a record is never longer than 65535 bytes, so the buffer
// never holds more than one piece plus one record.

#include "sonic/RawByteSource.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <stdexcept>
#include <string>
#include <vector>

namespace ba {

inline constexpr std::size_t kRawRecordHeaderBytes = 8;

enum RawRecordType : std::uint16_t {
    kRawDataRecord = 1,
    kRawControlRecord = 8,
};

// A record's bytes, from its length field on.
struct RawRecord {
    std::span<const std::uint8_t> bytes;
    std::size_t number = 0;   // from 1, in file order
    std::uint64_t offset = 0; // byte offset of its first byte in the file

    std::size_t Length() const { return bytes.size(); }
    std::uint8_t Byte(std::size_t i) const { return bytes[i]; }
    std::uint16_t Word(std::size_t i) const
    {
        return static_cast<std::uint16_t>(bytes[i] | (bytes[i + 1] << 8));
    }
    std::uint32_t DoubleWord(std::size_t i) const
    {
        return static_cast<std::uint32_t>(Word(i)) | (static_cast<std::uint32_t>(Word(i + 2)) << 16);
    }
    float Depth() const;
    std::uint16_t Type() const { return Word(6); }
};

// A record that breaks the file's structure; names the record and the byte offset the
// fault was found at.
class RawRecordError : public std::runtime_error {
public:
    RawRecordError(std::size_t record, std::uint64_t offset, const std::string& what)
        : std::runtime_error(what), m_record(record), m_offset(offset)
    {
    }
    std::size_t Record() const { return m_record; }
    std::uint64_t Offset() const { return m_offset; }

private:
    std::size_t m_record;
    std::uint64_t m_offset;
};

class RawRecordReader {
public:
    static constexpr std::size_t kDefaultChunkBytes = std::size_t{4} << 20;

    explicit RawRecordReader(IRawByteSource& source, std::size_t chunkBytes = kDefaultChunkBytes);

    // The next record, valid until the next call; false at the end of the file. Throws
    // RawRecordError for a record that is cut off by the end of the file or whose length
    // is shorter than the record header, RawInputError when reading fails.
    bool Next(RawRecord& record);

    // Bytes of the file taken by the records returned so far.
    std::uint64_t BytesConsumed() const { return m_consumed; }

private:
    // Makes at least `wanted` bytes available from m_pos, as far as the file has them;
    // returns how many are available.
    std::size_t Fill(std::size_t wanted);

    IRawByteSource& m_source;
    std::size_t m_chunkBytes;
    std::vector<std::uint8_t> m_buffer;
    std::size_t m_pos = 0;
    std::size_t m_end = 0;
    bool m_atEnd = false;
    std::uint64_t m_consumed = 0;
    std::size_t m_recordCount = 0;
};

} // namespace ba
