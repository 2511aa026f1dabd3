#include "evaluation/EquationFormulas.h"

#include "model/Trace.h"
#include "numeric/ParallelParts.h"
#include "numeric/VectorPow.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <type_traits>
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

using C = EquationCoefficients;

// The equations that raise to powers (3, 4, 5, 6, 14), each written as at most two
// powers: an optional first one, s1 = Base1^Exponent1, then p = Base2(s1)^Exponent2, and
// the result Finish(p). Written once so that a sample computed alone and the same sample
// computed in a block of an array (where the powers run over the whole block at a time)
// go through the same arithmetic and give the same float.
struct ArchieForm { // 3: (L1/(c1·L2))^(1/c2)
    static constexpr bool kTwoPowers = false;
    using Power1 = float;
    using Power2 = float;
    static float Base1(float, float, float) { return 1.0f; }
    static float Exponent1(const C&) { return 1.0f; }
    static float Base2(float l1, float l2, float, float, const C& c) { return l1 / (c[0] * l2); }
    static float Exponent2(const C& c) { return 1.0f / c[1]; }
    static float Finish(float p, const C&) { return p; }
};

struct ResistiveFluidsForm { // 4: Rw^0.8 with the double 0.8
    static constexpr bool kTwoPowers = true;
    using Power1 = double;
    using Power2 = double;
    static double Base1(float, float l2, float) { return l2; }
    static double Exponent1(const C&) { return kExponentDouble08; }
    static double Base2(float l1, float l2, float, double rw08, const C& c)
    {
        const float c1 = c[0], c3 = c[2];
        const double denominator = c3 * c1 * l1 * rw08 - c1 * l2;
        return -l1 / denominator;
    }
    static double Exponent2(const C& c) { return static_cast<double>(1.0f / c[1]); }
    static float Finish(double p, const C&) { return static_cast<float>(p); }
};

struct ClayForm { // 5: (N5/(L1·c3))^(−1/c2)
    static constexpr bool kTwoPowers = false;
    using Power1 = float;
    using Power2 = float;
    static float Base1(float, float, float) { return 1.0f; }
    static float Exponent1(const C&) { return 1.0f; }
    static float Base2(float l1, float l2, float l3, float, const C& c)
    {
        const float c1 = c[0], c3 = c[2];
        const float n5 = c1 * l3 * l3 * l2 * l1 - c1 * l3 * l2 * l1 - c1 * c3 * l3 * l2 + c1 * c3 * l2;
        return n5 / (l1 * c3);
    }
    static float Exponent2(const C& c) { return -1.0f / c[1]; }
    static float Finish(float p, const C&) { return p; }
};

struct ClayResistiveFluidsForm { // 6: Rw^0.8 with the float 0.8 widened
    static constexpr bool kTwoPowers = true;
    using Power1 = double;
    using Power2 = double;
    static double Base1(float, float l2, float) { return l2; }
    static double Exponent1(const C&) { return kExponentFloat08; }
    static double Base2(float l1, float l2, float l3, double rw08, const C& c)
    {
        const float c1 = c[0], c3 = c[2], c4 = c[3];
        const double n6 = c1 * l3 * l3 * l2 * l1 - c1 * l3 * l2 * l1 - c1 * c3 * c4 * l1 * rw08 - c1 * c4 * l3 * l2 +
                          c1 * c4 * l2;
        return n6 / (l1 * c4);
    }
    static double Exponent2(const C& c) { return static_cast<double>(-1.0f / c[1]); }
    static float Finish(double p, const C&) { return static_cast<float>(p); }
};

struct JorgensenForm { // 14: 182800·(L1^(2 − c1)/(1 − L1)²)^1.1f
    static constexpr bool kTwoPowers = true;
    using Power1 = float;
    using Power2 = double;
    static float Base1(float l1, float, float) { return l1; }
    static float Exponent1(const C& c) { return 2.0f - c[0]; }
    static double Base2(float l1, float, float, float l1Power, const C&)
    {
        const float ratio = l1Power / ((1.0f - l1) * (1.0f - l1));
        return static_cast<double>(ratio);
    }
    static double Exponent2(const C&) { return kJorgensenExponent; }
    static float Finish(double p, const C&) { return static_cast<float>(kJorgensenFactor * p); }
};

template <class Form>
float PowerFormula(float l1, float l2, float l3, const C& c)
{
    typename Form::Power1 s1{};
    if constexpr (Form::kTwoPowers) s1 = numeric::PowOne(Form::Base1(l1, l2, l3), Form::Exponent1(c));
    return Form::Finish(numeric::PowOne(Form::Base2(l1, l2, l3, s1, c), Form::Exponent2(c)), c);
}

// The power form of equation E, or void for the equations without powers.
template <int E>
using PowerFormOf =
    std::conditional_t<E == 3, ArchieForm,
    std::conditional_t<E == 4, ResistiveFluidsForm,
    std::conditional_t<E == 5, ClayForm,
    std::conditional_t<E == 6, ClayResistiveFluidsForm,
    std::conditional_t<E == 14, JorgensenForm, void>>>>>;
template <int E>
constexpr bool kRaisesToPowers = !std::is_void_v<PowerFormOf<E>>;

// The result of one equation for non-null inputs. A template on the equation number so
// the per-sample loop below is compiled once per equation with no switch inside it.
template <int E>
float Formula(float l1, float l2, float l3, const EquationCoefficients& c)
{
    const float c1 = c[0], c2 = c[1], c3 = c[2];
    if constexpr (E == 0) {
        return c1 * l1 + c2;
    } else if constexpr (E == 1 || E == 2 || E == 7) {
        return (l1 - c2) / (c1 - c2);
    } else if constexpr (kRaisesToPowers<E>) {
        return PowerFormula<PowerFormOf<E>>(l1, l2, l3, c);
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
    } else {
        static_assert(E == 15 || E == 16);
        return (c2 - l2) / (l1 - c1);
    }
}

