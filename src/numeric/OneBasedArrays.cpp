#include "numeric/OneBasedArrays.h"

#include <cstddef>
#include <cstdint>
#include <new>

namespace ba::numeric {

namespace {

// Elements a block needs for bounds lo..hi plus the spare in front; -1 when the bounds
// describe a negative size. Computed in 64 bits so that extreme bounds cannot wrap.
long long SpannedCount(int lo, int hi)
{
    const long long count = static_cast<long long>(hi) - static_cast<long long>(lo) + 1;
    return count < 0 ? -1 : count;
}

// Largest block we are prepared to ask for; keeps size arithmetic far from overflow.
constexpr long long kMaxElements = static_cast<long long>(PTRDIFF_MAX / 16);

template <typename T>
T* AllocateBlock(long long count)
{
    if (count < 0 || count > kMaxElements) return nullptr;
    return new (std::nothrow) T[static_cast<std::size_t>(count)]();
}

template <typename T>
T* AllocateVector(int nl, int nh, const NumericReporter& reporter, NumericEvent failure)
{
    const long long used = SpannedCount(nl, nh);
    T* block = used < 0 ? nullptr : AllocateBlock<T>(used + 1);
    if (block == nullptr) {
        reporter.Show(failure);
        return nullptr;
    }
    // The spare element sits in front, so v[nl] is block[1].
    return block + 1 - nl;
}

template <typename T>
void FreeVector(T* v, int nl)
{
    if (v != nullptr) delete[] (v + nl - 1);
}

} // namespace

float* vector(int nl, int nh, const NumericReporter& reporter)
{
    return AllocateVector<float>(nl, nh, reporter, NumericEvent::VectorAllocationFailed);
}

std::int32_t* ivector(int nl, int nh, const NumericReporter& reporter)
{
    return AllocateVector<std::int32_t>(nl, nh, reporter, NumericEvent::IntVectorAllocationFailed);
}

float** matrix(int nrl, int nrh, int ncl, int nch, const NumericReporter& reporter)
{
    const long long rows = SpannedCount(nrl, nrh);
    // The pointer array keeps room for m[nrl] even for an empty matrix: freeing reads it.
    float** pointers = rows < 0 ? nullptr : AllocateBlock<float*>((rows > 0 ? rows : 1) + 1);
    if (pointers == nullptr) {
        reporter.Show(NumericEvent::MatrixRowsAllocationFailed);
        return nullptr;
    }
    float** m = pointers + 1 - nrl;

    const long long columns = SpannedCount(ncl, nch);
    const bool sizeFits = columns >= 0 && (columns == 0 || rows <= kMaxElements / columns);
    float* block = sizeFits ? AllocateBlock<float>(rows * columns + 1) : nullptr;
    if (block == nullptr) {
        reporter.Show(NumericEvent::MatrixBlockAllocationFailed);
        delete[] pointers;
        return nullptr;
    }
    m[nrl] = block + 1 - ncl;
    for (int i = nrl + 1; i <= nrh; ++i) m[i] = m[i - 1] + columns;
    return m;
}

void free_vector(float* v, int nl, int /*nh*/)
{
    FreeVector(v, nl);
}

void free_ivector(std::int32_t* v, int nl, int /*nh*/)
{
    FreeVector(v, nl);
}

void free_matrix(float** m, int nrl, int /*nrh*/, int ncl, int /*nch*/)
{
    if (m == nullptr) return;
    // The block first, then the row pointers.
    delete[] (m[nrl] + ncl - 1);
    delete[] (m + nrl - 1);
}

} // namespace ba::numeric
