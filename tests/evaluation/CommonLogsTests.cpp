// The common-logs dialog's logic: the checks on OK and on Calculate with their exact
// messages (nothing changes in the document after a refusal), the derived trace's name,
// unit, depths and null handling, fits through the dialog, and saved models.

#include "evaluation/CommonLogs.h"

#include "base/MessageSink.h"
#include "model/BoreAnalystDoc.h"
#include "model/LineTrace.h"
#include "repository/RepositoryDatabase.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
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
    float verticalScale = 10.0f;
};

// The axis is marked irregular so that a lookup at a sample's depth returns that sample.
CLineTrace& AddTrace(CBoreAnalystDoc& doc, const TraceSetup& setup)
{
    auto trace = std::make_unique<CLineTrace>(1, kPenSolid, 0, 0.0f, 100.0f, setup.name, "");
    trace->SetDepthUnit(setup.depthUnit);
    trace->SetVerticalScale(setup.verticalScale);
    trace->SetFlag(kIrregularAxisFlag, true);
    const double toStored = setup.depthUnit == kDepthFeet ? 0.3048 : 1.0;
    for (std::size_t i = 0; i < setup.values.size(); ++i) {
        trace->AppendSample(static_cast<float>(setup.depths[i] * toStored), setup.values[i]);
    }
    return static_cast<CLineTrace&>(doc.AddTrace(std::move(trace)));
}

// GR 40..120 API at 100..104 m with a null at 103 m; R and Rw for Archie; a short PHIN.
std::unique_ptr<CBoreAnalystDoc> Well()
{
    auto doc = std::make_unique<CBoreAnalystDoc>();
    const std::vector<float> depths = {100.0f, 101.0f, 102.0f, 103.0f, 104.0f};
    AddTrace(*doc, {"GR", depths, {40.0f, 60.0f, 80.0f, kNullValue, 120.0f}});
    AddTrace(*doc, {"R", depths, {25.0f, 11.1111111f, 6.25f, 4.0f, 2.7777778f}});
    AddTrace(*doc, {"RW", depths, {1.0f, 1.0f, 1.0f, 1.0f, 1.0f}});
    AddTrace(*doc, {"PHIN", {100.5f, 101.5f}, {0.3f, 0.25f}});
    return doc;
}

CCommonLogs Linear(std::string log = "GR")
{
    CCommonLogs dialog;
    dialog.equation = 0;
    dialog.logs = {log, "", ""};
    dialog.coefficients = {2.0f, 1.0f, 0.0f, 0.0f, 0.0f};
    return dialog;
}

CCommonLogs LinearFit(std::vector<GroundTruthEntry> groundTruth)
{
    CCommonLogs dialog = Linear();
    dialog.calculate = {true, true, false, false, false};
    dialog.groundTruth = std::move(groundTruth);
    return dialog;
}

TEST(CommonLogs, RefusalsReportTheirMessageAndLeaveTheDocumentAlone)
{
    struct Case {
        const char* name;
        CCommonLogs dialog;
        std::string message;
    };
    CCommonLogs noEquation = Linear();
    noEquation.equation = -1;
    CCommonLogs archieOneLog;
    archieOneLog.equation = 3;
    archieOneLog.logs = {"R", "", "RW"};
    const std::vector<Case> cases = {
        {"no equation", noEquation, "Error: No equation selected."},
        {"second log missing", archieOneLog, "Error: Not enough logs selected."},
        {"unknown trace", Linear("NOPE"), "Error: No line trace named \"NOPE\" in the document."},
        {"one point for two unknowns", LinearFit({{100.0f, 0.0f}}),
         "Error: Give one ground truth depth and value for each coefficient to calculate."},
        {"repeated depth", LinearFit({{101.0f, 0.0f}, {101.0f, 1.0f}}), "Error: Depth values must be unique."},
        {"repeated value", LinearFit({{100.0f, 0.5f}, {101.0f, 0.5f}}), "Error: Ground truth values must be unique."},
        {"depth below the log", LinearFit({{100.0f, 0.0f}, {150.0f, 1.0f}}),
         "Error: Log data not available at all specified depths."},
        {"null sample at the depth", LinearFit({{100.0f, 0.0f}, {103.0f, 1.0f}}),
         "Error: Log data not available at all specified depths."},
    };
    for (const Case& c : cases) {
        const auto doc = Well();
        CCommonLogs dialog = c.dialog;
        CollectingMessageSink sink;
        EXPECT_EQ(dialog.OnOk(*doc, sink), nullptr) << c.name;
        EXPECT_EQ(sink.Texts(), std::vector<std::string>{c.message}) << c.name;
        EXPECT_EQ(sink.messages.at(0).severity, Severity::Warning) << c.name;
        EXPECT_EQ(doc->TraceCount(), 4u) << c.name;
        EXPECT_FALSE(doc->IsModified()) << c.name;
        EXPECT_EQ(dialog.coefficients, c.dialog.coefficients) << c.name;
    }
}

