#pragma once
// Globally convergent Newton solver for n non-linear equations in n unknowns, with a
// forward-difference Jacobian and a backtracking line search on the merit function
// 0.5·Σ fvec_i². All vectors are 1-based single precision.
//
// The solver is an object rather than a set of free functions because the merit function
// leaves the residual vector behind for newt to read: that state lives in the object (one
// per fitting job), never in globals, so two solvers never disturb each other. The residual
// function is a std::function so that the owner can bind its own data in a lambda while the
// solver's code stays compiled once in its own file; at these problem sizes the indirect
// call costs nothing measurable.

#include "numeric/NumericMessages.h"
#include "numeric/OneBasedArrays.h"

#include <functional>
#include <memory>

namespace ba::numeric {

// Fills fvec[1..n] with the residuals of the equations at x[1..n].
using ResidualFunction = std::function<void(int n, const float* x, float* fvec)>;

class CNewtonSolver {
public:
    // Texts are those of the equation-model fitter.
    CNewtonSolver(ResidualFunction residuals, IMessageSink& sink);

    // Solves for a root starting from x[1..n], which receives the result. check is false on
    // a normal return (residuals below tolerance) and true when the solver stopped at a
    // local minimum of the merit function, on a vanished step, after the iteration limit,
    // or when the residuals became NaN (then every x is set to 0).
    void newt(float* x, int n, bool& check);

    // Forward-difference Jacobian df[1..n][1..n] at x, where fvec holds the residuals at x.
    // x is perturbed one element at a time and restored.
    void fdjac(int n, float* x, const float* fvec, float** df);

    // Evaluates the residuals at x into the object's residual vector and returns
    // 0.5·Σ fvec_i². The residual vector has the length set by newt or SetEquationCount.
    float fmin(const float* x);

    // Backtracking search along the Newton direction p from xold (merit fold, gradient g):
    // x and f receive the accepted point. check is true when the step shrank below the
    // convergence limit and x was reset to xold.
    void lnsrch(int n, const float* xold, float fold, const float* g, float* p, float* x, float& f, float stpmax,
                bool& check);

    // Allocates the residual vector for n equations (newt does this itself).
    void SetEquationCount(int n);
    // Residuals of the last fmin evaluation, fvec[1..EquationCount()]; null before any.
    const float* Residuals() const { return m_fvec ? m_fvec->get() : nullptr; }
    int EquationCount() const { return m_equationCount; }

private:
    ResidualFunction m_residuals;
    NumericReporter m_reporter;
    std::unique_ptr<OwnedVector> m_fvec;
    int m_equationCount = 0;
};

} // namespace ba::numeric
