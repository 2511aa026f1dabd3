#include "evaluation/CoefficientFit.h"

#include "numeric/NewtonSolver.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>

namespace ba {

namespace {

// Start-value steps by equation and coefficient slot. The Archie forms and Jorgensen's
// take the cementation exponent with the sign their formulas need (about −2), so those
// start on −1, −2, −3, as do the linear intercept and the S.P. end points; fluid-
// conductivity and shale-porosity terms, which are small fractions, on 0.1, 0.2, 0.3; the
// rest on 0.5, 1.0, 1.5 (end points in their log's units, see the magnitudes below).
constexpr std::array<std::array<float, kEquationCoefficientSlots>, kEquationCount> kStartSteps = {{
    {0.5f, -1.0f, 0.5f, 0.5f, 0.5f},  // m, b
    {0.5f, 0.5f, 0.5f, 0.5f, 0.5f},   // GRsh, GRss
    {-1.0f, -1.0f, 0.5f, 0.5f, 0.5f}, // SPsh, SPss
    {0.5f, -1.0f, 0.5f, 0.5f, 0.5f},  // a, m
    {0.5f, -1.0f, 0.1f, 0.5f, 0.5f},  // a, m, Cs
    {0.5f, -1.0f, 0.5f, 0.5f, 0.5f},  // a, m, Rsh
    {0.5f, -1.0f, 0.1f, 0.5f, 0.5f},  // a, m, Cs, Rsh
    {0.5f, 0.5f, 0.5f, 0.5f, 0.5f},   // Tf, Tma
    {0.5f, 0.5f, 0.5f, 0.5f, 0.5f},   // DTf, DTma, Cp
    {0.5f, 0.5f, 0.5f, 0.5f, 0.5f},   // C, DTma
    {0.5f, 0.5f, 0.5f, 0.5f, 0.5f},   // Vf, Vma
    {0.5f, 0.5f, 0.5f, 0.5f, 0.5f},   // RHOf, RHOma
    {0.5f, 0.5f, 0.5f, 0.5f, 0.5f},   // RHOf, RHOma, RHOsh
    {0.1f, 0.5f, 0.5f, 0.5f, 0.5f},   // PHIn,sh
    {-1.0f, 0.5f, 0.5f, 0.5f, 0.5f},  // m
    {0.5f, 0.5f, 0.5f, 0.5f, 0.5f},   // RHOf, DTf
    {0.5f, 0.1f, 0.5f, 0.5f, 0.5f},   // RHOf, PHIn,f
}};

// The solver carries each unknown as the coefficient divided by a typical magnitude, so
// that a start of k·s and its capped Newton steps are of the right size whatever the logs'
// units (a matrix velocity of 5500 m/s is 1.4 times a typical Vp log value, not 5500
// solver units away from the start). A coefficient in the units of an input log takes the
// mean absolute value of that log at the ground-truth points; kValueMagnitude, the mean
// absolute ground-truth value; kUnitMagnitude (exponents, tortuosity, ratios) stays as is.
constexpr int kUnitMagnitude = -1;
constexpr int kValueMagnitude = -2;
constexpr std::array<std::array<int, kEquationCoefficientSlots>, kEquationCount> kMagnitudeSources = {{
    {kUnitMagnitude, kValueMagnitude, kUnitMagnitude, kUnitMagnitude, kUnitMagnitude}, // m, b
    {0, 0, kUnitMagnitude, kUnitMagnitude, kUnitMagnitude},                           // GRsh, GRss ~ gamma
    {0, 0, kUnitMagnitude, kUnitMagnitude, kUnitMagnitude},                           // SPsh, SPss ~ S.P.
    {kUnitMagnitude, kUnitMagnitude, kUnitMagnitude, kUnitMagnitude, kUnitMagnitude}, // a, m
    {kUnitMagnitude, kUnitMagnitude, kUnitMagnitude, kUnitMagnitude, kUnitMagnitude}, // a, m, Cs
    {kUnitMagnitude, kUnitMagnitude, 0, kUnitMagnitude, kUnitMagnitude},              // a, m, Rsh ~ R
    {kUnitMagnitude, kUnitMagnitude, kUnitMagnitude, 0, kUnitMagnitude},              // a, m, Cs, Rsh ~ R
    {0, 0, kUnitMagnitude, kUnitMagnitude, kUnitMagnitude},                           // Tf, Tma ~ DT
    {0, 0, kUnitMagnitude, kUnitMagnitude, kUnitMagnitude},                           // DTf, DTma ~ DT; Cp
    {kUnitMagnitude, 0, kUnitMagnitude, kUnitMagnitude, kUnitMagnitude},              // C; DTma ~ DT
    {0, 0, kUnitMagnitude, kUnitMagnitude, kUnitMagnitude},                           // Vf, Vma ~ Vp
    {0, 0, kUnitMagnitude, kUnitMagnitude, kUnitMagnitude},                           // RHOf, RHOma ~ RHOb
    {0, 0, 0, kUnitMagnitude, kUnitMagnitude},                                        // RHOf, RHOma, RHOsh
    {0, kUnitMagnitude, kUnitMagnitude, kUnitMagnitude, kUnitMagnitude},              // PHIn,sh ~ PHIn
    {kUnitMagnitude, kUnitMagnitude, kUnitMagnitude, kUnitMagnitude, kUnitMagnitude}, // m
    {0, 1, kUnitMagnitude, kUnitMagnitude, kUnitMagnitude},                           // RHOf ~ RHOb, DTf ~ DT
    {0, 1, kUnitMagnitude, kUnitMagnitude, kUnitMagnitude},                           // RHOf ~ RHOb, PHIn,f ~ PHIn
}};

double TypicalMagnitude(int source, std::span<const GroundTruthSample> points)
{
    if (source == kUnitMagnitude || points.empty()) return 1.0;
    double sum = 0.0;
    for (const GroundTruthSample& p : points) {
        sum += std::fabs(source == kValueMagnitude ? p.value : p.logs.at(static_cast<std::size_t>(source)));
    }
    const double mean = sum / static_cast<double>(points.size());
    return std::isfinite(mean) && mean > 0.0 ? mean : 1.0;
}

// A returned root is accepted only when every scaled residual is this small there: the
// solver also reports success where its merit function merely stops falling.
constexpr double kAcceptedResidual = 1e-3;

// Each equation rearranged as A(c) = B for a ground-truth value v, so that no unknown is
// ever a divisor and only known quantities are raised to unknown powers: the residuals
// stay finite wherever the solver wanders. Where the rearrangement allows, B holds known
// quantities only, so it can scale the residual (equations 5 and 6 have no such side).
// Computed in double from the float trial values.
struct Sides {
    double a;
    double b;
    bool bKnown = true;
};

Sides RearrangedSides(int equation, const GroundTruthSample& p, const std::array<double, 5>& c)
{
    const double l1 = p.logs[0], l2 = p.logs[1], l3 = p.logs[2];
    const double v = p.value;
    const double c1 = c[0], c2 = c[1], c3 = c[2], c4 = c[3];
    switch (equation) {
    case 0: return {c1 * l1 + c2, v};
    case 1:
    case 2:
    case 7: return {c2 + v * (c1 - c2), l1};
    case 3: return {c1 * l2 * std::pow(v, c2), l1};
    case 4: return {std::pow(v, c2) * c1 * (l2 - c3 * l1 * std::pow(l2, 0.8)), l1};
    case 5: {
        const double n5 = c1 * l3 * l3 * l2 * l1 - c1 * l3 * l2 * l1 - c1 * c3 * l3 * l2 + c1 * c3 * l2;
        return {std::pow(v, -c2) * l1 * c3, n5, false};
    }
    case 6: {
        const double n6 = c1 * l3 * l3 * l2 * l1 - c1 * l3 * l2 * l1 -
                          c1 * c3 * c4 * l1 * std::pow(l2, static_cast<double>(0.8f)) - c1 * c4 * l3 * l2 +
                          c1 * c4 * l2;
        return {std::pow(v, -c2) * l1 * c4, n6, false};
    }
    case 8: return {c2 + v * c3 * (c1 - c2), l1};
    case 9: return {c1 * (l1 - c2), v * l1};
    case 10: return {c2 * v * v + (c1 - 2.0 * c2) * v + c2, l1};
    case 11: return {c2 - v * (c2 - c1), l1};
    case 12: return {c2 - (c2 - c3) * l2 - v * (c2 - c1), l1};
    case 13: return {l1 - l2 * c1, v};
    case 14: {
        const double ratio = std::pow(l1, 2.0 - c1) / ((1.0 - l1) * (1.0 - l1));
        return {182800.0 * std::pow(ratio, static_cast<double>(1.1f)), v};
    }
    case 15:
    case 16: return {c2 - v * (l1 - c1), l2};
    default: throw std::out_of_range("no equation " + std::to_string(equation));
    }
}

// One fitting job: the known coefficients, which slots the solver's unknowns fill, the
// ground truth, and per point the scale that makes its residual about one in size.
class FitProblem {
public:
    FitProblem(int equation, const EquationCoefficients& known, const CoefficientMask& unknown,
               std::span<const GroundTruthSample> points)
        : m_equation(equation), m_points(points)
    {
        for (std::size_t slot = 0; slot < kEquationCoefficientSlots; ++slot) {
            m_coefficients[slot] = known[slot];
            if (!unknown[slot]) continue;
            m_unknownSlots.push_back(slot);
            m_magnitudes.push_back(
                TypicalMagnitude(kMagnitudeSources[static_cast<std::size_t>(equation)][slot], points));
        }
        m_scales.assign(points.size(), 1.0);
    }

