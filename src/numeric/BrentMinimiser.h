#pragma once
// One-dimensional minimisation by Brent's method: parabolic interpolation where it behaves,
// golden-section steps where it does not.

#include "numeric/NumericMessages.h"

#include <functional>

namespace ba::numeric {

// The objective is a std::function so that each user (the first-arrival pickers minimise
// different objectives) binds its own data without a global.
using Objective = std::function<float(float)>;

// Given a bracketing triplet ax, bx, cx (bx between the others, f(bx) below f(ax) and f(cx)),
// isolates a minimum to a fractional precision of about tol. xmin receives its abscissa and
// the function value there is returned. After 100 iterations the message is shown and the
// best point found so far is returned.
float brent(float ax, float bx, float cx, const Objective& f, float tol, float& xmin, const NumericReporter& reporter);

} // namespace ba::numeric
