#pragma once
// Singular value decomposition A = U·W·Vᵀ of a 1-based single-precision matrix by Householder
// reduction to bidiagonal form and implicitly shifted QR iteration.

#include "numeric/NumericMessages.h"

namespace ba::numeric {

// sqrt(a² + b²) without destructive underflow or overflow; 0 when both are 0.
float pythag(float a, float b);

// a[1..m][1..n] is replaced by U (m×n, orthonormal columns), w[1..n] receives the singular
// values (non-negative, unsorted) and v[1..n][1..n] the matrix V (not its transpose). Each
// singular value gets at most 30 QR sweeps: at the 30th the no-convergence message is shown
// and the decomposition goes on with the values as they stand.
void svdcmp(float** a, int m, int n, float* w, float** v, const NumericReporter& reporter);

} // namespace ba::numeric