TEST(CommonLogs, UnsolvableGroundTruthEndsWithTheCouldNotFindMessage)
{
    // Two depths with the same gamma value cannot give two different linear results.
    const auto doc = std::make_unique<CBoreAnalystDoc>();
    AddTrace(*doc, {"GR", {1.0f, 2.0f, 3.0f}, {50.0f, 50.0f, 70.0f}});
    CCommonLogs dialog = Linear();
    dialog.calculate = {true, true, false, false, false};
    dialog.groundTruth = {{1.0f, 0.2f}, {2.0f, 0.4f}};
    CollectingMessageSink sink;
    EXPECT_FALSE(dialog.OnCalculate(*doc, sink));
    ASSERT_FALSE(sink.messages.empty());
    EXPECT_EQ(sink.Texts().back(), "Error: Could not find coefficients.  Try different ground truth values.");
    // The singular Jacobian may be reported on the way, in the solver's own words.
    for (std::size_t i = 0; i + 1 < sink.messages.size(); ++i) {
        EXPECT_EQ(sink.messages[i].text, "Error: Singular matrix in routine ludcmp");
    }
    EXPECT_EQ(dialog.coefficients[0], 2.0f);
    EXPECT_EQ(dialog.coefficients[1], 1.0f);
}

TEST(CommonLogs, DerivedTraceFollowsLogOneSampleBySample)
{
    const auto doc = Well();
    CCommonLogs dialog = Linear();
    CollectingMessageSink sink;
    const CLineTrace* out = dialog.OnOk(*doc, sink);
    ASSERT_NE(out, nullptr);
    EXPECT_TRUE(sink.messages.empty());
    EXPECT_EQ(doc->TraceCount(), 5u);
    EXPECT_EQ(&doc->Trace(4), out);
    EXPECT_TRUE(doc->IsModified());
    // No name typed: the trace is named for what the equation derives.
    EXPECT_EQ(out->Name(), "Derived log");
    EXPECT_EQ(out->Units(), "");
    const std::vector<float> expected = {81.0f, 121.0f, 161.0f, kNullValue, 241.0f};
    ASSERT_EQ(out->SampleCount(), expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i) {
        EXPECT_EQ(out->Value(i), expected[i]) << i;
        EXPECT_EQ(out->Depth(i), 100.0f + static_cast<float>(i)) << i;
    }
    // The scale spans the finite values so the whole curve shows.
    EXPECT_EQ(out->ScaleLeft(), 81.0f);
    EXPECT_EQ(out->ScaleRight(), 241.0f);
}

TEST(CommonLogs, SecondLogIsReadAtTheSameIndexAndIsNullPastItsEnd)
{
    // PHIN has two samples at other depths than GR: equation 13 pairs GR[i] with PHIN[i].
    const auto doc = Well();
    CCommonLogs dialog;
    dialog.equation = 13;
    dialog.logs = {"GR", "PHIN", ""};
    dialog.coefficients = {10.0f, 0.0f, 0.0f, 0.0f, 0.0f};
    dialog.outputName = "PHI";
    CollectingMessageSink sink;
    const CLineTrace* out = dialog.OnOk(*doc, sink);
    ASSERT_NE(out, nullptr);
    EXPECT_EQ(out->Name(), "PHI");
    EXPECT_EQ(out->Units(), "P.U.");
    ASSERT_EQ(out->SampleCount(), 5u);
    EXPECT_FLOAT_EQ(out->Value(0), 40.0f - 3.0f);
    EXPECT_FLOAT_EQ(out->Value(1), 60.0f - 2.5f);
    for (std::size_t i = 2; i < 5; ++i) EXPECT_EQ(out->Value(i), kNullValue) << i;
}

