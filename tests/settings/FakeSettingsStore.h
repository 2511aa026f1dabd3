#pragma once
// An in-memory settings store for tests: values by root and full path, with a switch that
// makes every write refused.

#include "settings/SettingsStore.h"

#include <map>
#include <utility>

namespace ba::test {

class FakeSettingsStore final : public ISettingsStore {
public:
    std::optional<std::string> Read(SettingsRoot root, std::string_view path) override
    {
        const auto it = values.find({root, std::string(path)});
        if (it == values.end()) return std::nullopt;
        return it->second;
    }
    bool Write(SettingsRoot root, std::string_view path, std::string_view text) override
    {
        if (refuseWrites) return false;
        values[{root, std::string(path)}] = std::string(text);
        return true;
    }
    std::string Location(SettingsRoot root) const override
    {
        return root == SettingsRoot::LocalMachine ? "memory (local machine)" : "memory (current user)";
    }

    std::map<std::pair<SettingsRoot, std::string>, std::string> values;
    bool refuseWrites = false;
};

} // namespace ba::test
