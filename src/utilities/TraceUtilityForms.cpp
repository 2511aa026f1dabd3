#include "utilities/TraceUtilityForms.h"

#include "base/Cp1252.h"
#include "evaluation/CommonLogs.h"
#include "model/Archive.h"
#include "utilities/ClipTrace.h"
#include "utilities/CreateTrace.h"
#include "utilities/CutTrace.h"
#include "utilities/DepthShift.h"
#include "utilities/DespikeTrace.h"
#include "utilities/EditTrace.h"
#include "utilities/FilterTrace.h"
#include "utilities/Resample.h"
#include "utilities/Splice.h"
#include "utilities/TraceDepths.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cmath>
#include <string_view>
#include <system_error>

namespace ba {
namespace {

// The fields of each form, in the order they are shown; the form and its reader both
// address them by these names.
namespace create {
enum : std::size_t { kName, kUnits, kTop, kBottom, kStep, kSource, kConstant, kRampStart, kRampEnd, kFormula };
}
namespace edit {
enum : std::size_t { kTrace, kTop, kBottom, kAction, kValue };
}
namespace shift {
enum : std::size_t { kTrace, kMode, kOffset, kTies, kNewName };
}
namespace resample {
enum : std::size_t { kTrace, kStep, kMethod, kTop, kBottom, kNewName };
}
namespace filter {
enum : std::size_t { kTrace, kKind, kWindow, kNewName };
}
namespace despike {
enum : std::size_t { kTrace, kWindow, kThreshold, kNewName };
}
namespace clip {
enum : std::size_t { kTrace, kMinimum, kMaximum, kToNull, kNewName };
}
namespace cut {
enum : std::size_t { kTrace, kTop, kBottom, kMode, kNewName };
}
namespace splice {
enum : std::size_t { kFirst, kSecond, kOverlap, kName };
}

// The choices of the Choice fields, in the order of the enumerations they stand for.
const std::vector<std::string> kCreateSources = {"Constant", "Ramp", "Formula"};
const std::vector<std::string> kEditActions = {"Set to a value", "Set to null", "Interpolate across",
                                               "Delete the samples"};
const std::vector<std::string> kShiftModes = {"A constant", "Tie points"};
const std::vector<std::string> kResampleMethods = {"Automatic", "Linear", "Block average", "Nearest"};
const std::vector<std::string> kFilterKinds = {"Moving average", "Triangular average", "Median"};
const std::vector<std::string> kCutModes = {"Keep the interval", "Remove the interval"};
const std::vector<std::string> kSpliceOverlaps = {"From the first trace", "From the second trace",
                                                  "Average of both"};

constexpr std::string_view kNewNamePlaceholder = "empty: the result replaces the trace";

std::string_view TrimBlanks(std::string_view text)
{
    while (!text.empty() && (text.front() == ' ' || text.front() == '\t')) text.remove_prefix(1);
    while (!text.empty() && (text.back() == ' ' || text.back() == '\t')) text.remove_suffix(1);
    return text;
}

// A decimal number to double precision, read as ReadFieldNumber reads a float: a depth or
// a step keeps every digit typed, so a step of 0.1 divides a range as finely as the
// utilities can use it.
std::optional<double> ParseDouble(std::string_view text)
{
    std::string_view number = TrimBlanks(text);
    if (number.size() > 1 && number.front() == '+' && number[1] != '-') number.remove_prefix(1);
    double value = 0.0;
    const auto [end, error] = std::from_chars(number.data(), number.data() + number.size(), value);
    if (number.empty() || error != std::errc() || end != number.data() + number.size() || !std::isfinite(value)) {
        return std::nullopt;
    }
    return value;
}

std::string WithUnit(std::string_view name, std::optional<std::int32_t> depthUnit)
{
    const std::string_view symbol = depthUnit ? DepthUnitSymbol(*depthUnit) : std::string_view();
    return symbol.empty() ? std::string(name) : std::string(name) + " (" + std::string(symbol) + ")";
}

FormField TraceField(FormFieldKind kind, std::string name)
{
    FormField field;
    field.kind = kind;
    field.label = name;
    field.name = std::move(name);
    return field;
}

FormField ChoiceField(std::string name, std::vector<std::string> choices)
{
    FormField field;
    field.kind = FormFieldKind::Choice;
    field.label = name;
    field.name = std::move(name);
    field.choices = std::move(choices);
    return field;
}

FormField EntryField(FormFieldKind kind, std::string name, std::string label, std::string initialText = {},
                     std::string_view placeholder = {})
{
    FormField field;
    field.kind = kind;
    field.name = std::move(name);
    field.label = std::move(label);
    field.initialText = std::move(initialText);
    field.placeholder = std::string(placeholder);
    return field;
}

FormField DepthField(std::string name, std::optional<std::int32_t> unit, std::string_view placeholder = {})
{
    std::string label = WithUnit(name, unit);
    return EntryField(FormFieldKind::Number, std::move(name), std::move(label), {}, placeholder);
}

FormField UsedWhen(FormField field, std::size_t choiceField, std::vector<int> choices)
{
    field.usedWhen = FieldCondition{choiceField, std::move(choices)};
    return field;
}

FormField NewNameField() { return EntryField(FormFieldKind::Text, "New name", "New name", {}, kNewNamePlaceholder); }

// "First trace" -> "first trace", for a field's name inside a sentence.
std::string LowerFirstLetter(std::string text)
{
    if (!text.empty()) text[0] = static_cast<char>(std::tolower(static_cast<unsigned char>(text[0])));
    return text;
}

// Reads the entries of one form, field by field; every refusal is reported once, naming
// the field.
class CFormReader {
public:
    CFormReader(const TraceUtilityForm& form, std::span<const FieldEntry> entries, const CBoreAnalystDoc& doc,
                IMessageSink& sink)
        : m_form(form), m_entries(entries), m_doc(doc), m_sink(sink)
    {
    }

