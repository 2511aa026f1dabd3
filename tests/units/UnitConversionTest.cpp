#include "model/BoreAnalystDoc.h"
#include "model/LineTrace.h"
#include "units/UnitConversion.h"

#include <gtest/gtest.h>

#include <limits>
#include <memory>
#include <string>
#include <vector>

namespace ba {
namespace {

// A trace of another kind, to sit between line traces in a document.
class OtherKindTrace final : public CTrace {
public:
    std::string_view ClassName() const override { return "CImageTrace"; }
    TraceKind Kind() const override { return TraceKind::Image; }
    std::unique_ptr<CTrace> Clone() const override { return std::make_unique<OtherKindTrace>(*this); }
};

struct TraceData {
    std::string name;
    std::string units;
    std::vector<float> values;
};

// A document of line traces, sampled at 100, 100.5, ... m, that counts its view updates.
struct Fixture {
    CBoreAnalystDoc doc;
    int viewUpdates = 0;
    CollectingMessageSink sink;

    explicit Fixture(const std::vector<TraceData>& traces)
    {
        for (const auto& data : traces) AddLine(data);
        doc.AddViewUpdater([this] { ++viewUpdates; });
    }

    void AddLine(const TraceData& data)
    {
        auto trace = std::make_unique<CLineTrace>(1, kPenSolid, 0, 0.0f, 100.0f, data.name, data.units);
        for (std::size_t i = 0; i < data.values.size(); ++i) {
            trace->AppendSample(100.0f + 0.5f * static_cast<float>(i), data.values[i]);
        }
        doc.AddTrace(std::move(trace));
    }

