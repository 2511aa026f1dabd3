#include "numeric/LuDecomposition.h"

#include "numeric/OneBasedArrays.h"

#include <cmath>
#include <utility>

namespace ba::numeric {

namespace {
constexpr float kTinyPivot = 1.0e-20f;
}

void ludcmp(float** a, int n, std::int32_t* indx, float& d, const NumericReporter& reporter)
{
    OwnedVector rowScale(1, n, reporter);
    if (!rowScale) return;

    d = 1.0f;
    for (int i = 1; i <= n; ++i) {
        float largest = 0.0f;
        for (int j = 1; j <= n; ++j) largest = std::fmax(largest, std::fabs(a[i][j]));
        // An all-zero row gives an infinite scale; its candidates then never win the pivot
        // search and the decomposition goes on.
        if (largest == 0.0f) reporter.Show(NumericEvent::LudcmpSingular);
        rowScale[i] = 1.0f / largest;
    }

    for (int j = 1; j <= n; ++j) {
        // Upper triangle of column j.
        for (int i = 1; i < j; ++i) {
            float sum = a[i][j];
            for (int k = 1; k < i; ++k) sum -= a[i][k] * a[k][j];
            a[i][j] = sum;
        }
        // Lower part of column j, choosing the pivot by scaled magnitude. The default is the
        // diagonal, so that a column of non-finite candidates still names a valid row.
        int pivotRow = j;
        float best = 0.0f;
        for (int i = j; i <= n; ++i) {
            float sum = a[i][j];
            for (int k = 1; k < j; ++k) sum -= a[i][k] * a[k][j];
            a[i][j] = sum;
            const float merit = rowScale[i] * std::fabs(sum);
            if (merit >= best) {
                best = merit;
                pivotRow = i;
            }
        }
        if (pivotRow != j) {
            for (int k = 1; k <= n; ++k) std::swap(a[pivotRow][k], a[j][k]);
            d = -d;
            rowScale[pivotRow] = rowScale[j];
        }
        indx[j] = pivotRow;
        if (a[j][j] == 0.0f) a[j][j] = kTinyPivot;
        if (j != n) {
            const float inversePivot = 1.0f / a[j][j];
            for (int i = j + 1; i <= n; ++i) a[i][j] *= inversePivot;
        }
    }
}

void lubksb(float** a, int n, const std::int32_t* indx, float* b)
{
    // Forward substitution with L (unit diagonal), unscrambling the permutation as we go.
    // firstNonZero stays 0 until the first non-zero element of b, so the leading zeros
    // contribute no work.
    int firstNonZero = 0;
    for (int i = 1; i <= n; ++i) {
        const int permuted = indx[i];
        float sum = b[permuted];
        b[permuted] = b[i];
        if (firstNonZero != 0) {
            for (int j = firstNonZero; j < i; ++j) sum -= a[i][j] * b[j];
        } else if (sum != 0.0f) {
            firstNonZero = i;
        }
        b[i] = sum;
    }
    // Back substitution with U.
    for (int i = n; i >= 1; --i) {
        float sum = b[i];
        for (int j = i + 1; j <= n; ++j) sum -= a[i][j] * b[j];
        b[i] = sum / a[i][i];
    }
}

} // namespace ba::numeric
