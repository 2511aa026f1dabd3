#include "evaluation/CommonLogs.h"

#include "model/BoreAnalystDoc.h"
#include "model/DerivedLineTraces.h"
#include "model/DocumentChanges.h"
#include "model/LineTrace.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <memory>

namespace ba {

namespace {

// Not among the program's own messages: the desktop dialog keeps one ground-truth row per
// ticked coefficient, so this is met only when the choices come from elsewhere (the
// command line).
constexpr std::string_view kGroundTruthCountMessage =
    "Error: Give one ground truth depth and value for each coefficient to calculate.";

// The ticks that count: those of coefficients the equation uses.
CoefficientMask UsedTicks(int equation, const CoefficientMask& calculate)
{
    CoefficientMask used{};
    const std::size_t count = EquationAt(equation).coefficientCount;
    for (std::size_t slot = 0; slot < count; ++slot) used[slot] = calculate[slot];
    return used;
}

template <class Project>
bool AllDifferent(const std::vector<GroundTruthEntry>& entries, Project project)
{
    for (std::size_t i = 0; i < entries.size(); ++i) {
        for (std::size_t j = i + 1; j < entries.size(); ++j) {
            if (project(entries[i]) == project(entries[j])) return false;
        }
    }
    return true;
}

// A scale that shows the whole derived curve: its smallest and largest finite values.
void ScaleToValues(CLineTrace& trace)
{
    float lo = 0.0f;
    float hi = 0.0f;
    bool any = false;
    for (const float v : trace.Values().Items()) {
        if (IsNullSample(v) || !std::isfinite(v)) continue;
        lo = any ? std::min(lo, v) : v;
        hi = any ? std::max(hi, v) : v;
        any = true;
    }
    if (!any || lo == hi) {
        lo = any ? lo - 0.5f : 0.0f;
        hi = any ? hi + 0.5f : 1.0f;
    }
    trace.SetScale(lo, hi);
}

} // namespace

std::optional<float> ReadFieldNumber(std::string_view text, std::string_view field, IMessageSink& sink)
{
    std::string_view number = text;
    while (!number.empty() && (number.front() == ' ' || number.front() == '\t')) number.remove_prefix(1);
    while (!number.empty() && (number.back() == ' ' || number.back() == '\t')) number.remove_suffix(1);
    if (number.size() > 1 && number.front() == '+' && number[1] != '-') number.remove_prefix(1);
    float value = 0.0f;
    const auto [end, error] = std::from_chars(number.data(), number.data() + number.size(), value);
    if (!number.empty() && error == std::errc() && end == number.data() + number.size() && std::isfinite(value)) {
        return value;
    }
    sink.Warning("Error: " + std::string(field) + " must be a number; \"" + std::string(text) + "\" is not.");
    return std::nullopt;
}

std::string FieldNumberText(float value)
{
    char buffer[32];
    const auto [end, error] = std::to_chars(buffer, buffer + sizeof buffer, value);
    return error == std::errc() ? std::string(buffer, end) : std::to_string(value);
}

std::string ValuesMustBeUniqueMessage(std::string_view quantity)
{
    return "Error: " + std::string(quantity) + " values must be unique.";
}

bool CCommonLogs::CheckEquationAndLogs(const CBoreAnalystDoc& doc,
                                       std::array<const CLineTrace*, kEquationLogSlots>& traces,
                                       IMessageSink& sink) const
{
    if (!IsEquationIndex(equation)) {
        sink.Warning(std::string(kNoEquationSelectedMessage));
        return false;
    }
    const std::size_t needed = EquationAt(equation).logCount;
    for (std::size_t slot = 0; slot < needed; ++slot) {
        if (logs[slot].empty()) {
            sink.Warning(std::string(kNotEnoughLogsMessage));
            return false;
        }
    }
    // The lists offer only the document's line traces; a name that is not one of them
    // (possible when the choices come from elsewhere) stops the run.
    traces.fill(nullptr);
    for (std::size_t slot = 0; slot < needed; ++slot) {
        traces[slot] = FindLineTrace(doc, logs[slot]);
        if (traces[slot] == nullptr) {
            sink.Warning(NoLineTraceMessage(logs[slot]));
            return false;
        }
    }
    return true;
}

bool CCommonLogs::Fit(const std::array<const CLineTrace*, kEquationLogSlots>& traces, IMessageSink& sink)
{
    const CoefficientMask unknown = UsedTicks(equation, calculate);
    const auto unknownCount = static_cast<std::size_t>(std::count(unknown.begin(), unknown.end(), true));
    if (unknownCount == 0) return true;
    if (groundTruth.size() != unknownCount) {
        sink.Warning(std::string(kGroundTruthCountMessage));
        return false;
    }
    if (!AllDifferent(groundTruth, [](const GroundTruthEntry& e) { return e.depth; })) {
        sink.Warning(ValuesMustBeUniqueMessage(kDepthQuantity));
        return false;
    }
    // Two equal targets at different depths make the linear equations' systems
    // contradictory, so repeated values are refused like repeated depths.
    if (!AllDifferent(groundTruth, [](const GroundTruthEntry& e) { return e.value; })) {
        sink.Warning(ValuesMustBeUniqueMessage(kGroundTruthQuantity));
        return false;
    }
    std::vector<GroundTruthSample> points;
    points.reserve(groundTruth.size());
    for (const GroundTruthEntry& entry : groundTruth) {
        GroundTruthSample point;
        point.value = entry.value;
        for (std::size_t slot = 0; slot < kEquationLogSlots; ++slot) {
            if (traces[slot] == nullptr) continue;
            point.logs[slot] = traces[slot]->ValueAt(entry.depth);
            if (IsNullSample(point.logs[slot])) {
                sink.Warning(std::string(kLogDataNotAvailableMessage));
                return false;
            }
        }
        points.push_back(point);
    }
    const auto fitted = FitCoefficients(equation, coefficients, unknown, points, sink);
    if (!fitted) {
        sink.Warning(std::string(kCouldNotFindCoefficientsMessage));
        return false;
    }
    coefficients = *fitted;
    return true;
}

bool CCommonLogs::OnCalculate(const CBoreAnalystDoc& doc, IMessageSink& sink)
{
    std::array<const CLineTrace*, kEquationLogSlots> traces{};
    return CheckEquationAndLogs(doc, traces, sink) && Fit(traces, sink);
}

CLineTrace* CCommonLogs::OnOk(CBoreAnalystDoc& doc, IMessageSink& sink)
{
    std::array<const CLineTrace*, kEquationLogSlots> traces{};
    if (!CheckEquationAndLogs(doc, traces, sink) || !Fit(traces, sink)) return nullptr;

    const EquationDefinition& definition = EquationAt(equation);
    auto trace = MakeDerivedLineTrace(doc, 0.0f, 1.0f,
                                      outputName.empty() ? std::string(definition.outputName) : outputName,
                                      std::string(definition.outputUnits));
    DeriveEquationLog(equation, traces, coefficients, *trace);
    ScaleToValues(*trace);
    auto& added = *trace;
    std::vector<std::unique_ptr<CTrace>> derived;
    derived.push_back(std::move(trace));
    doc.Apply(MakeAddTracesChange("Common Log " + added.Name(), std::move(derived)));
    return &added;
}

bool CCommonLogs::OnSaveModel(CEquationModelsRepository& models, IMessageSink& sink)
{
    if (!IsEquationIndex(equation)) {
        sink.Warning(std::string(kNoEquationSelectedMessage));
        return false;
    }
    EquationModelRecord record;
    record.name = modelName;
    record.description = modelDescription;
    record.coef = coefficients;
    record.formula = equation;
    return models.AddNewNamed(record, kModelNameTexts, sink);
}

bool CCommonLogs::OnLoadModel(const CEquationModelsRepository& models, std::string_view name, IMessageSink& sink)
{
    const EquationModelRecord* record = name.empty() ? nullptr : models.FindByName(name);
    if (record == nullptr) {
        sink.Warning(std::string(kNoModelSelectedMessage));
        return false;
    }
    // A record written elsewhere may hold a number that is no equation of the list.
    if (!IsEquationIndex(record->formula)) {
        sink.Warning("Error: Model \"" + record->name + "\" names equation " + std::to_string(record->formula) +
                     ", which is not in the list.");
        return false;
    }
    equation = record->formula;
    coefficients = record->coef;
    modelName = record->name;
    modelDescription = record->description;
    return true;
}

void DeriveEquationLog(int equation, const std::array<const CLineTrace*, kEquationLogSlots>& logs,
                       const EquationCoefficients& coefficients, CLineTrace& out)
{
    const CLineTrace& first = *logs.at(0);
    const std::size_t n = first.SampleCount();
    auto values = [](const CLineTrace* trace) {
        return trace != nullptr ? trace->Values().Items() : std::span<const float>{};
    };
    // Log 1 may hold fewer values than depths in a damaged document; those samples are null.
    std::span<const float> l1 = values(&first);
    std::vector<float> paddedL1;
    if (l1.size() < n) {
        paddedL1.assign(l1.begin(), l1.end());
        paddedL1.resize(n, kNullValue);
        l1 = paddedL1;
    }
    l1 = l1.first(n);

    // Each depth is derived from log 1's display depth. Metres to metres is the stored
    // depth itself, so it is copied as it stands.
    const std::span<const float> firstStored = first.StoredDepths().Items();
    if (out.DepthUnit() == kDepthMetres && first.DepthUnit() == kDepthMetres) {
        out.StoredDepths().Assign(firstStored.first(n));
    } else {
        std::vector<float> stored(n);
        for (std::size_t i = 0; i < n; ++i) stored[i] = DerivedStoredDepth(first.Depth(i), out.DepthUnit());
        out.StoredDepths().Assign(stored);
    }
    out.Values().Clear();
    out.Values().SetSize(n);
    EvaluateEquation(equation, l1, values(logs[1]), values(logs[2]), coefficients,
                     std::span<float>(out.Values().Data(), n));
}

} // namespace ba
