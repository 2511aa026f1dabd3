#pragma once
// What the common-logs dialog does, without a window: the user picks an equation, up to
// three input line traces, types coefficients or has some computed from ground truth,
// loads or saves a model in the repository, and OK derives a new line trace. The desktop
// dialog shows this state and forwards its buttons here; every refusal is a warning to the
// sink and leaves the document and the repository as they were.

#include "base/MessageSink.h"
#include "evaluation/CoefficientFit.h"
#include "evaluation/EquationFormulas.h"
#include "repository/RepositoryRecordset.h"

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ba {

class CBoreAnalystDoc;
class CLineTrace;

inline constexpr std::string_view kNoEquationSelectedMessage = "Error: No equation selected.";
inline constexpr std::string_view kNotEnoughLogsMessage = "Error: Not enough logs selected.";
inline constexpr std::string_view kNoModelSelectedMessage = "Error: No model selected.";
inline constexpr std::string_view kLogDataNotAvailableMessage = "Error: Log data not available at all specified depths.";
inline constexpr std::string_view kCouldNotFindCoefficientsMessage =
    "Error: Could not find coefficients.  Try different ground truth values.";
// "Error: %s values must be unique." for the quantity named.
std::string ValuesMustBeUniqueMessage(std::string_view quantity);
inline constexpr std::string_view kDepthQuantity = "Depth";
inline constexpr std::string_view kGroundTruthQuantity = "Ground truth";

// The number typed into one of the dialog's fields (a coefficient, a ground-truth depth or
// value): decimal text with '.' as separator, blanks around it ignored. Anything else (an
// empty field, stray characters, a value outside the float range, inf or nan) is refused
// with "Error: <field> must be a number; "<text>" is not." rather than read as zero: a
// silently zeroed coefficient would give a wrong log without any sign of it.
std::optional<float> ReadFieldNumber(std::string_view text, std::string_view field, IMessageSink& sink);
// The shortest text that reads back as the same float, for showing computed coefficients.
std::string FieldNumberText(float value);

// One row of the ground-truth entry: a depth in the document's display unit and the value
// the derived log should have there.
struct GroundTruthEntry {
    float depth = 0.0f;
    float value = 0.0f;
};

class CCommonLogs {
public:
    // The three log lists offer LineTraceNames(doc) (model/DerivedLineTraces.h).

    int equation = -1;                                    // -1: none selected
    std::array<std::string, kEquationLogSlots> logs;      // empty: no log in that slot
    EquationCoefficients coefficients{};                  // in slot order
    CoefficientMask calculate{};                          // "Calculate from ground truth"
    std::vector<GroundTruthEntry> groundTruth;
    std::string outputName;                               // empty: the equation's output kind
    std::string modelName;
    std::string modelDescription;

    // The fit alone: checks the equation, the logs and the ground truth, reads the logs at
    // the ground-truth depths and writes the computed values into `coefficients`. True
    // when nothing was ticked (nothing to do) or the fit succeeded.
    bool OnCalculate(const CBoreAnalystDoc& doc, IMessageSink& sink);

    // The OK button: the checks, the fit when any coefficient is ticked, then one new line
    // trace appended to the document and filled. Returns the new trace, or null when a
    // check stopped the run (the document is unchanged then).
    CLineTrace* OnOk(CBoreAnalystDoc& doc, IMessageSink& sink);

    // Saves equation, coefficients, name and description as a new EquationModels record.
    bool OnSaveModel(CEquationModelsRepository& models, IMessageSink& sink);
    // Selecting a stored model loads its equation, coefficients, name and description.
    // An empty name means no model is selected.
    bool OnLoadModel(const CEquationModelsRepository& models, std::string_view name, IMessageSink& sink);

private:
    bool CheckEquationAndLogs(const CBoreAnalystDoc& doc, std::array<const CLineTrace*, kEquationLogSlots>& traces,
                              IMessageSink& sink) const;
    bool Fit(const std::array<const CLineTrace*, kEquationLogSlots>& traces, IMessageSink& sink);
};

// Fills `out` (its depth unit and vertical scale already set) with one sample per sample
// of the first input log, replacing what it held: the equation applied to the logs'
// values at the same sample index, at that sample's depth (converted to metres when the
// output's depth unit is not metres).
void DeriveEquationLog(int equation, const std::array<const CLineTrace*, kEquationLogSlots>& logs,
                       const EquationCoefficients& coefficients, CLineTrace& out);

} // namespace ba
