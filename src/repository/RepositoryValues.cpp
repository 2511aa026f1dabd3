#include "repository/RepositoryValues.h"

#include <charconv>
#include <cmath>
#include <limits>

namespace ba {

using Value = RepositoryDatabase::Value;

Value ToStored(std::int32_t value) { return std::int64_t{value}; }
Value ToStored(std::int16_t value) { return std::int64_t{value}; }
Value ToStored(float value) { return double{value}; }
Value ToStored(double value) { return value; }
Value ToStored(const std::string& value) { return value; }

namespace {

template <class Int>
std::string IntegerFromStored(const Value& stored, Int& value, const char* typeName)
{
    if (std::holds_alternative<std::monostate>(stored)) {
        value = 0;
        return {};
    }
    const auto* integer = std::get_if<std::int64_t>(&stored);
    if (integer == nullptr) {
        return std::string(std::holds_alternative<double>(stored) ? "a fraction" : "text") + " where a " + typeName +
               " is expected";
    }
    if (*integer < std::numeric_limits<Int>::min() || *integer > std::numeric_limits<Int>::max()) {
        return std::to_string(*integer) + ", which is out of range for a " + typeName;
    }
    value = static_cast<Int>(*integer);
    return {};
}

std::string RealFromStored(const Value& stored, double& value, const char* typeName)
{
    if (std::holds_alternative<std::monostate>(stored)) value = 0.0;
    else if (const auto* real = std::get_if<double>(&stored)) value = *real;
    else if (const auto* integer = std::get_if<std::int64_t>(&stored)) value = static_cast<double>(*integer);
    else return std::string("text where a ") + typeName + " is expected";
    return {};
}

} // namespace

std::string FromStored(const Value& stored, std::int32_t& value) { return IntegerFromStored(stored, value, "Long"); }
std::string FromStored(const Value& stored, std::int16_t& value) { return IntegerFromStored(stored, value, "Short"); }

std::string FromStored(const Value& stored, float& value)
{
    double real = 0.0;
    if (std::string problem = RealFromStored(stored, real, "Single"); !problem.empty()) return problem;
    if (std::isfinite(real) && std::fabs(real) > double{std::numeric_limits<float>::max()}) {
        char text[32];
        const auto end = std::to_chars(text, text + sizeof text, real).ptr;
        return std::string(text, end) + ", which is out of range for a Single";
    }
    value = static_cast<float>(real);
    return {};
}

std::string FromStored(const Value& stored, double& value) { return RealFromStored(stored, value, "Double"); }

std::string FromStored(const Value& stored, std::string& value)
{
    if (std::holds_alternative<std::monostate>(stored)) value.clear();
    else if (const auto* text = std::get_if<std::string>(&stored)) value = *text;
    else return "a number where Text is expected";
    return {};
}

} // namespace ba
