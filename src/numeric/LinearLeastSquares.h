#pragma once
// Gauss-Jordan elimination and the general linear least-squares fit built on it, on 1-based
// single-precision arrays.

#include "numeric/NumericMessages.h"

#include <cstdint>
#include <functional>

namespace ba::numeric {

// Solves a·x = b for the m right-hand sides b[1..n][1..m] by Gauss-Jordan elimination with
// full pivoting: a[1..n][1..n] is replaced by its inverse, b by the solutions. A pivot
// column met twice and a zero pivot each show their message; the elimination carries on
// (the results are then non-finite).
void gaussj(float** a, int n, float** b, int m, const NumericReporter& reporter);

// covar[1..ma][1..ma] holds in its leading mfit×mfit block the covariance of the free
// parameters (ia[j] != 0) in order; spreads it to the positions of all ma parameters, with
// zero rows and columns for the fixed ones.
void covsrt(float** covar, int ma, const std::int32_t* ia, int mfit);

// Fills afunc[1..ma] with the values of the ma basis functions at x.
using BasisFunctions = std::function<void(float x, float* afunc, int ma)>;

// Fits y[1..ndat] (standard deviations sig[1..ndat]) at x[1..ndat] by Σ a_j·afunc_j(x) in the
// least-squares sense. Parameters with ia[j] == 0 keep the value given in a[j]; the others
// are replaced by the fit. covar[1..ma][1..ma] receives the covariance matrix and chisq the
// chi-square of the fit. With no free parameter the message is shown and the fit proceeds,
// leaving a as given.
void lfit(const float* x, const float* y, const float* sig, int ndat, float* a, const std::int32_t* ia, int ma,
          float** covar, float& chisq, const BasisFunctions& funcs, const NumericReporter& reporter);

} // namespace ba::numeric
