#include "numeric/LinearLeastSquares.h"

#include "numeric/OneBasedArrays.h"

#include <cmath>
#include <utility>

namespace ba::numeric {

void gaussj(float** a, int n, float** b, int m, const NumericReporter& reporter)
{
    OwnedIntVector pivotColumnOf(1, n, reporter);
    OwnedIntVector pivotRowOf(1, n, reporter);
    OwnedIntVector timesPivoted(1, n, reporter);
    if (!pivotColumnOf || !pivotRowOf || !timesPivoted) return;
    for (int j = 1; j <= n; ++j) timesPivoted[j] = 0;

    // The pivot position persists from one step to the next: when NaNs leave no candidate,
    // the previous column is chosen again, which the search of the following step reports.
    int pivotRow = 1;
    int pivotColumn = 1;
    for (int step = 1; step <= n; ++step) {
        float largest = 0.0f;
        for (int j = 1; j <= n; ++j) {
            if (timesPivoted[j] == 1) continue;
            for (int k = 1; k <= n; ++k) {
                if (timesPivoted[k] == 0) {
                    if (std::fabs(a[j][k]) >= largest) {
                        largest = std::fabs(a[j][k]);
                        pivotRow = j;
                        pivotColumn = k;
                    }
                } else if (timesPivoted[k] > 1) {
                    reporter.Show(NumericEvent::GaussjPivotColumnTwice);
                }
            }
        }
        ++timesPivoted[pivotColumn];

        // Move the pivot onto the diagonal; columns are unscrambled at the end.
        if (pivotRow != pivotColumn) {
            for (int l = 1; l <= n; ++l) std::swap(a[pivotRow][l], a[pivotColumn][l]);
            for (int l = 1; l <= m; ++l) std::swap(b[pivotRow][l], b[pivotColumn][l]);
        }
        pivotRowOf[step] = pivotRow;
        pivotColumnOf[step] = pivotColumn;
        if (a[pivotColumn][pivotColumn] == 0.0f) reporter.Show(NumericEvent::GaussjZeroPivot);

        const float inversePivot = 1.0f / a[pivotColumn][pivotColumn];
        a[pivotColumn][pivotColumn] = 1.0f;
        for (int l = 1; l <= n; ++l) a[pivotColumn][l] *= inversePivot;
        for (int l = 1; l <= m; ++l) b[pivotColumn][l] *= inversePivot;
        for (int row = 1; row <= n; ++row) {
            if (row == pivotColumn) continue;
            const float factor = a[row][pivotColumn];
            a[row][pivotColumn] = 0.0f;
            for (int l = 1; l <= n; ++l) a[row][l] -= a[pivotColumn][l] * factor;
            for (int l = 1; l <= m; ++l) b[row][l] -= b[pivotColumn][l] * factor;
        }
    }

    // Undo the row interchanges as column interchanges of the inverse, in reverse order.
    for (int step = n; step >= 1; --step) {
        if (pivotRowOf[step] == pivotColumnOf[step]) continue;
        for (int k = 1; k <= n; ++k) std::swap(a[k][pivotRowOf[step]], a[k][pivotColumnOf[step]]);
    }
}

void covsrt(float** covar, int ma, const std::int32_t* ia, int mfit)
{
    for (int i = mfit + 1; i <= ma; ++i)
        for (int j = 1; j <= i; ++j) {
            covar[i][j] = 0.0f;
            covar[j][i] = 0.0f;
        }
    // Walk the free parameters from the last one, moving row and column k of the packed
    // block to the parameter's own position j.
    int k = mfit;
    for (int j = ma; j >= 1; --j) {
        if (ia[j] == 0) continue;
        for (int i = 1; i <= ma; ++i) std::swap(covar[i][k], covar[i][j]);
        for (int i = 1; i <= ma; ++i) std::swap(covar[k][i], covar[j][i]);
        --k;
    }
}

void lfit(const float* x, const float* y, const float* sig, int ndat, float* a, const std::int32_t* ia, int ma,
          float** covar, float& chisq, const BasisFunctions& funcs, const NumericReporter& reporter)
{
    OwnedMatrix beta(1, ma, 1, 1, reporter);
    OwnedVector afunc(1, ma, reporter);
    if (!beta || !afunc) return;

    int mfit = 0;
    for (int j = 1; j <= ma; ++j)
        if (ia[j] != 0) ++mfit;
    if (mfit == 0) reporter.Show(NumericEvent::LfitNothingToFit);

    for (int j = 1; j <= mfit; ++j) {
        for (int k = 1; k <= mfit; ++k) covar[j][k] = 0.0f;
        beta[j][1] = 0.0f;
    }

    // Normal equations over the free parameters (lower triangle first).
    for (int i = 1; i <= ndat; ++i) {
        funcs(x[i], afunc.get(), ma);
        float target = y[i];
        if (mfit < ma)
            for (int j = 1; j <= ma; ++j)
                if (ia[j] == 0) target -= a[j] * afunc[j];
        const float weight = 1.0f / (sig[i] * sig[i]);
        int row = 0;
        for (int l = 1; l <= ma; ++l) {
            if (ia[l] == 0) continue;
            ++row;
            const float weighted = afunc[l] * weight;
            int column = 0;
            for (int mIndex = 1; mIndex <= l; ++mIndex)
                if (ia[mIndex] != 0) covar[row][++column] += weighted * afunc[mIndex];
            beta[row][1] += target * weighted;
        }
    }
    for (int j = 2; j <= mfit; ++j)
        for (int k = 1; k < j; ++k) covar[k][j] = covar[j][k];

    gaussj(covar, mfit, beta.get(), 1, reporter);

    int row = 0;
    for (int l = 1; l <= ma; ++l)
        if (ia[l] != 0) a[l] = beta[++row][1];

    chisq = 0.0f;
    for (int i = 1; i <= ndat; ++i) {
        funcs(x[i], afunc.get(), ma);
        float model = 0.0f;
        for (int j = 1; j <= ma; ++j) model += a[j] * afunc[j];
        const float residual = (y[i] - model) / sig[i];
        chisq += residual * residual;
    }
    covsrt(covar, ma, ia, mfit);
}

} // namespace ba::numeric
