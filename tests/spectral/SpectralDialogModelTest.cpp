#include "spectral/SpectralDialogModel.h"

#include "settings/FakeSettingsStore.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

namespace ba {
namespace {

using test::FakeSettingsStore;

std::string PathOf(const std::string& name) { return std::string(kSpectralDialogKey) + name; }

void Put(FakeSettingsStore& store, const std::string& name, const std::string& text)
{
    store.values[{SettingsRoot::LocalMachine, PathOf(name)}] = text;
}

std::optional<std::string> Stored(const FakeSettingsStore& store, const std::string& name)
{
    const auto it = store.values.find({SettingsRoot::LocalMachine, PathOf(name)});
    if (it == store.values.end()) return std::nullopt;
    return it->second;
}

SpectralDialogSettings EveryValueChanged()
{
    SpectralDialogSettings s;
    s.logPlot = true;
    s.plottingScale = 250.5;
    s.decades = 5;
    s.depthSum = 0.3;
    s.timeSum = 120.0;
    s.sumDepth = true;
    s.automatic = false;
    s.first = {150.5, 609.3, 800.0, 2614.5, 18.25};
    s.second = {149.0, 609.3, 790.0, 2614.5, 55.0};
    s.timeTempCal = true;
    s.windowNames = {"K", "U", "Th", "TC", "Cs137"};
    s.processingMode = 1;
    s.windowModelName = "Standard windows";
    s.basisModelName = "NaI 2x6 basis";
    s.basisCutoff = 0.005;
    return s;
}

TEST(SpectralSettings, ValueNamesAreTheDialogsOwn)
{
    const std::vector<std::string> names = SpectralSettingNames();
    const std::vector<std::string> expected = {
        "LogPlot",        "PlottingScale",  "Decades",         "DepthSum",        "TimeSum",        "SumDepth",
        "Automatic",      "FirstBinOne",    "FirstBinTwo",     "FirstEnergyOne",  "FirstEnergyTwo", "FirstTimeTemp",
        "SecondBinOne",   "SecondBinTwo",   "SecondEnergyOne", "SecondEnergyTwo", "SecondTimeTemp", "TimeTempCal",
        "Win1Name",       "Win2Name",       "Win3Name",        "Win4Name",        "Win5Name",       "ProcessingMode",
        "WinModelName",   "BasisModelName", "BasisCutoff"};
    EXPECT_EQ(names, expected);
}

TEST(SpectralSettings, SavedAsReadableTextAndLoadedBack)
{
    FakeSettingsStore store;
    const SpectralDialogSettings saved = EveryValueChanged();
    ASSERT_TRUE(SaveSpectralSettings(store, saved));
    EXPECT_EQ(store.values.size(), SpectralSettingNames().size());

    const std::pair<const char*, const char*> texts[] = {
        {"LogPlot", "1"},       {"PlottingScale", "250.5"}, {"Decades", "5"},        {"DepthSum", "0.3"},
        {"TimeSum", "120"},     {"SumDepth", "1"},          {"Automatic", "0"},      {"FirstBinOne", "150.5"},
        {"FirstTimeTemp", "18.25"}, {"Win5Name", "Cs137"},  {"ProcessingMode", "1"}, {"BasisCutoff", "0.005"},
        {"BasisModelName", "NaI 2x6 basis"},
    };
    for (const auto& [name, text] : texts) EXPECT_EQ(Stored(store, name), std::string(text)) << name;

    SpectralDialogSettings loaded;
    const SettingsLoadReport report = LoadSpectralSettings(store, loaded);
    EXPECT_TRUE(report.missing.empty());
    EXPECT_TRUE(report.unreadable.empty());
    EXPECT_EQ(loaded, saved);
}

TEST(SpectralSettings, MissingValuesKeepTheDefaults)
{
    FakeSettingsStore store;
    Put(store, "TimeSum", "30");
    // A value under another root is not the dialog's.
    store.values[{SettingsRoot::CurrentUser, PathOf("Decades")}] = "2";
    SpectralDialogSettings loaded;
    const SettingsLoadReport report = LoadSpectralSettings(store, loaded);
    SpectralDialogSettings expected;
    expected.timeSum = 30.0;
    EXPECT_EQ(loaded, expected);
    EXPECT_EQ(report.missing.size(), SpectralSettingNames().size() - 1);
}

TEST(SpectralSettings, UnreadableValuesKeepTheDefaults)
{
    struct Case {
        const char* name;
        const char* text;
        bool readable;
    };
    const Case cases[] = {
        {"PlottingScale", "abc", false},   {"PlottingScale", "12abc", false}, {"PlottingScale", "", false},
        {"DepthSum", "1e999", false},      {"TimeSum", "nan", false},         {"Decades", "4.5", false},
        {"LogPlot", "yes", false},         {"ProcessingMode", "99999999999", false},
        {"TimeSum", "  30", true},         {"PlottingScale", "+7.5", true},   {"LogPlot", "1", true},
        {"Win1Name", "", true},
    };
    for (const auto& c : cases) {
        FakeSettingsStore store;
        Put(store, c.name, c.text);
        SpectralDialogSettings loaded;
        const SettingsLoadReport report = LoadSpectralSettings(store, loaded);
        if (c.readable) {
            EXPECT_TRUE(report.unreadable.empty()) << c.name << "=" << c.text;
            EXPECT_NE(loaded, SpectralDialogSettings{}) << c.name << "=" << c.text;
        } else {
            EXPECT_EQ(report.unreadable, std::vector<std::string>{c.name}) << c.name << "=" << c.text;
            EXPECT_EQ(loaded, SpectralDialogSettings{}) << c.name << "=" << c.text;
        }
    }
}

TEST(SpectralDialogOk, ChecksInOrderAndSavesOnlyWhenAccepted)
{
    struct Case {
        const char* name;
        std::optional<std::size_t> trace;
        bool logPlot;
        double scale;
        const char* message; // null: accepted
    };
    const Case cases[] = {
        {"no trace comes first", std::nullopt, true, 5.0, "Error: you must select a spectrum trace."},
        {"log below 10", 0, true, 9.99, "Error: plotting scale must be 10 or greater when plotting logarithmically."},
        {"log at 10", 0, true, 10.0, nullptr},
        {"linear below 0.01", 2, false, 0.009, "Error: plotting scale must be 0.01 or greater when plotting linearly."},
        {"linear not a number", 2, false, std::nan(""),
         "Error: plotting scale must be 0.01 or greater when plotting linearly."},
        {"linear at 0.01", 2, false, 0.01, nullptr},
    };
    for (const auto& c : cases) {
        FakeSettingsStore store;
        CSpectralDialogModel dialog(store);
        CollectingMessageSink sink;
        dialog.Open(sink);
        dialog.SelectTrace(c.trace);
        dialog.Settings().logPlot = c.logPlot;
        dialog.Settings().plottingScale = c.scale;
        const bool closes = dialog.OnOk(sink);
        if (c.message == nullptr) {
            EXPECT_TRUE(closes) << c.name;
            EXPECT_TRUE(sink.messages.empty()) << c.name;
            EXPECT_EQ(Stored(store, "PlottingScale"), SettingText(c.scale)) << c.name;
        } else {
            EXPECT_FALSE(closes) << c.name;
            EXPECT_EQ(sink.Texts(), std::vector<std::string>{c.message}) << c.name;
            EXPECT_TRUE(store.values.empty()) << c.name;
        }
    }
}

TEST(SpectralDialogOk, RefusedSaveWarnsButCloses)
{
    FakeSettingsStore store;
    store.refuseWrites = true;
    CSpectralDialogModel dialog(store);
    CollectingMessageSink sink;
    dialog.Open(sink);
    dialog.SelectTrace(0);
    EXPECT_TRUE(dialog.OnOk(sink));
    ASSERT_EQ(sink.messages.size(), 1u);
    EXPECT_EQ(sink.messages[0].severity, Severity::Warning);
}

TEST(SpectralDialogOpen, EnergyScaleIsIdentityUntilACalibrationIsStored)
{
    FakeSettingsStore store;
    CollectingMessageSink sink;
    {
        CSpectralDialogModel dialog(store);
        dialog.Open(sink);
        EXPECT_EQ(dialog.Coefficients(), EnergyCoefficients{});
    }
    // Gain 3.0 keV/channel at 20 C and 2.9 at 40 C, offset 0 both times.
    SpectralDialogSettings s;
    s.first = {100, 300, 800, 2400, 20};
    s.second = {100, 290, 800, 2320, 40};
    ASSERT_TRUE(SaveSpectralSettings(store, s));
    CSpectralDialogModel dialog(store);
    dialog.Open(sink);
    EXPECT_TRUE(sink.messages.empty());
    EXPECT_NEAR(dialog.Coefficients().gainSlope, -0.005, 1e-12);
    EXPECT_NEAR(dialog.Coefficients().gainIntercept, 3.1, 1e-12);
    EXPECT_NEAR(dialog.Coefficients().offsetSlope, 0.0, 1e-12);
}

TEST(SpectralDialogModel, EnergyRangeFollowsTemperatureOrTotalTime)
{
    CSpectralTrace trace;
    trace.AppendSpectrum(10.0f, ImageRow(1000, 0), 1.0f, 4.0f, 30.0f, 900.0f);
    FakeSettingsStore store;
    CSpectralDialogModel dialog(store);
    dialog.SetCoefficients({.offsetSlope = 0.5, .offsetIntercept = 0.0, .gainSlope = 0.0, .gainIntercept = 3.0});
    EXPECT_EQ(dialog.EnergyRangeAt(trace, 0), (EnergyRange{15.0, 3015.0}));
    dialog.Settings().timeTempCal = true;
    EXPECT_EQ(dialog.EnergyRangeAt(trace, 0), (EnergyRange{2.0, 3002.0}));
}

TEST(SpectralDialogModel, FailedCalibrationKeepsTheScaleInUse)
{
    FakeSettingsStore store;
    CSpectralDialogModel dialog(store);
    const EnergyCoefficients inUse{.offsetSlope = 0.0, .offsetIntercept = 5.0, .gainSlope = 0.0, .gainIntercept = 3.0};
    dialog.SetCoefficients(inUse);
    dialog.Settings().first.binTwo = dialog.Settings().first.binOne;
    CollectingMessageSink sink;
    EXPECT_FALSE(dialog.Calibrate(sink));
    EXPECT_EQ(dialog.Coefficients(), inUse);
    EXPECT_EQ(sink.Texts(), std::vector<std::string>{"Error: the two bins of the first calibration must differ."});
}

} // namespace
} // namespace ba