TEST(CommonLogs, OutputTakesTheFirstTracesDepthUnitAndScaleAndStoresMetres)
{
    auto doc = std::make_unique<CBoreAnalystDoc>();
    AddTrace(*doc, {"GR", {1000.0f, 1000.5f, 1001.0f}, {10.0f, 20.0f, 30.0f}, kDepthFeet, 4.0f});
    CCommonLogs dialog = Linear();
    CollectingMessageSink sink;
    const CLineTrace* out = dialog.OnOk(*doc, sink);
    ASSERT_NE(out, nullptr);
    EXPECT_EQ(out->DepthUnit(), kDepthFeet);
    EXPECT_EQ(out->VerticalScale(), 4.0f);
    const auto& gr = dynamic_cast<const CLineTrace&>(doc->Trace(0));
    for (std::size_t i = 0; i < 3; ++i) {
        // Stored in metres: the display depth in feet times 0.3048, read back in feet.
        EXPECT_FLOAT_EQ(out->StoredDepths()[i], gr.Depth(i) * 0.3048f) << i;
        EXPECT_FLOAT_EQ(out->Depth(i), gr.Depth(i)) << i;
    }
}

TEST(CommonLogs, CalculateWritesFittedCoefficientsAndOkUsesThem)
{
    // φ = (R / (a·Rw))^(1/m) with a = 1, m = −2: R = 25 at φ = 0.2 and 6.25 at φ = 0.4.
    const auto doc = Well();
    CCommonLogs dialog;
    dialog.equation = 3;
    dialog.logs = {"R", "RW", ""};
    dialog.coefficients = {7.0f, 7.0f, 3.0f, 4.0f, 5.0f};
    // A tick on a slot the equation does not use counts for nothing.
    dialog.calculate = {true, true, false, false, true};
    dialog.groundTruth = {{100.0f, 0.2f}, {102.0f, 0.4f}};
    CollectingMessageSink sink;
    ASSERT_TRUE(dialog.OnCalculate(*doc, sink)) << testing::PrintToString(sink.Texts());
    EXPECT_NEAR(dialog.coefficients[0], 1.0f, 1e-4f);
    EXPECT_NEAR(dialog.coefficients[1], -2.0f, 1e-4f);
    EXPECT_EQ((std::vector<float>{dialog.coefficients[2], dialog.coefficients[3], dialog.coefficients[4]}),
              (std::vector<float>{3.0f, 4.0f, 5.0f}));

    const CLineTrace* out = dialog.OnOk(*doc, sink);
    ASSERT_NE(out, nullptr);
    EXPECT_EQ(out->Name(), "Porosity");
    const std::vector<float> porosity = {0.2f, 0.3f, 0.4f, 0.5f, 0.6f};
    for (std::size_t i = 0; i < porosity.size(); ++i) EXPECT_NEAR(out->Value(i), porosity[i], 2e-5f) << i;
}

TEST(CommonLogs, FitsVelocitiesInMetresPerSecond)
{
    // Raymer-Hunt: Vp = (1 − φ)²·Vma + φ·Vf with Vf = 1500 and Vma = 5500 m/s gives
    // 4605 m/s at φ = 0.1 and 3145 m/s at φ = 0.3. The starts are scaled by the Vp log,
    // so coefficients thousands of units from the grid's k·s values are still reached.
    auto doc = std::make_unique<CBoreAnalystDoc>();
    AddTrace(*doc, {"VP", {10.0f, 11.0f, 12.0f}, {4605.0f, 3145.0f, 3000.0f}});
    CCommonLogs dialog;
    dialog.equation = 10;
    dialog.logs = {"VP", "", ""};
    dialog.calculate = {true, true, false, false, false};
    dialog.groundTruth = {{10.0f, 0.1f}, {11.0f, 0.3f}};
    CollectingMessageSink sink;
    ASSERT_TRUE(dialog.OnCalculate(*doc, sink)) << testing::PrintToString(sink.Texts());
    EXPECT_NEAR(dialog.coefficients[0], 1500.0f, 0.5f);
    EXPECT_NEAR(dialog.coefficients[1], 5500.0f, 0.5f);
}

TEST(CommonLogs, TypedNumbersAreReadWholeOrRefusedNamingTheField)
{
    struct Case {
        const char* text;
        std::optional<float> value;
    };
    const Case cases[] = {
        {"2.5", 2.5f},   {" -3e2\t", -300.0f}, {"+1", 1.0f},         {"0.1", 0.1f},      {"", std::nullopt},
        {"  ", std::nullopt}, {"2,5", std::nullopt}, {"1e40", std::nullopt}, {"nan", std::nullopt},
        {"inf", std::nullopt}, {"+-1", std::nullopt}, {"m", std::nullopt},  {"1.5.2", std::nullopt},
    };
    for (const Case& c : cases) {
        CollectingMessageSink sink;
        EXPECT_EQ(ReadFieldNumber(c.text, "Coefficient 2 (m)", sink), c.value) << c.text;
        if (c.value) {
            EXPECT_TRUE(sink.messages.empty()) << c.text;
        } else {
            EXPECT_EQ(sink.Texts(), std::vector<std::string>{"Error: Coefficient 2 (m) must be a number; \"" +
                                                             std::string(c.text) + "\" is not."});
        }
    }
    // What a fit writes back into a field reads back as the same float.
    for (const float value : {0.1f, -2.15f, 5500.0f, 1.0e-7f, 0.61999995f}) {
        CollectingMessageSink sink;
        EXPECT_EQ(ReadFieldNumber(FieldNumberText(value), "x", sink), value);
    }
    EXPECT_EQ(FieldNumberText(0.1f), "0.1");
}

