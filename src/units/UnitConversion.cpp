#include "units/UnitConversion.h"

#include "model/BoreAnalystDoc.h"
#include "model/DocumentChanges.h"
#include "model/LineTrace.h"
#include "units/UnitVocabulary.h"

#include <algorithm>

namespace ba {
namespace {

std::string StatusTextFor(std::string_view unit, UnitType type)
{
    std::string text = "Units: ";
    text.append(unit).append("; Type: ").append(UnitTypeName(type));
    return text;
}

std::size_t CountLineTraces(const CBoreAnalystDoc& doc)
{
    std::size_t count = 0;
    for (std::size_t i = 0; i < doc.TraceCount(); ++i) {
        if (dynamic_cast<const CLineTrace*>(&doc.Trace(i)) != nullptr) ++count;
    }
    return count;
}

} // namespace

CUnitConversion::CUnitConversion() : m_statusText(StatusTextFor(kUnknownUnit, UnitType::Unknown)) {}

void CUnitConversion::AddTrace(std::string name, std::string unitLabel)
{
    m_traceNames.push_back(std::move(name));
    m_traceUnitLabels.push_back(std::move(unitLabel));
}

void CUnitConversion::AddLineTracesOf(const CBoreAnalystDoc& doc)
{
    for (std::size_t i = 0; i < doc.TraceCount(); ++i) {
        const CTrace& trace = doc.Trace(i);
        if (dynamic_cast<const CLineTrace*>(&trace) != nullptr) AddTrace(trace.Name(), trace.Units());
    }
}

bool CUnitConversion::SelectTrace(std::size_t index)
{
    if (index >= m_traceNames.size()) return false;
    const UnitClassification unit = ClassifyUnits(m_traceUnitLabels[index]);
    m_selectedTrace = index;
    m_currentType = unit.type;
    m_currentUnit = unit.canonical;
    m_newUnitChoices = OfferedUnits(unit.type);
    m_selectedNewUnit.reset();
    m_statusText = StatusTextFor(unit.canonical, unit.type);
    return true;
}

bool CUnitConversion::SelectNewUnit(std::string_view unit)
{
    const auto found = std::find(m_newUnitChoices.begin(), m_newUnitChoices.end(), unit);
    return SelectNewUnitAt(static_cast<std::size_t>(found - m_newUnitChoices.begin()));
}

bool CUnitConversion::SelectNewUnitAt(std::size_t index)
{
    if (index >= m_newUnitChoices.size()) {
        m_selectedNewUnit.reset();
        return false;
    }
    m_selectedNewUnit = index;
    return true;
}

std::string_view CUnitConversion::SelectedNewUnit() const
{
    return m_selectedNewUnit ? m_newUnitChoices[*m_selectedNewUnit] : std::string_view();
}

bool CUnitConversion::OnOk(CBoreAnalystDoc& doc, IMessageSink& sink)
{
    // Both selections are checked before stopping, so that both messages are shown.
    bool selected = true;
    if (!m_selectedTrace) {
        sink.Error(std::string(kSelectTraceMessage));
        selected = false;
    }
    if (!m_selectedNewUnit) {
        sink.Error(std::string(kSelectNewUnitsMessage));
        selected = false;
    }
    if (!selected) return false;

    const std::size_t position = *m_selectedTrace;
    // A trace without a label classifies as Unknown and is offered no new units, so the
    // check above already stops it; this one guards the conversion itself.
    if (m_traceUnitLabels[position].empty()) {
        sink.Error(std::string(kTraceNeedsUnitsMessage));
        return false;
    }

    const std::string_view newUnit = SelectedNewUnit();
    if (m_currentType == UnitType::Unknown) {
        m_conversion = ConversionFactor{};
    } else if (const auto found = FindConversion(m_currentType, m_currentUnit, newUnit)) {
        m_conversion = *found;
    }
    // A pair missing from its type's table keeps the conversion of the previous OK.

    CLineTrace* trace = NthLineTrace(doc, position);
    if (trace == nullptr) {
        const std::size_t lineTraces = CountLineTraces(doc);
        sink.Error("Error: the trace list names line trace " + std::to_string(position + 1) + " (\"" +
                   m_traceNames[position] + "\"), but the document holds " + std::to_string(lineTraces) +
                   (lineTraces == 1 ? " line trace." : " line traces."));
        return false;
    }

    // One value per sample; a damaged document may hold fewer values than depths, and any
    // values past the last depth are not samples.
    auto converted = trace->Clone();
    auto& convertedLine = static_cast<CLineTrace&>(*converted);
    CFloatArray& values = convertedLine.Values();
    const std::size_t samples = std::min(convertedLine.SampleCount(), values.Size());
    ConvertValues(std::span<float>(values.Data(), samples), m_currentType, m_conversion);
    convertedLine.SetUnits(std::string(newUnit));
    const auto index = static_cast<std::size_t>(doc.IndexOfTrace(*trace));
    doc.Apply(MakeReplaceTraceChange("Unit Conversion " + trace->Name(), index, std::move(converted)));
    // The list mirrors the document's labels.
    m_traceUnitLabels[position] = std::string(newUnit);
    return true;
}

CLineTrace* NthLineTrace(CBoreAnalystDoc& doc, std::size_t position)
{
    for (std::size_t i = 0; i < doc.TraceCount(); ++i) {
        auto* line = dynamic_cast<CLineTrace*>(&doc.Trace(i));
        if (line == nullptr) continue;
        if (position == 0) return line;
        --position;
    }
    return nullptr;
}

} // namespace ba