template <int E>
bool AnyNull(float l1, float l2, float l3)
{
    constexpr std::size_t logCount = kEquationDefinitions[E].logCount;
    return IsNullSample(l1) || (logCount >= 2 && IsNullSample(l2)) || (logCount >= 3 && IsNullSample(l3));
}

template <int E>
float Sample(float l1, float l2, float l3, const EquationCoefficients& c)
{
    return AnyNull<E>(l1, l2, l3) ? kNullValue : Formula<E>(l1, l2, l3, c);
}

// Samples [begin, end) of an equation that raises to powers, a block at a time: the bases
// of each power are gathered for the block (a null sample raises 1 and is then written as
// null), raised together, and finished sample by sample.
template <class Form, int E>
void EvaluatePowerBlocks(std::span<const float> l1, std::span<const float> l2, std::span<const float> l3,
                         const C& c, std::span<float> out, std::size_t begin, std::size_t end)
{
    constexpr std::size_t kBlock = 512;
    constexpr std::size_t logCount = kEquationDefinitions[E].logCount;
    using P1 = typename Form::Power1;
    using P2 = typename Form::Power2;
    std::array<P1, kBlock> base1{}, power1{};
    std::array<P2, kBlock> base2{}, power2{};
    std::array<bool, kBlock> isNull{};
    const P1 exponent1 = Form::Exponent1(c);
    const P2 exponent2 = Form::Exponent2(c);
    for (std::size_t first = begin; first < end; first += kBlock) {
        const std::size_t m = std::min(kBlock, end - first);
        auto at = [&](std::span<const float> log, std::size_t k) { return log.empty() ? 0.0f : log[first + k]; };
        for (std::size_t k = 0; k < m; ++k) {
            isNull[k] = AnyNull<E>(l1[first + k], logCount >= 2 ? l2[first + k] : 0.0f,
                                   logCount >= 3 ? l3[first + k] : 0.0f);
        }
        if constexpr (Form::kTwoPowers) {
            for (std::size_t k = 0; k < m; ++k) {
                base1[k] = isNull[k] ? P1(1) : Form::Base1(at(l1, k), at(l2, k), at(l3, k));
            }
            numeric::PowArray(std::span<const P1>(base1.data(), m), exponent1, std::span<P1>(power1.data(), m));
        }
        for (std::size_t k = 0; k < m; ++k) {
            base2[k] = isNull[k] ? P2(1) : Form::Base2(at(l1, k), at(l2, k), at(l3, k), power1[k], c);
        }
        numeric::PowArray(std::span<const P2>(base2.data(), m), exponent2, std::span<P2>(power2.data(), m));
        for (std::size_t k = 0; k < m; ++k) out[first + k] = isNull[k] ? kNullValue : Form::Finish(power2[k], c);
    }
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
    if constexpr (kRaisesToPowers<E>) {
        // Logs the equation does not read are passed empty so the blocks never touch them.
        EvaluatePowerBlocks<PowerFormOf<E>, E>(l1, logCount >= 2 ? l2 : std::span<const float>(),
                                                              logCount >= 3 ? l3 : std::span<const float>(), c,
                                                              out, begin, inside);
    } else {
        for (std::size_t i = begin; i < inside; ++i) {
            const float v2 = logCount >= 2 ? l2[i] : 0.0f;
            const float v3 = logCount >= 3 ? l3[i] : 0.0f;
            out[i] = Sample<E>(l1[i], v2, v3, c);
        }
    }
    for (std::size_t i = inside; i < end; ++i) out[i] = kNullValue;
}

using RangeFunction = void (*)(std::span<const float>, std::span<const float>, std::span<const float>,
                               const EquationCoefficients&, std::span<float>, std::size_t, std::size_t);
using SampleFunction = float (*)(float, float, float, const EquationCoefficients&);

template <std::size_t... E>
constexpr std::array<RangeFunction, sizeof...(E)> RangeTable(std::index_sequence<E...>)
{
    return {&EvaluateRange<static_cast<int>(E)>...};
}
template <std::size_t... E>
constexpr std::array<SampleFunction, sizeof...(E)> SampleTable(std::index_sequence<E...>)
{
    return {&Sample<static_cast<int>(E)>...};
}
constexpr auto kRangeFunctions = RangeTable(std::make_index_sequence<kEquationCount>());
constexpr auto kSampleFunctions = SampleTable(std::make_index_sequence<kEquationCount>());

// Below this many samples a second thread costs more than it saves.
constexpr std::size_t kSamplesPerThread = 1u << 16;

} // namespace

float EvaluateEquation(int equation, float l1, float l2, float l3, const EquationCoefficients& c)
{
    EquationAt(equation); // refuses an index that is not an equation
    return kSampleFunctions[static_cast<std::size_t>(equation)](l1, l2, l3, c);
}

void EvaluateEquation(int equation, std::span<const float> l1, std::span<const float> l2, std::span<const float> l3,
                      const EquationCoefficients& c, std::span<float> out)
{
    EquationAt(equation); // refuses an index that is not an equation
    if (out.size() != l1.size()) throw std::invalid_argument("the output must be as long as log 1");
    const RangeFunction range = kRangeFunctions[static_cast<std::size_t>(equation)];
    const std::size_t n = l1.size();
    numeric::ForEachPart(n, numeric::PartCount(n, kSamplesPerThread),
                         [&](std::size_t, std::size_t begin, std::size_t end) { range(l1, l2, l3, c, out, begin, end); });
}

} // namespace ba
