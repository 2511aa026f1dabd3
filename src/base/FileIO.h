#pragma once
// Whole-file reads and atomic whole-file writes.

#include <cstdint>
#include <filesystem>
#include <span>
#include <stdexcept>
#include <string>
#include <vector>

namespace ba {

class FileError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// Reads the whole file; throws FileError with the system's reason.
std::vector<std::uint8_t> ReadWholeFile(const std::filesystem::path& path);

// Writes `bytes` to a new temporary file beside `path`, flushes it to disk and renames it
// over `path`, so that readers see either the old file or the whole new one, never a
// half-written file. On failure the temporary file is removed, `path` is untouched, and a
// FileError with the system's reason is thrown.
void WriteFileAtomically(const std::filesystem::path& path, std::span<const std::uint8_t> bytes);

} // namespace ba
