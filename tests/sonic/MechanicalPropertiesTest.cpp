// Elastic properties derived from velocity and density traces: the values against the
// textbook relations worked out here, the null rules, the checks made on OK and their
// messages, unit and depth handling, and the per-station shortcut against the plain
// depth lookup.

#include "sonic/MechanicalProperties.h"

#include "base/MessageSink.h"
#include "model/BoreAnalystDoc.h"
#include "model/LineTrace.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace ba {
namespace {

constexpr std::size_t kIrregularAxisFlag = 2;

struct TraceSetup {
    std::string name;
    std::string units;
    std::vector<float> values;
    std::int32_t depthUnit = kDepthMetres;
};

// Samples at stored depths 10, 11, 12, ... m. The axis is marked irregular so a depth
// lookup returns each sample itself rather than an interpolation with its predecessor
// (given one sample or at least three: of two, such a lookup finds only the first).
CLineTrace& AddTrace(CBoreAnalystDoc& doc, const TraceSetup& setup)
{
    auto trace = std::make_unique<CLineTrace>(1, kPenSolid, 0, 0.0f, 100.0f, setup.name, setup.units);
    trace->SetDepthUnit(setup.depthUnit);
    trace->SetFlag(kIrregularAxisFlag, true);
    for (std::size_t i = 0; i < setup.values.size(); ++i) {
        trace->AppendSample(10.0f + static_cast<float>(i), setup.values[i]);
    }
    return static_cast<CLineTrace&>(doc.AddTrace(std::move(trace)));
}

const CLineTrace& Output(const CBoreAnalystDoc& doc, std::string_view name)
{
    const CTrace* trace = doc.FindTrace(name);
    if (trace == nullptr) throw std::runtime_error("no output trace " + std::string(name));
    return dynamic_cast<const CLineTrace&>(*trace);
}

MechanicalOutputs AllOutputs()
{
    return {.bulkModulus = true, .lambdaMu = true, .poissonRatio = true, .vpVs = true, .youngModulus = true,
            .ratios = true};
}

CMechanicalProperties Dialog(MechanicalOutputs outputs, std::string vp = "VP", std::string vs = "VS",
                             std::string rho = "RHO")
{
    CMechanicalProperties dialog;
    dialog.outputs = outputs;
    dialog.compressionalTrace = std::move(vp);
    dialog.shearTrace = std::move(vs);
    dialog.densityTrace = std::move(rho);
    return dialog;
}

// Textbook relations for an isotropic solid (velocities in m/s, density in g/cc, moduli
// in GPa). The Young's modulus is the program's own expression,
// rho (3 Vp^2 - 4 Vs^2)(Vp^2 - 2 Vs^2) / (Vp^2 - Vs^2).
struct Expected {
    double bulk, lambda, mu, muOverLambda, rhoOverLambda, rhoOverMu, poisson, vpOverVs, young;
};

Expected Textbook(double vp, double vs, double rho)
{
    const double p = vp * vp;
    const double s = vs * vs;
    return {rho * (p - 4.0 * s / 3.0) / 1e6,
            rho * (p - 2.0 * s) / 1e6,
            rho * s / 1e6,
            s / (p - 2.0 * s),
            1e6 / (p - 2.0 * s),
            1e6 / s,
            (p - 2.0 * s) / (2.0 * (p - s)),
            vp / vs,
            rho * (3.0 * p - 4.0 * s) * (p - 2.0 * s) / (p - s) / 1e6};
}

// Stored as 32-bit floats, and the bulk modulus uses 1.3333334 for 4/3: agreement to a
// few parts in 10^7 is what a correct computation gives.
constexpr double kRelativeTolerance = 1e-6;

void ExpectNear(double actual, double expected, const char* what)
{
    EXPECT_NEAR(actual, expected, std::fabs(expected) * kRelativeTolerance) << what;
}

void ExpectStation(const CBoreAnalystDoc& doc, std::size_t k, const Expected& e)
{
    ExpectNear(Output(doc, "Bulk Modulus").Value(k), e.bulk, "Bulk Modulus");
    ExpectNear(Output(doc, "Lambda").Value(k), e.lambda, "Lambda");
    ExpectNear(Output(doc, "Shear Modulus - Mu").Value(k), e.mu, "Mu");
    ExpectNear(Output(doc, "Mu/Lambda").Value(k), e.muOverLambda, "Mu/Lambda");
    ExpectNear(Output(doc, "Rho/Lambda").Value(k), e.rhoOverLambda, "Rho/Lambda");
    ExpectNear(Output(doc, "Rho/Mu").Value(k), e.rhoOverMu, "Rho/Mu");
    ExpectNear(Output(doc, "Poisson's Ratio").Value(k), e.poisson, "Poisson");
    ExpectNear(Output(doc, "Vp/Vs").Value(k), e.vpOverVs, "Vp/Vs");
    ExpectNear(Output(doc, "Young's Modulus").Value(k), e.young, "Young");
}

TEST(MechanicalProperties, WorkedExampleGivesTheTextbookValues)
{
    CBoreAnalystDoc doc;
    AddTrace(doc, {"VP", "m/s", {5000.0f, 5000.0f, 5000.0f}});
    AddTrace(doc, {"VS", "M/SEC", {2000.0f, 2000.0f, 2000.0f}});
    AddTrace(doc, {"RHO", "g/cc", {2.3f, 2.3f, 2.3f}});
    CollectingMessageSink sink;
    auto dialog = Dialog(AllOutputs());
    ASSERT_TRUE(dialog.OnOk(doc, sink));
    EXPECT_TRUE(sink.messages.empty());

    const Expected e = Textbook(5000.0, 2000.0, 2.3);
    // The rounded figures quoted for this rock.
    EXPECT_NEAR(e.bulk, 45.233, 5e-4);
    EXPECT_NEAR(e.lambda, 39.1, 1e-9);
    EXPECT_NEAR(e.mu, 9.2, 1e-9);
    EXPECT_NEAR(e.poisson, 0.4048, 5e-5);
    EXPECT_NEAR(e.young, 109.85, 5e-3);
    for (std::size_t k = 0; k < 3; ++k) ExpectStation(doc, k, e);

    // Nine traces after the three inputs, in this order, with these units and scale.
    const std::pair<const char*, const char*> traces[] = {
        {"Bulk Modulus", "GPa"}, {"Lambda", "GPa"},  {"Shear Modulus - Mu", "GPa"},
        {"Mu/Lambda", ""},       {"Rho/Lambda", "us^2/m^2"}, {"Rho/Mu", "us^2/m^2"},
        {"Poisson's Ratio", ""}, {"Vp/Vs", ""},      {"Young's Modulus", "GPa"}};
    ASSERT_EQ(doc.TraceCount(), 12u);
    for (std::size_t i = 0; i < 9; ++i) {
        const CTrace& t = doc.Trace(3 + i);
        EXPECT_EQ(t.Name(), traces[i].first);
        EXPECT_EQ(t.Units(), traces[i].second);
        EXPECT_EQ(t.ScaleLeft(), 0.0f);
        EXPECT_EQ(t.ScaleRight(), 100.0f);
        EXPECT_EQ(t.SampleCount(), 3u);
    }
    EXPECT_TRUE(doc.IsModified());
}

TEST(MechanicalProperties, NullShearNullsWhatDependsOnVpAndKeepsThePreviousVs)
{
    CBoreAnalystDoc doc;
    AddTrace(doc, {"VP", "m/s", {kNullValue, 5000.0f, 5200.0f, 5400.0f}});
    AddTrace(doc, {"VS", "m/s", {kNullValue, 2100.0f, kNullValue, 2300.0f}});
    AddTrace(doc, {"RHO", "g/cc", {2.3f, 2.4f, 2.5f, kNullValue}});
    CollectingMessageSink sink;
    auto dialog = Dialog(AllOutputs());
    ASSERT_TRUE(dialog.OnOk(doc, sink));

    const char* vpDependent[] = {"Bulk Modulus", "Lambda", "Mu/Lambda", "Rho/Lambda",
                                 "Poisson's Ratio", "Vp/Vs", "Young's Modulus"};
    for (const char* name : vpDependent) {
        EXPECT_EQ(Output(doc, name).Value(0), kNullValue) << name;
        EXPECT_EQ(Output(doc, name).Value(2), kNullValue) << name << ": Vp was valid but the shear was null";
    }
    // Station 0: no shear value yet, so Vs is still the default 2000 m/s.
    ExpectNear(Output(doc, "Shear Modulus - Mu").Value(0), 2.3 * 2000.0 * 2000.0 / 1e6, "Mu at station 0");
    ExpectNear(Output(doc, "Rho/Mu").Value(0), 1e6 / (2000.0 * 2000.0), "Rho/Mu at station 0");
    // Station 2: Vs is station 1's 2100 m/s.
    ExpectNear(Output(doc, "Shear Modulus - Mu").Value(2), 2.5 * 2100.0 * 2100.0 / 1e6, "Mu at station 2");
    ExpectNear(Output(doc, "Rho/Mu").Value(2), 1e6 / (2100.0 * 2100.0), "Rho/Mu at station 2");
    ExpectStation(doc, 1, Textbook(5000.0, 2100.0, 2.4));
    // Station 3: null density nulls the density outputs only.
    for (const char* name : {"Bulk Modulus", "Lambda", "Shear Modulus - Mu", "Young's Modulus"}) {
        EXPECT_EQ(Output(doc, name).Value(3), kNullValue) << name;
    }
    const Expected e3 = Textbook(5400.0, 2300.0, 1.0);
    ExpectNear(Output(doc, "Vp/Vs").Value(3), e3.vpOverVs, "Vp/Vs at station 3");
    ExpectNear(Output(doc, "Poisson's Ratio").Value(3), e3.poisson, "Poisson at station 3");
    ExpectNear(Output(doc, "Rho/Lambda").Value(3), e3.rhoOverLambda, "Rho/Lambda at station 3");
}

TEST(MechanicalProperties, VelocityRatiosNeedNoDensity)
{
    CBoreAnalystDoc doc;
    AddTrace(doc, {"VP", "m/s", {5000.0f, 6000.0f, 4000.0f}});
    AddTrace(doc, {"VS", "m/s", {2000.0f, 3000.0f, 2000.0f}});
    CollectingMessageSink sink;
    auto dialog = Dialog({.poissonRatio = true, .vpVs = true}, "VP", "VS", "");
    ASSERT_TRUE(dialog.OnOk(doc, sink));
    EXPECT_TRUE(sink.messages.empty());
    ASSERT_EQ(doc.TraceCount(), 4u);
    EXPECT_EQ(doc.Trace(2).Name(), "Poisson's Ratio");
    EXPECT_EQ(doc.Trace(3).Name(), "Vp/Vs");
    const double vp[] = {5000.0, 6000.0, 4000.0};
    const double vs[] = {2000.0, 3000.0, 2000.0};
    for (std::size_t k = 0; k < 3; ++k) {
        const Expected e = Textbook(vp[k], vs[k], 1.0);
        ExpectNear(Output(doc, "Poisson's Ratio").Value(k), e.poisson, "Poisson");
        ExpectNear(Output(doc, "Vp/Vs").Value(k), e.vpOverVs, "Vp/Vs");
    }
}

struct ValidationCase {
    const char* what;
    MechanicalOutputs outputs;
    std::string vp, vs, rho;
    std::string vpUnits = "m/s";
    std::string vsUnits = "m/s";
    std::vector<std::string> messages;
};

class MechanicalValidation : public testing::TestWithParam<ValidationCase> {};

TEST_P(MechanicalValidation, ReportsInOrderAndAddsNothing)
{
    const ValidationCase& c = GetParam();
    CBoreAnalystDoc doc;
    AddTrace(doc, {"VP", c.vpUnits, {5000.0f}});
    AddTrace(doc, {"VS", c.vsUnits, {2000.0f}});
    AddTrace(doc, {"RHO", "g/cc", {2.3f}});
    CollectingMessageSink sink;
    auto dialog = Dialog(c.outputs, c.vp, c.vs, c.rho);
    EXPECT_FALSE(dialog.OnOk(doc, sink));
    EXPECT_EQ(sink.Texts(), c.messages);
    for (const Message& m : sink.messages) EXPECT_EQ(m.severity, Severity::Error);
    EXPECT_EQ(doc.TraceCount(), 3u);
    EXPECT_FALSE(doc.IsModified());
}

const std::string kNoVp(kNoCompressionalTraceMessage);
const std::string kNoVs(kNoShearTraceMessage);
const std::string kNoRho(kNoDensityTraceMessage);
const std::string kVpUnits(kCompressionalUnitsMessage);
const std::string kVsUnits(kShearUnitsMessage);

INSTANTIATE_TEST_SUITE_P(
    Cases, MechanicalValidation,
    testing::Values(
        ValidationCase{"moduli, nothing selected: all three reported", {.bulkModulus = true}, "", "", "", "m/s", "m/s",
                       {kNoVp, kNoVs, kNoRho}},
        ValidationCase{"moduli, density found but no shear", {.lambdaMu = true}, "VP", "", "RHO", "m/s", "m/s",
                       {kNoVs}},
        ValidationCase{"moduli, no compressional", {.youngModulus = true}, "", "VS", "RHO", "m/s", "m/s", {kNoVp}},
        ValidationCase{"moduli, no density", {.bulkModulus = true, .vpVs = true}, "VP", "VS", "", "m/s", "m/s",
                       {kNoRho}},
        ValidationCase{"velocity ratio, nothing selected", {.vpVs = true}, "", "", "RHO", "m/s", "m/s", {kNoVp, kNoVs}},
        ValidationCase{"Poisson, no compressional", {.poissonRatio = true}, "", "VS", "", "m/s", "m/s", {kNoVp}},
        ValidationCase{"ratios alone are checked as velocity outputs", {.ratios = true}, "VP", "", "", "m/s", "m/s",
                       {kNoVs}},
        ValidationCase{"compressional not a velocity", {.vpVs = true}, "VP", "VS", "", "API", "m/s", {kVpUnits}},
        ValidationCase{"shear not a velocity", {.vpVs = true}, "VP", "VS", "", "ft/s", "g/cc", {kVsUnits}},
        ValidationCase{"both wrong: the first stops", {.bulkModulus = true}, "VP", "VS", "RHO", "", "m", {kVpUnits}},
        ValidationCase{"a name that is no line trace", {.vpVs = true}, "VP", "DT", "", "m/s", "m/s",
                       {"Error: No line trace named \"DT\" in the document."}}));

TEST(MechanicalProperties, VelocityUnitsAreConvertedToMetresPerSecond)
{
    // 16404.2 ft/s and 60.96 us/ft are both (about) 5000 m/s; the shear is in m/min.
    struct UnitCase {
        const char* vpUnits;
        float vpValue;
        ConversionFactor expectedFactor;
    };
    const UnitCase cases[] = {{"FEET/SECOND", 16404.2f, {0.3048f, false}},
                              {"us/ft", 60.96f, {304800.0f, true}},
                              {"m/s", 5000.0f, {1.0f, false}}};
    for (const UnitCase& c : cases) {
        CBoreAnalystDoc doc;
        AddTrace(doc, {"VP", c.vpUnits, {c.vpValue}});
        AddTrace(doc, {"VS", "m/min", {120000.0f}});
        CollectingMessageSink sink;
        auto dialog = Dialog({.vpVs = true}, "VP", "VS", "");
        ASSERT_TRUE(dialog.OnOk(doc, sink)) << c.vpUnits;
        EXPECT_EQ(dialog.CompressionalFactor(), c.expectedFactor) << c.vpUnits;
        EXPECT_NEAR(Output(doc, "Vp/Vs").Value(0), 2.5, 2e-6) << c.vpUnits;
    }
}

TEST(MechanicalProperties, OutputsFollowTheFirstTracesDepthUnitAndScale)
{
    for (const std::int32_t unit : {kDepthFeet, kDepthMetres}) {
        CBoreAnalystDoc doc;
        CLineTrace& vp = AddTrace(doc, {"VP", "m/s", {5000.0f, 5100.0f, 5200.0f}, unit});
        vp.SetVerticalScale(25.0f);
        AddTrace(doc, {"VS", "m/s", {2000.0f, 2000.0f, 2000.0f}, unit});
        CollectingMessageSink sink;
        auto dialog = Dialog({.vpVs = true}, "VP", "VS", "");
        ASSERT_TRUE(dialog.OnOk(doc, sink));
        const CLineTrace& out = Output(doc, "Vp/Vs");
        EXPECT_EQ(out.DepthUnit(), unit);
        EXPECT_EQ(out.VerticalScale(), 25.0f);
        ASSERT_EQ(out.SampleCount(), 3u);
        for (std::size_t k = 0; k < 3; ++k) {
            // Feet stations are stored converted back to metres, so the output lies at the
            // input's own depths either way.
            EXPECT_NEAR(out.StoredDepth(k), vp.StoredDepth(k), 2e-6 * vp.StoredDepth(k)) << unit;
            EXPECT_NEAR(out.Depth(k), vp.Depth(k), 2e-6 * vp.Depth(k)) << unit;
        }
    }
}

// Random ascending depths with gaps of very different sizes, values with nulls.
std::vector<float> RandomDepths(std::mt19937& rng, std::size_t n)
{
    std::uniform_real_distribution<float> gap(0.001f, 2.0f);
    std::vector<float> depths(n);
    float d = std::uniform_real_distribution<float>(0.0f, 500.0f)(rng);
    for (float& x : depths) {
        x = d;
        d += gap(rng) * (rng() % 4 == 0 ? 20.0f : 1.0f);
    }
    return depths;
}

std::unique_ptr<CLineTrace> RandomTrace(std::mt19937& rng, const std::vector<float>& depths, float low, float high,
                                        std::int32_t depthUnit, bool irregular)
{
    auto trace = std::make_unique<CLineTrace>();
    trace->SetDepthUnit(depthUnit);
    trace->SetFlag(kIrregularAxisFlag, irregular);
    std::uniform_real_distribution<float> value(low, high);
    for (const float d : depths) trace->AppendSample(d, rng() % 7 == 0 ? kNullValue : value(rng));
    return trace;
}

TEST(MechanicalProperties, SharedDepthShortcutEqualsTheDepthLookup)
{
    std::mt19937 rng(20261122);
    const std::vector<MechanicalProperty> all = RequestedProperties(AllOutputs());
    for (int round = 0; round < 300; ++round) {
        const std::size_t n = 1 + rng() % 60;
        const std::int32_t unit = rng() % 2 == 0 ? kDepthMetres : kDepthFeet;
        const std::vector<float> depths = RandomDepths(rng, n);
        const auto vp = RandomTrace(rng, depths, 1500.0f, 7000.0f, unit, rng() % 2 == 0);
        // The shear shares the stations or not; the density shares them in another depth
        // unit or not.
        const bool shearShares = rng() % 3 != 0;
        const auto vs = RandomTrace(rng, shearShares ? depths : RandomDepths(rng, n), 500.0f, 3500.0f, unit,
                                    rng() % 2 == 0);
        const auto rho = RandomTrace(rng, depths, 1.5f, 3.0f, rng() % 4 == 0 ? 1 - unit : unit, rng() % 2 == 0);
        MechanicalInputs inputs{vp.get(), vs.get(), rho.get(), {0.3048f, false}, {1.0f, false}};

        std::vector<std::unique_ptr<CLineTrace>> fast, plain;
        std::vector<CLineTrace*> fastPtrs, plainPtrs;
        for (std::size_t j = 0; j < all.size(); ++j) {
            fast.push_back(std::make_unique<CLineTrace>());
            plain.push_back(std::make_unique<CLineTrace>());
            fastPtrs.push_back(fast.back().get());
            plainPtrs.push_back(plain.back().get());
        }
        ComputeMechanicalProperties(inputs, all, fastPtrs, StationLookup::Fastest);
        ComputeMechanicalProperties(inputs, all, plainPtrs, StationLookup::EveryStationByDepth);
        for (std::size_t j = 0; j < all.size(); ++j) {
            ASSERT_EQ(fast[j]->SampleCount(), n);
            ASSERT_EQ(plain[j]->Values().Size(), n);
            EXPECT_EQ(std::memcmp(fast[j]->Values().Data(), plain[j]->Values().Data(), n * sizeof(float)), 0)
                << "round " << round << ", " << PropertyTraceName(all[j]);
            EXPECT_EQ(std::memcmp(fast[j]->StoredDepths().Data(), plain[j]->StoredDepths().Data(), n * sizeof(float)),
                      0);
        }
    }
}

} // namespace
} // namespace ba
