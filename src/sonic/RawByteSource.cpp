#include "sonic/RawByteSource.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <system_error>

namespace ba {

std::size_t RawMemorySource::Read(std::span<std::uint8_t> buffer)
{
    const std::size_t n = std::min(buffer.size(), m_bytes.size() - m_pos);
    if (n > 0) std::memcpy(buffer.data(), m_bytes.data() + m_pos, n);
    m_pos += n;
    return n;
}

std::unique_ptr<RawFileSource> RawFileSource::Open(const std::filesystem::path& path, std::string& reason)
{
    std::error_code ec;
    // A folder opens as a stream on some systems but yields no bytes; it is not a file.
    if (std::filesystem::is_directory(path, ec)) {
        reason = "it is a folder";
        return nullptr;
    }
#if defined(_WIN32)
    std::FILE* file = _wfopen(path.c_str(), L"rb");
#else
    std::FILE* file = std::fopen(path.c_str(), "rb");
#endif
    if (file == nullptr) {
        reason = std::strerror(errno);
        return nullptr;
    }
    // The reader asks for large pieces itself; a second buffer would only copy them again.
    std::setvbuf(file, nullptr, _IONBF, 0);
    const std::uintmax_t size = std::filesystem::file_size(path, ec);
    return std::unique_ptr<RawFileSource>(new RawFileSource(file, ec ? 0 : static_cast<std::uint64_t>(size)));
}

RawFileSource::~RawFileSource() { std::fclose(m_file); }

std::size_t RawFileSource::Read(std::span<std::uint8_t> buffer)
{
    const std::size_t n = std::fread(buffer.data(), 1, buffer.size(), m_file);
    if (n < buffer.size() && std::ferror(m_file) != 0) {
        throw RawInputError(std::string("reading failed: ") + std::strerror(errno));
    }
    return n;
}

} // namespace ba