    int UnknownCount() const { return static_cast<int>(m_unknownSlots.size()); }

    // Scales each point's residual so that the solver's absolute tolerance acts as a
    // relative one whatever the log's magnitude: by the known side, or where there is none
    // (or it is zero) by the larger side at the point x.
    void ScaleAt(const float* x)
    {
        const auto c = Coefficients(x);
        for (std::size_t k = 0; k < m_points.size(); ++k) {
            const Sides s = RearrangedSides(m_equation, m_points[k], c);
            double scale = s.bKnown ? std::fabs(s.b) : 0.0;
            if (!(scale > 0.0)) scale = std::max(std::fabs(s.a), std::fabs(s.b));
            m_scales[k] = std::isfinite(scale) && scale > 0.0 ? scale : 1.0;
        }
    }

    void Residuals(const float* x, float* fvec) const
    {
        const auto c = Coefficients(x);
        for (std::size_t k = 0; k < m_points.size(); ++k) {
            const Sides s = RearrangedSides(m_equation, m_points[k], c);
            fvec[k + 1] = static_cast<float>((s.a - s.b) / m_scales[k]);
        }
    }

    bool IsRoot(const float* x) const
    {
        std::vector<float> fvec(m_points.size() + 1);
        Residuals(x, fvec.data());
        return std::all_of(fvec.begin() + 1, fvec.end(),
                           [](float f) { return std::isfinite(f) && std::fabs(f) <= kAcceptedResidual; });
    }

