#pragma once
// What the unit conversion dialog does, without a window: it is given the document's line
// traces, the user picks one (which classifies its unit label and offers the units of its
// type) and a new unit, and OK converts the trace's values in place and relabels it. The
// desktop dialog shows this state and forwards its controls' events here.

#include "base/MessageSink.h"
#include "units/ConversionFactors.h"
#include "units/UnitTypes.h"

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace ba {

class CBoreAnalystDoc;
class CLineTrace;

inline constexpr std::string_view kSelectTraceMessage = "Error: You must select a trace.";
inline constexpr std::string_view kSelectNewUnitsMessage = "Error: You must select the new units.";
inline constexpr std::string_view kTraceNeedsUnitsMessage = "Error: The selected trace must have units assigned.";

class CUnitConversion {
public:
    CUnitConversion();

    // Appends one entry of the trace list: a line trace's name and unit label, in
    // document order.
    void AddTrace(std::string name, std::string unitLabel);
    // AddTrace for every line trace of `doc`, in document order.
    void AddLineTracesOf(const CBoreAnalystDoc& doc);

    std::size_t TraceCount() const { return m_traceNames.size(); }
    const std::string& TraceName(std::size_t i) const { return m_traceNames.at(i); }
    const std::string& TraceUnitLabel(std::size_t i) const { return m_traceUnitLabels.at(i); }

    // Selects entry `index` of the trace list: classifies its unit label, offers the
    // units of its type, clears the new-unit selection and updates the status text.
    // Returns false, changing nothing, when there is no such entry.
    bool SelectTrace(std::size_t index);
    std::optional<std::size_t> SelectedTrace() const { return m_selectedTrace; }

    UnitType CurrentType() const { return m_currentType; }
    std::string_view CurrentUnit() const { return m_currentUnit; }
    // The units offered as new units for the selected trace (empty before a selection and
    // for an unrecognised label).
    std::span<const std::string_view> NewUnitChoices() const { return m_newUnitChoices; }

    // Selects the offered unit spelled exactly `unit`. Any other text selects nothing
    // (the new-unit list offers only its own entries) and returns false.
    bool SelectNewUnit(std::string_view unit);
    // Selects entry `index` of the offered units; past the end it selects nothing.
    bool SelectNewUnitAt(std::size_t index);
    // The selected new unit, or "" when none is selected.
    std::string_view SelectedNewUnit() const;

    // "Units: ft; Type: Length"; "Units: Unknown; Type: Unknown" before any selection.
    const std::string& StatusText() const { return m_statusText; }

    // The conversion OK applies. It is set by each OK that gets past the checks and kept
    // when the next OK finds no factor for its pair of units.
    ConversionFactor Conversion() const { return m_conversion; }

    // The OK button: checks the selections (reporting every failed check to `sink`),
    // converts the selected trace of `doc` in place, relabels it with the new unit, marks
    // the document modified and updates its views. Returns true when the dialog closes,
    // false when it stays open.
    bool OnOk(CBoreAnalystDoc& doc, IMessageSink& sink);

private:
    std::vector<std::string> m_traceNames;
    std::vector<std::string> m_traceUnitLabels;
    std::optional<std::size_t> m_selectedTrace;
    UnitType m_currentType = UnitType::Unknown;
    std::string_view m_currentUnit = kUnknownUnit;
    std::span<const std::string_view> m_newUnitChoices;
    std::optional<std::size_t> m_selectedNewUnit;
    std::string m_statusText;
    ConversionFactor m_conversion;
};

// The `position`-th line trace of `doc` counting line traces only, or null.
CLineTrace* NthLineTrace(CBoreAnalystDoc& doc, std::size_t position);

} // namespace ba
