// Formula logs: the grammar and its precedence (text to value, or to the message with its
// column), null and domain handling with the warning, traces read at other depths exactly
// as ValueAt reads them, and the dialog's logic with its change and saved models.

#include "evaluation/FormulaEvaluation.h"
#include "evaluation/FormulaLogs.h"
#include "evaluation/FormulaParser.h"

#include "base/MessageSink.h"
#include "model/BoreAnalystDoc.h"
#include "model/DocumentHistory.h"
#include "model/LineTrace.h"
#include "repository/RepositoryDatabase.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <bit>
#include <utility>
#include <cmath>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace ba {
namespace {

constexpr std::size_t kIrregularAxisFlag = 2;

struct TraceSetup {
    std::string name;
    std::vector<float> depths; // display depths
    std::vector<float> values;
    std::int32_t depthUnit = kDepthMetres;
    bool irregular = true; // a lookup at a sample's depth then returns that sample
};

CLineTrace& AddTrace(CBoreAnalystDoc& doc, const TraceSetup& setup)
{
    auto trace = std::make_unique<CLineTrace>(1, kPenSolid, 0, 0.0f, 100.0f, setup.name, "");
    trace->SetDepthUnit(setup.depthUnit);
    trace->SetFlag(kIrregularAxisFlag, setup.irregular);
    const double toStored = 1.0 / DepthUnitFactor(setup.depthUnit);
    for (std::size_t i = 0; i < setup.values.size(); ++i) {
        trace->AppendSample(static_cast<float>(setup.depths[i] * toStored), setup.values[i]);
    }
    return static_cast<CLineTrace&>(doc.AddTrace(std::move(trace)));
}

// A = 2 and "GR Spectrum" = 3 at 100..102 m, a trace named "a]b" = 5.
std::unique_ptr<CBoreAnalystDoc> SmallWell()
{
    auto doc = std::make_unique<CBoreAnalystDoc>();
    const std::vector<float> depths = {100.0f, 101.0f, 102.0f};
    AddTrace(*doc, {"A", depths, {2.0f, 2.0f, 2.0f}});
    AddTrace(*doc, {"GR Spectrum", depths, {3.0f, 3.0f, 3.0f}});
    AddTrace(*doc, {"a]b", depths, {5.0f, 5.0f, 5.0f}});
    return doc;
}

struct GrammarCase {
    std::string formula;
    float value;                 // at 101 m, when the formula is accepted
    std::string message;         // otherwise the refusal
};

TEST(FormulaLog, GrammarPrecedenceAndMessages)
{
    const std::string nested = std::string(300, '(') + "1" + std::string(300, ')');
    const GrammarCase cases[] = {
        {"1 + 2 * 3", 7.0f, ""},
        {"(1 + 2) * 3", 9.0f, ""},
        {"10 - 4 - 3", 3.0f, ""},
        {"8 / 4 / 2", 1.0f, ""},
        {"-2^2", -4.0f, ""},
        {"2^3^2", 512.0f, ""},
        {"2^-1", 0.5f, ""},
        {"1.5e1 + .5", 15.5f, ""},
        {"sqrt(16) + Abs(-2) + LOG10(1000) + ln(exp(1))", 10.0f, ""},
        {"MIN(3, 1, 2) * 10 + MAX(3, 1, 2)", 13.0f, ""},
        {"IF(A > 1, 10, 20) + if(A <= 1, 1, 2)", 12.0f, ""},
        {"1 OR 0 AND 0", 1.0f, ""},
        {"NOT 1 = 2", 1.0f, ""},
        {"(2 <> 3) + (2 == 2) + (2 != 2) + (2 >= 3) + AND(1, 0) + OR(0, 0, 1)", 3.0f, ""},
        {"A * [GR Spectrum] + [a]]b]", 11.0f, ""},
        {"pi", static_cast<float>(3.14159265358979), ""},
        {"DEPTH * 2", 202.0f, ""},
        {"   ", 0.0f, "Error: No formula specified."},
        {"2 + * 3", 0.0f,
         "Error: Syntax error at column 5: expected a value (a number, a trace name, a function or \"(\"), found "
         "\"*\"."},
        {"(1 + 2", 0.0f, "Error: Syntax error at column 7: expected an operator or \")\", found the end of the formula."},
        {"A A", 0.0f, "Error: Syntax error at column 3: expected an operator or the end of the formula, found \"A\"."},
        {"[Ä] # 1", 0.0f,
         "Error: Syntax error at column 5: expected an operator or the end of the formula, found \"#\"."},
        {"MIN(1; 2)", 0.0f, "Error: Syntax error at column 6: expected an operator, \",\" or \")\", found \";\"."},
        {"1 + [GR", 0.0f, "Error: Syntax error at column 8: expected \"]\", found the end of the formula."},
        {"[] + 1", 0.0f, "Error: Syntax error at column 2: expected a trace name, found \"]\"."},
        {"SQRT 4", 0.0f, "Error: Syntax error at column 6: expected \"(\" after SQRT, found \"4\"."},
        {"1 AND", 0.0f,
         "Error: Syntax error at column 6: expected a value (a number, a trace name, a function or \"(\"), found the "
         "end of the formula."},
        {"2 * log(10)", 0.0f, "Error: Unknown function \"log\" at column 5."},
        {"IF(1, 2)", 0.0f, "Error: IF at column 1 takes 3 arguments, not 2."},
        {"MAX(1)", 0.0f, "Error: MAX at column 1 takes 2 or more arguments, not 1."},
        {"1e999", 0.0f, "Error: The number \"1e999\" at column 1 is out of range."},
        {nested, 0.0f, "Error: The formula is nested too deeply at column 257 (at most 256 levels)."},
        {"A + GR2", 0.0f, "Error: No line trace named \"GR2\" in the document."},
        {"[gr spectrum]", 0.0f, "Error: No line trace named \"gr spectrum\" in the document."},
    };
    const auto doc = SmallWell();
    const std::vector<float> depths = {101.0f};
    for (const GrammarCase& c : cases) {
        CollectingMessageSink sink;
        const auto values = EvaluateFormulaAtDepths(*doc, c.formula, depths, kDepthMetres, "OUT", sink);
        if (c.message.empty()) {
            ASSERT_TRUE(values) << c.formula << ": " << (sink.messages.empty() ? "" : sink.messages[0].text);
            EXPECT_FLOAT_EQ((*values)[0], c.value) << c.formula;
            EXPECT_TRUE(sink.messages.empty()) << c.formula;
        } else {
            EXPECT_FALSE(values) << c.formula;
            EXPECT_EQ(sink.Texts(), std::vector<std::string>{c.message}) << c.formula;
        }
    }
}

TEST(FormulaLog, TraceReferencesReadBackAsTheirTrace)
{
    for (const std::string name : {"GR", "GR:1", "RHOB.C", "_x2", "GR Spectrum", "Depth", "or", "Sqrt", "2ND",
                                   "a]b", "[x]"}) {
        const std::string reference = FormulaTraceReference(name);
        NullMessageSink sink;
        const auto parsed = ParseFormula(reference, sink);
        ASSERT_TRUE(parsed) << reference;
        EXPECT_EQ(parsed->traceNames, std::vector<std::string>{name}) << reference;
    }
    EXPECT_EQ(FormulaTraceReference("GR"), "GR");
    EXPECT_EQ(FormulaTraceReference("Depth"), "[Depth]");
}

struct NullCase {
    std::string formula;
    std::vector<float> values;
    std::vector<std::string> messages;
};

std::string NullWarning(std::size_t count, const std::string& depth)
{
    return "Warning: \"OUT\" is null at " + std::to_string(count) + (count == 1 ? " sample" : " samples") +
           " where a function was outside its domain, a division was by zero or a result overflowed; the first is "
           "at depth " +
           depth + ".";
}

TEST(FormulaLog, NullInputsAndDomainProblems)
{
    constexpr float N = kNullValue;
    // X = 4, null, -1, 0, 9 at 100..104 m. Expected values by hand; e^-100 = 3.72e-44 is
    // a denormal float, e^400 does not fit a float, e^900 not even a double.
    const NullCase cases[] = {
        {"SQRT(X)", {2.0f, N, N, 0.0f, 3.0f}, {NullWarning(1, "102")}},
        {"1 / X", {0.25f, N, -1.0f, N, 1.0f / 9.0f}, {NullWarning(1, "103")}},
        {"LN(X)", {std::log(4.0f), N, N, N, std::log(9.0f)}, {NullWarning(2, "102")}},
        {"IF(X > 0, LN(X), 0)", {std::log(4.0f), N, 0.0f, 0.0f, std::log(9.0f)}, {}},
        {"X^0 + 1/(1/X)", {5.0f, N, 0.0f, N, 10.0f}, {NullWarning(1, "103")}},
        {"EXP(X * 100)", {N, N, static_cast<float>(std::exp(-100.0)), 1.0f, N}, {NullWarning(2, "100")}},
        {"ASIN(X / 4) * 0 + MIN(X, 1)", {1.0f, N, -1.0f, 0.0f, N}, {NullWarning(1, "104")}},
    };
    auto doc = std::make_unique<CBoreAnalystDoc>();
    const CLineTrace& x = AddTrace(*doc, {"X", {100.0f, 101.0f, 102.0f, 103.0f, 104.0f}, {4.0f, N, -1.0f, 0.0f, 9.0f}});
    for (const NullCase& c : cases) {
        CollectingMessageSink sink;
        const auto trace = ComputeFormulaLog(*doc, c.formula, "OUT", "V/V", sink);
        ASSERT_TRUE(trace) << c.formula;
        EXPECT_EQ(sink.Texts(), c.messages) << c.formula;
        ASSERT_EQ(trace->SampleCount(), x.SampleCount());
        for (std::size_t i = 0; i < c.values.size(); ++i) {
            EXPECT_EQ(trace->StoredDepth(i), x.StoredDepth(i));
            EXPECT_FLOAT_EQ(trace->Value(i), c.values[i]) << c.formula << " at sample " << i;
        }
        EXPECT_EQ(trace->Name(), "OUT");
        EXPECT_EQ(trace->Units(), "V/V");
        EXPECT_TRUE(trace->IrregularAxis());
    }
}

// B: shifted, coarser and irregular; C: A's depths on a regular axis with nulls (ValueAt
// interpolates from the sample before, so a null neighbour reaches the next sample) and
// awkward values; D: in feet; E: two samples only; F: A's depths but one near the end; G:
// C's values on the very storage of A's depths. P and Q hold the same depths, one of them
// repeated near the end. The traces have 200,000 samples, so the work is split between
// threads.
TEST(FormulaLog, OtherTracesAreReadAsValueAtReadsThem)
{
    auto doc = std::make_unique<CBoreAnalystDoc>();
    constexpr std::size_t n = 200'000;
    TraceSetup a{"A", {}, {}, kDepthMetres, false};
    TraceSetup b{"B", {}, {}, kDepthMetres, true};
    TraceSetup c{"C", {}, {}, kDepthMetres, false};
    TraceSetup d{"D", {}, {}, kDepthFeet, false};
    for (std::size_t i = 0; i < n; ++i) {
        const float depth = 1000.0f + static_cast<float>(i) * 0.1f;
        a.depths.push_back(depth);
        a.values.push_back(static_cast<float>(i % 97));
        c.depths.push_back(depth);
        // Zeros, a denormal and a jump from a huge value: samples whose interpolation at
        // their own depth need not give back the sample.
        const float cValues[] = {kNullValue, 0.0f, 1e-40f, 3e38f, 1.0f, -0.0f};
        c.values.push_back(i % 1000 < 6 ? cValues[i % 1000] : std::sin(static_cast<float>(i) * 0.01f));
        if (i % 3 == 0) {
            b.depths.push_back(1003.05f + static_cast<float>(i) * 0.1f);
            b.values.push_back(i % 999 == 0 ? kNullValue : static_cast<float>(i) * 0.5f);
            d.depths.push_back((1000.0f + static_cast<float>(i) * 0.1f) * 3.28084f);
            d.values.push_back(static_cast<float>(i));
        }
    }
    TraceSetup f = c;
    f.name = "F";
    f.depths[n - 10] += 0.05f;
    TraceSetup p = c;
    p.name = "P";
    p.depths[n - 20] = p.depths[n - 21];
    TraceSetup q = p;
    q.name = "Q";
    q.values = a.values;
    const CLineTrace& first = AddTrace(*doc, a);
    for (const TraceSetup& setup : {b, c, d, f, p, q}) AddTrace(*doc, setup);
    AddTrace(*doc, {"E", {1000.0f, 1000.5f}, {1.0f, 2.0f}});
    CLineTrace& g = AddTrace(*doc, {"G", a.depths, c.values, kDepthMetres, false});
    ASSERT_TRUE(g.ShareDepthsIfSame(first));

    const std::pair<std::string, std::string> pairs[] = {{"A", "B"}, {"A", "C"}, {"A", "D"}, {"A", "E"},
                                                        {"A", "F"}, {"A", "G"}, {"P", "Q"}};
    for (const auto& [depthsFrom, other] : pairs) {
        const auto& base = static_cast<const CLineTrace&>(*doc->FindTrace(depthsFrom));
        const auto& trace = static_cast<const CLineTrace&>(*doc->FindTrace(other));
        CollectingMessageSink sink;
        // The first trace named gives the depths; the condition leaves only the other.
        const auto log = ComputeFormulaLog(*doc, "IF(0, " + depthsFrom + ", " + other + ")", "OUT", "", sink);
        ASSERT_TRUE(log) << other;
        ASSERT_EQ(log->SampleCount(), n);
        const double scale = DepthUnitFactor(trace.DepthUnit()) / DepthUnitFactor(base.DepthUnit());
        std::size_t mismatches = 0;
        for (std::size_t i = 0; i < n; ++i) {
            const float depth = trace.DepthUnit() == base.DepthUnit()
                                    ? base.Depth(i)
                                    : static_cast<float>(static_cast<double>(base.Depth(i)) * scale);
            const float expected = trace.ValueAt(depth);
            if (std::bit_cast<std::uint32_t>(log->Value(i)) != std::bit_cast<std::uint32_t>(expected) &&
                mismatches++ < 3) {
                ADD_FAILURE() << other << " at sample " << i << ": " << log->Value(i) << " != " << expected;
            }
        }
        EXPECT_EQ(mismatches, 0u) << other;
        EXPECT_TRUE(log->StoredDepths().SharesStorageWith(base.StoredDepths())) << other;
    }
}

TEST(FormulaLog, RefusalsOfTheTracesNamed)
{
    auto doc = std::make_unique<CBoreAnalystDoc>();
    AddTrace(*doc, {"GR", {100.0f, 101.0f}, {1.0f, 2.0f}});
    AddTrace(*doc, {"TEMP", {10.0f, 11.0f}, {20.0f, 21.0f}, kTimeMinutes});
    const std::pair<std::string, std::string> cases[] = {
        {"2 * PI", std::string(kFormulaNamesNoTraceMessage)},
        {"GR + TEMP", "Error: \"TEMP\" is indexed by time, but the log being computed is indexed by depth."},
    };
    for (const auto& [formula, message] : cases) {
        CollectingMessageSink sink;
        EXPECT_FALSE(ComputeFormulaLog(*doc, formula, "OUT", "", sink)) << formula;
        EXPECT_EQ(sink.Texts(), std::vector<std::string>{message}) << formula;
    }
}

class FormulaLogModels : public ::testing::Test {
protected:
    void SetUp() override
    {
        CollectingMessageSink sink;
        database = RepositoryDatabase::Open(dir.Path("BARepository.mdb"), sink);
        ASSERT_TRUE(database);
        models.emplace(*database);
        ASSERT_TRUE(models->Open());
    }
    test::TempDir dir;
    std::unique_ptr<RepositoryDatabase> database;
    std::optional<CFormulaLogRepository> models;
};

TEST_F(FormulaLogModels, SaveFollowsTheNameRulesAndLoadsBack)
{
    struct SaveCase {
        std::string name;
        std::string formula;
        std::vector<std::string> messages; // none: saved
    };
    const SaveCase cases[] = {
        {"Archie", "SQRT(0.62/PHI^2.15*RW/RT)", {}},
        {"Archie", "RT", {"Error: A model with this name already exists in the repository!"}},
        {"", "RT", {"Error: No name specified."}},
        {"archie", "RT / 2", {}}, // names differ in case: a new model
        {"Broken", "RT +", {"Error: Syntax error at column 5: expected a value (a number, a trace name, a function "
                            "or \"(\"), found the end of the formula."}},
    };
    for (const SaveCase& c : cases) {
        CFormulaLogs dialog;
        dialog.modelName = c.name;
        dialog.formula = c.formula;
        dialog.outputName = "SW";
        dialog.modelDescription = "for " + c.name;
        CollectingMessageSink sink;
        EXPECT_EQ(dialog.OnSaveModel(*models, sink), c.messages.empty()) << c.name;
        EXPECT_EQ(sink.Texts(), c.messages) << c.name;
    }
    CFormulaLogRepository reopened(*database);
    ASSERT_TRUE(reopened.Open());
    EXPECT_EQ(reopened.Names(), (std::vector<std::string>{"Archie", "archie"}));

    CFormulaLogs dialog;
    CollectingMessageSink sink;
    EXPECT_FALSE(dialog.OnLoadModel(reopened, "", sink));
    EXPECT_FALSE(dialog.OnLoadModel(reopened, "ARCHIE", sink));
    EXPECT_EQ(sink.Texts(), (std::vector<std::string>{"Error: No model selected.", "Error: No model selected."}));
    ASSERT_TRUE(dialog.OnLoadModel(reopened, "Archie", sink));
    EXPECT_EQ(dialog.formula, "SQRT(0.62/PHI^2.15*RW/RT)");
    EXPECT_EQ(dialog.outputName, "SW");
    EXPECT_EQ(dialog.modelName, "Archie");
    EXPECT_EQ(dialog.modelDescription, "for Archie");
}

TEST(FormulaLog, OkAppliesOneUndoableChange)
{
    auto doc = SmallWell();
    CFormulaLogs dialog;
    dialog.formula = "A * 2";
    CollectingMessageSink sink;
    EXPECT_EQ(dialog.OnOk(*doc, sink), nullptr); // no output name
    dialog.outputName = "  ";
    EXPECT_EQ(dialog.OnOk(*doc, sink), nullptr);
    dialog.outputName = "A2";
    dialog.formula = "A * B";
    EXPECT_EQ(dialog.OnOk(*doc, sink), nullptr);
    EXPECT_EQ(sink.Texts(), (std::vector<std::string>{"Error: The trace name must not be empty.",
                                                      "Error: The trace name must not be empty.",
                                                      "Error: No line trace named \"B\" in the document."}));
    EXPECT_EQ(doc->TraceCount(), 3u);
    EXPECT_FALSE(doc->CanUndo());

    dialog.formula = "A * 2";
    dialog.outputName = " A2 ";
    const CLineTrace* added = dialog.OnOk(*doc, sink);
    ASSERT_NE(added, nullptr);
    EXPECT_EQ(doc->TraceCount(), 4u);
    EXPECT_EQ(&doc->Trace(3), added);
    EXPECT_EQ(added->Name(), "A2");
    EXPECT_EQ(added->Value(1), 4.0f);
    EXPECT_EQ(doc->History().UndoDescription(), "Formula Log A2");
    EXPECT_TRUE(doc->IsModified());
    doc->Undo();
    EXPECT_EQ(doc->TraceCount(), 3u);
}

} // namespace
} // namespace ba
