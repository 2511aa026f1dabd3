#include "LasTestSupport.h"

#include "base/FileIO.h"
#include "model/Trace.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>

namespace ba {
namespace {

using test::AllMessages;
using test::AnyMessageContains;
using test::Column;
using test::LasText;
using test::ReadLasText;
using test::ReportsMessageOrNothing;

constexpr float kNull = kNullValue;

bool SameBits(float a, float b) { return std::memcmp(&a, &b, sizeof a) == 0; }

TEST(LasReaderValues, TokensBecomeFloatsOrNullWithTheRightReport)
{
    struct Case {
        const char* token;
        const char* null; // NULL line value, "" for none
        float expected;
        const char* message; // a part of the one message expected, "" for none
    };
    const Case cases[] = {
        {"2.5", "-999.25", 2.5f, ""},
        {"-999.25", "-999.25", kNull, ""},
        {"-999.2500", "-999.25", kNull, ""},
        {"9999", "9999", kNull, ""},
        {"-9999.99", "-999.25", kNull, ""}, // the document's own null value
        {"-999.25", "", -999.25f, "no NULL value was given"},
        {"NaN", "-999.25", kNull, "written as not-a-number text"},
        {"-nan", "-999.25", kNull, "written as not-a-number text"},
        {"-1.#IND0000", "-999.25", kNull, "written as not-a-number text"},
        {"(null)", "-999.25", kNull, "written as not-a-number text"},
        {"ERR", "-999.25", kNull, "is not a number"},
        {"1.0D+03", "-999.25", kNull, "is not a number"},
        {"1e39", "-999.25", kNull, "too large for a 32-bit float"},
        {"-inf", "-999.25", kNull, "too large for a 32-bit float"},
        {"+2.5", "-999.25", 2.5f, ""},
        {".5", "-999.25", 0.5f, ""},
        {"7.25E-1", "-999.25", 0.725f, ""},
        {"-0.0", "-0.0", kNull, "only values written as -0"},
        {"0.000", "-0.0", 0.0f, "only values written as -0"},
        {"123,5", "-999.25", 123.5f, "decimal comma"},
    };
    for (const Case& c : cases) {
        CollectingMessageSink sink;
        const LasReadResult r = ReadLasText(LasText(" DEPT.M :\n V.U :\n", std::string("1.0 ") + c.token + "\n", c.null), sink);
        ASSERT_TRUE(r.ok) << c.token << "\n" << AllMessages(sink);
        const std::vector<float> values = Column(r, 1);
        ASSERT_EQ(values.size(), 1u) << c.token;
        EXPECT_TRUE(SameBits(values[0], c.expected)) << c.token << ": " << values[0];
        EXPECT_TRUE(ReportsMessageOrNothing(sink, c.message)) << c.token;
    }
}

TEST(LasReaderValues, PlainAndGeneralParsingGiveTheFloatOfTheDecimalValue)
{
    // The same values once blank-separated (the fast path for plain decimals) and once
    // tab-separated (the general path); both must give float(strtod(text)) bit for bit.
    std::vector<std::string> tokens = {"-0.0", "007.50", "+1.25", "1.", ".75", "0.000000283831919",
                                       "123456789012345678", "9007199254740993", "3.4028235e38", "1e-45",
                                       "0.1", "2550.000", "-999.2501"};
    std::srand(12345);
    for (int i = 0; i < 3000; ++i) {
        const double v = (std::rand() - RAND_MAX / 2) / 997.0 * std::pow(10.0, std::rand() % 9 - 4);
        char text[64];
        const char* formats[] = {"%.4f", "%.9g", "%.17g", "%.3e", "%.1f", "%.12f"};
        std::snprintf(text, sizeof text, formats[i % 6], v);
        tokens.push_back(text);
    }
    std::string blanks;
    std::string tabs;
    for (std::size_t i = 0; i < tokens.size(); ++i) {
        blanks += std::to_string(i) + " " + tokens[i] + "\n";
        tabs += std::to_string(i) + "\t" + tokens[i] + "\n";
    }
    CollectingMessageSink sink;
    const LasReadResult plain = ReadLasText(LasText(" DEPT.M :\n V.U :\n", blanks, "-999.25"), sink);
    const LasReadResult general =
        ReadLasText(LasText(" DEPT.M :\n V.U :\n", tabs, "-999.25", " WRAP. NO :\n DLM. TAB :\n"), sink);
    ASSERT_TRUE(plain.ok && general.ok) << AllMessages(sink);
    const std::vector<float> a = Column(plain, 1);
    const std::vector<float> b = Column(general, 1);
    ASSERT_EQ(a.size(), tokens.size());
    ASSERT_EQ(b.size(), tokens.size());
    for (std::size_t i = 0; i < tokens.size(); ++i) {
        const auto expected = static_cast<float>(std::strtod(tokens[i].c_str(), nullptr));
        EXPECT_TRUE(SameBits(a[i], expected)) << tokens[i];
        EXPECT_TRUE(SameBits(b[i], expected)) << tokens[i];
    }
}

TEST(LasReaderRows, ShortLongAndIndexlessRows)
{
    struct Case {
        const char* name;
        const char* data;
        std::vector<float> depths;
        std::vector<float> a;
        std::vector<float> b;
        const char* message;
    };
    const Case cases[] = {
        {"short row: the rest is null", "1.0 1.5\n2.0 2.5 3.5\n", {1.0f, 2.0f}, {1.5f, 2.5f}, {kNull, 3.5f},
         "1 data line has fewer values than there are curves; the missing values were stored as null. At line 11 (2 of 3)"},
        {"long row: the extra values are ignored", "1.0 1.5 2.5 9.0 9.5\n", {1.0f}, {1.5f}, {2.5f},
         "1 data line has more values than there are curves; the extra values were ignored. At line 11 (5 for 3)"},
        {"index that is not a number: row left out", "top 1.5 2.5\n2.0 3.5 4.5\n", {2.0f}, {3.5f}, {4.5f},
         "1 data row has no number as its index; it was left out. At line 11 \"top\""},
        {"blank and comment lines in the data are skipped", "1.0 1.5 2.5\n\n# comment\n  \n2.0 3.5 4.5\n",
         {1.0f, 2.0f}, {1.5f, 3.5f}, {2.5f, 4.5f}, ""},
    };
    for (const Case& c : cases) {
        CollectingMessageSink sink;
        const LasReadResult r = ReadLasText(LasText(" DEPT.M :\n A.U :\n B.U :\n", c.data), sink);
        ASSERT_TRUE(r.ok) << c.name << "\n" << AllMessages(sink);
        EXPECT_EQ(Column(r, 0), c.depths) << c.name;
        EXPECT_EQ(Column(r, 1), c.a) << c.name;
        EXPECT_EQ(Column(r, 2), c.b) << c.name;
        EXPECT_TRUE(ReportsMessageOrNothing(sink, c.message)) << c.name;
    }
}

TEST(LasReaderRows, DeeperRowsGoToTheDeepEndShallowerToTheShallowEndOthersAreNotWritten)
{
    struct Case {
        const char* name;
        std::vector<std::pair<float, float>> rows; // depth, value in file order
        std::vector<float> depths;                 // stored, ascending
        std::vector<float> values;
        std::size_t notWritten;
    };
    const Case cases[] = {
        {"ascending", {{1, 10}, {2, 20}, {3, 30}}, {1, 2, 3}, {10, 20, 30}, 0},
        {"descending (logged upwards)", {{3, 30}, {2, 20}, {1, 10}}, {1, 2, 3}, {10, 20, 30}, 0},
        {"both ways and back inside", {{2, 20}, {3, 30}, {1, 10}, {2.5f, 99}, {0, 0.5f}, {4, 40}},
         {0, 1, 2, 3, 4}, {0.5f, 10, 20, 30, 40}, 1},
        {"a repeated depth", {{1, 10}, {1, 11}, {2, 20}, {2, 21}}, {1, 2}, {10, 20}, 2},
        {"the first row is always taken", {{5, 50}}, {5}, {50}, 0},
    };
    for (const Case& c : cases) {
        std::string data;
        for (const auto& [depth, value] : c.rows) data += std::to_string(depth) + " " + std::to_string(value) + "\n";
        CollectingMessageSink sink;
        const LasReadResult r = ReadLasText(LasText(" DEPT.M :\n V.U :\n", data), sink);
        ASSERT_TRUE(r.ok) << c.name;
        EXPECT_EQ(Column(r, 0), c.depths) << c.name;
        EXPECT_EQ(Column(r, 1), c.values) << c.name;
        EXPECT_EQ(r.rowsRead, c.rows.size()) << c.name;
        if (c.notWritten > 0) {
            EXPECT_TRUE(AnyMessageContains(sink, std::to_string(c.notWritten) + " data row")) << c.name << AllMessages(sink);
            EXPECT_TRUE(AnyMessageContains(sink, "inside the depth range already read")) << c.name;
        } else {
            EXPECT_TRUE(sink.messages.empty()) << c.name << "\n" << AllMessages(sink);
        }
    }
}

TEST(LasReaderRows, IndexIsConvertedToStoredMetresOrMinutes)
{
    struct Case {
        const char* unit;
        double fileValue;
        std::int32_t code;
        double stored;
    };
    const Case cases[] = {
        {"M", 1234.5, 1, 1234.5}, {"FT", 1000.0, 0, 304.8}, {".1IN", 986904.0, 0, 2506.73616},
        {"S", 90.0, 2, 1.5},       {"MS", 30000.0, 2, 0.5},  {"MIN", 2.5, 3, 2.5},
        {"H", 0.5, 4, 30.0},       {"D", 2.0, 5, 2880.0},
    };
    for (const Case& c : cases) {
        CollectingMessageSink sink;
        const std::string curves = std::string(" INDEX.") + c.unit + " :\n V.U :\n";
        const LasReadResult r = ReadLasText(LasText(curves, std::to_string(c.fileValue) + " 1.0\n"), sink);
        ASSERT_TRUE(r.ok) << c.unit;
        EXPECT_EQ(r.indexUnit.depthUnitCode, c.code) << c.unit;
        EXPECT_EQ(Column(r, 0), std::vector<float>{static_cast<float>(c.stored)}) << c.unit;
    }
}

TEST(LasReaderRows, IndexTooCloseForAStoredFloatIsReported)
{
    CollectingMessageSink sink;
    // Days since 1900: a second is 1.2e-5 days, far below what a float of 61 million
    // minutes can tell apart.
    const LasReadResult r =
        ReadLasText(LasText(" TIME.D :\n V.U :\n", "42606.1666666667 1\n42606.1666782407 2\n"), sink);
    ASSERT_TRUE(r.ok);
    EXPECT_EQ(Column(r, 1), std::vector<float>{1.0f});
    EXPECT_TRUE(AnyMessageContains(sink, "too close to the one before to be told apart")) << AllMessages(sink);
}

TEST(LasReaderWrapped, RowsContinueOverLinesUntilEveryCurveHasAValue)
{
    struct Case {
        const char* name;
        const char* data;
        std::vector<float> depths;
        std::vector<float> c;
        const char* message;
    };
    const Case cases[] = {
        {"depth on its own line", "10.0\n 1.0 2.0\n 3.0\n11.0\n 4.0 5.0 6.0\n", {10, 11}, {3, 6}, ""},
        {"a row ends inside a line", "10.0 1.0 2.0 3.0 11.0\n 4.0 5.0 6.0\n", {10, 11}, {3, 6},
         "1 wrapped row ends inside a line; the values after it start the next row. At line 12"},
        {"an unfinished last row is left out", "10.0\n 1.0 2.0 3.0\n12.0 7.0\n 8.0\n", {10}, {3},
         "line 14: the last wrapped row has only 3 of its 4 values; it was left out."},
    };
    for (const Case& c : cases) {
        CollectingMessageSink sink;
        const LasReadResult r =
            ReadLasText(LasText(" DEPT.M :\n A.U :\n B.U :\n C.U :\n", c.data, "-999.25", " WRAP. YES :\n"), sink);
        ASSERT_TRUE(r.ok) << c.name << AllMessages(sink);
        EXPECT_TRUE(r.header.wrapped);
        EXPECT_EQ(Column(r, 0), c.depths) << c.name;
        EXPECT_EQ(Column(r, 3), c.c) << c.name;
        EXPECT_TRUE(ReportsMessageOrNothing(sink, c.message)) << c.name;
    }
}

TEST(LasReaderDelimiters, CommaTabAndBlankData)
{
    struct Case {
        const char* name;
        const char* versionLines;
        const char* curves;
        const char* data;
        std::vector<float> a;
        std::vector<float> b;
        const char* message;
    };
    const Case cases[] = {
        {"comma: quoted text with commas and a line break, an empty value", " DLM . COMMA :\n",
         " DEPT.M :\n A.U :\n T. : text {S}\n B.U :\n",
         "1.0,2.5,\"a, b\",3.5\n2.0,,plain,4.5\n3.0,5.5,\"multi\nline\",6.5\n", {2.5f, kNull, 5.5f},
         {3.5f, 4.5f, 6.5f}, "1 value is empty; it was stored as null. At line 14 column 2 (A)."},
        {"tab: an empty value, blanks around values", " DLM . TAB :\n", " DEPT.M :\n A.U :\n B.U :\n",
         "1.0\t 2.5 \t3.5\n2.0\t\t4.5\t\n", {2.5f, kNull}, {3.5f, 4.5f}, "1 value is empty"},
        {"blank: a colon inside a value splits the line only at blanks", "", " DEPT.M :\n T.U :\n A.U :\n",
         "1.0 04:00:00 2.5\n", {kNull}, {2.5f}, "split differently. At line 11 (at blanks only)"},
        {"comma declared but blanks used", " DLM . COMMA :\n", " DEPT.M :\n A.U :\n B.U :\n", "1.0 2.5 3.5\n",
         {2.5f}, {3.5f}, "(at blanks only)"},
    };
    for (const Case& c : cases) {
        CollectingMessageSink sink;
        const std::string version = std::string(" WRAP. NO :\n") + c.versionLines;
        const LasReadResult r = ReadLasText(LasText(c.curves, c.data, "-999.25", version), sink);
        ASSERT_TRUE(r.ok) << c.name << AllMessages(sink);
        EXPECT_EQ(Column(r, 1), c.a) << c.name;
        EXPECT_EQ(Column(r, 2), c.b) << c.name;
        EXPECT_TRUE(AnyMessageContains(sink, c.message)) << c.name << "\n" << AllMessages(sink);
    }
}

TEST(LasReaderReports, ManyProblemsMakeOneMessageWithTheFirstPlacesAndACount)
{
    std::string data;
    for (int i = 0; i < 10; ++i) data += std::to_string(i) + " bad" + std::to_string(i) + "\n";
    CollectingMessageSink sink;
    const LasReadResult r = ReadLasText(LasText(" DEPT.M :\n A.U :\n", data), sink);
    ASSERT_TRUE(r.ok);
    ASSERT_EQ(sink.messages.size(), 1u) << AllMessages(sink);
    EXPECT_EQ(sink.messages[0].severity, Severity::Warning);
    EXPECT_EQ(sink.messages[0].text,
              "Warning: \"test.las\": 10 values are not numbers; they were stored as null. First at line 10 column 2 "
              "(A) \"bad0\", line 11 column 2 (A) \"bad1\", line 12 column 2 (A) \"bad2\", and 7 more.");
}

TEST(LasReaderReports, RepeatedHeaderTroublesAreCountedBeyondTheFirstFew)
{
    std::string curves = " DEPT.M :\n A.U :\n";
    for (int i = 0; i < 8; ++i) curves += " no full stop " + std::to_string(i) + "\n";
    for (int i = 0; i < 7; ++i) curves += " T" + std::to_string(i) + ". : text {S}\n";
    std::string data = "1.0 2.0";
    for (int i = 0; i < 7; ++i) data += " word";
    CollectingMessageSink sink;
    const LasReadResult r = ReadLasText(LasText(curves, data + "\n"), sink);
    ASSERT_TRUE(r.ok) << AllMessages(sink);
    std::size_t noFullStop = 0;
    for (const Message& m : sink.messages) noFullStop += m.text.find("has no full stop") != std::string::npos ? 1 : 0;
    EXPECT_EQ(noFullStop, LasMessageLimiter::kPerKind) << AllMessages(sink);
    EXPECT_TRUE(AnyMessageContains(sink, "Note: \"test.las\": 3 more curve section lines without a full stop, treated "
                                         "alike and not reported one by one."))
        << AllMessages(sink);
    EXPECT_TRUE(AnyMessageContains(sink, "the curves T0 (line 17), T1 (line 18), T2 (line 19), T3 (line 20), T4 (line "
                                         "21) and 2 more hold text, not numbers, and were not imported."))
        << AllMessages(sink);
    EXPECT_EQ(Column(r, 1), std::vector<float>{2.0f});
}

TEST(LasReaderSections, Las30LogDataIsPreferredAndOtherDataIsTheFallback)
{
    const std::string head = "~Version\n VERS. 3.0 :\n WRAP. NO :\n DLM . COMMA :\n~Well\n NULL. -999.25 :\n";
    const std::string drilling = "~Drilling_Definition\n DEPT.ft : depth\n ROP.ft/hr : rate\n"
                                 "~Drilling_Data | Drilling_Definition\n322.0,24.0\n323.0,37.5\n";
    const std::string log = "~Log_Definition\n DEPT.M : depth\n DT.US/M : sonic\n"
                            "~Log_Data | Log_Definition\n100.0,123.5\n";
    struct Case {
        const char* name;
        std::string text;
        std::string section;
        std::string curve;
        std::vector<const char*> messages;
        std::vector<const char*> absent;
    };
    const Case cases[] = {
        {"log data after other data", head + drilling + log, "Log_Data", "DT",
         {"the log data ~Log_Data was imported instead of ~Drilling_Data (line 10)"},
         {"no log data section"}},
        {"other data only", head + drilling, "Drilling_Data", "ROP",
         {"test.las\" line 10: the file has no log data section (~A or ~Log_Data); its first data section "
          "~Drilling_Data was imported."},
         {}},
        {"other data that cannot be read, then log data",
         head + "~Drilling_Definition\n TIME.hh:mm:ss : clock\n ROP.ft/hr : rate\n~Drilling_Data | "
                "Drilling_Definition\n10:00:00,24.0\n" + log,
         "Log_Data", "DT", {}, {"clock"}},
        {"a second curve section before the data", head + "~Curve\n DEPT.M :\n A.U :\n~Curve\n DEPT.M :\n B.U :\n~A\n1.0,2.0\n",
         "A", "A", {"line 10: a second curve section ~Curve; its curves were ignored (those of line 7 are used)"}, {}},
        {"data after the data read", head + "~Curve\n DEPT.M :\n A.U :\n~A\n1.0,2.0\n~A2\n3.0,4.0\n", "A", "A",
         {"line 12: the data section ~A2 comes after the one already read (line 10) and was not imported"}, {}},
    };
    for (const Case& c : cases) {
        CollectingMessageSink sink;
        const LasReadResult r = ReadLasText(c.text, sink);
        ASSERT_TRUE(r.ok) << c.name << "\n" << AllMessages(sink);
        EXPECT_EQ(r.dataSection, c.section) << c.name;
        ASSERT_EQ(r.curves.size(), 1u) << c.name;
        EXPECT_EQ(r.curves[0].mnemonic, c.curve) << c.name;
        for (const char* m : c.messages) EXPECT_TRUE(AnyMessageContains(sink, m)) << c.name << ": " << m << "\n" << AllMessages(sink);
        for (const char* m : c.absent) EXPECT_FALSE(AnyMessageContains(sink, m)) << c.name << ": " << m;
    }
}

TEST(LasReaderRefusals, EachSaysWhereAndWhatAndReadsNothing)
{
    struct Case {
        std::string text;
        std::string error; // the whole message
    };
    const Case cases[] = {
        {"", "Error: \"test.las\": the file is empty; nothing was imported."},
        {"100.0, 0.63\n", "Error: \"test.las\": no line begins with \"~\", so this is not a LAS file; nothing was imported."},
        {"~V\n VERS. 2.0 :\n~Curve\n DEPT.M :\n GR.GAPI :\n",
         "Error: \"test.las\": there is no data section (~A): the file holds only a header; nothing was imported."},
        {"~V\n VERS. 2.0 :\n~W\n NULL. -999.25 :\n",
         "Error: \"test.las\": there is no curve section (~C) and no data section (~A); nothing was imported."},
        {"~Curve\n DEPT.F : depth\n~A\n 200.0\n",
         "Error: \"test.las\" line 3: the curves of ~A are only the index DEPT, with no curve to import; nothing was imported."},
        {"~Curve\n~A\n 200.0 1.0\n",
         "Error: \"test.las\" line 2: the curve section ~Curve (line 1) defines no curves, so the columns of ~A are "
         "unknown; nothing was imported."},
        {"~A\n 200.0 1.0\n",
         "Error: \"test.las\" line 1: the data section ~A comes before any curve section (~C) that would name its "
         "columns; nothing was imported."},
        {"~Curve\n TIME.HHMMSS :\n GR.GAPI :\n~A\n 120000 1.0\n",
         "Error: \"test.las\" line 2: the index TIME has the unit \"HHMMSS\", a date or clock time, which cannot serve "
         "as a depth or time axis; nothing was imported."},
        {"~Curve\n DEPT.M :\n GR.GAPI :\n~A\n top 1.0\n bottom 2.0\n",
         "Error: \"test.las\" line 5: no data row has an index that can be a depth or time (this one has \"top\"); "
         "nothing was imported."},
        {"~Curve\n DEPT.M :\n GR.GAPI :\n~A\n# only a comment\n",
         "Error: \"test.las\" line 4: the data section ~A holds no data; nothing was imported."},
    };
    for (const Case& c : cases) {
        CollectingMessageSink sink;
        const LasReadResult r = ReadLasText(c.text, sink);
        EXPECT_FALSE(r.ok) << c.text;
        EXPECT_EQ(r.rows, nullptr) << c.text;
        ASSERT_FALSE(sink.messages.empty()) << c.text;
        EXPECT_EQ(sink.messages.back().severity, Severity::Error) << c.text;
        EXPECT_EQ(sink.messages.back().text, c.error) << c.text;
    }
}

TEST(LasReaderChunks, EveryFixtureReadsTheSameWhateverTheChunkSize)
{
    for (const auto& entry : std::filesystem::directory_iterator(test::kLasFixtures)) {
        if (entry.path().extension() != ".las") continue;
        const std::vector<std::uint8_t> bytes = ReadWholeFile(entry.path());
        const std::string_view text(reinterpret_cast<const char*>(bytes.data()), bytes.size());
        CollectingMessageSink wholeSink;
        const LasReadResult whole = ReadLasText(text, wholeSink);
        for (const std::size_t chunk : {1, 2, 3, 7, 100}) {
            CollectingMessageSink sink;
            const LasReadResult r = ReadLasText(text, sink, chunk);
            const std::string name = entry.path().filename().string() + " in chunks of " + std::to_string(chunk);
            ASSERT_EQ(r.ok, whole.ok) << name;
            EXPECT_EQ(sink.Texts(), wholeSink.Texts()) << name;
            if (!r.ok) continue;
            for (std::size_t c = 0; c < r.rows->Columns(); ++c) EXPECT_EQ(Column(r, c), Column(whole, c)) << name;
        }
    }
}

TEST(LasColumns, BlocksKeepRowOrderBothWays)
{
    LasDepthOrderedRows rows(2);
    const std::size_t n = 300'000; // several blocks of the largest size
    for (std::size_t i = 0; i < n; ++i) {
        const float row[2] = {static_cast<float>(n - i), static_cast<float>(i)};
        ASSERT_EQ(rows.Add(row), i == 0 ? LasDepthOrderedRows::Placement::DeepEnd
                                        : LasDepthOrderedRows::Placement::ShallowEnd);
    }
    std::vector<float> depths(n);
    std::vector<float> values(n);
    rows.CopyColumn(0, depths.data());
    rows.CopyColumn(1, values.data());
    for (std::size_t k = 0; k < n; ++k) {
        ASSERT_EQ(depths[k], static_cast<float>(k + 1)) << k;
        ASSERT_EQ(values[k], static_cast<float>(n - 1 - k)) << k;
    }
    rows.ReleaseColumn(1);
    EXPECT_EQ(rows.Rows(), n);
}

} // namespace
} // namespace ba
