#pragma once
// The numerical routines report trouble by message and then carry on. Each user of the
// toolkit (equation-model fitter, flowmeter inversion, principal components, spectral basis
// fit) has its own wording of the same events, so a routine is told which user it works for.

#include "base/MessageSink.h"

#include <string_view>

namespace ba::numeric {

enum class NumericVariant { EquationFitter, Flowmeter, PrincipalComponents, SpectralFit };

enum class NumericEvent {
    VectorAllocationFailed,
    IntVectorAllocationFailed,
    MatrixRowsAllocationFailed,
    MatrixBlockAllocationFailed,
    LudcmpSingular,
    LnsrchRoundoff,
    SvdcmpNoConvergence,
    GaussjPivotColumnTwice,
    GaussjZeroPivot,
    LfitNothingToFit,
    BrentTooManyIterations,
};

// The exact text that the given user shows for the event.
std::string_view NumericMessageText(NumericVariant variant, NumericEvent event);

// A sink together with the wording of one user; passed to every routine that can complain.
class NumericReporter {
public:
    NumericReporter(IMessageSink& sink, NumericVariant variant) : m_sink(&sink), m_variant(variant) {}
    void Show(NumericEvent event) const;
    NumericVariant Variant() const { return m_variant; }

private:
    IMessageSink* m_sink;
    NumericVariant m_variant;
};

} // namespace ba::numeric
