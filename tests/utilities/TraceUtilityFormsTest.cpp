// The trace utilities' forms: what was typed into each field becomes the utility's change
// (checked by the samples it leaves, worked by hand on a five-sample log) or one exact
// message with the document untouched; labels carry the worked trace's depth unit; a
// form starts from the selected trace. Depths and values are compared within 1e-4.

#include "utilities/TraceUtilityForms.h"

#include "DepthUtilityFixtures.h"
#include "model/ImageTrace.h"

#include <gtest/gtest.h>

namespace ba {
namespace {

using test::kNull;

constexpr double kTolerance = 1e-4;

FieldEntry Pick(std::ptrdiff_t index) { return {{}, index, false}; }
FieldEntry Typed(std::string text) { return {std::move(text), -1, false}; }
FieldEntry Ticked(bool on) { return {{}, -1, on}; }

// GR, GR2 and FT are line traces; IMG is an image trace.
std::unique_ptr<CBoreAnalystDoc> MakeDocument()
{
    auto doc = std::make_unique<CBoreAnalystDoc>();
    test::AddLine(*doc, {"GR", "API", {100, 101, 102, 103, 104}, {10, 20, 90, 40, 50}});
    test::AddLine(*doc, {"GR2", "API", {103, 104, 105, 106}, {400, 500, 600, 700}});
    test::AddLine(*doc, {"FT", "API", {10, 20}, {1, 2}, kDepthFeet});
    doc->AddTrace(std::make_unique<CImageTrace>("IMG", 0.0f, 100.0f, "us"));
    return doc;
}

constexpr std::size_t kNewTrace = 4; // a result under a new name comes after the four

struct FormCase {
    const char* what;
    TraceUtility utility;
    std::vector<FieldEntry> entries;
    std::string description; // of the change
    std::size_t result;      // the trace holding the result
    std::vector<float> depths;
    std::vector<float> values;
};

const FormCase kAccepted[] = {
    {"depth shift by a constant", TraceUtility::DepthShift, {Pick(0), Pick(0), Typed(" 2.5 "), Typed("x"), Typed("")},
     "Depth Shift GR", 0, {102.5f, 103.5f, 104.5f, 105.5f, 106.5f}, {10, 20, 90, 40, 50}},
    // The shift falls from +1 at 100 to 0 at 104: d + 1 - (d - 100) / 4.
    {"depth shift by tie points into a new trace", TraceUtility::DepthShift,
     {Pick(0), Pick(1), Typed(""), Typed(" 104:104 , 100:101"), Typed("GRS")}, "Depth Shift GR", kNewTrace,
     {101, 101.75f, 102.5f, 103.25f, 104}, {10, 20, 90, 40, 50}},
    {"depths typed in the trace's own unit", TraceUtility::DepthShift,
     {Pick(2), Pick(0), Typed("1"), Typed(""), Typed("")}, "Depth Shift FT", 2, {11, 21}, {1, 2}},
    // (10+20)/2, (10+20+90)/3, (20+90+40)/3, (90+40+50)/3, (40+50)/2.
    {"moving average", TraceUtility::Filter, {Pick(0), Pick(0), Typed("3"), Typed("")}, "Filter GR", 0,
     {100, 101, 102, 103, 104}, {15, 40, 50, 60, 45}},
    {"median into a new trace", TraceUtility::Filter, {Pick(0), Pick(2), Typed("3"), Typed("MED")}, "Filter GR",
     kNewTrace, {100, 101, 102, 103, 104}, {15, 20, 40, 50, 45}},
    // At 102 the window of five has median 40 and MAD 20: 90 is 50 away, more than 2 x 20.
    {"despike", TraceUtility::Despike, {Pick(0), Typed("5"), Typed("2"), Typed("")}, "Despike GR", 0,
     {100, 101, 102, 103, 104}, {10, 20, 40, 40, 50}},
    {"resample to the nearest sample", TraceUtility::Resample,
     {Pick(0), Typed("2"), Pick(3), Typed(""), Typed(""), Typed("")}, "Resample GR", 0, {100, 102, 104}, {10, 90, 50}},
    {"resample over a typed interval", TraceUtility::Resample,
     {Pick(0), Typed("0.5"), Pick(1), Typed("101"), Typed("102"), Typed("")}, "Resample GR", 0, {101, 101.5f, 102},
     {20, 55, 90}},
    {"clip to the limits", TraceUtility::Clip, {Pick(0), Typed("15"), Typed("60"), Ticked(false), Typed("")},
     "Clip GR", 0, {100, 101, 102, 103, 104}, {15, 20, 60, 40, 50}},
    {"clip to null", TraceUtility::Clip, {Pick(0), Typed("15"), Typed("60"), Ticked(true), Typed("")}, "Clip GR", 0,
     {100, 101, 102, 103, 104}, {kNull, 20, kNull, 40, 50}},
    {"cut an interval out", TraceUtility::Cut, {Pick(0), Typed("101"), Typed("102.5"), Pick(1), Typed("")},
     "Cut GR", 0, {100, 103, 104}, {10, 40, 50}},
    {"edit: set a value", TraceUtility::Edit, {Pick(0), Typed("101"), Typed("102"), Pick(0), Typed("-1")},
     "Edit GR", 0, {100, 101, 102, 103, 104}, {10, -1, -1, 40, 50}},
    // The line from 10 at 100 to 40 at 103; the value field is not read.
    {"edit: interpolate", TraceUtility::Edit, {Pick(0), Typed("101"), Typed("102"), Pick(2), Typed("?")}, "Edit GR",
     0, {100, 101, 102, 103, 104}, {10, 20, 30, 40, 50}},
    // Metres, the first trace's unit; only the ramp's fields are read.
    {"create a ramp", TraceUtility::Create,
     {Typed(" C "), Typed("API"), Typed("0"), Typed("2"), Typed("0.5"), Pick(1), Typed("zzz"), Typed("0"),
      Typed("10"), Typed("")},
     "Create C", kNewTrace, {0, 0.5f, 1, 1.5f, 2}, {0, 2.5f, 5, 7.5f, 10}},
    {"splice taking the second in the overlap", TraceUtility::Splice, {Pick(0), Pick(1), Pick(1), Typed("SP")},
     "Splice SP", kNewTrace, {100, 101, 102, 103, 104, 105, 106}, {10, 20, 90, 400, 500, 600, 700}},
};

TEST(TraceUtilityForms, EntriesBuildTheUtilitysChange)
{
    for (const FormCase& c : kAccepted) {
        SCOPED_TRACE(c.what);
        const auto doc = MakeDocument();
        CollectingMessageSink sink;
        auto change = MakeTraceUtilityChange(c.utility, *doc, c.entries, sink);
        EXPECT_TRUE(sink.messages.empty()) << (sink.messages.empty() ? "" : sink.messages[0].text);
        ASSERT_NE(change, nullptr);
        EXPECT_EQ(change->Description(), c.description);
        doc->Apply(std::move(change));
        ASSERT_LT(c.result, doc->TraceCount());
        test::ExpectSamples(doc->Trace(c.result), c.depths, c.values, kTolerance);
    }
}

struct RefusedCase {
    const char* what;
    TraceUtility utility;
    std::vector<FieldEntry> entries;
    std::string message;
};

const RefusedCase kRefused[] = {
    {"a shift that is no number", TraceUtility::DepthShift, {Pick(0), Pick(0), Typed("1,5"), Typed(""), Typed("")},
     "Error: Shift must be a number; \"1,5\" is not."},
    {"a tie point without its TO", TraceUtility::DepthShift,
     {Pick(0), Pick(1), Typed(""), Typed("100:101, 104"), Typed("")},
     "Error: Tie point \"104\" is not FROM:TO (two numbers)."},
    {"no tie points", TraceUtility::DepthShift, {Pick(0), Pick(1), Typed("5"), Typed("  "), Typed("")},
     "Error: A depth shift by tie points needs at least one tie point."},
    {"a window that is no whole number", TraceUtility::Filter, {Pick(0), Pick(0), Typed("3.5"), Typed("")},
     "Error: Window must be a whole number; \"3.5\" is not."},
    {"a negative window", TraceUtility::Despike, {Pick(0), Typed("-3"), Typed("3"), Typed("")},
     "Error: Window must be a whole number; \"-3\" is not."},
    {"an even window, refused by the filter", TraceUtility::Filter, {Pick(0), Pick(0), Typed("4"), Typed("")},
     "Error: The filter window must be an odd number of samples, 3 or more; 4 was given."},
    {"an empty limit", TraceUtility::Clip, {Pick(0), Typed(""), Typed("60"), Ticked(false), Typed("")},
     "Error: Minimum must be a number; \"\" is not."},
    {"a blank top of an edit", TraceUtility::Edit, {Pick(0), Typed(" "), Typed("102"), Pick(1), Typed("")},
     "Error: Top must be a number; \" \" is not."},
    {"a step that is no number", TraceUtility::Create,
     {Typed("C"), Typed(""), Typed("0"), Typed("2"), Typed("half"), Pick(0), Typed("1"), Typed(""), Typed(""),
      Typed("")},
     "Error: Step must be a number; \"half\" is not."},
    {"a name too long for a document", TraceUtility::Cut,
     {Pick(0), Typed("101"), Typed("102"), Pick(0), Typed("ABCDEFGHIJKLMNOPQRSTUVWXYZ")},
     "Error: New name \"ABCDEFGHIJKLMNOPQRSTUVWXYZ\" is 26 characters long; a document keeps at most 25."},
    {"units a document cannot hold", TraceUtility::Create,
     {Typed("C"), Typed("\xE2\x84\xA6m"), Typed("0"), Typed("2"), Typed("1"), Pick(0), Typed("1"), Typed(""),
      Typed(""), Typed("")},
     "Error: Units \"\xE2\x84\xA6m\" has characters that a document cannot hold (it stores Windows-1252 text)."},
    {"no trace", TraceUtility::Filter, {Pick(-1), Pick(0), Typed("3"), Typed("")}, "Error: No trace selected."},
    {"no second trace", TraceUtility::Splice, {Pick(0), Pick(7), Pick(0), Typed("SP")},
     "Error: No second trace selected."},
    {"no overlap chosen", TraceUtility::Splice, {Pick(0), Pick(1), Pick(-1), Typed("SP")},
     "Error: No overlap selected."},
    {"a name taken, refused by the utility", TraceUtility::Filter, {Pick(0), Pick(0), Typed("3"), Typed("FT")},
     "Error: A trace named \"FT\" already exists; choose another name for the new trace."},
    {"entries that do not fit the form", TraceUtility::Clip, {Pick(0), Typed("1")},
     "Error: The Clip form has 5 fields; 2 were filled in."},
};

TEST(TraceUtilityForms, UnreadableEntriesAreRefusedNamingTheField)
{
    for (const RefusedCase& c : kRefused) {
        SCOPED_TRACE(c.what);
        const auto doc = MakeDocument();
        test::ExpectRefused(
            *doc, [&](IMessageSink& sink) { return MakeTraceUtilityChange(c.utility, *doc, c.entries, sink); },
            c.message);
    }
}

std::vector<std::string> Labels(const TraceUtilityForm& form)
{
    std::vector<std::string> labels;
    for (const FormField& field : form.fields) labels.push_back(field.label);
    return labels;
}

TEST(TraceUtilityForms, DepthLabelsCarryTheWorkedTracesUnit)
{
    const auto doc = MakeDocument();
    const std::vector<FieldEntry> feet = {Pick(2)};
    EXPECT_EQ(Labels(DescribeTraceUtility(TraceUtility::Cut, *doc, feet)),
              (std::vector<std::string>{"Trace", "Top (ft)", "Bottom (ft)", "Samples", "New name"}));
    EXPECT_EQ(DescribeTraceUtility(TraceUtility::DepthShift, *doc, feet).fields[3].label, "Tie points (ft)");
    EXPECT_EQ(DescribeTraceUtility(TraceUtility::Resample, *doc).fields[1].label, "Step");
    const CBoreAnalystDoc empty;
    EXPECT_EQ(DescribeTraceUtility(TraceUtility::Create, empty).fields[2].label, "Top (m)");
}

TEST(TraceUtilityForms, FormsStartFromThePreferredTrace)
{
    const auto doc = MakeDocument();
    const auto traces = [&](TraceUtility utility, std::optional<std::size_t> preferred) {
        const TraceUtilityForm form = DescribeTraceUtility(utility, *doc);
        std::vector<std::ptrdiff_t> picked;
        const std::vector<FieldEntry> entries = InitialEntries(form, *doc, preferred);
        for (std::size_t i = 0; i < form.fields.size(); ++i) {
            const FormFieldKind kind = form.fields[i].kind;
            if (kind == FormFieldKind::LineTrace || kind == FormFieldKind::AnyTrace) picked.push_back(entries[i].index);
        }
        return picked;
    };
    EXPECT_EQ(traces(TraceUtility::Cut, 3), std::vector<std::ptrdiff_t>{3});
    EXPECT_EQ(traces(TraceUtility::Filter, 3), std::vector<std::ptrdiff_t>{0}); // IMG is no line trace
    EXPECT_EQ(traces(TraceUtility::Filter, std::nullopt), std::vector<std::ptrdiff_t>{0});
    EXPECT_EQ(traces(TraceUtility::Splice, 2), (std::vector<std::ptrdiff_t>{2, 1}));
    EXPECT_EQ(TraceFieldChoices(*doc, FormFieldKind::LineTrace), (std::vector<std::size_t>{0, 1, 2}));
    const CBoreAnalystDoc empty;
    const TraceUtilityForm filter = DescribeTraceUtility(TraceUtility::Filter, empty);
    EXPECT_EQ(InitialEntries(filter, empty, std::nullopt)[0].index, -1);
    EXPECT_EQ(InitialEntries(filter, empty, std::nullopt)[2].text, "3");
}

TEST(TraceUtilityForms, FieldsOfOtherChoicesAreOutOfUse)
{
    const auto doc = MakeDocument();
    const TraceUtilityForm form = DescribeTraceUtility(TraceUtility::DepthShift, *doc);
    std::vector<FieldEntry> entries = InitialEntries(form, *doc, std::nullopt);
    const auto inUse = [&] {
        std::vector<bool> used;
        for (std::size_t i = 0; i < form.fields.size(); ++i) used.push_back(FieldInUse(form, entries, i));
        return used;
    };
    EXPECT_EQ(inUse(), (std::vector<bool>{true, true, true, false, true}));
    entries[1].index = 1;
    EXPECT_EQ(inUse(), (std::vector<bool>{true, true, false, true, true}));
}

} // namespace
} // namespace ba
