#include "numeric/VectorPow.h"

#include <cmath>
#include <cstddef>
#include <stdexcept>

#if defined(BA_HAVE_LIBMVEC)
#include <immintrin.h>

// glibc's vector variants of pow and powf for AVX2 (x86-64 vector function ABI names).
extern "C" __attribute__((target("avx2"))) __m256d _ZGVdN4vv_pow(__m256d, __m256d);
extern "C" __attribute__((target("avx2"))) __m256 _ZGVdN8vv_powf(__m256, __m256);
#endif

namespace ba::numeric {

namespace {

#if defined(BA_HAVE_LIBMVEC)

bool ProcessorRunsAvx2()
{
    static const bool avx2 = __builtin_cpu_supports("avx2") != 0;
    return avx2;
}

// Only these functions use AVX2 instructions, and only after ProcessorRunsAvx2 said so;
// the arithmetic around the powers stays in the baseline instruction set.
__attribute__((target("avx2"))) void PowAvx2(const double* base, double exponent, double* out, std::size_t n)
{
    const __m256d e = _mm256_set1_pd(exponent);
    std::size_t i = 0;
    for (; i + 4 <= n; i += 4) _mm256_storeu_pd(out + i, _ZGVdN4vv_pow(_mm256_loadu_pd(base + i), e));
    if (i < n) {
        // The tail goes through the same routine, padded with ones.
        alignas(32) double in[4] = {1.0, 1.0, 1.0, 1.0};
        alignas(32) double result[4];
        for (std::size_t k = 0; i + k < n; ++k) in[k] = base[i + k];
        _mm256_store_pd(result, _ZGVdN4vv_pow(_mm256_load_pd(in), e));
        for (std::size_t k = 0; i + k < n; ++k) out[i + k] = result[k];
    }
}

__attribute__((target("avx2"))) void PowAvx2(const float* base, float exponent, float* out, std::size_t n)
{
    const __m256 e = _mm256_set1_ps(exponent);
    std::size_t i = 0;
    for (; i + 8 <= n; i += 8) _mm256_storeu_ps(out + i, _ZGVdN8vv_powf(_mm256_loadu_ps(base + i), e));
    if (i < n) {
        alignas(32) float in[8] = {1.0f, 1.0f, 1.0f, 1.0f, 1.0f, 1.0f, 1.0f, 1.0f};
        alignas(32) float result[8];
        for (std::size_t k = 0; i + k < n; ++k) in[k] = base[i + k];
        _mm256_store_ps(result, _ZGVdN8vv_powf(_mm256_load_ps(in), e));
        for (std::size_t k = 0; i + k < n; ++k) out[i + k] = result[k];
    }
}

#else

constexpr bool ProcessorRunsAvx2() { return false; }
template <class T>
void PowAvx2(const T*, T, T*, std::size_t)
{
    throw std::logic_error("vector powers are not available in this build");
}

#endif

template <class T>
void PowArrayOf(std::span<const T> base, T exponent, std::span<T> out)
{
    if (out.size() != base.size()) throw std::invalid_argument("PowArray: out must be as long as base");
    if (ProcessorRunsAvx2()) {
        PowAvx2(base.data(), exponent, out.data(), base.size());
        return;
    }
    for (std::size_t i = 0; i < base.size(); ++i) out[i] = std::pow(base[i], exponent);
}

} // namespace

void PowArray(std::span<const double> base, double exponent, std::span<double> out)
{
    PowArrayOf(base, exponent, out);
}

void PowArray(std::span<const float> base, float exponent, std::span<float> out) { PowArrayOf(base, exponent, out); }

double PowOne(double base, double exponent)
{
    double out = 0.0;
    PowArrayOf(std::span<const double>(&base, 1), exponent, std::span<double>(&out, 1));
    return out;
}

float PowOne(float base, float exponent)
{
    float out = 0.0f;
    PowArrayOf(std::span<const float>(&base, 1), exponent, std::span<float>(&out, 1));
    return out;
}

bool VectorPowInUse() { return ProcessorRunsAvx2(); }

} // namespace ba::numeric