    EquationCoefficients Result(const float* x) const
    {
        EquationCoefficients result{};
        const auto c = Coefficients(x);
        for (std::size_t slot = 0; slot < kEquationCoefficientSlots; ++slot) result[slot] = static_cast<float>(c[slot]);
        return result;
    }

private:
    std::array<double, 5> Coefficients(const float* x) const
    {
        std::array<double, 5> c{};
        for (std::size_t slot = 0; slot < kEquationCoefficientSlots; ++slot) c[slot] = m_coefficients[slot];
        for (std::size_t j = 0; j < m_unknownSlots.size(); ++j) c[m_unknownSlots[j]] = x[j + 1] * m_magnitudes[j];
        return c;
    }

    int m_equation;
    std::span<const GroundTruthSample> m_points;
    std::array<float, kEquationCoefficientSlots> m_coefficients{};
    std::vector<std::size_t> m_unknownSlots;
    std::vector<double> m_magnitudes; // per unknown: coefficient = solver variable × magnitude
    std::vector<double> m_scales;
};

} // namespace

float StartValueStep(int equation, std::size_t coefficientSlot)
{
    EquationAt(equation);
    return kStartSteps[static_cast<std::size_t>(equation)].at(coefficientSlot);
}

std::vector<std::vector<float>> StartValueGrid(int equation, const CoefficientMask& unknown)
{
    std::vector<float> steps;
    for (std::size_t slot = 0; slot < kEquationCoefficientSlots; ++slot) {
        if (unknown[slot]) steps.push_back(StartValueStep(equation, slot));
    }
    std::size_t combinations = 1;
    for (std::size_t j = 0; j < steps.size(); ++j) combinations *= 3;
    std::vector<std::vector<float>> grid;
    grid.reserve(combinations);
    for (std::size_t index = 0; index < combinations; ++index) {
        std::vector<float> start(steps.size());
        // Odometer order: the last unknown turns fastest.
        std::size_t rest = index;
        for (std::size_t j = steps.size(); j-- > 0;) {
            start[j] = static_cast<float>(rest % 3 + 1) * steps[j];
            rest /= 3;
        }
        grid.push_back(std::move(start));
    }
    return grid;
}

std::optional<EquationCoefficients> FitCoefficients(int equation, const EquationCoefficients& known,
                                                    const CoefficientMask& unknown,
                                                    std::span<const GroundTruthSample> points, IMessageSink& sink)
{
    EquationAt(equation);
    FitProblem problem(equation, known, unknown, points);
    const int n = problem.UnknownCount();
    if (n == 0) return known;
    if (static_cast<std::size_t>(n) != points.size()) {
        throw std::invalid_argument("one ground-truth point per unknown coefficient is needed");
    }
    numeric::CNewtonSolver solver([&problem](int, const float* x, float* fvec) { problem.Residuals(x, fvec); },
                                  sink);
    std::vector<float> x(static_cast<std::size_t>(n) + 1);
    for (const std::vector<float>& start : StartValueGrid(equation, unknown)) {
        std::copy(start.begin(), start.end(), x.begin() + 1);
        problem.ScaleAt(x.data());
        bool check = true;
        solver.newt(x.data(), n, check);
        if (check || !problem.IsRoot(x.data())) continue;
        // Where the scale came from the start point, the root is polished once more with
        // the scale taken at the root, so that its accuracy does not depend on the start.
        std::vector<float> polished = x;
        problem.ScaleAt(polished.data());
        solver.newt(polished.data(), n, check);
        if (!check && problem.IsRoot(polished.data())) return problem.Result(polished.data());
        return problem.Result(x.data());
    }
    return std::nullopt;
}

} // namespace ba
