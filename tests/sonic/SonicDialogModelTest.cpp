#include "sonic/SonicDialogModel.h"

#include "settings/FakeSettingsStore.h"
#include "sonic/SonicImportSupport.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace ba {
namespace {

using test::FakeSettingsStore;

test::SonicImport ThreeReceivers()
{
    synth::SurveyPlan plan;
    plan.top = 100.0;
    plan.bottom = 100.3;
    plan.block.n1 = 300;
    plan.block.sampleRate1 = 4;
    std::vector<std::uint8_t> bytes;
    synth::WriteSurvey(plan, [&](std::span<const std::uint8_t> piece) { bytes.insert(bytes.end(), piece.begin(), piece.end()); });
    return test::ImportBytes(bytes);
}

TEST(SonicDialogSettings, ValueNamesDefaultsAndRoundTrip)
{
    const std::vector<std::string> expected = {
        "HPFreq",      "LPFreq",     "Offset1",    "Offset2", "Offset3", "Offset4",   "Offset5",
        "WindowLength", "SemblanceMultiplier", "MaxOffset", "MaxSlowness", "AutoProcess", "NoAutoPick", "Save",
        "Pick1",       "Pick2",      "Pick3",      "NewTraces", "ProbeUnits", "Units",   "ProbeDiameter"};
    EXPECT_EQ(SonicSettingNames(), expected);

    FakeSettingsStore store;
    CSonicDialogModel model(store);
    EXPECT_EQ(model.Open().missing, expected);
    EXPECT_EQ(model.Settings(), SonicDialogSettings{});

    SonicDialogSettings changed;
    changed.offsets = {0.9, 1.2, 1.5, 1.8, 2.1};
    changed.highPassKilohertz = 2.5;
    changed.lowPassKilohertz = 18.0;
    changed.windowLength = 200.0;
    changed.maxSlowness = 900.0;
    changed.semblanceMultiplier = 0.55;
    changed.maxOffset = 2.0;
    changed.autoProcess = false;
    changed.noAutoPick = true;
    changed.save = false;
    changed.pick = {true, false, true};
    changed.newTraces = false;
    changed.probeUnits = 1;
    changed.units = 1;
    changed.probeDiameter = 0.05;
    model.Settings() = changed;
    CollectingMessageSink sink;
    ASSERT_TRUE(model.SaveAsDefault(sink));
    EXPECT_EQ(store.values.at({SettingsRoot::LocalMachine, std::string(kSonicDialogKey) + "SemblanceMultiplier"}), "0.55");
    EXPECT_EQ(store.values.at({SettingsRoot::LocalMachine, std::string(kSonicDialogKey) + "Pick2"}), "0");

    model.Settings() = SonicDialogSettings{};
    store.values[{SettingsRoot::LocalMachine, std::string(kSonicDialogKey) + "WindowLength"}] = "long";
    const SettingsLoadReport report = model.Open(); // Restore Defaults
    EXPECT_TRUE(report.missing.empty());
    EXPECT_EQ(report.unreadable, std::vector<std::string>{"WindowLength"});
    changed.windowLength = SonicDialogSettings{}.windowLength;
    EXPECT_EQ(model.Settings(), changed);

    store.refuseWrites = true;
    EXPECT_FALSE(model.SaveAsDefault(sink));
    EXPECT_EQ(sink.Texts().back(), "Warning: the sonic dialog settings could not be saved in memory (local machine); "
                                   "they will not be remembered.");
}

TEST(SonicDialogSettings, JobSettingsFromTheChoices)
{
    auto run = ThreeReceivers();
    FakeSettingsStore store;
    CSonicDialogModel model(store);
    model.Open();
    model.ChooseFirstReceivers(*run.doc);
    ASSERT_EQ(model.Receivers()[2], std::optional<std::size_t>(2));
    EXPECT_FALSE(model.Receivers()[3].has_value());

    CollectingMessageSink sink;
    const auto job = model.JobSettings(*run.doc, sink);
    ASSERT_TRUE(job) << sink.Texts().front();
    EXPECT_EQ(job->receivers, (std::vector<std::size_t>{0, 1, 2}));
    EXPECT_EQ(job->offsets, (std::vector<double>{3.0, 4.0, 5.0}));
    EXPECT_EQ(job->grid.first, 40.0);
    EXPECT_EQ(job->grid.last, 300.0);
    EXPECT_FLOAT_EQ(job->threshold, 0.7f);
    EXPECT_TRUE(job->labelModes && job->projectionImage && !job->replaceEarlier);

    struct Case {
        const char* what;
        void (*change)(SonicDialogSettings&);
        std::string message;
    };
    const Case cases[] = {
        {"far receivers left out", [](SonicDialogSettings& s) { s.maxOffset = 3.5; },
         "Error: of the 3 receivers chosen, 1 is within the largest offset of 3.5 ft; sonic velocities need two or more."},
        {"multiplier above 1", [](SonicDialogSettings& s) { s.semblanceMultiplier = 1.5; },
         "Error: the semblance multiplier 1.5 must lie above 0 and at most 1 (the share of perfect coherence an arrival "
         "must reach)."},
        {"nothing to make", [](SonicDialogSettings& s) { s.noAutoPick = true; s.save = false; },
         "Error: nothing would be made: pick at least one mode, or keep the slowness-projection image."},
        {"offsets out of order", [](SonicDialogSettings& s) { s.offsets[1] = 6.0; },
         "Error: the offsets must increase from the first receiver to the last; receiver 3 is at 5 ft, receiver 2 at 6 ft."},
    };
    for (const Case& c : cases) {
        model.Open();
        c.change(model.Settings());
        CollectingMessageSink failed;
        EXPECT_FALSE(model.JobSettings(*run.doc, failed)) << c.what;
        EXPECT_EQ(failed.Texts(), std::vector<std::string>{c.message}) << c.what;
    }
}

} // namespace
} // namespace ba
