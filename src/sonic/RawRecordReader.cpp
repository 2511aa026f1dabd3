#include "sonic/RawRecordReader.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace ba {

float RawRecord::Depth() const { return std::bit_cast<float>(DoubleWord(2)); }

RawRecordReader::RawRecordReader(IRawByteSource& source, std::size_t chunkBytes)
    : m_source(source), m_chunkBytes(std::max<std::size_t>(chunkBytes, 1))
{
    // A small file needs no buffer of the full piece size; the size only guides the reads.
    const std::uint64_t size = source.SizeHint();
    if (size > 0 && size < m_chunkBytes) m_chunkBytes = static_cast<std::size_t>(size);
}

std::size_t RawRecordReader::Fill(std::size_t wanted)
{
    while (m_end - m_pos < wanted && !m_atEnd) {
        if (m_pos > 0) {
            // Move the unread tail to the front; it is at most one record long.
            std::memmove(m_buffer.data(), m_buffer.data() + m_pos, m_end - m_pos);
            m_end -= m_pos;
            m_pos = 0;
        }
        const std::size_t request = std::max(m_chunkBytes, wanted - m_end);
        if (m_buffer.size() < m_end + request) m_buffer.resize(m_end + request);
        const std::size_t n = m_source.Read(std::span<std::uint8_t>(m_buffer.data() + m_end, request));
        if (n == 0) m_atEnd = true;
        m_end += n;
    }
    return m_end - m_pos;
}

bool RawRecordReader::Next(RawRecord& record)
{
    const std::size_t number = m_recordCount + 1;
    const std::size_t available = Fill(2);
    if (available == 0) return false;
    if (available == 1) {
        throw RawRecordError(number, m_consumed,
                             "the file ends one byte into the record's 2-byte length (a truncated file)");
    }
    const std::size_t length = static_cast<std::size_t>(m_buffer[m_pos] | (m_buffer[m_pos + 1] << 8));
    if (length < kRawRecordHeaderBytes) {
        throw RawRecordError(number, m_consumed,
                             "the record length " + std::to_string(length) +
                                 " is shorter than the 8 bytes of length, depth and record type");
    }
    const std::size_t got = Fill(length);
    if (got < length) {
        throw RawRecordError(number, m_consumed,
                             "the record length " + std::to_string(length) + " runs past the end of the file (" +
                                 std::to_string(got) + " bytes are left; a truncated file)");
    }
    record.bytes = std::span<const std::uint8_t>(m_buffer.data() + m_pos, length);
    record.number = number;
    record.offset = m_consumed;
    m_pos += length;
    m_consumed += length;
    m_recordCount = number;
    return true;
}

} // namespace ba
