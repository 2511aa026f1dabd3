// The settings store where there is no registry: one JSON file, read whole for every
// operation and replaced whole on every write. Dialogs read and write a handful of values
// when they open and close, so nothing is cached between calls, and a file edited by hand
// or by the other program in the meantime is always what is seen.

#include "settings/SettingsStore.h"

#include "base/FileIO.h"
#include "base/Cp1252.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstdint>
#include <span>
#include <system_error>

namespace ba {
namespace {

using Json = nlohmann::json;

std::string_view RootName(SettingsRoot root)
{
    return root == SettingsRoot::LocalMachine ? "LocalMachine" : "CurrentUser";
}

// Text as the registry gives it back after the ANSI functions have stored it.
std::string AsStoredText(std::string_view utf8) { return Cp1252ToUtf8(Utf8ToCp1252(utf8)); }

bool SameIgnoringAsciiCase(std::string_view a, std::string_view b)
{
    const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; };
    return a.size() == b.size() &&
           std::equal(a.begin(), a.end(), b.begin(), [&](char x, char y) { return lower(x) == lower(y); });
}

// The member of `object` named `name` without regard to case, or end().
Json::iterator FindMember(Json& object, std::string_view name)
{
    for (auto it = object.begin(); it != object.end(); ++it) {
        if (SameIgnoringAsciiCase(it.key(), name)) return it;
    }
    return object.end();
}

// Each root an object of keys, each key an object of string values. Other members of the
// top level are left alone.
bool HasStoreShape(const Json& doc)
{
    if (!doc.is_object()) return false;
    for (const SettingsRoot root : {SettingsRoot::LocalMachine, SettingsRoot::CurrentUser}) {
        const auto found = doc.find(std::string(RootName(root)));
        if (found == doc.end()) continue;
        if (!found->is_object()) return false;
        for (const Json& key : *found) {
            if (!key.is_object()) return false;
            for (const Json& value : key) {
                if (!value.is_string()) return false;
            }
        }
    }
    return true;
}

class CFileSettingsStore final : public ISettingsStore {
public:
    explicit CFileSettingsStore(std::filesystem::path file) : m_file(std::move(file)) {}

    std::optional<std::string> Read(SettingsRoot root, std::string_view path) override
    {
        auto doc = Load();
        if (!doc) return std::nullopt;
        const auto rootIt = doc->find(std::string(RootName(root)));
        if (rootIt == doc->end()) return std::nullopt;
        const SettingsAddress address = SplitSettingsPath(path);
        const auto key = FindMember(*rootIt, AsStoredText(address.keyPath));
        if (key == rootIt->end()) return std::nullopt;
        const auto value = FindMember(*key, AsStoredText(address.valueName));
        if (value == key->end()) return std::nullopt;
        const std::string stored = Utf8ToCp1252(value->get_ref<const std::string&>());
        if (stored.size() + 1 > kSettingsValueBufferBytes) return std::nullopt;
        return SettingsTextFromStoredBytes(stored);
    }

    bool Write(SettingsRoot root, std::string_view path, std::string_view text) override
    {
        auto doc = Load();
        if (!doc) return false;
        Json& rootObject = (*doc)[std::string(RootName(root))];
        if (rootObject.is_null()) rootObject = Json::object();
        const SettingsAddress address = SplitSettingsPath(path);
        const std::string keyPath = AsStoredText(address.keyPath);
        auto key = FindMember(rootObject, keyPath);
        if (key == rootObject.end()) key = rootObject.emplace(keyPath, Json::object()).first;
        // An existing value keeps the spelling of its name, as in the registry.
        const std::string valueName = AsStoredText(address.valueName);
        const auto value = FindMember(*key, valueName);
        (value == key->end() ? (*key)[valueName] : *value) = AsStoredText(text);

        const std::string bytes = doc->dump(2) + "\n";
        try {
            WriteFileAtomically(m_file, std::span(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()));
        } catch (const FileError&) {
            return false; // the caller is told by the result; the store shows no messages
        }
        return true;
    }

    std::string Location(SettingsRoot) const override { return m_file.string(); }

private:
    // The whole store; an empty one when the file does not exist; none when it cannot be
    // read or does not hold a store.
    std::optional<Json> Load() const
    {
        std::error_code ec;
        const bool exists = std::filesystem::exists(m_file, ec);
        if (ec) return std::nullopt;
        if (!exists) return Json::object();
        std::vector<std::uint8_t> bytes;
        try {
            bytes = ReadWholeFile(m_file);
        } catch (const FileError&) {
            return std::nullopt;
        }
        Json doc = Json::parse(bytes.begin(), bytes.end(), nullptr, /*allow_exceptions=*/false);
        if (doc.is_discarded() || !HasStoreShape(doc)) return std::nullopt;
        return doc;
    }

    std::filesystem::path m_file;
};

} // namespace

std::unique_ptr<ISettingsStore> MakeFileSettingsStore(std::filesystem::path file)
{
    return std::make_unique<CFileSettingsStore>(std::move(file));
}

} // namespace ba
