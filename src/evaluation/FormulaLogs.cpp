#include "evaluation/FormulaLogs.h"

#include "evaluation/FormulaEvaluation.h"
#include "evaluation/FormulaParser.h"
#include "model/BoreAnalystDoc.h"
#include "model/DocumentChanges.h"
#include "model/LineTrace.h"
#include "model/TraceProperties.h"

#include <memory>
#include <utility>
#include <vector>

namespace ba {
namespace {

std::string Trimmed(std::string_view text)
{
    const auto first = text.find_first_not_of(" \t");
    if (first == std::string_view::npos) return {};
    return std::string(text.substr(first, text.find_last_not_of(" \t") - first + 1));
}

} // namespace

CLineTrace* CFormulaLogs::OnOk(CBoreAnalystDoc& doc, IMessageSink& sink)
{
    std::string name = Trimmed(outputName);
    if (name.empty()) {
        sink.Warning(std::string(kEmptyTraceNameMessage));
        return nullptr;
    }
    std::unique_ptr<CLineTrace> trace = ComputeFormulaLog(doc, formula, name, Trimmed(outputUnits), sink);
    if (!trace) return nullptr;
    CLineTrace* added = trace.get();
    std::vector<std::unique_ptr<CTrace>> traces;
    traces.push_back(std::move(trace));
    doc.Apply(MakeAddTracesChange("Formula Log " + name, std::move(traces)));
    return added;
}

bool CFormulaLogs::OnSaveModel(CFormulaLogRepository& models, IMessageSink& sink)
{
    FormulaLogRecord record;
    record.name = modelName;
    record.logName = outputName;
    record.formula = formula;
    record.description = modelDescription;
    return models.AddNewNamed(record, kModelNameTexts, sink, [](const FormulaLogRecord& r, IMessageSink& s) {
        return ParseFormula(r.formula, s).has_value();
    });
}

bool CFormulaLogs::OnLoadModel(const CFormulaLogRepository& models, std::string_view name, IMessageSink& sink)
{
    const FormulaLogRecord* record = name.empty() ? nullptr : models.FindByName(name);
    if (record == nullptr) {
        sink.Warning(std::string(kNoFormulaModelSelectedMessage));
        return false;
    }
    formula = record->formula;
    outputName = record->logName;
    modelName = record->name;
    modelDescription = record->description;
    return true;
}

} // namespace ba
