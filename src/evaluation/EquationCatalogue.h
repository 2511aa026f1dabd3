#pragma once
// The seventeen petrophysical equations of the common-logs dialog: what the list shows,
// how many input logs and coefficients each needs, the labels of the slots and the kind of
// log each derives. Equations are numbered by their place in the list (0 to 16).

#include <array>
#include <cstddef>
#include <string_view>

namespace ba {

inline constexpr int kEquationCount = 17;
inline constexpr std::size_t kEquationLogSlots = 3;
inline constexpr std::size_t kEquationCoefficientSlots = 5;
// The label of a slot that the selected equation does not use.
inline constexpr std::string_view kUnusedSlotLabel = "N/A";

struct EquationDefinition {
    std::string_view listText;
    std::size_t logCount;
    std::array<std::string_view, kEquationLogSlots> logLabels; // unused slots empty
    std::size_t coefficientCount;
    std::array<std::string_view, kEquationCoefficientSlots> coefficientLabels; // unused slots empty
    std::string_view outputName;  // the kind of log derived, e.g. "Porosity"
    std::string_view outputUnits; // empty when the log has no unit
};

inline constexpr std::string_view kPorosityOutput = "Porosity";
inline constexpr std::string_view kPorosityUnits = "P.U.";

// The equations in list order.
inline constexpr std::array<EquationDefinition, kEquationCount> kEquationDefinitions = {{
    {"Derived log: From linear relationship", 1, {"Source log"}, 2, {"m", "b"}, "Derived log", ""},
    {"Shale Volume: From gamma log", 1, {"Nat. Gamma"}, 2, {"GRsh", "GRss"}, "Shale Volume", ""},
    {"Shale Volume: From S.P. log", 1, {"S.P."}, 2, {"SPsh", "SPss"}, "Shale Volume", ""},
    {"Porosity: Archie's law", 2, {"R", "Rw"}, 2, {"a", "m"}, kPorosityOutput, kPorosityUnits},
    {"Porosity: Archie's law for resistive fluids", 2, {"R", "Rw"}, 3, {"a", "m", "Cs"}, kPorosityOutput, kPorosityUnits},
    {"Porosity: Archie's law with clay", 3, {"R", "Rw", "Vsh"}, 3, {"a", "m", "Rsh"}, kPorosityOutput, kPorosityUnits},
    {"Porosity: Archie's Law with clay and resistive fluids", 3, {"R", "Rw", "Vsh"}, 4, {"a", "m", "Cs", "Rsh"},
     kPorosityOutput, kPorosityUnits},
    {"Porosity: Wylie equation", 1, {"DT"}, 2, {"Tf", "Tma"}, kPorosityOutput, kPorosityUnits},
    {"Porosity: Wylie equation with compaction term", 1, {"DT"}, 3, {"DTf", "DTma", "Cp"}, kPorosityOutput,
     kPorosityUnits},
    {"Porosity: Abreviated Raymer-Hunt equation", 1, {"DT"}, 2, {"C", "DTma"}, kPorosityOutput, kPorosityUnits},
    {"Porosity: Raymer-Hunt equation", 1, {"Vp"}, 2, {"Vf", "Vma"}, kPorosityOutput, kPorosityUnits},
    {"Porosity: From density log", 1, {"RHOb"}, 2, {"RHOf", "RHOma"}, kPorosityOutput, kPorosityUnits},
    {"Porosity: From density log with clay", 2, {"RHOb", "Vsh"}, 3, {"RHOf", "RHOma", "RHOsh"}, kPorosityOutput,
     kPorosityUnits},
    {"Porosity: From neutron porosity with clay", 2, {"PHIn", "Vsh"}, 1, {"PHIn,sh"}, kPorosityOutput, kPorosityUnits},
    {"Permeability: Jorgensen equation", 1, {"PHI"}, 1, {"m"}, "Permeability", "mD"},
    {"M: For lithology cross plots", 2, {"RHOb", "DT"}, 2, {"RHOf", "DTf"}, "M", ""},
    {"N: For lithology cross plots", 2, {"RHOb", "PHIn"}, 2, {"RHOf", "PHIn,f"}, "N", ""},
}};

bool IsEquationIndex(int equation);
// Throws std::out_of_range for an index that is not an equation.
const EquationDefinition& EquationAt(int equation);

// "One log required", "Two logs required", "Three logs required".
std::string_view LogCountMessage(std::size_t logCount);
// "One coefficient must be defined" ... "Four coefficients must be defined".
std::string_view CoefficientCountMessage(std::size_t coefficientCount);
// The label shown beside a slot: the equation's own, or "N/A" for a slot it does not use.
std::string_view LogSlotLabel(int equation, std::size_t slot);
std::string_view CoefficientSlotLabel(int equation, std::size_t slot);

} // namespace ba
