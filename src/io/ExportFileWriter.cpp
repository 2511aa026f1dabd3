#include "io/ExportFileWriter.h"

#include <cerrno>
#include <cstring>
#include <random>

#if defined(_WIN32)
#include <io.h>
#else
#include <unistd.h>
#endif

namespace ba {
namespace {

std::string Quoted(const std::filesystem::path& path) { return "\"" + path.string() + "\""; }

std::string SystemReason(int error) { return std::strerror(error); }

std::filesystem::path TemporaryPathBeside(const std::filesystem::path& target)
{
    std::random_device random;
    auto temporary = target;
    temporary += ".tmp-" + std::to_string(random()) + std::to_string(random());
    return temporary;
}

} // namespace

CExportFileWriter::CExportFileWriter(std::filesystem::path target) : m_target(std::move(target))
{
    std::error_code ec;
    if (std::filesystem::is_directory(m_target, ec)) {
        throw ExportFileError(ExportFileError::Stage::Create, "cannot create " + Quoted(m_target) + ": it is a folder");
    }
    m_temporary = TemporaryPathBeside(m_target);
    m_file = std::fopen(m_temporary.string().c_str(), "wbx");
    if (m_file == nullptr) {
        throw ExportFileError(ExportFileError::Stage::Create,
                              "cannot create " + Quoted(m_target) + ": " + SystemReason(errno));
    }
    // The buffer here is the only one: a stdio buffer would hold back the tail of a chunk
    // and split a line across writes.
    std::setvbuf(m_file, nullptr, _IONBF, 0);
    m_buffer.reserve(kFlushBytes + (kFlushBytes >> 4));
}

CExportFileWriter::~CExportFileWriter()
{
    if (m_file != nullptr) std::fclose(m_file);
    if (!m_committed) {
        std::error_code ignored; // nothing more can be done about a temporary file that will not go
        std::filesystem::remove(m_temporary, ignored);
    }
}

void CExportFileWriter::WriteBuffer()
{
    if (!m_buffer.empty() && std::fwrite(m_buffer.data(), 1, m_buffer.size(), m_file) != m_buffer.size()) {
        throw ExportFileError(ExportFileError::Stage::Write,
                              "cannot write " + Quoted(m_target) + ": " + SystemReason(errno));
    }
    m_buffer.clear();
}

void CExportFileWriter::Commit()
{
    WriteBuffer();
    const auto writeFailure = [&] {
        return ExportFileError(ExportFileError::Stage::Write,
                               "cannot write " + Quoted(m_target) + ": " + SystemReason(errno));
    };
    if (std::fflush(m_file) != 0) throw writeFailure();
#if defined(_WIN32)
    if (_commit(_fileno(m_file)) != 0) throw writeFailure();
#else
    if (::fsync(::fileno(m_file)) != 0) throw writeFailure();
#endif
    const int closed = std::fclose(m_file);
    m_file = nullptr;
    if (closed != 0) throw writeFailure();

    std::error_code ec;
    // A replaced file keeps its permissions.
    const auto existing = std::filesystem::status(m_target, ec);
    if (!ec && std::filesystem::exists(existing)) {
        std::filesystem::permissions(m_temporary, existing.permissions(), ec);
    }
    ec.clear();
    std::filesystem::rename(m_temporary, m_target, ec);
    if (ec) throw ExportFileError(ExportFileError::Stage::Create, "cannot create " + Quoted(m_target) + ": " + ec.message());
    m_committed = true;
}

} // namespace ba
