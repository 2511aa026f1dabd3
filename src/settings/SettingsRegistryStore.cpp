// The settings store on Windows: string values in the registry, read and written with the
// ANSI functions so that old and new programs see the same values.

#include "settings/SettingsStore.h"

#include "base/Cp1252.h"

#include <windows.h>

#include <limits>

namespace ba {
namespace {

HKEY RootKey(SettingsRoot root) { return root == SettingsRoot::LocalMachine ? HKEY_LOCAL_MACHINE : HKEY_CURRENT_USER; }

class CRegistrySettingsStore final : public ISettingsStore {
public:
    std::optional<std::string> Read(SettingsRoot root, std::string_view path) override
    {
        const SettingsAddress address = SplitSettingsPath(path);
        const std::string keyPath = Utf8ToCp1252(address.keyPath);
        const std::string valueName = Utf8ToCp1252(address.valueName);
        HKEY key = nullptr;
        if (RegOpenKeyExA(RootKey(root), keyPath.c_str(), 0, KEY_ALL_ACCESS, &key) != ERROR_SUCCESS) {
            return std::nullopt;
        }
        // A value longer than the buffer makes the query fail (ERROR_MORE_DATA): not found.
        char buffer[kSettingsValueBufferBytes];
        DWORD size = sizeof buffer;
        const LSTATUS queried =
            RegQueryValueExA(key, valueName.c_str(), nullptr, nullptr, reinterpret_cast<BYTE*>(buffer), &size);
        RegCloseKey(key);
        if (queried != ERROR_SUCCESS) return std::nullopt;
        // A stored string need not end in a terminator, so only `size` bytes are read.
        return SettingsTextFromStoredBytes(std::string_view(buffer, size));
    }

    bool Write(SettingsRoot root, std::string_view path, std::string_view text) override
    {
        const SettingsAddress address = SplitSettingsPath(path);
        const std::string keyPath = Utf8ToCp1252(address.keyPath);
        const std::string valueName = Utf8ToCp1252(address.valueName);
        const std::string bytes = Utf8ToCp1252(text);
        if (bytes.size() >= std::numeric_limits<DWORD>::max()) return false;
        // The key's class text is "REG_SZ", as the existing installations' keys have it.
        char keyClass[] = "REG_SZ";
        HKEY key = nullptr;
        DWORD disposition = 0;
        if (RegCreateKeyExA(RootKey(root), keyPath.c_str(), 0, keyClass, REG_OPTION_NON_VOLATILE, KEY_ALL_ACCESS,
                            nullptr, &key, &disposition) != ERROR_SUCCESS) {
            return false;
        }
        // The byte count includes the terminator, as REG_SZ data must.
        const LSTATUS set = RegSetValueExA(key, valueName.c_str(), 0, REG_SZ,
                                           reinterpret_cast<const BYTE*>(bytes.c_str()),
                                           static_cast<DWORD>(bytes.size() + 1));
        RegCloseKey(key);
        return set == ERROR_SUCCESS;
    }

    std::string Location(SettingsRoot root) const override
    {
        return root == SettingsRoot::LocalMachine ? "HKEY_LOCAL_MACHINE" : "HKEY_CURRENT_USER";
    }
};

} // namespace

std::unique_ptr<ISettingsStore> MakeRegistrySettingsStore() { return std::make_unique<CRegistrySettingsStore>(); }

} // namespace ba
