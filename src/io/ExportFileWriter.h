#pragma once
// Writes an export through a large buffer into a temporary file beside the target, and
// renames that file over the target once everything is written and flushed to disk. A
// failed or abandoned export leaves no file, whole or partial, under the target name, and
// leaves an existing target as it was. The buffer is only ever written out whole lines at
// a time, so even the temporary file holds complete lines.

#include <cstddef>
#include <cstdio>
#include <filesystem>
#include <stdexcept>
#include <string>

namespace ba {

class ExportFileError : public std::runtime_error {
public:
    enum class Stage { Create, Write };
    ExportFileError(Stage stage, const std::string& reason) : std::runtime_error(reason), m_stage(stage) {}
    // Create: the file could not be made (or could not take the target's name); Write:
    // writing or flushing it failed.
    Stage Which() const { return m_stage; }

private:
    Stage m_stage;
};

class CExportFileWriter {
public:
    static constexpr std::size_t kFlushBytes = std::size_t{1} << 20;

    // Creates the temporary file; throws ExportFileError (Create) when the target's folder
    // does not take it or the target is a folder.
    explicit CExportFileWriter(std::filesystem::path target);
    // Removes the temporary file unless Commit succeeded.
    ~CExportFileWriter();
    CExportFileWriter(const CExportFileWriter&) = delete;
    CExportFileWriter& operator=(const CExportFileWriter&) = delete;

    // Text is appended here; call LineEnd after each complete line.
    std::string& Buffer() { return m_buffer; }
    void LineEnd()
    {
        if (m_buffer.size() >= kFlushBytes) WriteBuffer();
    }
    // Writes what is left, flushes to disk, closes and renames over the target. Throws
    // ExportFileError: Write for a failed write, Create when the rename fails.
    void Commit();

    const std::filesystem::path& Target() const { return m_target; }

private:
    void WriteBuffer();

    std::filesystem::path m_target;
    std::filesystem::path m_temporary;
    std::FILE* m_file = nullptr;
    std::string m_buffer;
    bool m_committed = false;
};

} // namespace ba
