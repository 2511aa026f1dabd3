#include "io/Automation.h"

namespace ba {

std::string_view AutomationTypeName(const AutomationValue& value)
{
    struct Namer {
        std::string_view operator()(std::monostate) const { return "empty"; }
        std::string_view operator()(std::int16_t) const { return "int16"; }
        std::string_view operator()(std::int32_t) const { return "int32"; }
        std::string_view operator()(float) const { return "float"; }
        std::string_view operator()(bool) const { return "bool"; }
        std::string_view operator()(const std::string&) const { return "string"; }
        std::string_view operator()(const AutomationObjectPtr&) const { return "object"; }
    };
    return std::visit(Namer{}, value);
}

} // namespace ba
