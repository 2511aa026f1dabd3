#include "repository/RepositoryPath.h"

#include <cstdlib>
#include <system_error>

#if defined(_WIN32)
#include <windows.h>
#endif

namespace ba {

std::string RepositoryPathBesideProgram(std::string_view programPath)
{
    // Drop characters from the end until the last one is a separator.
    std::string folder(programPath);
    while (!folder.empty() && folder.back() != '\\' && folder.back() != '/') folder.pop_back();
    return folder + std::string(kRepositoryFileName);
}

namespace {

std::string ProgramPath()
{
#if defined(_WIN32)
    wchar_t buffer[32768];
    const DWORD length = GetModuleFileNameW(nullptr, buffer, static_cast<DWORD>(std::size(buffer)));
    if (length == 0 || length >= std::size(buffer)) return {};
    return std::filesystem::path(std::wstring(buffer, length)).string();
#else
    std::error_code ec;
    const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe", ec);
    return ec ? std::string() : program.string();
#endif
}

} // namespace

std::filesystem::path DefaultRepositoryPath()
{
    if (const char* named = std::getenv(kRepositoryEnvironmentVariable); named != nullptr && *named != '\0') {
        return std::filesystem::path(named);
    }
    const std::string program = ProgramPath();
    if (!program.empty()) return std::filesystem::path(RepositoryPathBesideProgram(program));
    std::error_code ec;
    return std::filesystem::current_path(ec) / kRepositoryFileName;
}

} // namespace ba
