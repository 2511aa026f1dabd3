#include "evaluation/EquationFormulas.h"

#include "model/Trace.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <thread>
#include <vector>

namespace ba {

namespace {

// The two exponents of 0.8 differ on purpose: equation 4 raises to the double 0.8,
// equation 6 to the float 0.8 widened to double. The Jorgensen exponent is likewise the
// float 1.1 widened.
constexpr double kExponentDouble08 = 0.8;
constexpr double kExponentFloat08 = static_cast<double>(0.8f);
constexpr double kJorgensenExponent = static_cast<double>(1.1f);
constexpr double kJorgensenFactor = 182800.0;

// Raymer-Hunt: the porosity root of c2·φ² + (c1 − 2·c2)·φ + (c2 − L1) = 0 in [0, 1], the
// smaller when both are, 0 when neither is (a NaN root is in no interval).
float RaymerHuntRoot(float l1, float c1, float c2)
{
    const float d = std::sqrt(4.0f * l1 * c2 + c1 * c1 - 4.0f * c1 * c2);
    const float r1 = (c1 - 2.0f * c2 + d) / (-2.0f * c2);
    const float r2 = (c1 - 2.0f * c2 - d) / (-2.0f * c2);
    const bool r1In = r1 >= 0.0f && r1 <= 1.0f;
    const bool r2In = r2 >= 0.0f && r2 <= 1.0f;
    if (r1In && r2In) return std::min(r1, r2);
    if (r1In) return r1;
    if (r2In) return r2;
    return 0.0f;
}

// Rw^0.8 in equations 4 and 6 depends on log 2 alone, and a water-resistivity log usually
// holds one value over a whole zone: the last power is kept and reused while the value
// repeats. The same input gives the same double, so the results do not change.
class Log2Power {
public:
    explicit Log2Power(double exponent) : m_exponent(exponent) {}
    double operator()(float l2)
    {
        if (!(l2 == m_base)) { // NaN never matches, so it is recomputed like any other value
            m_base = l2;
            m_power = std::pow(static_cast<double>(l2), m_exponent);
        }
        return m_power;
    }

private:
    double m_exponent;
    float m_base = std::numeric_limits<float>::quiet_NaN();
    double m_power = 0.0;
};

// The result of one equation for non-null inputs. A template on the equation number so
// the per-sample loop below is compiled once per equation with no switch inside it.
template <int E>
float Formula(float l1, float l2, float l3, const EquationCoefficients& c, Log2Power& rw08)
{
    const float c1 = c[0], c2 = c[1], c3 = c[2], c4 = c[3];
    if constexpr (E == 0) {
        return c1 * l1 + c2;
    } else if constexpr (E == 1 || E == 2 || E == 7) {
        return (l1 - c2) / (c1 - c2);
    } else if constexpr (E == 3) {
        return std::pow(l1 / (c1 * l2), 1.0f / c2);
    } else if constexpr (E == 4) {
        const double denominator = c3 * c1 * l1 * rw08(l2) - c1 * l2;
        return static_cast<float>(std::pow(-l1 / denominator, static_cast<double>(1.0f / c2)));
    } else if constexpr (E == 5) {
        const float n5 = c1 * l3 * l3 * l2 * l1 - c1 * l3 * l2 * l1 - c1 * c3 * l3 * l2 + c1 * c3 * l2;
        return std::pow(n5 / (l1 * c3), -1.0f / c2);
    } else if constexpr (E == 6) {
        const double n6 = c1 * l3 * l3 * l2 * l1 - c1 * l3 * l2 * l1 -
                          c1 * c3 * c4 * l1 * rw08(l2) -
                          c1 * c4 * l3 * l2 + c1 * c4 * l2;
        return static_cast<float>(std::pow(n6 / (l1 * c4), static_cast<double>(-1.0f / c2)));
    } else if constexpr (E == 8) {
        return ((l1 - c2) / (c1 - c2)) / c3;
    } else if constexpr (E == 9) {
        return c1 * (l1 - c2) / l1;
    } else if constexpr (E == 10) {
        return RaymerHuntRoot(l1, c1, c2);
    } else if constexpr (E == 11) {
        return (c2 - l1) / (c2 - c1);
    } else if constexpr (E == 12) {
        return (c2 - l1) / (c2 - c1) - ((c2 - c3) / (c2 - c1)) * l2;
    } else if constexpr (E == 13) {
        return l1 - l2 * c1;
    } else if constexpr (E == 14) {
        const float ratio = std::pow(l1, 2.0f - c1) / ((1.0f - l1) * (1.0f - l1));
        return static_cast<float>(kJorgensenFactor * std::pow(static_cast<double>(ratio), kJorgensenExponent));
    } else {
        static_assert(E == 15 || E == 16);
        return (c2 - l2) / (l1 - c1);
    }
}

// The exponent of log 2 in equations 4 and 6 (unused by the others).
constexpr double Log2Exponent(int equation) { return equation == 6 ? kExponentFloat08 : kExponentDouble08; }

template <int E>
float Sample(float l1, float l2, float l3, const EquationCoefficients& c, std::size_t logCount, Log2Power& rw08)
{
    if (IsNullSample(l1) || (logCount >= 2 && IsNullSample(l2)) || (logCount >= 3 && IsNullSample(l3))) {
        return kNullValue;
    }
    return Formula<E>(l1, l2, l3, c, rw08);
}

template <int E>
float SingleSample(float l1, float l2, float l3, const EquationCoefficients& c, std::size_t logCount)
{
    Log2Power rw08(Log2Exponent(E));
    return Sample<E>(l1, l2, l3, c, logCount, rw08);
}

template <int E>
void EvaluateRange(std::span<const float> l1, std::span<const float> l2, std::span<const float> l3,
                   const EquationCoefficients& c, std::span<float> out, std::size_t begin, std::size_t end)
{
    constexpr std::size_t logCount = kEquationDefinitions[E].logCount;
    // Inside the shorter logs' length the loop reads them directly; past it they are null.
    std::size_t inside = end;
    if constexpr (logCount >= 2) inside = std::min(inside, std::max(begin, l2.size()));
    if constexpr (logCount >= 3) inside = std::min(inside, std::max(begin, l3.size()));
    Log2Power rw08(Log2Exponent(E));
    for (std::size_t i = begin; i < inside; ++i) {
        const float v2 = logCount >= 2 ? l2[i] : 0.0f;
        const float v3 = logCount >= 3 ? l3[i] : 0.0f;
        out[i] = Sample<E>(l1[i], v2, v3, c, logCount, rw08);
    }
    for (std::size_t i = inside; i < end; ++i) out[i] = kNullValue;
}

using RangeFunction = void (*)(std::span<const float>, std::span<const float>, std::span<const float>,
                               const EquationCoefficients&, std::span<float>, std::size_t, std::size_t);
using SampleFunction = float (*)(float, float, float, const EquationCoefficients&, std::size_t);

template <std::size_t... E>
constexpr std::array<RangeFunction, sizeof...(E)> RangeTable(std::index_sequence<E...>)
{
    return {&EvaluateRange<static_cast<int>(E)>...};
}
template <std::size_t... E>
constexpr std::array<SampleFunction, sizeof...(E)> SampleTable(std::index_sequence<E...>)
{
    return {&SingleSample<static_cast<int>(E)>...};
}
constexpr auto kRangeFunctions = RangeTable(std::make_index_sequence<kEquationCount>());
constexpr auto kSampleFunctions = SampleTable(std::make_index_sequence<kEquationCount>());

// Below this many samples a second thread costs more than it saves.
constexpr std::size_t kSamplesPerThread = 1u << 16;

} // namespace

float EvaluateEquation(int equation, float l1, float l2, float l3, const EquationCoefficients& c)
{
    const EquationDefinition& definition = EquationAt(equation);
    return kSampleFunctions[static_cast<std::size_t>(equation)](l1, l2, l3, c, definition.logCount);
}

void EvaluateEquation(int equation, std::span<const float> l1, std::span<const float> l2, std::span<const float> l3,
                      const EquationCoefficients& c, std::span<float> out)
{
    EquationAt(equation); // refuses an index that is not an equation
    if (out.size() != l1.size()) throw std::invalid_argument("the output must be as long as log 1");
    const RangeFunction range = kRangeFunctions[static_cast<std::size_t>(equation)];
    const std::size_t n = l1.size();
    const std::size_t cores = std::max(1u, std::thread::hardware_concurrency());
    const std::size_t parts = std::min(cores, std::max<std::size_t>(1, n / kSamplesPerThread));
    if (parts <= 1) {
        range(l1, l2, l3, c, out, 0, n);
        return;
    }
    std::vector<std::jthread> helpers;
    helpers.reserve(parts - 1);
    const std::size_t chunk = (n + parts - 1) / parts;
    for (std::size_t p = 1; p < parts; ++p) {
        const std::size_t begin = std::min(n, p * chunk);
        const std::size_t end = std::min(n, begin + chunk);
        helpers.emplace_back([=, &c] { range(l1, l2, l3, c, out, begin, end); });
    }
    range(l1, l2, l3, c, out, 0, std::min(n, chunk));
}

} // namespace ba