class CommonLogsModels : public ::testing::Test {
protected:
    void SetUp() override
    {
        database = RepositoryDatabase::Open(dir.Path("BARepository.mdb"), sink);
        ASSERT_NE(database, nullptr);
        repository.emplace(*database);
        ASSERT_TRUE(models().Open());
    }
    CEquationModelsRepository& models() { return *repository; }
    test::TempDir dir;
    CollectingMessageSink sink;
    std::unique_ptr<RepositoryDatabase> database;
    std::optional<CEquationModelsRepository> repository;
};

TEST_F(CommonLogsModels, SavedModelLoadsBackInAnotherDialog)
{
    CCommonLogs saving;
    saving.equation = 4;
    saving.coefficients = {0.62f, 2.15f, 0.05f, 0.0f, 0.0f};
    saving.modelName = "Humble sand";
    saving.modelDescription = "Tixier";
    ASSERT_TRUE(saving.OnSaveModel(models(), sink));

    CEquationModelsRepository reopened(*database);
    ASSERT_TRUE(reopened.Open());
    ASSERT_EQ(reopened.Records().size(), 1u);
    const EquationModelRecord& record = reopened.Records()[0];
    EXPECT_EQ(record.formula, 4); // the equation's number in the list
    EXPECT_EQ(record.description, "Tixier");

    CCommonLogs loading;
    ASSERT_TRUE(loading.OnLoadModel(reopened, "Humble sand", sink));
    EXPECT_EQ(loading.equation, 4);
    EXPECT_EQ(loading.coefficients, saving.coefficients);
    EXPECT_EQ(loading.modelName, "Humble sand");
    EXPECT_EQ(loading.modelDescription, "Tixier");
    EXPECT_TRUE(sink.messages.empty());
}

TEST_F(CommonLogsModels, SaveAndLoadRefusals)
{
    CCommonLogs dialog;
    dialog.equation = 0;
    dialog.modelName = "Linear";
    ASSERT_TRUE(dialog.OnSaveModel(models(), sink));

    struct Case {
        const char* name;
        std::function<bool(CCommonLogs&)> action;
        std::string message;
    };
    const std::vector<Case> cases = {
        {"save without a name", [&](CCommonLogs& d) { d.modelName.clear(); return d.OnSaveModel(models(), sink); },
         "Error: No name specified."},
        {"save under a taken name", [&](CCommonLogs& d) { return d.OnSaveModel(models(), sink); },
         "Error: A model with this name already exists in the repository!"},
        {"save without an equation",
         [&](CCommonLogs& d) {
             d.equation = -1;
             d.modelName = "Other";
             return d.OnSaveModel(models(), sink);
         },
         "Error: No equation selected."},
        {"load with none chosen", [&](CCommonLogs& d) { return d.OnLoadModel(models(), "", sink); },
         "Error: No model selected."},
        {"load an unknown name (case matters)", [&](CCommonLogs& d) { return d.OnLoadModel(models(), "linear", sink); },
         "Error: No model selected."},
    };
    for (const Case& c : cases) {
        CCommonLogs d = dialog;
        sink.messages.clear();
        EXPECT_FALSE(c.action(d)) << c.name;
        EXPECT_EQ(sink.Texts(), std::vector<std::string>{c.message}) << c.name;
    }
    CEquationModelsRepository reopened(*database);
    ASSERT_TRUE(reopened.Open());
    EXPECT_EQ(reopened.Names(), std::vector<std::string>{"Linear"});
}

TEST_F(CommonLogsModels, ModelNamingNoEquationOfTheListIsRefused)
{
    EquationModelRecord foreign;
    foreign.name = "From elsewhere";
    foreign.formula = 17;
    ASSERT_TRUE(models().AddNew(foreign));
    CCommonLogs dialog;
    EXPECT_FALSE(dialog.OnLoadModel(models(), "From elsewhere", sink));
    EXPECT_EQ(sink.Texts(), std::vector<std::string>{
                                "Error: Model \"From elsewhere\" names equation 17, which is not in the list."});
    EXPECT_EQ(dialog.equation, -1);
}

} // namespace
} // namespace ba
