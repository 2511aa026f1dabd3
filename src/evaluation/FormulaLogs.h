#pragma once
// What the formula-log dialog does, without a window: the user types a formula over the
// document's traces (evaluation/FormulaParser.h), names the new log and its units, loads
// or saves the formula as a model in the repository table FormulaLogs, and OK computes the
// log and adds it to the document as one change. Every refusal is a warning to the sink and
// leaves the document and the repository as they were.

#include "base/MessageSink.h"
#include "repository/RepositoryRecordset.h"

#include <string>
#include <string_view>

namespace ba {

class CBoreAnalystDoc;
class CLineTrace;

inline constexpr std::string_view kNoFormulaModelSelectedMessage = "Error: No model selected.";

class CFormulaLogs {
public:
    // The trace list offers LineTraceNames(doc) (model/DerivedLineTraces.h); a name that
    // is not a bare name goes into the formula in brackets (FormulaTraceReference in
    // evaluation/FormulaParser.h).

    std::string formula;
    std::string outputName;
    std::string outputUnits;
    std::string modelName;
    std::string modelDescription;

    // The OK button: checks the output name and the formula, computes the log and applies
    // it as the change "Formula Log <name>". Returns the new trace, or null when a check
    // stopped it (the document is unchanged then).
    CLineTrace* OnOk(CBoreAnalystDoc& doc, IMessageSink& sink);

    // Saves formula, output name, model name and description as a new FormulaLogs record:
    // the repository's name rules, then the formula must read without a syntax error.
    bool OnSaveModel(CFormulaLogRepository& models, IMessageSink& sink);
    // Selecting a stored model loads its formula, output name, name and description. An
    // empty name means no model is selected.
    bool OnLoadModel(const CFormulaLogRepository& models, std::string_view name, IMessageSink& sink);
};

} // namespace ba
