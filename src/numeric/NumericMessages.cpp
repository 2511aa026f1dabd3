#include "numeric/NumericMessages.h"

#include <string>

namespace ba::numeric {

namespace {

// One row per user. Where a user never meets an event with its own routine, it shares the
// routine (and so the text) of the user whose routine it calls: the flowmeter inversion and
// principal components allocate float vectors through the fitter's routine, every user
// solves LU forms through the same lubksb and least squares through the spectral routines.
struct VariantTexts {
    std::string_view vector;
    std::string_view ivector;
    std::string_view matrixRows;
    std::string_view matrixBlock;
    std::string_view ludcmp;
};

constexpr VariantTexts kFitterTexts{
    "Error: allocation failure in vector()", "Error: allocation failure in ivector()",
    "Error: allocation failure 1 in matrix()", "Error: allocation failure 2 in matrix()",
    "Error: Singular matrix in routine ludcmp"};
constexpr VariantTexts kPrincipalComponentTexts{
    "Error: allocation failure in vector()", "Error: Allocation failure in ivector().",
    "Error: allocation failure 1 in matrix()", "Error: allocation failure 2 in matrix()",
    "Error: Singular matrix in routine ludcmp."};
constexpr VariantTexts kSpectralTexts{
    "allocation failure in vector()", "allocation failure in ivector()", "allocation failure 1 in matrix()",
    "allocation failure 2 in matrix()", "Error: Singular matrix in routine ludcmp"};

const VariantTexts& TextsOf(NumericVariant variant)
{
    switch (variant) {
    case NumericVariant::PrincipalComponents: return kPrincipalComponentTexts;
    case NumericVariant::SpectralFit: return kSpectralTexts;
    case NumericVariant::EquationFitter:
    case NumericVariant::Flowmeter: break;
    }
    return kFitterTexts;
}

} // namespace

std::string_view NumericMessageText(NumericVariant variant, NumericEvent event)
{
    const VariantTexts& texts = TextsOf(variant);
    switch (event) {
    case NumericEvent::VectorAllocationFailed: return texts.vector;
    case NumericEvent::IntVectorAllocationFailed: return texts.ivector;
    case NumericEvent::MatrixRowsAllocationFailed: return texts.matrixRows;
    case NumericEvent::MatrixBlockAllocationFailed: return texts.matrixBlock;
    case NumericEvent::LudcmpSingular: return texts.ludcmp;
    case NumericEvent::LnsrchRoundoff: return "Error: Roundoff problem in lnsrch.";
    case NumericEvent::SvdcmpNoConvergence: return "Error: No convergence in 30 svdcmp iterations.";
    case NumericEvent::GaussjPivotColumnTwice: return "gaussj: Singular Matrix-1";
    case NumericEvent::GaussjZeroPivot: return "gaussj: Singular Matrix-2";
    case NumericEvent::LfitNothingToFit: return "lfit: no parameters to be fitted";
    case NumericEvent::BrentTooManyIterations: return "Too many iterations in brent";
    }
    return "Error: unknown numerical failure";
}

void NumericReporter::Show(NumericEvent event) const
{
    m_sink->Error(std::string(NumericMessageText(m_variant, event)));
}

} // namespace ba::numeric
