#pragma once
// Where the bytes of a logger raw-data file come from: a file on disk, read in large
// pieces, or bytes already in memory (tests, the fuzzer, the clipboard of a shell).

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <span>
#include <stdexcept>
#include <string>

namespace ba {

// Reading failed for a reason of the system (not of the file's contents).
class RawInputError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

class IRawByteSource {
public:
    virtual ~IRawByteSource() = default;
    // Reads up to buffer.size() bytes and returns how many were read; 0 means the end.
    // Throws RawInputError when reading fails.
    virtual std::size_t Read(std::span<std::uint8_t> buffer) = 0;
    // The total size when it is known in advance, otherwise 0 (used for progress only).
    virtual std::uint64_t SizeHint() const = 0;
};

class RawMemorySource final : public IRawByteSource {
public:
    explicit RawMemorySource(std::span<const std::uint8_t> bytes) : m_bytes(bytes) {}
    std::size_t Read(std::span<std::uint8_t> buffer) override;
    std::uint64_t SizeHint() const override { return m_bytes.size(); }

private:
    std::span<const std::uint8_t> m_bytes;
    std::size_t m_pos = 0;
};

class RawFileSource final : public IRawByteSource {
public:
    // Opens `path` for reading; returns null with the system's reason in `reason` when it
    // cannot be opened (a folder is not a file).
    static std::unique_ptr<RawFileSource> Open(const std::filesystem::path& path, std::string& reason);
    ~RawFileSource() override;
    RawFileSource(const RawFileSource&) = delete;
    RawFileSource& operator=(const RawFileSource&) = delete;
    std::size_t Read(std::span<std::uint8_t> buffer) override;
    std::uint64_t SizeHint() const override { return m_size; }

private:
    RawFileSource(std::FILE* file, std::uint64_t size) : m_file(file), m_size(size) {}
    std::FILE* m_file;
    std::uint64_t m_size;
};

} // namespace ba
