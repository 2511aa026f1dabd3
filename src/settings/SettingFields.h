#pragma once
// A dialog's remembered settings as named fields: one list ties each value name to the
// member it fills, and loading and saving walk that list. Flags are stored as 1 or 0,
// whole numbers as integers, other numbers in the shortest text that reads back to the
// same value ("0.5", "60", "2614").

#include "settings/SettingsStore.h"

#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace ba {

using SettingField = std::variant<bool*, int*, double*, std::string*>;

struct NamedSetting {
    std::string name;
    SettingField field;
};

// What loading found: values absent from the store, and values present whose text could
// not be read as the setting's type. Both keep the values the fields held.
struct SettingsLoadReport {
    std::vector<std::string> missing;
    std::vector<std::string> unreadable;
};

// Reads every field from the local-machine store under `keyPrefix` (which ends in a
// backslash), over the values the fields hold.
SettingsLoadReport LoadSettingFields(ISettingsStore& store, std::string_view keyPrefix,
                                     const std::vector<NamedSetting>& fields);
// Writes every field; false when any write was refused (the others are still written).
bool SaveSettingFields(ISettingsStore& store, std::string_view keyPrefix, const std::vector<NamedSetting>& fields);

std::string SettingText(double value);
// Reads a number as the store returns it: leading blanks are allowed, anything else after
// the number is not. None for text that is not a finite number.
std::optional<double> ParseSettingNumber(std::string_view text);
std::optional<int> ParseSettingInteger(std::string_view text);

} // namespace ba
