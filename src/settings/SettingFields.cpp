#include "settings/SettingFields.h"

#include <charconv>
#include <cmath>
#include <type_traits>

namespace ba {
namespace {

std::string_view SkipLeadingBlanks(std::string_view text)
{
    while (!text.empty() && (text.front() == ' ' || text.front() == '\t')) text.remove_prefix(1);
    return text;
}

// Parses `text` into `*field`; false (field untouched) when it cannot be read as the type.
bool ReadInto(const SettingField& field, const std::string& text)
{
    return std::visit(
        [&](auto* target) {
            using T = std::remove_pointer_t<decltype(target)>;
            if constexpr (std::is_same_v<T, std::string>) {
                *target = text;
                return true;
            } else if constexpr (std::is_same_v<T, double>) {
                const auto value = ParseSettingNumber(text);
                if (value) *target = *value;
                return value.has_value();
            } else if constexpr (std::is_same_v<T, bool>) {
                const auto value = ParseSettingInteger(text); // flags are stored as 1 or 0
                if (value) *target = *value != 0;
                return value.has_value();
            } else {
                const auto value = ParseSettingInteger(text);
                if (value) *target = *value;
                return value.has_value();
            }
        },
        field);
}

std::string TextOf(const SettingField& field)
{
    return std::visit(
        [](auto* source) -> std::string {
            using T = std::remove_pointer_t<decltype(source)>;
            if constexpr (std::is_same_v<T, std::string>) return *source;
            else if constexpr (std::is_same_v<T, double>) return SettingText(*source);
            else if constexpr (std::is_same_v<T, bool>) return *source ? "1" : "0";
            else return std::to_string(*source);
        },
        field);
}

} // namespace

SettingsLoadReport LoadSettingFields(ISettingsStore& store, std::string_view keyPrefix,
                                     const std::vector<NamedSetting>& fields)
{
    SettingsLoadReport report;
    for (const auto& f : fields) {
        const auto text = store.Read(SettingsRoot::LocalMachine, std::string(keyPrefix) + f.name);
        if (!text) report.missing.push_back(f.name);
        else if (!ReadInto(f.field, *text)) report.unreadable.push_back(f.name);
    }
    return report;
}

bool SaveSettingFields(ISettingsStore& store, std::string_view keyPrefix, const std::vector<NamedSetting>& fields)
{
    bool allWritten = true;
    for (const auto& f : fields) {
        if (!store.Write(SettingsRoot::LocalMachine, std::string(keyPrefix) + f.name, TextOf(f.field))) {
            allWritten = false;
        }
    }
    return allWritten;
}

std::string SettingText(double value)
{
    char buffer[32];
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, value);
    return std::string(buffer, result.ptr);
}

std::optional<double> ParseSettingNumber(std::string_view text)
{
    text = SkipLeadingBlanks(text);
    if (!text.empty() && text.front() == '+') text.remove_prefix(1);
    double value = 0.0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
    if (result.ec != std::errc() || result.ptr != text.data() + text.size() || !std::isfinite(value)) {
        return std::nullopt;
    }
    return value;
}

std::optional<int> ParseSettingInteger(std::string_view text)
{
    text = SkipLeadingBlanks(text);
    if (!text.empty() && text.front() == '+') text.remove_prefix(1);
    int value = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
    if (result.ec != std::errc() || result.ptr != text.data() + text.size()) return std::nullopt;
    return value;
}

} // namespace ba
