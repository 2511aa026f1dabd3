#include "model/BoreAnalystDoc.h"
#include "model/ClipboardSync.h"
#include "model/LineTrace.h"
#include "model/TraceClipboard.h"

#include <gtest/gtest.h>

#include <deque>

namespace ba {
namespace {

// Answers questions from a script and keeps what was asked.
class ScriptedQuestions final : public IYesNoQuestion {
public:
    explicit ScriptedQuestions(std::deque<bool> answers = {}) : m_answers(std::move(answers)) {}
    bool AskYesNo(const std::string& text) override
    {
        asked.push_back(text);
        if (m_answers.empty()) {
            ADD_FAILURE() << "no scripted answer for: " << text;
            return false;
        }
        const bool answer = m_answers.front();
        m_answers.pop_front();
        return answer;
    }
    std::vector<std::string> asked;

private:
    std::deque<bool> m_answers;
};

std::unique_ptr<CLineTrace> Line(const std::string& name, std::int32_t depthUnit, std::vector<float> depths,
                                 std::vector<float> values, const std::string& units = "u")
{
    auto t = std::make_unique<CLineTrace>(1, kPenSolid, 0, 0.0f, 100.0f, name, units);
    t->SetDepthUnit(depthUnit);
    for (std::size_t i = 0; i < depths.size(); ++i) t->AppendSample(depths[i], values.at(i));
    return t;
}

std::vector<std::uint8_t> BlockOf(const CLineTrace& trace)
{
    NullMessageSink sink;
    const CTrace* traces[] = {&trace};
    return CopyTraces(traces, sink).value();
}

std::vector<float> Floats(const CFloatArray& a) { return {a.Items().begin(), a.Items().end()}; }

const std::string kTimeMissing = "Error: No trace named \"Time\" found for syncronization.";
const std::string kDepthMissing = "Error: No trace named \"Depth\" found for syncronization.";

TEST(ClipboardPaste, VerticalAxisDecisionTable)
{
    struct Case {
        const char* name;
        std::int32_t documentUnit;
        std::int32_t traceUnit;
        std::deque<bool> answers;
        std::string question;       // empty: none is asked
        std::int32_t resultingUnit;
        float resultingScale;       // the document's first trace has 20, the pasted trace 10
        std::vector<std::string> messages;
    };
    const std::string timeQ(kSyncWithTimeQuestion);
    const std::string depthQ(kSyncWithDepthQuestion);
    const Case cases[] = {
        {"metres into metres", kDepthMetres, kDepthMetres, {}, "", kDepthMetres, 20.0f, {}},
        {"feet into metres takes metres", kDepthMetres, kDepthFeet, {}, "", kDepthMetres, 20.0f, {}},
        {"metres into feet takes feet", kDepthFeet, kDepthMetres, {}, "", kDepthFeet, 20.0f, {}},
        {"minutes into hours takes hours", kTimeHours, kTimeMinutes, {}, "", kTimeHours, 20.0f, {}},
        {"time into depth, No", kDepthMetres, kTimeMinutes, {false}, timeQ, kTimeMinutes, 10.0f, {}},
        {"time into depth, Yes, no Time trace", kDepthMetres, kTimeSeconds, {true}, timeQ, kTimeSeconds, 10.0f,
         {kTimeMissing}},
        {"depth into time, No", kTimeSeconds, kDepthFeet, {false}, depthQ, kDepthFeet, 10.0f, {}},
        {"depth into time, Yes, no Depth trace", kTimeDays, kDepthMetres, {true}, depthQ, kDepthMetres, 10.0f,
         {kDepthMissing}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        CBoreAnalystDoc doc;
        auto first = Line("GR", c.documentUnit, {100.0f}, {1.0f});
        first->SetVerticalScale(20.0f);
        doc.AddTrace(std::move(first));
        const auto pasted = Line("CAL", c.traceUnit, {12.5f, 13.0f}, {3.0f, 4.0f});

        ScriptedQuestions questions(c.answers);
        CollectingMessageSink sink;
        const PasteResult result = PasteTraces(doc, BlockOf(*pasted), "the clipboard", questions, sink);

        EXPECT_FALSE(result.freshDocument);
        EXPECT_FALSE(result.topDepth.has_value());
        EXPECT_EQ(questions.asked, c.question.empty() ? std::vector<std::string>{} : std::vector{c.question});
        EXPECT_EQ(sink.Texts(), c.messages);
        ASSERT_EQ(doc.TraceCount(), 2u);
        const auto& added = dynamic_cast<const CLineTrace&>(doc.Trace(1));
        EXPECT_EQ(added.DepthUnit(), c.resultingUnit);
        EXPECT_EQ(added.VerticalScale(), c.resultingScale);
        // Stored depths are never rescaled by a change of display unit.
        EXPECT_EQ(Floats(added.StoredDepths()), (std::vector<float>{12.5f, 13.0f}));
        EXPECT_EQ(Floats(added.Values()), (std::vector<float>{3.0f, 4.0f}));
        EXPECT_TRUE(doc.IsModified());
    }
}

TEST(ClipboardPaste, OtherKindsOnlyWarnWhenTheAxisClassesDiffer)
{
    // The rules for image, sonic and spectral traces look only at the base trace fields, so
    // a line trace stands in for them here.
    struct Case {
        const char* name;
        std::int32_t traceUnit;
        std::vector<std::string> messages;
        std::int32_t resultingUnit;
        float resultingScale;
    };
    const Case cases[] = {
        {"time trace into depth document", kTimeMinutes, {std::string(kImageAxisMismatchWarning)}, kTimeMinutes,
         10.0f},
        {"feet trace into metres document", kDepthFeet, {}, kDepthMetres, 20.0f},
    };
    for (const auto kind : {TraceKind::Image, TraceKind::Sonic, TraceKind::Spectral}) {
        for (const auto& c : cases) {
            SCOPED_TRACE(std::string(c.name) + " kind " + std::to_string(static_cast<int>(kind)));
            CBoreAnalystDoc doc;
            auto first = Line("GR", kDepthMetres, {100.0f}, {1.0f});
            first->SetVerticalScale(20.0f);
            doc.AddTrace(std::move(first));
            auto pasted = Line("IMG", c.traceUnit, {1.0f}, {1.0f});
            ScriptedQuestions noQuestions;
            CollectingMessageSink sink;
            PasteResult result;
            ApplyPastedAxis(doc, *pasted, static_cast<std::uint32_t>(kind), noQuestions, sink, result);
            EXPECT_TRUE(noQuestions.asked.empty());
            EXPECT_EQ(sink.Texts(), c.messages);
            EXPECT_EQ(pasted->DepthUnit(), c.resultingUnit);
            EXPECT_EQ(pasted->VerticalScale(), c.resultingScale);
            EXPECT_EQ(result.synchronised, 0u);
        }
    }
}

TEST(ClipboardPaste, YesReindexesATimeTraceThroughTheTimeTrace)
{
    CBoreAnalystDoc doc;
    auto first = Line("GR", kDepthFeet, {100.0f}, {1.0f});
    first->SetVerticalScale(20.0f);
    doc.AddTrace(std::move(first));
    // Time at 100, 110, (null at 120), 130 m: 600, 1200, -, 2400 s = 10, 20, -, 40 min.
    doc.AddTrace(Line("Time", kDepthMetres, {100.0f, 110.0f, 120.0f, 130.0f}, {600.0f, 1200.0f, kNullValue, 2400.0f},
                      "SECONDS"));
    // Samples at 5, 10, 15, 30, 40 and 45 minutes. 5 and 45 lie outside the reference;
    // 10 -> 100 m, 15 -> 105 m, 30 -> 120 m (across the null: 110 + 10/20 * 20), 40 -> 130 m.
    const auto pasted =
        Line("CCL", kTimeMinutes, {5.0f, 10.0f, 15.0f, 30.0f, 40.0f, 45.0f}, {1.0f, 2.0f, 3.0f, kNullValue, 5.0f, 6.0f});

    ScriptedQuestions questions({true});
    CollectingMessageSink sink;
    const PasteResult result = PasteTraces(doc, BlockOf(*pasted), "the clipboard", questions, sink);
    EXPECT_EQ(questions.asked, std::vector<std::string>{std::string(kSyncWithTimeQuestion)});
    EXPECT_EQ(sink.Texts(), std::vector<std::string>{
                                "Note: 2 of 6 samples of trace \"CCL\" lie outside trace \"Time\" and were dropped."});
    EXPECT_EQ(result.synchronised, 1u);
    EXPECT_EQ(result.droppedSamples, 2u);
    const auto& added = dynamic_cast<const CLineTrace&>(doc.Trace(2));
    EXPECT_EQ(Floats(added.StoredDepths()), (std::vector<float>{100.0f, 105.0f, 120.0f, 130.0f}));
    EXPECT_EQ(Floats(added.Values()), (std::vector<float>{2.0f, 3.0f, kNullValue, 5.0f}));
    EXPECT_EQ(added.DepthUnit(), kDepthFeet);
    EXPECT_EQ(added.VerticalScale(), 20.0f);
}

TEST(ClipboardPaste, YesReindexesADepthTraceThroughTheDepthTrace)
{
    CBoreAnalystDoc doc;
    doc.AddTrace(Line("GR", kTimeHours, {0.0f}, {1.0f}));
    // Depth in feet at 0, 10 and 20 minutes; it comes back up after 10 minutes.
    doc.AddTrace(Line("Depth", kTimeMinutes, {0.0f, 10.0f, 20.0f}, {0.0f, 1000.0f, 500.0f}, "FEET"));
    // 76.2 m = 250 ft: first reached at 2.5 min. 228.6 m = 750 ft: at 7.5 min on the way down.
    const auto pasted = Line("T", kDepthMetres, {76.2f, 228.6f}, {7.0f, 8.0f});
    ScriptedQuestions questions({true});
    CollectingMessageSink sink;
    PasteTraces(doc, BlockOf(*pasted), "the clipboard", questions, sink);
    EXPECT_EQ(questions.asked, std::vector<std::string>{std::string(kSyncWithDepthQuestion)});
    EXPECT_TRUE(sink.messages.empty()) << ::testing::PrintToString(sink.Texts());
    const auto& added = dynamic_cast<const CLineTrace&>(doc.Trace(2));
    ASSERT_EQ(added.SampleCount(), 2u);
    EXPECT_NEAR(added.StoredDepth(0), 2.5, 1e-4);
    EXPECT_NEAR(added.StoredDepth(1), 7.5, 1e-4);
    EXPECT_EQ(added.DepthUnit(), kTimeHours);
}

TEST(ClipboardPaste, ReferenceUnitsWithoutKeywordAreTakenAsStoredUnitsWithANote)
{
    CBoreAnalystDoc doc;
    doc.AddTrace(Line("GR", kDepthMetres, {0.0f}, {1.0f}));
    doc.AddTrace(Line("Time", kDepthMetres, {0.0f, 10.0f}, {0.0f, 5.0f}, "clock"));
    const auto pasted = Line("X", kTimeMinutes, {2.5f}, {1.0f});
    ScriptedQuestions questions({true});
    CollectingMessageSink sink;
    PasteTraces(doc, BlockOf(*pasted), "the clipboard", questions, sink);
    EXPECT_EQ(sink.Texts(), std::vector<std::string>{"Note: the units \"clock\" of trace \"Time\" name no time unit; "
                                                     "its values are taken as minutes."});
    EXPECT_EQ(Floats(doc.Trace(2).StoredDepths()), std::vector<float>{5.0f});
}

TEST(ClipboardPaste, ThePastedTraceIsNotItsOwnReference)
{
    CBoreAnalystDoc doc;
    doc.AddTrace(Line("GR", kDepthMetres, {0.0f}, {1.0f}));
    const auto pasted = Line("Time", kTimeMinutes, {1.0f, 2.0f}, {1.0f, 2.0f}, "MINUTES");
    ScriptedQuestions questions({true});
    CollectingMessageSink sink;
    PasteTraces(doc, BlockOf(*pasted), "the clipboard", questions, sink);
    EXPECT_EQ(sink.Texts(), std::vector<std::string>{kTimeMissing});
    EXPECT_EQ(doc.Trace(1).DepthUnit(), kTimeMinutes);
}

TEST(ClipboardPaste, ReferenceUnitKeywords)
{
    struct Case {
        const char* units;
        bool timeValues;
        double value;
        std::optional<double> stored; // none: the units name no unit of that axis
    };
    const Case cases[] = {
        {"SECONDS", true, 600.0, 10.0}, {"minutes", true, 7.5, 7.5},  {"Hours", true, 2.0, 120.0},
        {"DAYS", true, 0.5, 720.0},     {"TIME", true, 3.0, 3.0},     {"FEET", true, 1.0, std::nullopt},
        {"FEET", false, 1000.0, 304.8}, {"METERS", false, 4.0, 4.0},  {"mtrs", false, 4.0, 4.0},
        {"DEPTH", false, 4.0, 4.0},     {"HOURS", false, 1.0, std::nullopt}, {"", false, 1.0, std::nullopt},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.units) + (c.timeValues ? " as time" : " as depth"));
        const auto ratio = ReferenceUnitRatio(c.units, c.timeValues);
        ASSERT_EQ(ratio.has_value(), c.stored.has_value());
        if (ratio) {
            EXPECT_DOUBLE_EQ(ratio->ToStored(c.value), *c.stored);
        }
    }
}

TEST(ClipboardPaste, FreshDocumentSkipsAxisChecksAndPlacesTheViewTop)
{
    struct Case {
        const char* name;
        std::vector<std::pair<std::int32_t, float>> traces; // depth unit, stored first depth
        double top;
    };
    const Case cases[] = {
        {"one trace", {{kDepthMetres, 1234.5f}}, 1200.0},
        {"no traces in the block", {}, 9900.0},
        {"shallowest of several, mixed axes", {{kDepthMetres, 1234.5f}, {kTimeMinutes, 250.0f}}, 200.0},
        {"display units count: 100 m is 328 ft", {{kDepthFeet, 100.0f}}, 300.0},
        {"below 100", {{kDepthMetres, 99.9f}}, 0.0},
        {"above the surface", {{kDepthMetres, -50.0f}}, -100.0},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        std::vector<std::unique_ptr<CLineTrace>> traces;
        std::vector<const CTrace*> pointers;
        for (const auto& [unit, depth] : c.traces) {
            traces.push_back(Line("T", unit, {depth}, {1.0f}));
            pointers.push_back(traces.back().get());
        }
        NullMessageSink quiet;
        const auto block = CopyTraces(pointers, quiet).value();
        CBoreAnalystDoc doc;
        int updates = 0;
        doc.AddViewUpdater([&] { ++updates; });
        ScriptedQuestions noQuestions;
        CollectingMessageSink sink;
        const PasteResult result = PasteTraces(doc, block, "the clipboard", noQuestions, sink);
        EXPECT_TRUE(noQuestions.asked.empty());
        EXPECT_TRUE(sink.messages.empty());
        EXPECT_TRUE(result.freshDocument);
        EXPECT_EQ(result.topDepth, c.top);
        EXPECT_EQ(doc.TraceCount(), c.traces.size());
        // A paste of something is one change; a paste of nothing records none.
        EXPECT_EQ(updates, c.traces.empty() ? 0 : 1);
        EXPECT_EQ(doc.IsModified(), !c.traces.empty());
        EXPECT_EQ(doc.History().Size(), c.traces.empty() ? 0u : 1u);
    }
}

TEST(ClipboardPaste, NoDataChangesNothing)
{
    CBoreAnalystDoc doc;
    int updates = 0;
    doc.AddViewUpdater([&] { ++updates; });
    ScriptedQuestions noQuestions;
    CollectingMessageSink sink;
    const PasteResult result = PasteTraces(doc, std::nullopt, "the clipboard", noQuestions, sink);
    EXPECT_EQ(result.added, 0u);
    EXPECT_FALSE(result.topDepth.has_value());
    EXPECT_EQ(doc.TraceCount(), 0u);
    EXPECT_FALSE(doc.IsModified());
    EXPECT_EQ(updates, 0);
}

} // namespace
} // namespace ba
