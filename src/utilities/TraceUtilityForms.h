#pragma once
// The trace utilities as forms to fill in. Each utility has a form: the fields a user
// fills (the traces to work on, depths, numbers, choices, names), with their labels and
// first texts; and the reading of what the fields hold into the utility's request and
// change. A desktop dialog shows the fields and hands back their entries; every check and
// every message is made here, so an entry is refused the same way wherever the form is
// shown. Depth fields are in the display unit of the trace worked on, and say so.

#include "base/MessageSink.h"
#include "model/BoreAnalystDoc.h"
#include "model/DocumentChange.h"

#include <array>
#include <cstddef>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace ba {

enum class TraceUtility { Create, Edit, DepthShift, Resample, Filter, Despike, Clip, Cut, Splice };

inline constexpr std::array<TraceUtility, 9> kTraceUtilities = {
    TraceUtility::Create, TraceUtility::Edit,    TraceUtility::DepthShift, TraceUtility::Resample, TraceUtility::Filter,
    TraceUtility::Despike, TraceUtility::Clip,   TraceUtility::Cut,        TraceUtility::Splice};

enum class FormFieldKind {
    LineTrace, // one of the document's line traces
    AnyTrace,  // one of the document's traces, of any kind
    Number,    // a decimal number
    Integer,   // a whole number, 0 or more
    Choice,    // one of the field's choices
    Text,      // free text
    Flag,      // on or off
};

// A field that matters only while the choice field `field` holds one of `choices`; while
// it does not, the field is not read (and a dialog greys it).
struct FieldCondition {
    std::size_t field = 0;
    std::vector<int> choices;
};

struct FormField {
    FormFieldKind kind = FormFieldKind::Text;
    std::string name;  // how messages name the field: "Top"
    std::string label; // what is shown beside it, with the depth unit of a depth: "Top (m)"
    std::vector<std::string> choices; // of a Choice field
    std::string initialText;          // of a Number, Integer or Text field
    int initialChoice = 0;            // of a Choice field
    std::string placeholder;          // what an empty text field means, when emptiness is allowed
    std::optional<FieldCondition> usedWhen; // always used when absent
};

struct TraceUtilityForm {
    std::string title;   // "Depth Shift"
    std::string summary; // one sentence on what the utility does
    std::vector<FormField> fields;
};

// What one field holds.
struct FieldEntry {
    std::string text;          // of a Number, Integer or Text field
    std::ptrdiff_t index = -1; // of a trace field, the trace's index in the document; of a Choice, the choice; -1: none
    bool on = false;           // of a Flag
};

// The form of `utility`. Its depth fields are labelled with the display unit of the trace
// chosen in the first trace field of `entries` (for Create, of the document's first trace,
// metres in an empty document); without a chosen trace they carry no unit.
TraceUtilityForm DescribeTraceUtility(TraceUtility utility, const CBoreAnalystDoc& doc,
                                      std::span<const FieldEntry> entries = {});

// The indices of the traces a trace field of `kind` offers, in document order.
std::vector<std::size_t> TraceFieldChoices(const CBoreAnalystDoc& doc, FormFieldKind kind);

// The entries a form starts with: the first texts and choices; in the first trace field
// `preferredTrace` when that field offers it, else the first trace it offers; in a second
// trace field the second trace it offers, and so on.
std::vector<FieldEntry> InitialEntries(const TraceUtilityForm& form, const CBoreAnalystDoc& doc,
                                       std::optional<std::size_t> preferredTrace);

// Whether field `i` of `form` matters with `entries` (see FieldCondition).
bool FieldInUse(const TraceUtilityForm& form, std::span<const FieldEntry> entries, std::size_t i);

// Reads `entries`, one per field of the utility's form, and builds the utility's change,
// or returns null after a message (naming the field when an entry is unreadable: "Error:
// Top must be a number; "abc" is not."); nothing is touched. Tie points are typed as
// "FROM:TO, FROM:TO, ...". Names and units must fit the document's 25-character fields.
std::unique_ptr<CDocumentChange> MakeTraceUtilityChange(TraceUtility utility, const CBoreAnalystDoc& doc,
                                                        std::span<const FieldEntry> entries, IMessageSink& sink);

} // namespace ba
