#pragma once
// Coefficients of an equation fitted to ground truth: values of the derived log known at
// chosen depths. The system is square (one ground-truth point per unknown coefficient) and
// is solved with the Newton solver from a grid of start values until one converges.

#include "base/MessageSink.h"
#include "evaluation/EquationFormulas.h"

#include <array>
#include <optional>
#include <span>
#include <vector>

namespace ba {

// One ground-truth point: the input logs' values at its depth and the value the derived
// log should have there.
struct GroundTruthSample {
    std::array<float, kEquationLogSlots> logs{};
    float value = 0.0f;
};

// Which coefficients are to be computed ("Calculate from ground truth").
using CoefficientMask = std::array<bool, kEquationCoefficientSlots>;

// The start-value step s of an unknown coefficient: the grid tries k·s for k = 1, 2, 3.
float StartValueStep(int equation, std::size_t coefficientSlot);

// The start points tried, in order: for n unknowns, 3^n combinations with the first
// unknown varying slowest. Each entry holds the unknowns' start values in slot order, in
// the solver's variables: a coefficient in the units of an input log is carried divided by
// that log's mean absolute value at the ground-truth points, so it starts at k·s times it.
std::vector<std::vector<float>> StartValueGrid(int equation, const CoefficientMask& unknown);

// Solves for the coefficients marked in `unknown`, holding the others at their values in
// `known`; `points` must hold exactly one sample per unknown. Returns the full set of five
// coefficients, or nothing when no start value converges. Numerical faults met on the way
// are reported to the sink as the solver words them.
std::optional<EquationCoefficients> FitCoefficients(int equation, const EquationCoefficients& known,
                                                    const CoefficientMask& unknown,
                                                    std::span<const GroundTruthSample> points, IMessageSink& sink);

} // namespace ba
