#pragma once
// The text layer of the LAS reader: where the bytes come from (a file read in large chunks,
// or memory), which encoding they are in, and how they split into lines.
//
// LAS files are meant to be ASCII, but real ones come as UTF-8 (with or without a
// byte-order mark), UTF-16 (with or without one) and Windows-1252 or ISO-8859-1. UTF-16 is
// decoded to UTF-8 as it is read; 8-bit text is passed through unchanged and each header
// line is decoded on its own (DecodeLasLine), since data lines are numbers and decoding
// them would only cost time.

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace ba {

// A failure of the input itself (a read error, a line too long to be text). The message
// says what went wrong without the file name; the reader adds that.
class LasInputError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

class ILasByteSource {
public:
    virtual ~ILasByteSource() = default;
    // Reads up to buffer.size() bytes and returns how many were read; 0 means the end.
    // Throws LasInputError when reading fails.
    virtual std::size_t Read(std::span<char> buffer) = 0;
    // The total size when it is known in advance, otherwise 0.
    virtual std::uint64_t SizeHint() const = 0;
};

class LasMemorySource final : public ILasByteSource {
public:
    explicit LasMemorySource(std::string_view bytes) : m_bytes(bytes) {}
    std::size_t Read(std::span<char> buffer) override;
    std::uint64_t SizeHint() const override { return m_bytes.size(); }

private:
    std::string_view m_bytes;
    std::size_t m_pos = 0;
};

class LasFileSource final : public ILasByteSource {
public:
    // Opens `path` for reading; returns null when it cannot be opened.
    static std::unique_ptr<LasFileSource> Open(const std::filesystem::path& path);
    ~LasFileSource() override;
    LasFileSource(const LasFileSource&) = delete;
    LasFileSource& operator=(const LasFileSource&) = delete;
    std::size_t Read(std::span<char> buffer) override;
    std::uint64_t SizeHint() const override { return m_size; }

private:
    LasFileSource(std::FILE* file, std::uint64_t size) : m_file(file), m_size(size) {}
    std::FILE* m_file;
    std::uint64_t m_size;
};

enum class LasEncoding { Utf8OrAnsi, Utf8WithBom, Utf16Le, Utf16Be };

struct LasEncodingGuess {
    LasEncoding encoding = LasEncoding::Utf8OrAnsi;
    std::size_t bomBytes = 0;
    bool withoutBom = false; // UTF-16 recognised by its zero bytes, not by a byte-order mark
};

// Decides the encoding from the first bytes of a file: a byte-order mark, or for UTF-16
// without one, the zero bytes that ASCII characters leave in every other position.
LasEncodingGuess DetectLasEncoding(std::span<const char> head);

std::string_view LasEncodingName(LasEncoding encoding);

bool IsValidUtf8(std::string_view text);

// A line of 8-bit text as UTF-8: unchanged when it is valid UTF-8, otherwise each byte read
// as Windows-1252 (which ISO-8859-1 text also decodes correctly, apart from the C1 controls
// it never uses). `wasAnsi` tells which happened.
std::string DecodeLasLine(std::string_view line, bool& wasAnsi);

// Splits the input into lines, decoding UTF-16 on the way. Lines end at LF, CR LF or a
// lone CR. The bytes are read in chunks of `chunkBytes` (the file is never held whole), so
// a line can be no longer than kMaxLineBytes.
class LasLineReader {
public:
    static constexpr std::size_t kDefaultChunkBytes = std::size_t{1} << 20;
    static constexpr std::size_t kMaxLineBytes = std::size_t{16} << 20;

    explicit LasLineReader(ILasByteSource& source, std::size_t chunkBytes = kDefaultChunkBytes);

    // The next line, without its line end, valid until the next call; false at the end.
    // Throws LasInputError when reading fails or a line exceeds kMaxLineBytes.
    bool Next(std::string_view& line);
    // Number (from 1) of the line last returned.
    std::size_t LineNumber() const { return m_lineNumber; }
    const LasEncodingGuess& Encoding() const { return m_encoding; }

private:
    bool Fill();
    void ReadRaw(std::size_t wanted);
    void DecodeUtf16(const char* data, std::size_t size);
    void FinishUtf16();
    void MakeRoom(std::size_t bytes);

    ILasByteSource& m_source;
    std::size_t m_chunkBytes;
    LasEncodingGuess m_encoding;
    std::vector<char> m_text; // decoded text; [m_pos, m_end) not yet returned
    std::size_t m_pos = 0;
    std::size_t m_end = 0;
    std::vector<char> m_raw;   // UTF-16 bytes waiting to be decoded
    std::size_t m_rawFill = 0; // bytes in m_raw (a pending odd byte or the first chunk)
    char32_t m_highSurrogate = 0;
    bool m_sourceDone = false;
    bool m_skipLineFeed = false; // the previous line ended with CR at the end of the buffer
    std::size_t m_lineNumber = 0;
};

} // namespace ba
