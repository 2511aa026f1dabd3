#include "base/FileIO.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <random>

#if defined(_WIN32)
#include <io.h>
#else
#include <fcntl.h>
#include <unistd.h>
#endif

namespace ba {
namespace {

std::string Reason(int err) { return std::strerror(err); }

std::filesystem::path TemporaryPathBeside(const std::filesystem::path& path)
{
    std::random_device rd;
    const auto tag = std::to_string(rd()) + std::to_string(rd());
    auto temp = path;
    temp += ".tmp-" + tag;
    return temp;
}

class TemporaryFile {
public:
    explicit TemporaryFile(std::filesystem::path path) : m_path(std::move(path)) {}
    ~TemporaryFile()
    {
        if (m_file != nullptr) std::fclose(m_file);
        if (!m_kept) {
            std::error_code ignored;
            std::filesystem::remove(m_path, ignored);
        }
    }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    std::FILE*& File() { return m_file; }
    void Keep() { m_kept = true; }
    const std::filesystem::path& Path() const { return m_path; }

private:
    std::filesystem::path m_path;
    std::FILE* m_file = nullptr;
    bool m_kept = false;
};

} // namespace

std::vector<std::uint8_t> ReadWholeFile(const std::filesystem::path& path)
{
    std::FILE* file = std::fopen(path.string().c_str(), "rb");
    if (file == nullptr) throw FileError(Reason(errno));
    std::vector<std::uint8_t> bytes;
    std::uint8_t buffer[1 << 16];
    std::error_code ec;
    const auto size = std::filesystem::file_size(path, ec);
    if (!ec) bytes.reserve(static_cast<std::size_t>(size));
    for (;;) {
        const std::size_t got = std::fread(buffer, 1, sizeof buffer, file);
        if (got == 0) break;
        bytes.insert(bytes.end(), buffer, buffer + got);
    }
    const bool failed = std::ferror(file) != 0;
    const int err = errno;
    std::fclose(file);
    if (failed) throw FileError(Reason(err));
    return bytes;
}

void WriteFileAtomically(const std::filesystem::path& path, std::span<const std::uint8_t> bytes)
{
    TemporaryFile temp(TemporaryPathBeside(path));
    temp.File() = std::fopen(temp.Path().string().c_str(), "wbx");
    if (temp.File() == nullptr) throw FileError(Reason(errno));
    if (!bytes.empty() && std::fwrite(bytes.data(), 1, bytes.size(), temp.File()) != bytes.size()) {
        throw FileError(Reason(errno));
    }
    if (std::fflush(temp.File()) != 0) throw FileError(Reason(errno));
#if defined(_WIN32)
    if (_commit(_fileno(temp.File())) != 0) throw FileError(Reason(errno));
#else
    if (::fsync(::fileno(temp.File())) != 0) throw FileError(Reason(errno));
#endif
    const int closed = std::fclose(temp.File());
    temp.File() = nullptr;
    if (closed != 0) throw FileError(Reason(errno));
    std::error_code ec;
    // A replaced file keeps its permissions.
    const auto existing = std::filesystem::status(path, ec);
    if (!ec && std::filesystem::exists(existing)) {
        std::filesystem::permissions(temp.Path(), existing.permissions(), ec);
    }
    ec.clear();
    std::filesystem::rename(temp.Path(), path, ec);
    if (ec) throw FileError(ec.message());
    temp.Keep();
}

} // namespace ba
