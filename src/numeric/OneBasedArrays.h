#pragma once
// Single-precision vectors and matrices addressed from an arbitrary lower bound, normally 1,
// in the layout the numerical routines expect:
// - vector v[nl..nh]: one block of nh - nl + 2 elements (a spare in front) and a handle offset
//   so that v[nl] is the first element in use;
// - matrix m[nrl..nrh][ncl..nch]: nrh - nrl + 2 row pointers over one contiguous block of
//   rows·columns + 1 floats, each row pointer offset for the column bound.
// Whoever allocates frees, with the matching routine and the same bounds. A failed allocation
// (bounds that describe a negative size, or more than memory holds) shows its message and
// returns nullptr; the routines of this toolkit test for that and give up the operation.

#include "numeric/NumericMessages.h"

#include <cstdint>

namespace ba::numeric {

float* vector(int nl, int nh, const NumericReporter& reporter);
std::int32_t* ivector(int nl, int nh, const NumericReporter& reporter);
float** matrix(int nrl, int nrh, int ncl, int nch, const NumericReporter& reporter);

// Null handles are ignored.
void free_vector(float* v, int nl, int nh);
void free_ivector(std::int32_t* v, int nl, int nh);
void free_matrix(float** m, int nrl, int nrh, int ncl, int nch);

// Owners for scratch space, so that every exit path of a routine releases what it allocated.
class OwnedVector {
public:
    OwnedVector(int nl, int nh, const NumericReporter& reporter)
        : m_nl(nl), m_nh(nh), m_v(vector(nl, nh, reporter)) {}
    ~OwnedVector() { free_vector(m_v, m_nl, m_nh); }
    OwnedVector(const OwnedVector&) = delete;
    OwnedVector& operator=(const OwnedVector&) = delete;

    float* get() const { return m_v; }
    explicit operator bool() const { return m_v != nullptr; }
    float& operator[](int i) const { return m_v[i]; }

private:
    int m_nl;
    int m_nh;
    float* m_v;
};

class OwnedIntVector {
public:
    OwnedIntVector(int nl, int nh, const NumericReporter& reporter)
        : m_nl(nl), m_nh(nh), m_v(ivector(nl, nh, reporter)) {}
    ~OwnedIntVector() { free_ivector(m_v, m_nl, m_nh); }
    OwnedIntVector(const OwnedIntVector&) = delete;
    OwnedIntVector& operator=(const OwnedIntVector&) = delete;

    std::int32_t* get() const { return m_v; }
    explicit operator bool() const { return m_v != nullptr; }
    std::int32_t& operator[](int i) const { return m_v[i]; }

private:
    int m_nl;
    int m_nh;
    std::int32_t* m_v;
};

class OwnedMatrix {
public:
    OwnedMatrix(int nrl, int nrh, int ncl, int nch, const NumericReporter& reporter)
        : m_nrl(nrl), m_nrh(nrh), m_ncl(ncl), m_nch(nch), m_m(matrix(nrl, nrh, ncl, nch, reporter)) {}
    ~OwnedMatrix() { free_matrix(m_m, m_nrl, m_nrh, m_ncl, m_nch); }
    OwnedMatrix(const OwnedMatrix&) = delete;
    OwnedMatrix& operator=(const OwnedMatrix&) = delete;

    float** get() const { return m_m; }
    explicit operator bool() const { return m_m != nullptr; }
    float* operator[](int row) const { return m_m[row]; }

private:
    int m_nrl;
    int m_nrh;
    int m_ncl;
    int m_nch;
    float** m_m;
};

} // namespace ba::numeric
