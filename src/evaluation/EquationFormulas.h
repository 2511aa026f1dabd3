#pragma once
// The results of the seventeen equations, sample by sample, in single precision with the
// program's own forms (two different 0.8 exponents, the Jorgensen constants, the
// Raymer-Hunt root choice). An input equal to the null value gives the null value.

#include "evaluation/EquationCatalogue.h"

#include <array>
#include <span>

namespace ba {

// Coefficients 1 to 5 in the slot order of the equation's labels.
using EquationCoefficients = std::array<float, kEquationCoefficientSlots>;

// One sample: l1..l3 are the input logs' values (those the equation does not use are
// ignored, null or not). Throws std::out_of_range for an index that is not an equation.
float EvaluateEquation(int equation, float l1, float l2, float l3, const EquationCoefficients& c);

// Every sample of log 1: out[i] = EvaluateEquation(equation, l1[i], l2[i], l3[i], c). A
// log the equation uses but that is shorter than log 1 counts as null past its end; the
// spans of unused logs may be empty. out must be as long as l1. Large inputs are split
// over the machine's cores.
void EvaluateEquation(int equation, std::span<const float> l1, std::span<const float> l2, std::span<const float> l3,
                      const EquationCoefficients& c, std::span<float> out);

} // namespace ba
