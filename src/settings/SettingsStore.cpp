#include "settings/SettingsStore.h"

#include "base/Cp1252.h"

#include <cstdlib>
#include <system_error>

namespace ba {

SettingsAddress SplitSettingsPath(std::string_view path)
{
    const std::size_t slash = path.rfind('\\');
    if (slash == std::string_view::npos) return {};
    return {std::string(path.substr(0, slash)), std::string(path.substr(slash + 1))};
}

std::string SettingsTextFromStoredBytes(std::string_view bytes)
{
    const std::size_t terminator = bytes.find('\0');
    if (terminator != std::string_view::npos) bytes = bytes.substr(0, terminator);
    // The white space of the C locale, which is what the registry's text was trimmed of.
    const std::size_t last = bytes.find_last_not_of(" \t\n\v\f\r");
    bytes = last == std::string_view::npos ? std::string_view{} : bytes.substr(0, last + 1);
    return Cp1252ToUtf8(bytes);
}

std::filesystem::path DefaultSettingsFilePath()
{
    if (const char* named = std::getenv("BA_SETTINGS_FILE"); named != nullptr && *named != '\0') {
        return std::filesystem::path(named);
    }
    // Beside the program rather than in the user's home: the desktop app and the
    // command-line tool are built into one output folder and so share one settings file,
    // as they share the repository database kept there.
    std::error_code ec;
    const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe", ec);
    if (!ec && program.has_parent_path()) return program.parent_path() / "settings.json";
    // Without /proc (not Linux) the program's folder is unknown; the working folder is
    // the only other place the user can see and choose.
    return std::filesystem::current_path(ec) / "settings.json";
}

std::unique_ptr<ISettingsStore> MakeDefaultSettingsStore()
{
#if defined(_WIN32)
    return MakeRegistrySettingsStore();
#else
    return MakeFileSettingsStore(DefaultSettingsFilePath());
#endif
}

} // namespace ba