    bool Blank(std::size_t i) const { return TrimBlanks(m_entries[i].text).empty(); }
    int Choice(std::size_t i) const { return static_cast<int>(m_entries[i].index); }
    bool Flag(std::size_t i) const { return m_entries[i].on; }
    const std::string& Text(std::size_t i) const { return m_entries[i].text; }

    std::optional<std::size_t> Trace(std::size_t i) const
    {
        const std::ptrdiff_t index = m_entries[i].index;
        if (index >= 0 && static_cast<std::size_t>(index) < m_doc.TraceCount()) return static_cast<std::size_t>(index);
        m_sink.Error("Error: No " + LowerFirstLetter(m_form.fields[i].name) + " selected.");
        return std::nullopt;
    }

    std::optional<double> Depth(std::size_t i) const
    {
        const std::optional<double> value = ParseDouble(m_entries[i].text);
        if (!value) ReportNotANumber(i);
        return value;
    }

    std::optional<float> Value(std::size_t i) const
    {
        return ReadFieldNumber(m_entries[i].text, m_form.fields[i].name, m_sink);
    }

    std::optional<std::size_t> Count(std::size_t i) const
    {
        const std::string_view number = TrimBlanks(m_entries[i].text);
        std::size_t value = 0;
        const auto [end, error] = std::from_chars(number.data(), number.data() + number.size(), value);
        if (!number.empty() && error == std::errc() && end == number.data() + number.size()) return value;
        m_sink.Error("Error: " + m_form.fields[i].name + " must be a whole number; \"" + m_entries[i].text +
                     "\" is not.");
        return std::nullopt;
    }

    // A trace's name or units as a document keeps them: blanks around the text dropped,
    // Windows-1252 characters only, at most 25 of them.
    std::optional<std::string> TraceText(std::size_t i) const
    {
        const std::string text(TrimBlanks(m_entries[i].text));
        const std::string stored = Utf8ToCp1252(text);
        const std::string& name = m_form.fields[i].name;
        if (Cp1252ToUtf8(stored) != text) {
            m_sink.Error("Error: " + name + " \"" + text +
                         "\" has characters that a document cannot hold (it stores Windows-1252 text).");
            return std::nullopt;
        }
        if (stored.size() > kFixedTextSize) {
            m_sink.Error("Error: " + name + " \"" + text + "\" is " + std::to_string(stored.size()) +
                         " characters long; a document keeps at most " + std::to_string(kFixedTextSize) + ".");
            return std::nullopt;
        }
        return text;
    }

