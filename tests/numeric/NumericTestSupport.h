#pragma once
// Helpers for the numerical toolkit tests: 1-based arrays filled from row lists.

#include "numeric/OneBasedArrays.h"

#include <initializer_list>
#include <memory>
#include <vector>

namespace ba::numeric::testing {

using Rows = std::vector<std::vector<double>>;

inline std::unique_ptr<OwnedMatrix> MakeMatrix(const Rows& rows, const NumericReporter& reporter)
{
    const int m = static_cast<int>(rows.size());
    const int n = m == 0 ? 0 : static_cast<int>(rows.front().size());
    auto matrix = std::make_unique<OwnedMatrix>(1, m, 1, n, reporter);
    for (int i = 1; i <= m; ++i)
        for (int j = 1; j <= n; ++j) (*matrix)[i][j] = static_cast<float>(rows[i - 1][j - 1]);
    return matrix;
}

inline std::unique_ptr<OwnedVector> MakeVector(const std::vector<double>& values, const NumericReporter& reporter)
{
    auto vector = std::make_unique<OwnedVector>(1, static_cast<int>(values.size()), reporter);
    for (int i = 1; i <= static_cast<int>(values.size()); ++i) (*vector)[i] = static_cast<float>(values[i - 1]);
    return vector;
}

} // namespace ba::numeric::testing
