#pragma once
// Where processing dialogs remember the values the user last entered: text values
// addressed by one full path, the key path, a backslash and the value name, e.g.
// "SOFTWARE\Quartzline Geodata\BoreAnalyst\SpectralDialog\TimeSum". On Windows the store
// is the registry; elsewhere a file with the same rules (see the backends).
//
// Rules every backend keeps: the path is split at its last backslash (none: key and name
// both empty); a value that needs more than 251 bytes with its terminator reads as not
// found; trailing white space is removed from a value read (leading kept); writing
// creates the whole key path. Neither operation shows a message.

#include <cstddef>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace ba {

enum class SettingsRoot { LocalMachine, CurrentUser };

inline constexpr std::string_view kSettingsKeyPrefix = "SOFTWARE\\Quartzline Geodata\\BoreAnalyst\\";

class ISettingsStore {
public:
    virtual ~ISettingsStore() = default;
    // The text of the value at `path`, or none when the key or value is missing or too long.
    virtual std::optional<std::string> Read(SettingsRoot root, std::string_view path) = 0;
    // Stores `text` at `path`, creating keys as needed; false when refused.
    virtual bool Write(SettingsRoot root, std::string_view path, std::string_view text) = 0;
    // Where the values of `root` are kept, for messages: the settings file, or the hive.
    virtual std::string Location(SettingsRoot root) const = 0;
};

// The store of this platform: the registry on Windows, otherwise the settings file named
// by BA_SETTINGS_FILE, or settings.json beside the program.
std::unique_ptr<ISettingsStore> MakeDefaultSettingsStore();

// --- the rules the backends share

// The bytes a value may take when read, its terminator included.
inline constexpr std::size_t kSettingsValueBufferBytes = 251;

struct SettingsAddress {
    std::string keyPath;
    std::string valueName;
};

// Splits at the last backslash: the key path before it, the value name after it. A path
// without a backslash gives an empty key path and an empty value name.
SettingsAddress SplitSettingsPath(std::string_view path);

// The text of a value as read from its stored bytes (ANSI, Windows-1252): up to the first
// terminator, trailing white space removed, decoded to UTF-8.
std::string SettingsTextFromStoredBytes(std::string_view bytes);

// --- the backends

// Keeps the values in a JSON file: {"LocalMachine": {key path: {value name: text}},
// "CurrentUser": {...}}. Key paths and value names are matched without regard to ASCII
// case, as the registry matches them, and text is stored as the registry would give it
// back (a character Windows-1252 cannot hold becomes '?'). A missing file is an empty
// store. A file that cannot be read or is not such a JSON document makes every Read
// return none and every Write return false, so that a damaged file is never replaced by
// one that has lost its other values. Writes replace the file atomically.
std::unique_ptr<ISettingsStore> MakeFileSettingsStore(std::filesystem::path file);

// The settings file used where there is no registry: BA_SETTINGS_FILE when set and not
// empty, else settings.json in the folder of the running program.
std::filesystem::path DefaultSettingsFilePath();

#if defined(_WIN32)
// The registry itself (HKEY_LOCAL_MACHINE or HKEY_CURRENT_USER).
std::unique_ptr<ISettingsStore> MakeRegistrySettingsStore();
#endif

} // namespace ba
