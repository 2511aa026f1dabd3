#include "io/WellCadExport.h"

#include "io/AutomationRecorder.h"

#include "ExportTestDocuments.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace ba {
namespace {

using test::LineRecipe;
using test::MakeDocument;

struct Recorded {
    bool ok = false;
    std::vector<std::string> messages;
    std::vector<RecordedCall> calls;
    std::vector<std::string> statuses;
    std::vector<std::string> journal; // calls and statuses as JSON lines, in order
};

Recorded ExportRecorded(const CBoreAnalystDoc& doc, SimulatedWellCad answers = {})
{
    Recorded run;
    CRecordingAutomationFactory factory(
        [&](const RecordedCall& call) {
            run.calls.push_back(call);
            run.journal.push_back(RecordedCallJson(call));
        },
        answers);
    CollectingMessageSink sink;
    run.ok = ExportWellCad(doc, R"(C:\wells\out.wcl)", factory, sink, [&](const std::string& text) {
        run.statuses.push_back(text);
        run.journal.push_back(StatusJson(text));
    });
    run.messages = sink.Texts();
    return run;
}

std::vector<const RecordedCall*> CallsTo(const Recorded& run, const std::string& object, DispatchId dispid)
{
    std::vector<const RecordedCall*> found;
    for (const auto& call : run.calls) {
        if (call.object == object && call.dispid == dispid && call.kind != CallKind::Create) found.push_back(&call);
    }
    return found;
}

LineRecipe ThreeSampleGr()
{
    LineRecipe recipe;
    recipe.name = "GR";
    recipe.units = "API";
    recipe.scaleRight = 150.0f;
    recipe.samples = {{10.0f, 20.0f}, {10.5f, kNullValue}, {11.0f, 40.0f}};
    return recipe;
}

// A value as the journal writes it: {"TYPE": VALUE}, VALUE in JSON.
std::string JournalValue(const std::string& type, const std::string& json)
{
    return "{\"" + type + "\": " + json + "}";
}

// A call as the journal writes it; a call that answers nothing has no result.
std::string JournalCall(const std::string& object, int dispid, const std::string& kind, const std::string& args,
                        const std::string& result = "")
{
    std::string json = "{\"object\": \"" + object + "\", \"dispid\": " + std::to_string(dispid) + ", \"kind\": \"" +
                       kind + "\", \"args\": [" + args + "]";
    if (!result.empty()) json += ", \"result\": " + result;
    return json + "}";
}

// The arguments, in JSON, that one log is made with.
struct ExpectedLog {
    std::string title;
    std::string scaleLeft, scaleRight;
    std::string positionLeft, positionRight;
    std::string colour;
    std::string penWidth;
    std::string styled;
    std::string bottomDepth;
    std::string step;
    std::string progress; // of the status before the values: "trace N of M; line 0 of S"
    std::vector<std::string> values;
};

// Appends what the journal shows for one log: its insertion, its settings in the order
// they are made, the status, and a call for each value.
void AppendLogJournal(std::vector<std::string>& journal, const std::string& log, const ExpectedLog& e)
{
    const auto put = [&](int dispid, const std::string& type, const std::string& json) {
        journal.push_back(JournalCall(log, dispid, "put", JournalValue(type, json)));
    };
    const auto floats = [](const std::string& a, const std::string& b) {
        return JournalValue("float", a) + ", " + JournalValue("float", b);
    };
    journal.push_back(
        JournalCall("borehole", 13, "method", JournalValue("int16", "1"), JournalValue("object", "\"" + log + "\"")));
    put(1, "string", "\"" + e.title + "\"");
    put(9, "float", e.scaleLeft);
    put(10, "float", e.scaleRight);
    journal.push_back(JournalCall(log, 35, "method", floats(e.positionLeft, e.positionRight)));
    put(12, "int32", e.colour);
    put(13, "int16", e.penWidth);
    put(11, "bool", e.styled);
    put(6, "float", e.bottomDepth);
    put(27, "float", e.step);
    journal.push_back("{\"status\": \"WellCAD Automation: Writing " + e.progress +
                      " to WellCAD file...please wait.\"}");
    for (const std::string& value : e.values) {
        const std::string args = JournalValue("int32", "0") + ", " + JournalValue("float", value);
        journal.push_back(JournalCall(log, 48, "method", args));
    }
}

TEST(ExportWellCad, EveryCallInOrderWhenTheFirstTraceIsAnImage)
{
    // The feet image trace sets the depth unit (1, feet) but gets no log; it still counts
    // in "trace N of 3".
    LineRecipe res;
    res.name = "RES";
    res.units = "ohmm";
    res.samples = {{10.0f, 2.5f}, {10.5f, 4.0f}};
    res.track = 1;
    res.colourIndex = 3;
    res.penWidth = 2;
    res.penStyle = kPenDash;
    res.scaleLeft = 0.2f;
    res.scaleRight = 20.0f;
    auto doc = MakeDocument("W", {});
    doc->AddTrace(test::MakeImage({9.0f, 13.0f}, kDepthFeet));
    doc->AddTrace(test::MakeLine(ThreeSampleGr()));
    doc->AddTrace(test::MakeLine(res));

    // Each log is inserted, set up and filled by the same calls; only the arguments differ.
    const ExpectedLog logs[] = {
        {"GR(API)", "0", "150", "0", "0.3", "0", "3", "false", "11", "0.33333334", "trace 2 of 3; line 0 of 3",
         {"20", "-9999.99", "40"}},
        {"RES(ohmm)", "0.2", "20", "0.4", "1", "16711680", "6", "true", "10.5", "0.25", "trace 3 of 3; line 0 of 2",
         {"2.5", "4"}},
    };
    std::vector<std::string> expected = {
        R"j({"status": "Initializing WellCAD Automation...please wait."})j",
        R"j({"create": "WellCAD.Borehole", "result": {"object": "borehole"}})j",
        R"j({"object": "borehole", "dispid": 8, "kind": "get", "args": [], "result": {"int16": 3}})j",
        R"j({"object": "borehole", "dispid": 9, "kind": "get", "args": [], "result": {"int16": 928}})j",
        R"j({"object": "borehole", "dispid": 10, "kind": "get", "args": [], "result": {"int16": 0}})j",
        R"j({"object": "borehole", "dispid": 6, "kind": "get", "args": [], "result": {"object": "settings"}})j",
        R"j({"object": "settings", "dispid": 5, "kind": "put", "args": [{"int16": 1}]})j",
        R"j({"object": "settings", "dispid": 8, "kind": "method", "args": [{"float": 0.3}, {"float": 0.4}]})j",
    };
    for (std::size_t i = 0; i < std::size(logs); ++i) AppendLogJournal(expected, "log " + std::to_string(i), logs[i]);
    expected.push_back(
        R"j({"object": "borehole", "dispid": 15, "kind": "method", "args": [{"string": "C:\\wells\\out.wcl"}], "result": {"bool": true}})j");

    const Recorded run = ExportRecorded(*doc);
    EXPECT_TRUE(run.ok);
    EXPECT_TRUE(run.messages.empty());
    EXPECT_EQ(run.journal, expected);
}

TEST(ExportWellCad, DepthUnitFollowsTheFirstTrace)
{
    struct Case {
        std::int32_t unit;
        std::int16_t expected; // WellCAD: 0 metres, 1 feet
    };
    for (const Case c : {Case{kDepthMetres, 0}, Case{kDepthFeet, 1}, Case{kTimeMinutes, 1}}) {
        LineRecipe recipe = ThreeSampleGr();
        recipe.depthUnit = c.unit;
        LineRecipe second = ThreeSampleGr();
        second.depthUnit = kDepthMetres - c.expected; // the other unit: only the first counts
        const Recorded run = ExportRecorded(*MakeDocument("W", {recipe, second}));
        const auto puts = CallsTo(run, "settings", 5);
        ASSERT_EQ(puts.size(), 1u) << c.unit;
        EXPECT_EQ(puts[0]->args, std::vector<AutomationValue>{c.expected}) << c.unit;
    }
}

TEST(ExportWellCad, ColourIsSetOnlyFromTheSevenTableEntries)
{
    struct Case {
        std::int32_t index;
        std::optional<std::int32_t> colour;
    };
    const Case cases[] = {
        {0, 0x000000}, {1, 0x0000FF}, {2, 0x00FF00}, {3, 0xFF0000}, {4, 0xFF00FF},
        {5, 0xFFFF00}, {6, 0x00FFFF}, {7, std::nullopt}, {-1, std::nullopt},
    };
    for (const auto& c : cases) {
        LineRecipe recipe = ThreeSampleGr();
        recipe.colourIndex = c.index;
        const Recorded run = ExportRecorded(*MakeDocument("W", {recipe}));
        ASSERT_TRUE(run.ok) << c.index;
        const auto puts = CallsTo(run, "log 0", 12);
        if (!c.colour) {
            EXPECT_TRUE(puts.empty()) << c.index;
            // The rest of the log is still written.
            EXPECT_EQ(CallsTo(run, "log 0", 13).size(), 1u) << c.index;
            continue;
        }
        ASSERT_EQ(puts.size(), 1u) << c.index;
        EXPECT_EQ(puts[0]->args, std::vector<AutomationValue>{*c.colour}) << c.index;
    }
}

TEST(ExportWellCad, PositionByTrackAndPenWidthAndStyle)
{
    struct Case {
        std::int32_t track;
        float left, right;
        std::int32_t penWidth, penStyle;
        std::int16_t width;
        bool styled;
    };
    const Case cases[] = {
        {0, 0.0f, 0.3f, 1, kPenSolid, 3, false}, {1, 0.4f, 1.0f, 2, kPenDash, 6, true},
        {2, 0.4f, 0.7f, 0, kPenNull, 0, true},   {3, 0.7f, 1.0f, 5, kPenDot, 15, true},
        {-1, 0.7f, 1.0f, 1, kPenSolid, 3, false},
    };
    for (const auto& c : cases) {
        LineRecipe recipe = ThreeSampleGr();
        recipe.track = c.track;
        recipe.penWidth = c.penWidth;
        recipe.penStyle = c.penStyle;
        const Recorded run = ExportRecorded(*MakeDocument("W", {recipe}));
        // SetPosition, SetPenWidth and SetPenStyle, each made once.
        const std::pair<DispatchId, std::vector<AutomationValue>> calls[] = {
            {35, {c.left, c.right}},
            {13, {c.width}},
            {11, {c.styled}},
        };
        for (const auto& [dispid, args] : calls) {
            const auto made = CallsTo(run, "log 0", dispid);
            ASSERT_EQ(made.size(), 1u) << c.track << ", dispid " << dispid;
            EXPECT_EQ(made[0]->args, args) << c.track << ", dispid " << dispid;
        }
    }
}

TEST(ExportWellCad, StatusEveryHundredSamples)
{
    LineRecipe recipe = ThreeSampleGr();
    recipe.samples.clear();
    for (int i = 0; i < 250; ++i) recipe.samples.push_back({static_cast<float>(i) * 0.1f, static_cast<float>(i)});
    const Recorded run = ExportRecorded(*MakeDocument("W", {recipe}));
    ASSERT_TRUE(run.ok);
    const std::vector<std::string> expected = {
        "Initializing WellCAD Automation...please wait.",
        "WellCAD Automation: Writing trace 1 of 1; line 0 of 250 to WellCAD file...please wait.",
        "WellCAD Automation: Writing trace 1 of 1; line 100 of 250 to WellCAD file...please wait.",
        "WellCAD Automation: Writing trace 1 of 1; line 200 of 250 to WellCAD file...please wait.",
    };
    EXPECT_EQ(run.statuses, expected);
    const auto values = CallsTo(run, "log 0", 48);
    ASSERT_EQ(values.size(), 250u);
    EXPECT_EQ(values[249]->args, (std::vector<AutomationValue>{std::int32_t{0}, 249.0f}));
}

TEST(ExportWellCad, VersionCheck)
{
    struct Case {
        std::int16_t major, build;
        bool accepted;
    };
    const Case cases[] = {
        {3, 928, true}, {3, 0, true}, {5, 100, true}, {2, 928, false}, {3, -1, false}, {4, -1, false},
    };
    for (const auto& c : cases) {
        const Recorded run = ExportRecorded(*MakeDocument("W", {ThreeSampleGr()}), {true, c.major, c.build, 0});
        const std::string label = std::to_string(c.major) + " build " + std::to_string(c.build);
        EXPECT_EQ(run.ok, c.accepted) << label;
        EXPECT_EQ(CallsTo(run, "borehole", 15).size(), c.accepted ? 1u : 0u) << label;
        if (c.accepted) {
            EXPECT_TRUE(run.messages.empty()) << label;
        } else {
            EXPECT_EQ(run.messages, std::vector<std::string>{"Error: Requires WellCAD version 3.0 build 928 or greater."})
                << label;
            // Nothing after the version is read.
            ASSERT_FALSE(run.calls.empty());
            EXPECT_EQ(run.calls.back().dispid, 10) << label;
        }
    }
}

TEST(ExportWellCad, RefusedBeforeAnyCall)
{
    const Recorded noLines = ExportRecorded(*MakeDocument("W", {}));
    EXPECT_FALSE(noLines.ok);
    EXPECT_EQ(noLines.messages, std::vector<std::string>{"Error: No line traces present to export."});
    EXPECT_TRUE(noLines.journal.empty());

    SimulatedWellCad absent;
    absent.installed = false;
    const Recorded notInstalled = ExportRecorded(*MakeDocument("W", {ThreeSampleGr()}), absent);
    EXPECT_FALSE(notInstalled.ok);
    EXPECT_EQ(notInstalled.messages, std::vector<std::string>{"Error: WellCAD not installed or dongle not present."});
    EXPECT_EQ(notInstalled.journal,
              (std::vector<std::string>{R"j({"status": "Initializing WellCAD Automation...please wait."})j",
                                        R"j({"create": "WellCAD.Borehole", "result": {"empty": null}})j"}));
}

// A borehole whose answers and failures a test chooses.
struct Script {
    AutomationValue major = std::int16_t{3};
    bool insertGivesLog = true;
    DispatchId failingLogPut = -1;
};

class CScriptedObject final : public IAutomationObject {
public:
    CScriptedObject(const Script& script, bool isLog) : m_script(script), m_isLog(isLog) {}
    AutomationValue PropertyGet(DispatchId id) override
    {
        if (id == 8) return m_script.major;
        if (id == 6) return AutomationObjectPtr(std::make_shared<CScriptedObject>(m_script, false));
        return std::int16_t{928};
    }
    void PropertyPut(DispatchId id, const AutomationValue&) override
    {
        if (m_isLog && id == m_script.failingLogPut) throw AutomationError("property put 12 failed (refused by test)");
    }
    AutomationValue Method(DispatchId id, std::span<const AutomationValue>) override
    {
        if (id == 13 && m_script.insertGivesLog) return AutomationObjectPtr(std::make_shared<CScriptedObject>(m_script, true));
        return {};
    }

private:
    const Script& m_script;
    bool m_isLog;
};

class CScriptedFactory final : public IAutomationFactory {
public:
    explicit CScriptedFactory(Script script) : m_script(std::move(script)) {}
    AutomationObjectPtr Create(std::string_view) override { return std::make_shared<CScriptedObject>(m_script, false); }

private:
    Script m_script;
};

TEST(ExportWellCad, FailedCallsAndUnusableAnswersAreReported)
{
    struct Case {
        Script script;
        std::string reason;
    };
    const Case cases[] = {
        {{std::string("3.0"), true, -1}, "borehole GetVersionMajor: the answer is string, not an integer"},
        {{std::int16_t{3}, false, -1}, "borehole InsertNewLog: the answer is empty, not an object"},
        {{std::int16_t{3}, true, 12}, "log 0 SetPenColor: property put 12 failed (refused by test)"},
    };
    for (const auto& c : cases) {
        CScriptedFactory factory(c.script);
        CollectingMessageSink sink;
        EXPECT_FALSE(ExportWellCad(*MakeDocument("W", {ThreeSampleGr()}), "out.wcl", factory, sink, {}));
        EXPECT_EQ(sink.Texts(), std::vector<std::string>{"Error: WellCAD automation failed while exporting to "
                                                         "\"out.wcl\": " + c.reason + "."});
    }
}

} // namespace
} // namespace ba
