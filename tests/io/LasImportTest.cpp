#include "LasTestSupport.h"

#include "io/LasImport.h"
#include "model/LineTrace.h"

#include <gtest/gtest.h>

#include <memory>

namespace ba {
namespace {

using test::AllMessages;
using test::AnyMessageContains;
using test::kLasFixtures;

constexpr float N = kNullValue;

struct TraceExpected {
    std::string name;
    std::string units;
    std::int32_t track;
    std::vector<float> values; // every value, depths ascending
};

struct FixtureCase {
    const char* file;
    std::int32_t depthUnit;
    float firstDepth; // display units
    float lastDepth;
    float viewTop;
    std::vector<TraceExpected> traces;
    std::vector<const char*> messages; // parts of messages that must appear
};

bool SameFloats(const std::vector<float>& a, const std::vector<float>& b)
{
    if (a.size() != b.size()) return false;
    for (std::size_t i = 0; i < a.size(); ++i) {
        if (!(a[i] == b[i] || (IsNullSample(a[i]) && IsNullSample(b[i])))) return false;
    }
    return true;
}

std::vector<float> ValuesOf(const CLineTrace& trace)
{
    return {trace.Values().Items().begin(), trace.Values().Items().end()};
}

const std::string kMicro = "\xC2\xB5";  // µ
const std::string kDegree = "\xC2\xB0"; // °

// The units fixtures in every encoding read the same.
std::vector<TraceExpected> UnitsTraces()
{
    return {{"DT", kMicro + "s/ft", 0, {85.5f, 86.0f}}, {"TEMP", kDegree + "C", 1, {21.5f, 21.75f}}};
}

const FixtureCase kImported[] = {
    {"basic_metres.las", kDepthMetres, 1234.5f, 1235.25f, 1200.0f,
     {{"GR", "GAPI", 0, {45.25f, 50.5f, 55.75f, 61.0f}}, {"RHOB", "G/CC", 1, {2.3125f, N, 2.4375f, 2.5f}}},
     {}},
    {"cr_line_ends.las", kDepthMetres, 1234.5f, 1235.25f, 1200.0f,
     {{"GR", "GAPI", 0, {45.25f, 50.5f, 55.75f, 61.0f}}, {"RHOB", "G/CC", 1, {2.3125f, N, 2.4375f, 2.5f}}},
     {}},
    {"feet_logged_upwards.las", kDepthFeet, 1000.0f, 1002.0f, 1000.0f,
     {{"SP", "MV", 0, {-14.5f, -14.0f, -13.5f, -13.0f, -12.5f}}, {"CALI", "IN", 1, {8.0f, 8.5f, 8.75f, 8.25f, 8.5f}}},
     {}},
    {"time_index_seconds.las", kTimeSeconds, 0.0f, 90.0f, 0.0f,
     {{"PRES", "PSIG", 0, {1500.5f, 1501.0f, 1501.5f, 1502.0f}}, {"TEMP", "DEGC", 1, {20.25f, 20.5f, 20.75f, 21.0f}}},
     {}},
    {"wrapped_rows.las", kDepthMetres, 909.75f, 910.0f, 900.0f,
     {{"DT", "US/M", 0, {N, N, N}},
      {"RHOB", "K/M3", 1, {2692.8137f, 2712.6460f, 2692.7075f}},
      {"NPHI", "V/V", 0, {0.2730f, 0.2886f, 0.3140f}},
      {"SP", "MV", 1, {22.5909f, 23.3987f, 19.4086f}},
      {"GR", "GAPI", 0, {89.8492f, 90.2803f, 96.5306f}}},
     {}},
    {"comma_delimited_las30.las", kDepthMetres, 100.0f, 100.5f, 100.0f,
     {{"DT", "US/M", 0, {123.45f, N, 124.5f}}, {"ILD", "OHMM", 1, {105.6f, 110.2f, 115.8f}}},
     {"the log data ~Log_Data was imported instead of ~Drilling_Data (line 13)",
      "the curve CDES (line 19) holds text, not numbers, and was not imported.", "1 value is empty"}},
    {"tab_delimited_crlf.las", kDepthMetres, 10.0f, 11.0f, 0.0f,
     {{"GR", "GAPI", 0, {45.5f, N, 47.5f}}, {"NOTE", "", 1, {N, N, N}}, {"RES", "OHMM", 0, {2.25f, 2.5f, N}}},
     {"3 values are not numbers", "1 value is empty"}},
    {"decimal_comma.las", kDepthMetres, 1669.875f, 1670.0f, 1600.0f,
     {{"DT", "US/M", 0, {124.5f, 123.45f}}, {"RHOB", "K/M3", 1, {2551.25f, 2550.0f}}},
     {"6 values have a decimal comma; they were read as decimal points"}},
    {"duplicate_and_long_mnemonics.las", kDepthMetres, 50.0f, 50.5f, 0.0f,
     {{"GR:1", "GAPI", 0, {10.0f, 20.0f}},
      {"GR:2", "GAPI", 1, {11.0f, 21.0f}},
      {"MWD_EQUIVALENT_CIRCULATIO", "PPG", 0, {9.5f, 9.6f}},
      {"CURVE5", "OHMM", 1, {2.0f, 2.1f}},
      {"GR:3", "GAPI", 0, {12.0f, 22.0f}}},
     {"lines 8, 9, 12: the mnemonic GR appears 3 times; the curves were named GR:1, GR:2, GR:3.",
      "line 10: the mnemonic MWD_EQUIVALENT_CIRCULATION_DENSITY is longer than the 25 characters of a trace name; "
      "it was cut to MWD_EQUIVALENT_CIRCULATIO.",
      "line 11: the curve has no mnemonic; it was named CURVE5."}},
    {"odd_values.las", kDepthMetres, 1.0f, 4.0f, 0.0f,
     {{"A", "U", 0, {N, N, 2.5f, N}}, {"B", "U", 1, {N, N, 0.5f, N}}, {"C", "U", 0, {N, N, N, 0.725f}}},
     {"2 values are not numbers", "4 values are written as not-a-number text",
      "2 values are infinite or too large for a 32-bit float"}},
    {"short_and_long_rows.las", kDepthMetres, 1.0f, 4.0f, 0.0f,
     {{"A", "U", 0, {1.1f, 2.1f, 3.1f, 4.1f}}, {"B", "U", 1, {1.2f, N, 3.2f, 4.2f}}, {"C", "U", 0, {1.3f, N, 3.3f, 4.3f}}},
     {"At line 13 (2 of 4)", "At line 14 (6 for 4)"}},
    {"negative_zero_null.las", kDepthMetres, 20.05f, 20.1f, 0.0f,
     {{"GCPS", "cps", 0, {N, 12.5f}}, {"NEUT", "cps", 1, {0.0f, N}}},
     {"the NULL value is -0.0: only values written as -0 are taken as missing"}},
    {"unknown_index_unit.las", kDepthMetres, 10.0f, 10.5f, 0.0f,
     {{"GR", "GAPI", 0, {45.0f, 46.0f}}},
     {"line 7: the unit of the index DEPT is \"MTRS\", which is not a known length or time unit; the depths were read as metres."}},
    {"empty_index_unit.las", kDepthFeet, 0.0f, 2.0f, 0.0f,
     {{"BOTTOM", "ft", 0, {5725.966f, 15070.08f, 15152.6f}}},
     {"line 7: the unit of the index Index is empty; the depths were read as feet."}},
    {"index_equals_null.las", kDepthMetres, 999.0f, 999.5f, 900.0f,
     {{"DT", "US/M", 0, {N, 123.45f, 124.5f}}},
     {"1 index value equals the NULL value 999.25; it was kept as a depth"}},
    {"repeated_and_backtracking_depths.las", kDepthMetres, 9.0f, 11.0f, 0.0f,
     {{"GR", "GAPI", 0, {7.0f, 6.0f, 1.0f, 2.0f, 5.0f}}},
     {"3 data rows lie inside the depth range already read; they were not written. First at line 12 \"10.5\", line "
      "13 \"10.2\", line 17 \"11\"."}},
    {"sections_repeated.las", kDepthMetres, 1669.875f, 1670.0f, 1600.0f,
     {{"DT", "US/M", 0, {124.45f, 123.45f}}},
     {"line 9: a second curve section ~CURVE", "line 16: the data section ~A2 comes after the one already read"}},
    {"nameless_data_section.las", kDepthFeet, 1088.1737f, 1088.6737f, 1000.0f,
     {{"TENS", "LBF", 0, {339.4208f, 340.4208f}}, {"3'TRA", kMicro + "S", 1, {776.7905f, 777.7905f}}},
     {"line 11: a section line without a name after the curve section was read as the ~A (data) section."}},
    {"cyrillic_units.las", kDepthMetres, 12.0f, 12.1f, 0.0f,
     {{"RES", "\xD0\x9E\xD0\xBC\xC2\xB7\xD0\xBC", 0, {50.5f, 51.5f}}},
     {"has characters that a document saves as '?'"}},
    {"units_utf8.las", kDepthMetres, 100.0f, 100.5f, 100.0f, UnitsTraces(), {}},
    {"units_utf8_bom.las", kDepthMetres, 100.0f, 100.5f, 100.0f, UnitsTraces(), {}},
    {"units_cp1252.las", kDepthMetres, 100.0f, 100.5f, 100.0f, UnitsTraces(),
     {"line 8: the text is not UTF-8; it was read as Windows-1252."}},
    {"units_utf16le_bom.las", kDepthMetres, 100.0f, 100.5f, 100.0f, UnitsTraces(), {}},
    {"units_utf16be_bom.las", kDepthMetres, 100.0f, 100.5f, 100.0f, UnitsTraces(), {}},
    {"units_utf16le_no_bom.las", kDepthMetres, 100.0f, 100.5f, 100.0f, UnitsTraces(),
     {"the file has no byte-order mark, but its zero bytes show UTF-16LE; it was read as such."}},
    {"units_utf16be_no_bom.las", kDepthMetres, 100.0f, 100.5f, 100.0f, UnitsTraces(),
     {"the file has no byte-order mark, but its zero bytes show UTF-16BE; it was read as such."}},
};

TEST(LasImportFixtures, EachFixtureGivesItsTraces)
{
    for (const FixtureCase& c : kImported) {
        CBoreAnalystDoc doc;
        CollectingMessageSink sink;
        const std::string path = kLasFixtures + c.file;
        const LasImportResult result = ImportLas(doc, path, sink);
        ASSERT_TRUE(result.imported) << c.file << "\n" << AllMessages(sink);
        ASSERT_EQ(doc.TraceCount(), c.traces.size()) << c.file;
        EXPECT_EQ(result.tracesAdded, c.traces.size()) << c.file;
        EXPECT_EQ(result.depthUnit, c.depthUnit) << c.file;
        EXPECT_FLOAT_EQ(result.viewTopDepth, c.viewTop) << c.file;
        for (std::size_t i = 0; i < c.traces.size(); ++i) {
            const TraceExpected& expected = c.traces[i];
            ASSERT_EQ(doc.TraceKindCode(i), 0u) << c.file;
            const auto& trace = dynamic_cast<const CLineTrace&>(doc.Trace(i));
            EXPECT_EQ(trace.Name(), expected.name) << c.file;
            EXPECT_EQ(trace.Units(), expected.units) << c.file;
            EXPECT_EQ(trace.TrackIndex(), expected.track) << c.file << " " << expected.name;
            EXPECT_EQ(trace.Track(), &doc.Track(static_cast<std::size_t>(expected.track))) << c.file;
            EXPECT_EQ(trace.DepthUnit(), c.depthUnit) << c.file;
            EXPECT_EQ(trace.SampleCount(), expected.values.size()) << c.file << " " << expected.name;
            EXPECT_EQ(trace.Values().Size(), trace.SampleCount()) << c.file;
            EXPECT_TRUE(SameFloats(ValuesOf(trace), expected.values)) << c.file << " " << expected.name;
            EXPECT_FLOAT_EQ(trace.FirstDepth(), c.firstDepth) << c.file;
            EXPECT_FLOAT_EQ(trace.LastDepth(), c.lastDepth) << c.file;
            for (std::size_t k = 1; k < trace.SampleCount(); ++k) {
                ASSERT_LT(trace.StoredDepth(k - 1), trace.StoredDepth(k)) << c.file << " depths must ascend";
            }
        }
        for (const char* part : c.messages) {
            EXPECT_TRUE(AnyMessageContains(sink, part)) << c.file << ": " << part << "\n" << AllMessages(sink);
        }
        if (c.messages.empty()) {
            EXPECT_TRUE(sink.messages.empty()) << c.file << "\n" << AllMessages(sink);
        }
        for (const Message& m : sink.messages) EXPECT_NE(m.severity, Severity::Error) << c.file << ": " << m.text;
    }
}

TEST(LasImportFixtures, RefusedFilesAddNothingAndSayWhy)
{
    struct Case {
        const char* file;
        const char* error;
    };
    const Case cases[] = {
        {"empty.las", "the file is empty"},
        {"no_sections.las", "so this is not a LAS file"},
        {"header_only.las", "the file holds only a header"},
        {"only_index_curve.las", "line 3: the curves of ~A are only the index DEPT"},
        {"data_before_curves.las", "line 4: the data section ~A comes before any curve section"},
        {"date_time_index.las", "line 7: the index TIME has the unit \"DD/MM/YYYY-HH:MM:SS\", a date or clock time"},
        {"no_numeric_index.las", "line 8: no data row has an index that can be a depth or time"},
    };
    for (const Case& c : cases) {
        CBoreAnalystDoc doc;
        doc.AddTrace(std::make_unique<CLineTrace>(1, kPenSolid, 0, 0.0f, 100.0f, "KEEP", "u"));
        int viewUpdates = 0;
        doc.AddViewUpdater([&] { ++viewUpdates; });
        CollectingMessageSink sink;
        const std::string path = kLasFixtures + c.file;
        const LasImportResult result = ImportLas(doc, path, sink);
        EXPECT_FALSE(result.imported) << c.file;
        EXPECT_EQ(result.tracesAdded, 0u) << c.file;
        EXPECT_EQ(doc.TraceCount(), 1u) << c.file;
        EXPECT_EQ(doc.DocumentTitle(), "BoreAnalyst1") << c.file;
        EXPECT_FALSE(doc.IsModified()) << c.file;
        EXPECT_EQ(viewUpdates, 0) << c.file;
        ASSERT_FALSE(sink.messages.empty()) << c.file;
        const Message& last = sink.messages.back();
        EXPECT_EQ(last.severity, Severity::Error) << c.file;
        EXPECT_EQ(last.text.rfind("Error: \"" + path + "\"", 0), 0u) << last.text;
        EXPECT_NE(last.text.find(c.error), std::string::npos) << last.text;
        const std::string ending = "; nothing was imported.";
        EXPECT_EQ(last.text.substr(last.text.size() - ending.size()), ending) << last.text;
    }
}

TEST(LasImportDocument, AFileThatCannotBeOpenedGivesTheFixedMessage)
{
    for (const std::string& path : {kLasFixtures + "does_not_exist.las", kLasFixtures}) {
        CBoreAnalystDoc doc;
        CollectingMessageSink sink;
        EXPECT_FALSE(ImportLas(doc, path, sink).imported);
        EXPECT_EQ(sink.Texts(), std::vector<std::string>{"Error: unable to open file."}) << path;
        EXPECT_EQ(doc.TraceCount(), 0u);
    }
}

TEST(LasImportDocument, TitleIsTakenFromTheFileOnlyWhileItIsTheDefaultOne)
{
    struct Case {
        const char* before;
        const char* after;
    };
    const Case cases[] = {
        {"BoreAnalyst1", "basic_metres"},
        {"BoreAnalyst", "basic_metres"},
        {"BoreAnalyst7 copy", "basic_metres"},
        {"Boreanalyst1", "Boreanalyst1"}, // the comparison is exact
        {"Well 12", "Well 12"},
        {"BoreAnalys", "BoreAnalys"},
    };
    for (const Case& c : cases) {
        CBoreAnalystDoc doc;
        doc.SetDocumentTitle(c.before);
        CollectingMessageSink sink;
        ASSERT_TRUE(ImportLas(doc, kLasFixtures + "basic_metres.las", sink).imported);
        EXPECT_EQ(doc.DocumentTitle(), c.after) << c.before;
    }
}

TEST(LasImportDocument, TracksAlternateCountingTheTracesAlreadyThere)
{
    for (const std::size_t existing : {0u, 1u, 2u, 3u}) {
        CBoreAnalystDoc doc;
        for (std::size_t i = 0; i < existing; ++i) {
            doc.AddTrace(std::make_unique<CLineTrace>(1, kPenSolid, 0, 0.0f, 100.0f, "OLD" + std::to_string(i), "u"));
        }
        int viewUpdates = 0;
        doc.AddViewUpdater([&] { ++viewUpdates; });
        CollectingMessageSink sink;
        ASSERT_TRUE(ImportLas(doc, kLasFixtures + "wrapped_rows.las", sink).imported);
        ASSERT_EQ(doc.TraceCount(), existing + 5);
        for (std::size_t i = existing; i < doc.TraceCount(); ++i) {
            // The trace that makes the count odd goes to the left track (0).
            EXPECT_EQ(doc.Trace(i).TrackIndex(), (i + 1) % 2 == 1 ? 0 : 1) << existing << " " << i;
        }
        EXPECT_TRUE(doc.IsModified());
        EXPECT_EQ(viewUpdates, 1);
    }
}

TEST(LasImportDocument, DepthAndTimeAxesAreNotMixedInOneDocument)
{
    struct Case {
        const char* first;
        const char* second;
        const char* error;
    };
    const Case cases[] = {
        {"basic_metres.las", "time_index_seconds.las", "the index ETIM (unit \"S\") is a time axis but the document is depth-indexed"},
        {"time_index_seconds.las", "feet_logged_upwards.las", "the index DEPT (unit \"FT\") is a depth axis but the document is time-indexed"},
    };
    for (const Case& c : cases) {
        CBoreAnalystDoc doc;
        CollectingMessageSink sink;
        ASSERT_TRUE(ImportLas(doc, kLasFixtures + c.first, sink).imported);
        const std::size_t before = doc.TraceCount();
        EXPECT_FALSE(ImportLas(doc, kLasFixtures + c.second, sink).imported);
        EXPECT_EQ(doc.TraceCount(), before);
        EXPECT_TRUE(AnyMessageContains(sink, c.error)) << AllMessages(sink);
    }
    // The same axis in different units is fine: metres and feet, seconds and minutes.
    CBoreAnalystDoc doc;
    CollectingMessageSink sink;
    ASSERT_TRUE(ImportLas(doc, kLasFixtures + "basic_metres.las", sink).imported);
    ASSERT_TRUE(ImportLas(doc, kLasFixtures + "feet_logged_upwards.las", sink).imported);
    EXPECT_EQ(doc.TraceCount(), 4u);
    EXPECT_EQ(doc.Trace(2).TrackIndex(), 0);
}

TEST(LasImportDocument, ViewTopIsTheSmallestDepthCutAndLoweredToAHundred)
{
    struct Case {
        float storedFirst;
        std::int32_t depthUnit;
        float top;
    };
    const Case cases[] = {
        {1234.5f, kDepthMetres, 1200.0f}, {1200.0f, kDepthMetres, 1200.0f}, {99.9f, kDepthMetres, 0.0f},
        {0.0f, kDepthMetres, 0.0f},       {-5.5f, kDepthMetres, -100.0f},   {-100.0f, kDepthMetres, -100.0f},
        {30.48f, kDepthFeet, 100.0f}, // 100 ft, in the display unit
        {2.0f, kTimeSeconds, 100.0f}, // 2 minutes show as 120 s
    };
    for (const Case& c : cases) {
        CBoreAnalystDoc doc;
        auto trace = std::make_unique<CLineTrace>(1, kPenSolid, 0, 0.0f, 100.0f, "T", "u");
        trace->SetDepthUnit(c.depthUnit);
        trace->AppendSample(c.storedFirst, 1.0f);
        trace->AppendSample(c.storedFirst + 5000.0f, 1.0f);
        doc.AddTrace(std::move(trace));
        // An empty trace does not pull the top to zero.
        doc.AddTrace(std::make_unique<CLineTrace>(1, kPenSolid, 0, 0.0f, 100.0f, "EMPTY", "u"));
        EXPECT_FLOAT_EQ(LasViewTopDepth(doc), c.top) << c.storedFirst;
    }
    EXPECT_EQ(LasViewTopDepth(CBoreAnalystDoc()), 0.0f);
}

TEST(LasImportDocument, NamesAndUnitsSurviveSavingAndOpening)
{
    CBoreAnalystDoc doc;
    CollectingMessageSink sink;
    ASSERT_TRUE(ImportLas(doc, kLasFixtures + "duplicate_and_long_mnemonics.las", sink).imported);
    ASSERT_TRUE(ImportLas(doc, kLasFixtures + "units_cp1252.las", sink).imported);
    const auto reopened = ReadDocumentBytes(WriteDocumentBytes(doc), sink, "memory");
    ASSERT_EQ(reopened->TraceCount(), doc.TraceCount());
    for (std::size_t i = 0; i < doc.TraceCount(); ++i) {
        EXPECT_EQ(reopened->Trace(i).Name(), doc.Trace(i).Name());
        EXPECT_EQ(reopened->Trace(i).Units(), doc.Trace(i).Units());
        EXPECT_EQ(reopened->Trace(i).SampleCount(), doc.Trace(i).SampleCount());
    }
}

// The curves of one file keep one copy of their depths, and so do traces with the same
// depths in a document read back; changing one trace's depths changes no other.
TEST(LasImportDocument, CurvesShareTheirDepthsUntilOneChanges)
{
    CBoreAnalystDoc doc;
    CollectingMessageSink sink;
    ASSERT_TRUE(ImportLas(doc, kLasFixtures + "basic_metres.las", sink).imported);
    ASSERT_EQ(doc.TraceCount(), 2u);
    const auto shared = [](const CBoreAnalystDoc& d, std::size_t i, std::size_t j) {
        return d.Trace(i).StoredDepths().SharesStorageWith(d.Trace(j).StoredDepths());
    };
    EXPECT_TRUE(shared(doc, 0, 1));

    const float before = doc.Trace(1).StoredDepth(0);
    doc.Trace(1).SetDepth(0, before - 1.0f);
    EXPECT_EQ(doc.Trace(1).StoredDepth(0), before - 1.0f);
    EXPECT_EQ(doc.Trace(0).StoredDepth(0), before);
    EXPECT_FALSE(shared(doc, 0, 1));

    ASSERT_TRUE(ImportLas(doc, kLasFixtures + "basic_metres.las", sink).imported);
    const std::vector<std::uint8_t> bytes = WriteDocumentBytes(doc);
    const auto reopened = ReadDocumentBytes(bytes, sink, "memory");
    EXPECT_EQ(WriteDocumentBytes(*reopened), bytes);
    EXPECT_FALSE(shared(*reopened, 0, 1));
    EXPECT_FALSE(shared(*reopened, 1, 2));
    EXPECT_TRUE(shared(*reopened, 2, 3)); // equal depths one after the other are read once
}

} // namespace
} // namespace ba