    // "FROM:TO, FROM:TO, ..."; blank text gives no tie points, which the depth shift refuses.
    std::optional<std::vector<DepthTie>> Ties(std::size_t i) const
    {
        std::vector<DepthTie> ties;
        std::string_view rest = m_entries[i].text;
        if (TrimBlanks(rest).empty()) return ties;
        while (true) {
            const auto comma = rest.find(',');
            const std::string_view pair = TrimBlanks(rest.substr(0, comma));
            const auto colon = pair.find(':');
            const std::optional<double> from =
                colon == std::string_view::npos ? std::nullopt : ParseDouble(pair.substr(0, colon));
            const std::optional<double> to =
                colon == std::string_view::npos ? std::nullopt : ParseDouble(pair.substr(colon + 1));
            if (!from || !to) {
                m_sink.Error("Error: Tie point \"" + std::string(pair) + "\" is not FROM:TO (two numbers).");
                return std::nullopt;
            }
            ties.push_back({*from, *to});
            if (comma == std::string_view::npos) return ties;
            rest.remove_prefix(comma + 1);
        }
    }

private:
    void ReportNotANumber(std::size_t i) const
    {
        m_sink.Error("Error: " + m_form.fields[i].name + " must be a number; \"" + m_entries[i].text + "\" is not.");
    }

