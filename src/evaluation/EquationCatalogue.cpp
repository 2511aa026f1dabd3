#include "evaluation/EquationCatalogue.h"

#include <stdexcept>
#include <string>

namespace ba {

namespace {

constexpr std::array<std::string_view, 3> kLogCountMessages = {"One log required", "Two logs required",
                                                               "Three logs required"};
constexpr std::array<std::string_view, 4> kCoefficientCountMessages = {
    "One coefficient must be defined", "Two coefficients must be defined", "Three coefficients must be defined",
    "Four coefficients must be defined"};

} // namespace

bool IsEquationIndex(int equation) { return equation >= 0 && equation < kEquationCount; }

const EquationDefinition& EquationAt(int equation)
{
    if (!IsEquationIndex(equation)) throw std::out_of_range("no equation " + std::to_string(equation));
    return kEquationDefinitions[static_cast<std::size_t>(equation)];
}

std::string_view LogCountMessage(std::size_t logCount)
{
    if (logCount < 1 || logCount > kLogCountMessages.size()) throw std::out_of_range("no such log count");
    return kLogCountMessages[logCount - 1];
}

std::string_view CoefficientCountMessage(std::size_t coefficientCount)
{
    if (coefficientCount < 1 || coefficientCount > kCoefficientCountMessages.size()) {
        throw std::out_of_range("no such coefficient count");
    }
    return kCoefficientCountMessages[coefficientCount - 1];
}

std::string_view LogSlotLabel(int equation, std::size_t slot)
{
    const EquationDefinition& e = EquationAt(equation);
    return slot < e.logCount ? e.logLabels.at(slot) : kUnusedSlotLabel;
}

std::string_view CoefficientSlotLabel(int equation, std::size_t slot)
{
    const EquationDefinition& e = EquationAt(equation);
    return slot < e.coefficientCount ? e.coefficientLabels.at(slot) : kUnusedSlotLabel;
}

} // namespace ba
