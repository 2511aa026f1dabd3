#include "numeric/SingularValueDecomposition.h"

#include "numeric/OneBasedArrays.h"

#include <algorithm>
#include <cmath>

namespace ba::numeric {

namespace {

constexpr int kMaxSweepsPerValue = 30;

// |magnitude| with the sign of signSource (a zero source counts as positive).
float WithSignOf(float magnitude, float signSource)
{
    return signSource >= 0.0f ? std::fabs(magnitude) : -std::fabs(magnitude);
}

// True when x is negligible next to the norm of the bidiagonal matrix.
bool Negligible(float x, float norm)
{
    return std::fabs(x) + norm == norm;
}

// Applies the plane rotation (c, s) to columns p and q of rows 1..rows.
void RotateColumns(float** x, int rows, int p, int q, float c, float s)
{
    for (int r = 1; r <= rows; ++r) {
        const float xp = x[r][p];
        const float xq = x[r][q];
        x[r][p] = xp * c + xq * s;
        x[r][q] = xq * c - xp * s;
    }
}

// Householder reflections from the left (columns) and the right (rows) bring a to upper
// bidiagonal form: diagonal in w, superdiagonal in super[2..n] (super[1] is 0). The
// reflection vectors stay in a. Returns a norm of the bidiagonal matrix for the
// negligibility tests.
float Bidiagonalise(float** a, int m, int n, float* w, float* super)
{
    float g = 0.0f;
    float scale = 0.0f;
    float norm = 0.0f;
    for (int i = 1; i <= n; ++i) {
        const int l = i + 1;
        super[i] = scale * g;
        g = 0.0f;
        scale = 0.0f;
        if (i <= m) {
            for (int k = i; k <= m; ++k) scale += std::fabs(a[k][i]);
            if (scale != 0.0f) {
                float s = 0.0f;
                for (int k = i; k <= m; ++k) {
                    a[k][i] /= scale;
                    s += a[k][i] * a[k][i];
                }
                const float f = a[i][i];
                g = -WithSignOf(std::sqrt(s), f);
                const float h = f * g - s;
                a[i][i] = f - g;
                for (int j = l; j <= n; ++j) {
                    float dot = 0.0f;
                    for (int k = i; k <= m; ++k) dot += a[k][i] * a[k][j];
                    const float factor = dot / h;
                    for (int k = i; k <= m; ++k) a[k][j] += factor * a[k][i];
                }
                for (int k = i; k <= m; ++k) a[k][i] *= scale;
            }
        }
        w[i] = scale * g;

        g = 0.0f;
        scale = 0.0f;
        if (i <= m && i != n) {
            for (int k = l; k <= n; ++k) scale += std::fabs(a[i][k]);
            if (scale != 0.0f) {
                float s = 0.0f;
                for (int k = l; k <= n; ++k) {
                    a[i][k] /= scale;
                    s += a[i][k] * a[i][k];
                }
                const float f = a[i][l];
                g = -WithSignOf(std::sqrt(s), f);
                const float h = f * g - s;
                a[i][l] = f - g;
                // super[l..n] holds the scaled reflection vector until the next row overwrites it.
                for (int k = l; k <= n; ++k) super[k] = a[i][k] / h;
                for (int j = l; j <= m; ++j) {
                    float dot = 0.0f;
                    for (int k = l; k <= n; ++k) dot += a[j][k] * a[i][k];
                    for (int k = l; k <= n; ++k) a[j][k] += dot * super[k];
                }
                for (int k = l; k <= n; ++k) a[i][k] *= scale;
            }
        }
        norm = std::max(norm, std::fabs(w[i]) + std::fabs(super[i]));
    }
    return norm;
}

// Builds V from the right reflections kept in the rows of a.
void AccumulateRight(float** a, int n, float** v, const float* super)
{
    float g = 0.0f;
    for (int i = n; i >= 1; --i) {
        const int l = i + 1;
        if (i < n) {
            if (g != 0.0f) {
                // Two divisions rather than one product, against underflow.
                for (int j = l; j <= n; ++j) v[j][i] = (a[i][j] / a[i][l]) / g;
                for (int j = l; j <= n; ++j) {
                    float dot = 0.0f;
                    for (int k = l; k <= n; ++k) dot += a[i][k] * v[k][j];
                    for (int k = l; k <= n; ++k) v[k][j] += dot * v[k][i];
                }
            }
            for (int j = l; j <= n; ++j) {
                v[i][j] = 0.0f;
                v[j][i] = 0.0f;
            }
        }
        v[i][i] = 1.0f;
        g = super[i];
    }
}

// Builds U in place of a from the left reflections kept in its columns.
void AccumulateLeft(float** a, int m, int n, const float* w)
{
    for (int i = std::min(m, n); i >= 1; --i) {
        const int l = i + 1;
        for (int j = l; j <= n; ++j) a[i][j] = 0.0f;
        if (w[i] != 0.0f) {
            const float inverse = 1.0f / w[i];
            for (int j = l; j <= n; ++j) {
                float dot = 0.0f;
                for (int k = l; k <= m; ++k) dot += a[k][i] * a[k][j];
                const float factor = (dot / a[i][i]) * inverse;
                for (int k = i; k <= m; ++k) a[k][j] += factor * a[k][i];
            }
            for (int j = i; j <= m; ++j) a[j][i] *= inverse;
        } else {
            for (int j = i; j <= m; ++j) a[j][i] = 0.0f;
        }
        a[i][i] += 1.0f;
    }
}

// w[l-1] is negligible: rotations from the left remove super[l..k] row by row so that the
// block l..k splits off.
void CancelSuperdiagonal(float** a, int m, int l, int k, float* w, float* super, float norm)
{
    const int above = l - 1;
    float c = 0.0f;
    float s = 1.0f;
    for (int i = l; i <= k; ++i) {
        const float f = s * super[i];
        super[i] = c * super[i];
        if (Negligible(f, norm)) break;
        const float g = w[i];
        const float h = pythag(f, g);
        w[i] = h;
        c = g / h;
        s = -f / h;
        RotateColumns(a, m, above, i, c, s);
    }
}

// One implicitly shifted QR sweep over the block l..k, shift from its trailing 2×2 minor.
void QrSweep(float** a, int m, int n, float** v, int l, int k, float* w, float* super)
{
    const float zk = w[k];
    float x = w[l];
    float y = w[k - 1];
    float g = super[k - 1];
    float h = super[k];
    float f = ((y - zk) * (y + zk) + (g - h) * (g + h)) / (2.0f * h * y);
    g = pythag(f, 1.0f);
    f = ((x - zk) * (x + zk) + h * ((y / (f + WithSignOf(g, f))) - h)) / x;

    float c = 1.0f;
    float s = 1.0f;
    for (int j = l; j < k; ++j) {
        const int i = j + 1;
        g = super[i];
        y = w[i];
        h = s * g;
        g = c * g;
        float z = pythag(f, h);
        super[j] = z;
        c = f / z;
        s = h / z;
        f = x * c + g * s;
        g = g * c - x * s;
        h = y * s;
        y *= c;
        RotateColumns(v, n, j, i, c, s);
        z = pythag(f, h);
        w[j] = z;
        if (z != 0.0f) {
            c = f / z;
            s = h / z;
        }
        f = c * g + s * y;
        x = c * y - s * g;
        RotateColumns(a, m, j, i, c, s);
    }
    super[l] = 0.0f;
    super[k] = f;
    w[k] = x;
}

} // namespace

float pythag(float a, float b)
{
    const float absA = std::fabs(a);
    const float absB = std::fabs(b);
    if (absA > absB) {
        const float ratio = absB / absA;
        return absA * std::sqrt(1.0f + ratio * ratio);
    }
    if (absB == 0.0f) return 0.0f;
    const float ratio = absA / absB;
    return absB * std::sqrt(1.0f + ratio * ratio);
}

void svdcmp(float** a, int m, int n, float* w, float** v, const NumericReporter& reporter)
{
    OwnedVector super(1, n, reporter);
    if (!super) return;

    const float norm = Bidiagonalise(a, m, n, w, super.get());
    AccumulateRight(a, n, v, super.get());
    AccumulateLeft(a, m, n, w);

    for (int k = n; k >= 1; --k) {
        for (int sweep = 1; sweep <= kMaxSweepsPerValue; ++sweep) {
            // Look upwards for a negligible superdiagonal element (the block l..k splits off)
            // or a negligible diagonal element above it (cancel first). super[1] is zero by
            // construction, so l = 1 always ends the search, even when NaNs spoil the tests.
            int l = k;
            bool cancel = true;
            for (; l >= 1; --l) {
                if (l == 1 || Negligible(super[l], norm)) {
                    cancel = false;
                    break;
                }
                if (Negligible(w[l - 1], norm)) break;
            }
            if (cancel) CancelSuperdiagonal(a, m, l, k, w, super.get(), norm);

            if (l == k) {
                // Converged; singular values are made non-negative.
                if (w[k] < 0.0f) {
                    w[k] = -w[k];
                    for (int j = 1; j <= n; ++j) v[j][k] = -v[j][k];
                }
                break;
            }
            if (sweep == kMaxSweepsPerValue) reporter.Show(NumericEvent::SvdcmpNoConvergence);
            QrSweep(a, m, n, v, l, k, w, super.get());
        }
    }
}

} // namespace ba::numeric