    const TraceUtilityForm& m_form;
    std::span<const FieldEntry> m_entries;
    const CBoreAnalystDoc& m_doc;
    IMessageSink& m_sink;
};

std::optional<DepthInterval> ReadInterval(const CFormReader& read, std::size_t top, std::size_t bottom)
{
    const std::optional<double> t = read.Depth(top);
    if (!t) return std::nullopt;
    const std::optional<double> b = read.Depth(bottom);
    if (!b) return std::nullopt;
    return DepthInterval{*t, *b};
}

using ChangePtr = std::unique_ptr<CDocumentChange>;

ChangePtr BuildCreate(const CFormReader& read, const CBoreAnalystDoc& doc, IMessageSink& sink)
{
    using namespace create;
    CreateRequest request;
    const auto name = read.TraceText(kName);
    if (!name) return nullptr;
    const auto units = read.TraceText(kUnits);
    if (!units) return nullptr;
    const auto interval = ReadInterval(read, kTop, kBottom);
    if (!interval) return nullptr;
    const auto step = read.Depth(kStep);
    if (!step) return nullptr;
    request.name = *name;
    request.units = *units;
    request.interval = *interval;
    request.step = *step;
    request.source = static_cast<CreateSource>(read.Choice(kSource));
    switch (request.source) {
    case CreateSource::Constant: {
        const auto value = read.Value(kConstant);
        if (!value) return nullptr;
        request.constant = *value;
        break;
    }
    case CreateSource::Ramp: {
        const auto start = read.Value(kRampStart);
        if (!start) return nullptr;
        const auto end = read.Value(kRampEnd);
        if (!end) return nullptr;
        request.rampStart = *start;
        request.rampEnd = *end;
        break;
    }
    case CreateSource::Formula: request.formula = read.Text(kFormula); break;
    }
    return MakeCreateChange(doc, request, sink);
}

ChangePtr BuildEdit(const CFormReader& read, const CBoreAnalystDoc& doc, IMessageSink& sink)
{
    using namespace edit;
    const auto trace = read.Trace(kTrace);
    if (!trace) return nullptr;
    const auto interval = ReadInterval(read, kTop, kBottom);
    if (!interval) return nullptr;
    EditRequest request;
    request.interval = *interval;
    request.action = static_cast<EditAction>(read.Choice(kAction));
    if (request.action == EditAction::SetValue) {
        const auto value = read.Value(kValue);
        if (!value) return nullptr;
        request.value = *value;
    }
    return MakeEditChange(doc, *trace, request, sink);
}

ChangePtr BuildDepthShift(const CFormReader& read, const CBoreAnalystDoc& doc, IMessageSink& sink)
{
    using namespace shift;
    const auto trace = read.Trace(kTrace);
    if (!trace) return nullptr;
    const bool byTies = read.Choice(kMode) == 1;
    std::optional<double> offset;
    std::optional<std::vector<DepthTie>> ties;
    if (byTies) ties = read.Ties(kTies);
    else offset = read.Depth(kOffset);
    if (!ties && !offset) return nullptr;
    const auto newName = read.TraceText(kNewName);
    if (!newName) return nullptr;
    return byTies ? ShiftDepthsByTies(doc, *trace, *ties, *newName, sink)
                  : ShiftDepthsBy(doc, *trace, *offset, *newName, sink);
}

ChangePtr BuildResample(const CFormReader& read, const CBoreAnalystDoc& doc, IMessageSink& sink)
{
    using namespace resample;
    const auto trace = read.Trace(kTrace);
    if (!trace) return nullptr;
    ResampleRequest request;
    const auto step = read.Depth(kStep);
    if (!step) return nullptr;
    request.step = *step;
    request.method = static_cast<ResampleMethod>(read.Choice(kMethod));
    // A blank end is the trace's own.
    if (!read.Blank(kTop)) {
        request.top = read.Depth(kTop);
        if (!request.top) return nullptr;
    }
    if (!read.Blank(kBottom)) {
        request.bottom = read.Depth(kBottom);
        if (!request.bottom) return nullptr;
    }
    const auto newName = read.TraceText(kNewName);
    if (!newName) return nullptr;
    request.newName = *newName;
    return ResampleTrace(doc, *trace, request, sink);
}

ChangePtr BuildFilter(const CFormReader& read, const CBoreAnalystDoc& doc, IMessageSink& sink)
{
    using namespace filter;
    const auto trace = read.Trace(kTrace);
    if (!trace) return nullptr;
    const auto window = read.Count(kWindow);
    if (!window) return nullptr;
    const auto newName = read.TraceText(kNewName);
    if (!newName) return nullptr;
    FilterRequest request;
    request.kind = static_cast<FilterKind>(read.Choice(kKind));
    request.window = *window;
    request.newName = *newName;
    return MakeFilterChange(doc, *trace, request, sink);
}

ChangePtr BuildDespike(const CFormReader& read, const CBoreAnalystDoc& doc, IMessageSink& sink)
{
    using namespace despike;
    const auto trace = read.Trace(kTrace);
    if (!trace) return nullptr;
    const auto window = read.Count(kWindow);
    if (!window) return nullptr;
    const auto threshold = read.Value(kThreshold);
    if (!threshold) return nullptr;
    const auto newName = read.TraceText(kNewName);
    if (!newName) return nullptr;
    DespikeRequest request;
    request.window = *window;
    request.k = *threshold;
    request.newName = *newName;
    return MakeDespikeChange(doc, *trace, request, sink);
}

ChangePtr BuildClip(const CFormReader& read, const CBoreAnalystDoc& doc, IMessageSink& sink)
{
    using namespace clip;
    const auto trace = read.Trace(kTrace);
    if (!trace) return nullptr;
    const auto minimum = read.Value(kMinimum);
    if (!minimum) return nullptr;
    const auto maximum = read.Value(kMaximum);
    if (!maximum) return nullptr;
    const auto newName = read.TraceText(kNewName);
    if (!newName) return nullptr;
    ClipRequest request;
    request.minimum = *minimum;
    request.maximum = *maximum;
    request.toNull = read.Flag(kToNull);
    request.newName = *newName;
    return MakeClipChange(doc, *trace, request, sink);
}

ChangePtr BuildCut(const CFormReader& read, const CBoreAnalystDoc& doc, IMessageSink& sink)
{
    using namespace cut;
    const auto trace = read.Trace(kTrace);
    if (!trace) return nullptr;
    const auto interval = ReadInterval(read, kTop, kBottom);
    if (!interval) return nullptr;
    const auto newName = read.TraceText(kNewName);
    if (!newName) return nullptr;
    CutRequest request;
    request.interval = *interval;
    request.mode = static_cast<CutMode>(read.Choice(kMode));
    request.newName = *newName;
    return MakeCutChange(doc, *trace, request, sink);
}

ChangePtr BuildSplice(const CFormReader& read, const CBoreAnalystDoc& doc, IMessageSink& sink)
{
    using namespace splice;
    const auto first = read.Trace(kFirst);
    if (!first) return nullptr;
    const auto second = read.Trace(kSecond);
    if (!second) return nullptr;
    const auto name = read.TraceText(kName);
    if (!name) return nullptr;
    return SpliceTraces(doc, *first, *second, static_cast<SpliceOverlap>(read.Choice(kOverlap)), *name, sink);
}

std::vector<FormField> CreateFields(std::optional<std::int32_t> unit)
{
    using namespace create;
    const std::vector<int> constant = {static_cast<int>(CreateSource::Constant)};
    const std::vector<int> ramp = {static_cast<int>(CreateSource::Ramp)};
    const std::vector<int> formula = {static_cast<int>(CreateSource::Formula)};
    return {
        EntryField(FormFieldKind::Text, "Name", "Name"),
        EntryField(FormFieldKind::Text, "Units", "Units"),
        DepthField("Top", unit),
        DepthField("Bottom", unit),
        DepthField("Step", unit),
        ChoiceField("Values", kCreateSources),
        UsedWhen(EntryField(FormFieldKind::Number, "Value", "Value"), kSource, constant),
        UsedWhen(EntryField(FormFieldKind::Number, "Ramp from", "Ramp from (at the top)"), kSource, ramp),
        UsedWhen(EntryField(FormFieldKind::Number, "Ramp to", "Ramp to (at the last sample)"), kSource, ramp),
        UsedWhen(EntryField(FormFieldKind::Text, "Formula", "Formula", {}, "DEPTH is each sample's depth"), kSource,
                 formula),
    };
}

std::vector<FormField> EditFields(std::optional<std::int32_t> unit)
{
    using namespace edit;
    return {
        TraceField(FormFieldKind::AnyTrace, "Trace"),
        DepthField("Top", unit),
        DepthField("Bottom", unit),
        ChoiceField("Samples", kEditActions),
        UsedWhen(EntryField(FormFieldKind::Number, "Value", "Value"), kAction,
                 {static_cast<int>(EditAction::SetValue)}),
    };
}

std::vector<FormField> DepthShiftFields(std::optional<std::int32_t> unit)
{
    using namespace shift;
    return {
        TraceField(FormFieldKind::AnyTrace, "Trace"),
        ChoiceField("Shift by", kShiftModes),
        UsedWhen(DepthField("Shift", unit), kMode, {0}),
        UsedWhen(EntryField(FormFieldKind::Text, "Tie points", WithUnit("Tie points", unit), {},
                            "FROM:TO, FROM:TO, ..."),
                 kMode, {1}),
        NewNameField(),
    };
}

std::vector<FormField> ResampleFields(std::optional<std::int32_t> unit)
{
    return {
        TraceField(FormFieldKind::LineTrace, "Trace"),
        DepthField("Step", unit),
        ChoiceField("Method", kResampleMethods),
        DepthField("Top", unit, "empty: the trace's first depth"),
        DepthField("Bottom", unit, "empty: the trace's last depth"),
        NewNameField(),
    };
}

std::vector<FormField> FilterFields()
{
    return {
        TraceField(FormFieldKind::LineTrace, "Trace"),
        ChoiceField("Filter", kFilterKinds),
        EntryField(FormFieldKind::Integer, "Window", "Window (samples, odd)", std::to_string(FilterRequest{}.window)),
        NewNameField(),
    };
}

std::vector<FormField> DespikeFields()
{
    const DespikeRequest defaults;
    return {
        TraceField(FormFieldKind::LineTrace, "Trace"),
        EntryField(FormFieldKind::Integer, "Window", "Window (samples, odd)", std::to_string(defaults.window)),
        EntryField(FormFieldKind::Number, "Threshold", "Threshold (median absolute deviations)",
                   FieldNumberText(defaults.k)),
        NewNameField(),
    };
}

std::vector<FormField> ClipFields()
{
    return {
        TraceField(FormFieldKind::LineTrace, "Trace"),
        EntryField(FormFieldKind::Number, "Minimum", "Minimum"),
        EntryField(FormFieldKind::Number, "Maximum", "Maximum"),
        EntryField(FormFieldKind::Flag, "Null outside", "Values outside become null"),
        NewNameField(),
    };
}

std::vector<FormField> CutFields(std::optional<std::int32_t> unit)
{
    return {
        TraceField(FormFieldKind::AnyTrace, "Trace"),
        DepthField("Top", unit),
        DepthField("Bottom", unit),
        ChoiceField("Samples", kCutModes),
        NewNameField(),
    };
}

std::vector<FormField> SpliceFields()
{
    return {
        TraceField(FormFieldKind::LineTrace, "First trace"),
        TraceField(FormFieldKind::LineTrace, "Second trace"),
        ChoiceField("Overlap", kSpliceOverlaps),
        EntryField(FormFieldKind::Text, "Name", "Name"),
    };
}

// The depth unit the form's depths are typed in.
std::optional<std::int32_t> FormDepthUnit(TraceUtility utility, const CBoreAnalystDoc& doc,
                                          std::span<const FieldEntry> entries)
{
    if (utility == TraceUtility::Create) return doc.TraceCount() > 0 ? doc.Trace(0).DepthUnit() : kDepthMetres;
    // Every other form has the trace it works on first.
    if (entries.empty() || entries[0].index < 0 || static_cast<std::size_t>(entries[0].index) >= doc.TraceCount()) {
        return std::nullopt;
    }
    return doc.Trace(static_cast<std::size_t>(entries[0].index)).DepthUnit();
}

bool IsTraceField(FormFieldKind kind) { return kind == FormFieldKind::LineTrace || kind == FormFieldKind::AnyTrace; }

} // namespace

TraceUtilityForm DescribeTraceUtility(TraceUtility utility, const CBoreAnalystDoc& doc,
                                      std::span<const FieldEntry> entries)
{
    const std::optional<std::int32_t> unit = FormDepthUnit(utility, doc, entries);
    switch (utility) {
    case TraceUtility::Create:
        return {"Create Trace",
                "Adds a new line trace sampled from Top to Bottom at Step, holding a constant, a ramp or a formula's "
                "values, in the depth unit of the document's first trace.",
                CreateFields(unit)};
    case TraceUtility::Edit:
        return {"Edit Trace",
                "Sets, nulls, interpolates across or deletes the samples of a trace from Top to Bottom, both "
                "included.",
                EditFields(unit)};
    case TraceUtility::DepthShift:
        return {"Depth Shift",
                "Moves a trace's depths by a constant, or by tie points FROM:TO that move the depth FROM to TO, "
                "stretching or squeezing the intervals between them.",
                DepthShiftFields(unit)};
    case TraceUtility::Resample:
        return {"Resample",
                "Puts a line trace's samples at a regular step over its own range or from Top to Bottom; nothing "
                "is extrapolated.",
                ResampleFields(unit)};
    case TraceUtility::Filter:
        return {"Filter",
                "Smooths a line trace over an odd window of samples; nulls stay null and are left out of every "
                "window.",
                FilterFields()};
    case TraceUtility::Despike:
        return {"Despike",
                "Replaces each value farther than the threshold times the median absolute deviation from its "
                "window's median with that median.",
                DespikeFields()};
    case TraceUtility::Clip:
        return {"Clip", "Holds a line trace's values within Minimum..Maximum, or makes the values outside null.",
                ClipFields()};
    case TraceUtility::Cut:
        return {"Cut", "Keeps only the samples of a trace from Top to Bottom, both included, or removes them.",
                CutFields(unit)};
    case TraceUtility::Splice:
        return {"Splice",
                "Joins two line traces of one quantity into a new trace over the depths of both, converting the "
                "second into the first one's unit.",
                SpliceFields()};
    }
    return {};
}

std::vector<std::size_t> TraceFieldChoices(const CBoreAnalystDoc& doc, FormFieldKind kind)
{
    std::vector<std::size_t> indices;
    for (std::size_t i = 0; i < doc.TraceCount(); ++i) {
        if (kind == FormFieldKind::AnyTrace || doc.Trace(i).Kind() == TraceKind::Line) indices.push_back(i);
    }
    return indices;
}

std::vector<FieldEntry> InitialEntries(const TraceUtilityForm& form, const CBoreAnalystDoc& doc,
                                       std::optional<std::size_t> preferredTrace)
{
    std::vector<FieldEntry> entries(form.fields.size());
    std::size_t traceFields = 0;
    for (std::size_t i = 0; i < form.fields.size(); ++i) {
        const FormField& field = form.fields[i];
        FieldEntry& entry = entries[i];
        entry.text = field.initialText;
        if (field.kind == FormFieldKind::Choice) entry.index = field.initialChoice;
        if (!IsTraceField(field.kind)) continue;
        const std::vector<std::size_t> offered = TraceFieldChoices(doc, field.kind);
        const bool preferred = traceFields == 0 && preferredTrace &&
                               std::find(offered.begin(), offered.end(), *preferredTrace) != offered.end();
        if (preferred) entry.index = static_cast<std::ptrdiff_t>(*preferredTrace);
        else if (traceFields < offered.size()) entry.index = static_cast<std::ptrdiff_t>(offered[traceFields]);
        ++traceFields;
    }
    return entries;
}

bool FieldInUse(const TraceUtilityForm& form, std::span<const FieldEntry> entries, std::size_t i)
{
    const std::optional<FieldCondition>& condition = form.fields.at(i).usedWhen;
    if (!condition) return true;
    if (condition->field >= entries.size()) return false;
    const std::ptrdiff_t choice = entries[condition->field].index;
    return std::find(condition->choices.begin(), condition->choices.end(), choice) != condition->choices.end();
}

std::unique_ptr<CDocumentChange> MakeTraceUtilityChange(TraceUtility utility, const CBoreAnalystDoc& doc,
                                                        std::span<const FieldEntry> entries, IMessageSink& sink)
{
    const TraceUtilityForm form = DescribeTraceUtility(utility, doc, entries);
    if (entries.size() != form.fields.size()) {
        sink.Error("Error: The " + form.title + " form has " + std::to_string(form.fields.size()) + " fields; " +
                   std::to_string(entries.size()) + " were filled in.");
        return nullptr;
    }
    for (std::size_t i = 0; i < form.fields.size(); ++i) {
        const FormField& field = form.fields[i];
        if (field.kind != FormFieldKind::Choice) continue;
        const std::ptrdiff_t choice = entries[i].index;
        if (choice < 0 || static_cast<std::size_t>(choice) >= field.choices.size()) {
            sink.Error("Error: No " + LowerFirstLetter(field.name) + " selected.");
            return nullptr;
        }
    }
    const CFormReader read(form, entries, doc, sink);
    switch (utility) {
    case TraceUtility::Create: return BuildCreate(read, doc, sink);
    case TraceUtility::Edit: return BuildEdit(read, doc, sink);
    case TraceUtility::DepthShift: return BuildDepthShift(read, doc, sink);
    case TraceUtility::Resample: return BuildResample(read, doc, sink);
    case TraceUtility::Filter: return BuildFilter(read, doc, sink);
    case TraceUtility::Despike: return BuildDespike(read, doc, sink);
    case TraceUtility::Clip: return BuildClip(read, doc, sink);
    case TraceUtility::Cut: return BuildCut(read, doc, sink);
    case TraceUtility::Splice: return BuildSplice(read, doc, sink);
    }
    return nullptr;
}

} // namespace ba
