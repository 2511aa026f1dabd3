#include "utilities/ValueText.h"

#include <charconv>

namespace ba {

std::string ValueText(float value)
{
    char buffer[32];
    // 32 characters hold any float in its shortest form.
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, value);
    return std::string(buffer, result.ptr);
}

} // namespace ba