    const CLineTrace& Line(std::size_t i) const { return dynamic_cast<const CLineTrace&>(doc.Trace(i)); }
    std::vector<float> Values(std::size_t i) const
    {
        const auto items = Line(i).Values().Items();
        return {items.begin(), items.end()};
    }
};

std::vector<std::string_view> Choices(const CUnitConversion& dialog)
{
    const auto choices = dialog.NewUnitChoices();
    return {choices.begin(), choices.end()};
}

TEST(UnitConversion, SelectionClassifiesTheLabelAndOffersItsTypesUnits)
{
    struct SelectionCase {
        std::string label;
        std::string status;
        std::vector<std::string_view> choices;
    };
    const SelectionCase cases[] = {
        {"FEET/SECOND", "Units: ft/s; Type: Velocity-Slowness", {"ft/s", "m/s", "ft/min", "m/min", "us/ft", "us/m"}},
        {"GAL/MIN", "Units: g/min; Type: Flow", {"gal/min", "gal/s", "l/min", "l/s"}},
        {"deg f", "Units: Deg F; Type: Temperature", {"Deg C", "Deg F"}},
        {"API", "Units: Unknown; Type: Unknown", {}},
        {"", "Units: Unknown; Type: Unknown", {}},
    };
    for (const auto& c : cases) {
        CUnitConversion dialog;
        EXPECT_EQ(dialog.StatusText(), "Units: Unknown; Type: Unknown");
        EXPECT_TRUE(Choices(dialog).empty());
        dialog.AddTrace("GR", "API");
        dialog.AddTrace("X", c.label);
        ASSERT_TRUE(dialog.SelectTrace(1));
        EXPECT_EQ(dialog.StatusText(), c.status) << c.label;
        EXPECT_EQ(Choices(dialog), c.choices) << c.label;
    }
}

TEST(UnitConversion, SelectionsOutsideTheListsSelectNothing)
{
    CUnitConversion dialog;
    dialog.AddTrace("DT", "US/FT");
    dialog.AddTrace("GR", "API");
    EXPECT_FALSE(dialog.SelectTrace(2));
    EXPECT_FALSE(dialog.SelectedTrace().has_value());

    ASSERT_TRUE(dialog.SelectTrace(0));
    EXPECT_TRUE(dialog.SelectNewUnit("ft/s"));
    EXPECT_EQ(dialog.SelectedNewUnit(), "ft/s");
    EXPECT_FALSE(dialog.SelectNewUnit("FT/S")) << "offered units are matched exactly";
    EXPECT_EQ(dialog.SelectedNewUnit(), "");
    EXPECT_TRUE(dialog.SelectNewUnitAt(5));
    EXPECT_EQ(dialog.SelectedNewUnit(), "us/m");
    EXPECT_FALSE(dialog.SelectNewUnitAt(6));
    EXPECT_EQ(dialog.SelectedNewUnit(), "");

    EXPECT_TRUE(dialog.SelectNewUnit("m/s"));
    EXPECT_FALSE(dialog.SelectTrace(7));
    EXPECT_EQ(dialog.SelectedNewUnit(), "m/s") << "a failed trace selection changes nothing";
    ASSERT_TRUE(dialog.SelectTrace(1));
    EXPECT_EQ(dialog.SelectedNewUnit(), "") << "a new trace refills the list";
    EXPECT_FALSE(dialog.SelectNewUnit("m/s"));
}

TEST(UnitConversion, OkReportsMissingSelectionsAndStaysOpen)
{
    using Step = void (*)(CUnitConversion&);
    struct OkCase {
        const char* what;
        Step prepare;
        std::vector<std::string> messages;
    };
    const std::string selectTrace(kSelectTraceMessage);
    const std::string selectUnits(kSelectNewUnitsMessage);
    const OkCase cases[] = {
        {"nothing selected", [](CUnitConversion&) {}, {selectTrace, selectUnits}},
        {"no new unit", [](CUnitConversion& d) { d.SelectTrace(1); }, {selectUnits}},
        {"a new unit not offered",
         [](CUnitConversion& d) {
             d.SelectTrace(1);
             d.SelectNewUnit("M");
         },
         {selectUnits}},
        {"an unrecognised label offers nothing",
         [](CUnitConversion& d) {
             d.SelectTrace(0);
             d.SelectNewUnit("m");
         },
         {selectUnits}},
        {"another trace selected after the unit",
         [](CUnitConversion& d) {
             d.SelectTrace(1);
             d.SelectNewUnit("m");
             d.SelectTrace(0);
         },
         {selectUnits}},
    };
    for (const auto& c : cases) {
        Fixture f({{"GR", "API", {20.0f, 30.0f}}, {"CALI", "FT", {0.5f, 0.75f}}});
        CUnitConversion dialog;
        dialog.AddLineTracesOf(f.doc);
        c.prepare(dialog);
        EXPECT_FALSE(dialog.OnOk(f.doc, f.sink)) << c.what;
        EXPECT_EQ(f.sink.Texts(), c.messages) << c.what;
        for (const auto& m : f.sink.messages) EXPECT_EQ(m.severity, Severity::Error);
        EXPECT_EQ(f.Values(1), (std::vector<float>{0.5f, 0.75f})) << c.what;
        EXPECT_EQ(f.Line(1).Units(), "FT") << c.what;
        EXPECT_FALSE(f.doc.IsModified()) << c.what;
        EXPECT_EQ(f.viewUpdates, 0) << c.what;
    }
}

TEST(UnitConversion, OkConvertsTheTraceInPlaceAndRelabelsIt)
{
    Fixture f({{"GR", "API", {20.0f, 30.0f, 40.0f}}, {"VEL", "FEET/SECOND", {2.5f, kNullValue, 8.0f}}});
    CUnitConversion dialog;
    dialog.AddLineTracesOf(f.doc);
    ASSERT_EQ(dialog.TraceCount(), 2u);
    ASSERT_TRUE(dialog.SelectTrace(1));
    ASSERT_TRUE(dialog.SelectNewUnit("m/s"));

    EXPECT_TRUE(dialog.OnOk(f.doc, f.sink));
    EXPECT_TRUE(f.sink.messages.empty());
    // x 0.3048, each rounded to float: 2.5 * 0.3048 = 0.762, 8 * 0.3048 = 2.4384
    EXPECT_EQ(f.Values(1), (std::vector<float>{0.762f, -3047.99707f, 2.4384f}));
    EXPECT_EQ(f.Line(1).Units(), "m/s");
    EXPECT_EQ(f.Line(1).Name(), "VEL");
    EXPECT_EQ(f.Line(1).StoredDepths()[2], 101.0f);
    EXPECT_EQ(f.Values(0), (std::vector<float>{20.0f, 30.0f, 40.0f}));
    EXPECT_EQ(f.Line(0).Units(), "API");
    EXPECT_TRUE(f.doc.IsModified());
    EXPECT_EQ(f.viewUpdates, 1);
    EXPECT_EQ(dialog.Conversion(), (ConversionFactor{0.3048f, false}));
    EXPECT_EQ(dialog.TraceUnitLabel(1), "m/s");
}

// A damaged document may carry more or fewer values than depths: only values that belong
// to a depth are samples.
TEST(UnitConversion, OnlyValuesWithADepthAreConverted)
{
    Fixture f({{"LONG", "FT", {1.0f, 2.0f}}, {"SHORT", "FT", {1.0f, 2.0f}}});
    dynamic_cast<CLineTrace&>(f.doc.Trace(0)).Values().Add(3.0f);
    dynamic_cast<CLineTrace&>(f.doc.Trace(1)).StoredDepths().Add(101.0f);
    for (std::size_t i = 0; i < 2; ++i) {
        CUnitConversion dialog;
        dialog.AddLineTracesOf(f.doc);
        dialog.SelectTrace(i);
        dialog.SelectNewUnit("in");
        EXPECT_TRUE(dialog.OnOk(f.doc, f.sink));
    }
    EXPECT_EQ(f.Values(0), (std::vector<float>{12.0f, 24.0f, 3.0f}));
    EXPECT_EQ(f.Values(1), (std::vector<float>{12.0f, 24.0f}));
}

TEST(UnitConversion, TheSelectionCountsLineTracesOnly)
{
    Fixture f({{"GR", "API", {20.0f}}});
    f.doc.AddTrace(std::make_unique<OtherKindTrace>());
    f.AddLine({"DT", "US/FT", {100.0f, 0.0f}});
    CUnitConversion dialog;
    dialog.AddLineTracesOf(f.doc);
    ASSERT_EQ(dialog.TraceCount(), 2u);
    EXPECT_EQ(dialog.TraceName(1), "DT");
    ASSERT_TRUE(dialog.SelectTrace(1));
    ASSERT_TRUE(dialog.SelectNewUnit("ft/s"));

    EXPECT_TRUE(dialog.OnOk(f.doc, f.sink));
    EXPECT_EQ(f.Values(2), (std::vector<float>{10000.0f, std::numeric_limits<float>::infinity()}));
    EXPECT_EQ(f.Line(2).Units(), "ft/s");
}

TEST(UnitConversion, APairWithoutAFactorAppliesThePreviousConversion)
{
    struct PersistCase {
        const char* what;
        std::string earlierLabel; // converted first in the same dialog, when not empty
        std::string earlierUnit;
        std::vector<float> expected;
    };
    const PersistCase cases[] = {
        {"first use: factor 1.0", "", "", {10.0f, 20.0f}},
        {"after ft -> m", "FT", "m", {3.048f, 6.096f}},
        {"after us/ft -> ft/s, reciprocal", "US/FT", "ft/s", {100000.0f, 50000.0f}},
        {"after Deg C -> Deg C, factor 1.0", "DEG C", "Deg C", {10.0f, 20.0f}},
    };
    for (const auto& c : cases) {
        Fixture f(
            {{"EARLIER", c.earlierLabel.empty() ? "FT" : c.earlierLabel, {1.0f}}, {"FLOW", "GAL/MIN", {10.0f, 20.0f}}});
        CUnitConversion dialog;
        dialog.AddLineTracesOf(f.doc);
        if (!c.earlierLabel.empty()) {
            dialog.SelectTrace(0);
            dialog.SelectNewUnit(c.earlierUnit);
            ASSERT_TRUE(dialog.OnOk(f.doc, f.sink)) << c.what;
        }
        dialog.SelectTrace(1);
        ASSERT_TRUE(dialog.SelectNewUnit("gal/s"));
        EXPECT_TRUE(dialog.OnOk(f.doc, f.sink)) << c.what;
        EXPECT_EQ(f.Values(1), c.expected) << c.what;
        EXPECT_EQ(f.Line(1).Units(), "gal/s") << c.what;
        EXPECT_TRUE(f.sink.messages.empty()) << c.what;
    }
}

TEST(UnitConversion, TemperaturesTakeTheirOffsetByTheFactor)
{
    struct TemperatureCase {
        std::string label;
        std::string_view newUnit;
        std::vector<float> values;
        std::vector<float> expected;
    };
    const TemperatureCase cases[] = {
        {"DEG F", "Deg C", {212.0f, 32.0f}, {100.00001f, 0.0f}},
        {"CENTIGRADE", "Deg F", {100.0f, 0.0f}, {212.0f, 32.0f}},
        {"C", "Deg C", {50.0f, kNullValue}, {50.0f, kNullValue}},
    };
    for (const auto& c : cases) {
        Fixture f({{"TEMP", c.label, c.values}});
        CUnitConversion dialog;
        dialog.AddLineTracesOf(f.doc);
        dialog.SelectTrace(0);
        ASSERT_TRUE(dialog.SelectNewUnit(c.newUnit));
        EXPECT_TRUE(dialog.OnOk(f.doc, f.sink));
        EXPECT_EQ(f.Values(0), c.expected) << c.label << " -> " << c.newUnit;
        EXPECT_EQ(f.Line(0).Units(), c.newUnit);
    }
}

TEST(UnitConversion, AListEntryWithoutItsTraceInTheDocumentIsReported)
{
    Fixture f({{"CALI", "IN", {8.0f}}});
    CUnitConversion dialog;
    dialog.AddLineTracesOf(f.doc);
    dialog.AddTrace("GONE", "FT");
    dialog.SelectTrace(1);
    dialog.SelectNewUnit("m");
    EXPECT_FALSE(dialog.OnOk(f.doc, f.sink));
    EXPECT_EQ(f.sink.Texts(), (std::vector<std::string>{"Error: the trace list names line trace 2 (\"GONE\"), but "
                                                        "the document holds 1 line trace."}));
    EXPECT_EQ(f.Values(0), (std::vector<float>{8.0f}));
    EXPECT_FALSE(f.doc.IsModified());
}

} // namespace
} // namespace ba
