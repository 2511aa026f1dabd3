#include "io/LasText.h"

#include "base/Cp1252.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <system_error>

namespace ba {
namespace {

// Bytes looked at to recognise UTF-16 without a byte-order mark.
constexpr std::size_t kDetectionBytes = 512;

} // namespace

// --- byte sources ---------------------------------------------------------------------

std::size_t LasMemorySource::Read(std::span<char> buffer)
{
    const std::size_t n = std::min(buffer.size(), m_bytes.size() - m_pos);
    if (n > 0) std::memcpy(buffer.data(), m_bytes.data() + m_pos, n);
    m_pos += n;
    return n;
}

std::unique_ptr<LasFileSource> LasFileSource::Open(const std::filesystem::path& path)
{
    std::error_code ec;
    // A folder opens as a stream on some systems but yields no bytes; it is not a file.
    if (std::filesystem::is_directory(path, ec)) return nullptr;
#if defined(_WIN32)
    std::FILE* file = _wfopen(path.c_str(), L"rb");
#else
    std::FILE* file = std::fopen(path.c_str(), "rb");
#endif
    if (file == nullptr) return nullptr;
    // The reader asks for large chunks itself; a second buffer would only copy them again.
    std::setvbuf(file, nullptr, _IONBF, 0);
    const std::uintmax_t size = std::filesystem::file_size(path, ec);
    return std::unique_ptr<LasFileSource>(new LasFileSource(file, ec ? 0 : static_cast<std::uint64_t>(size)));
}

LasFileSource::~LasFileSource() { std::fclose(m_file); }

std::size_t LasFileSource::Read(std::span<char> buffer)
{
    const std::size_t n = std::fread(buffer.data(), 1, buffer.size(), m_file);
    if (n < buffer.size() && std::ferror(m_file) != 0) {
        throw LasInputError(std::string("reading failed: ") + std::strerror(errno));
    }
    return n;
}

// --- encodings ------------------------------------------------------------------------

LasEncodingGuess DetectLasEncoding(std::span<const char> head)
{
    auto byteAt = [&](std::size_t i) { return static_cast<unsigned char>(head[i]); };
    if (head.size() >= 3 && byteAt(0) == 0xEF && byteAt(1) == 0xBB && byteAt(2) == 0xBF) {
        return {LasEncoding::Utf8WithBom, 3, false};
    }
    if (head.size() >= 2 && byteAt(0) == 0xFF && byteAt(1) == 0xFE) return {LasEncoding::Utf16Le, 2, false};
    if (head.size() >= 2 && byteAt(0) == 0xFE && byteAt(1) == 0xFF) return {LasEncoding::Utf16Be, 2, false};

    const std::size_t pairs = std::min(head.size(), kDetectionBytes) / 2;
    if (pairs < 2) return {};
    std::size_t zeroEven = 0;
    std::size_t zeroOdd = 0;
    for (std::size_t i = 0; i < pairs; ++i) {
        if (byteAt(2 * i) == 0) ++zeroEven;
        if (byteAt(2 * i + 1) == 0) ++zeroOdd;
    }
    // 8-bit text has no zero bytes at all; ASCII in UTF-16 has one in every character.
    if (zeroOdd * 2 > pairs && zeroEven * 10 < pairs) return {LasEncoding::Utf16Le, 0, true};
    if (zeroEven * 2 > pairs && zeroOdd * 10 < pairs) return {LasEncoding::Utf16Be, 0, true};
    return {};
}

std::string_view LasEncodingName(LasEncoding encoding)
{
    switch (encoding) {
    case LasEncoding::Utf8OrAnsi: return "UTF-8";
    case LasEncoding::Utf8WithBom: return "UTF-8 with a byte-order mark";
    case LasEncoding::Utf16Le: return "UTF-16LE";
    case LasEncoding::Utf16Be: return "UTF-16BE";
    }
    return "UTF-8";
}

bool IsValidUtf8(std::string_view text)
{
    std::size_t i = 0;
    while (i < text.size()) {
        const auto lead = static_cast<unsigned char>(text[i]);
        std::size_t extra = 0;
        char32_t cp = 0;
        if (lead < 0x80) { ++i; continue; }
        if (lead >= 0xC2 && lead <= 0xDF) { extra = 1; cp = lead & 0x1Fu; }
        else if (lead >= 0xE0 && lead <= 0xEF) { extra = 2; cp = lead & 0x0Fu; }
        else if (lead >= 0xF0 && lead <= 0xF4) { extra = 3; cp = lead & 0x07u; }
        else return false;
        if (i + extra >= text.size()) return false;
        for (std::size_t k = 1; k <= extra; ++k) {
            const auto b = static_cast<unsigned char>(text[i + k]);
            if ((b & 0xC0) != 0x80) return false;
            cp = (cp << 6) | (b & 0x3Fu);
        }
        // Overlong forms, surrogates and code points past U+10FFFF are not UTF-8.
        if ((extra == 2 && cp < 0x800) || (extra == 3 && (cp < 0x10000 || cp > 0x10FFFF)) ||
            (cp >= 0xD800 && cp <= 0xDFFF)) {
            return false;
        }
        i += extra + 1;
    }
    return true;
}

std::string DecodeLasLine(std::string_view line, bool& wasAnsi)
{
    wasAnsi = !IsValidUtf8(line);
    return wasAnsi ? Cp1252ToUtf8(line) : std::string(line);
}

// --- line reader ----------------------------------------------------------------------

LasLineReader::LasLineReader(ILasByteSource& source, std::size_t chunkBytes)
    : m_source(source), m_chunkBytes(std::max<std::size_t>(chunkBytes, 1))
{
    // A small file needs no megabyte-sized buffer.
    const std::uint64_t hint = source.SizeHint();
    if (hint > 0 && hint < m_chunkBytes) m_chunkBytes = static_cast<std::size_t>(hint) + 1;

    // Enough of the start to recognise the encoding.
    while (!m_sourceDone && m_rawFill < kDetectionBytes) ReadRaw(std::min(m_chunkBytes, kDetectionBytes));
    m_encoding = DetectLasEncoding(std::span<const char>(m_raw.data(), m_rawFill));
    const bool utf16 = m_encoding.encoding == LasEncoding::Utf16Le || m_encoding.encoding == LasEncoding::Utf16Be;
    const char* start = m_raw.data() + m_encoding.bomBytes;
    const std::size_t size = m_rawFill - m_encoding.bomBytes;
    if (utf16) {
        m_rawFill = 0;
        DecodeUtf16(start, size); // keeps an odd last byte at the front of m_raw
        if (m_sourceDone) FinishUtf16();
    } else {
        MakeRoom(size);
        if (size > 0) std::memcpy(m_text.data() + m_end, start, size);
        m_end += size;
        std::vector<char>().swap(m_raw);
        m_rawFill = 0;
    }
}

void LasLineReader::ReadRaw(std::size_t wanted)
{
    if (m_raw.size() < m_rawFill + wanted) m_raw.resize(m_rawFill + wanted);
    const std::size_t n = m_source.Read(std::span<char>(m_raw.data() + m_rawFill, wanted));
    if (n == 0) m_sourceDone = true;
    m_rawFill += n;
}

void LasLineReader::MakeRoom(std::size_t bytes)
{
    if (m_text.size() - m_end >= bytes) return;
    // Move the unread part (the start of a line) to the front, then grow if still short.
    if (m_pos > 0) {
        std::memmove(m_text.data(), m_text.data() + m_pos, m_end - m_pos);
        m_end -= m_pos;
        m_pos = 0;
    }
    if (m_text.size() - m_end < bytes) m_text.resize(std::max(m_end + bytes, m_text.size() * 2));
}

void LasLineReader::DecodeUtf16(const char* data, std::size_t size)
{
    // Each two-byte unit becomes at most three bytes of UTF-8.
    MakeRoom(size / 2 * 3 + 8);
    const bool bigEndian = m_encoding.encoding == LasEncoding::Utf16Be;
    auto emit = [&](char32_t cp) {
        char bytes[4];
        std::size_t n = 0;
        if (cp < 0x80) {
            bytes[n++] = static_cast<char>(cp);
        } else if (cp < 0x800) {
            bytes[n++] = static_cast<char>(0xC0 | (cp >> 6));
            bytes[n++] = static_cast<char>(0x80 | (cp & 0x3F));
        } else if (cp < 0x10000) {
            bytes[n++] = static_cast<char>(0xE0 | (cp >> 12));
            bytes[n++] = static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
            bytes[n++] = static_cast<char>(0x80 | (cp & 0x3F));
        } else {
            bytes[n++] = static_cast<char>(0xF0 | (cp >> 18));
            bytes[n++] = static_cast<char>(0x80 | ((cp >> 12) & 0x3F));
            bytes[n++] = static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
            bytes[n++] = static_cast<char>(0x80 | (cp & 0x3F));
        }
        std::memcpy(m_text.data() + m_end, bytes, n);
        m_end += n;
    };
    std::size_t i = 0;
    for (; i + 1 < size; i += 2) {
        const auto b0 = static_cast<unsigned char>(data[i]);
        const auto b1 = static_cast<unsigned char>(data[i + 1]);
        const char32_t unit = bigEndian ? (char32_t{b0} << 8 | b1) : (char32_t{b1} << 8 | b0);
        if (m_highSurrogate != 0) {
            const char32_t high = m_highSurrogate;
            m_highSurrogate = 0;
            if (unit >= 0xDC00 && unit <= 0xDFFF) {
                emit(0x10000 + ((high - 0xD800) << 10) + (unit - 0xDC00));
                continue;
            }
            emit(0xFFFD); // a high surrogate with no low one after it
        }
        if (unit >= 0xD800 && unit <= 0xDBFF) m_highSurrogate = unit;
        else if (unit >= 0xDC00 && unit <= 0xDFFF) emit(0xFFFD);
        else emit(unit);
    }
    // An odd byte waits for its partner from the next chunk.
    if (i < size) {
        if (m_raw.empty()) m_raw.resize(1);
        m_raw[0] = data[i];
        m_rawFill = 1;
    }
}

void LasLineReader::FinishUtf16()
{
    // A high surrogate with nothing after it ends the text as a replacement character; an
    // odd last byte is half a character and is dropped.
    if (m_highSurrogate == 0) return;
    m_highSurrogate = 0;
    MakeRoom(3);
    const char replacement[3] = {'\xEF', '\xBF', '\xBD'};
    std::memcpy(m_text.data() + m_end, replacement, 3);
    m_end += 3;
}

bool LasLineReader::Fill()
{
    if (m_sourceDone) return false;
    const bool utf16 = m_encoding.encoding == LasEncoding::Utf16Le || m_encoding.encoding == LasEncoding::Utf16Be;
    if (utf16) {
        ReadRaw(m_chunkBytes);
        const std::size_t got = m_rawFill;
        m_rawFill = 0;
        DecodeUtf16(m_raw.data(), got); // keeps an odd last byte at the front of m_raw
        if (m_sourceDone) FinishUtf16();
        return true;
    }
    MakeRoom(m_chunkBytes);
    const std::size_t n = m_source.Read(std::span<char>(m_text.data() + m_end, m_chunkBytes));
    if (n == 0) m_sourceDone = true;
    m_end += n;
    return true;
}

bool LasLineReader::Next(std::string_view& line)
{
    for (;;) {
        if (m_skipLineFeed) {
            if (m_pos < m_end) {
                if (m_text[m_pos] == '\n') ++m_pos;
                m_skipLineFeed = false;
            } else if (Fill()) {
                continue;
            } else {
                m_skipLineFeed = false;
            }
        }
        const std::size_t available = m_end - m_pos;
        if (available == 0) {
            if (m_sourceDone) return false;
            Fill();
            continue;
        }
        const char* start = m_text.data() + m_pos;
        const auto* lf = static_cast<const char*>(std::memchr(start, '\n', available));
        const std::size_t searched = lf != nullptr ? static_cast<std::size_t>(lf - start) : available;
        const auto* cr = static_cast<const char*>(std::memchr(start, '\r', searched));
        if (cr != nullptr) {
            const auto length = static_cast<std::size_t>(cr - start);
            std::size_t consumed = length + 1;
            if (length + 1 < available) {
                if (cr[1] == '\n') ++consumed;
            } else if (!m_sourceDone) {
                m_skipLineFeed = true; // its LF, if any, is still to be read
            }
            line = std::string_view(start, length);
            m_pos += consumed;
            ++m_lineNumber;
            return true;
        }
        if (lf != nullptr) {
            line = std::string_view(start, searched);
            m_pos += searched + 1;
            ++m_lineNumber;
            return true;
        }
        if (m_sourceDone) {
            line = std::string_view(start, available);
            m_pos = m_end;
            ++m_lineNumber;
            return true;
        }
        if (available > kMaxLineBytes) {
            throw LasInputError("line " + std::to_string(m_lineNumber + 1) + " is longer than " +
                                std::to_string(kMaxLineBytes >> 20) + " MiB, so this is not a text file");
        }
        Fill();
    }
}

} // namespace ba
