#pragma once
// LU decomposition (Crout, implicit partial pivoting) and the matching forward and back
// substitution, on 1-based single-precision arrays.

#include "numeric/NumericMessages.h"

#include <cstdint>

namespace ba::numeric {

// Replaces a[1..n][1..n] by the LU form of a row permutation of itself; indx[1..n] records the
// permutation and d is +1 or -1 for an even or odd number of row swaps. A row with no
// non-zero element shows the singular-matrix message and the decomposition carries on; a
// pivot of exactly 0 is replaced by 1.0e-20 so that the solve yields a (large) answer.
void ludcmp(float** a, int n, std::int32_t* indx, float& d, const NumericReporter& reporter);

// Solves A·x = b for the LU form and permutation from ludcmp; b[1..n] is replaced by x.
// Leading zeros of the permuted b are skipped in the forward pass.
void lubksb(float** a, int n, const std::int32_t* indx, float* b);

} // namespace ba::numeric
