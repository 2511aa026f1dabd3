#include "sonic/SonicVelocity.h"

#include "model/LineTrace.h"
#include "sonic/SonicImportSupport.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace ba {
namespace {

// A logged interval in a formation of known slownesses, imported from its raw-data file.
test::SonicImport LoggedInterval(const synth::Formation& formation, std::vector<double> offsetsFeet)
{
    synth::SurveyPlan plan;
    plan.top = 100.0;
    plan.bottom = 101.5;
    plan.step = 0.1;
    plan.offsetsFeet = std::move(offsetsFeet);
    plan.formation = formation;
    plan.block.n1 = 500; // 2,000 us at 4 us, from 100 us
    plan.block.sampleRate1 = 4;
    std::vector<std::uint8_t> bytes;
    synth::WriteSurvey(plan, [&](std::span<const std::uint8_t> piece) { bytes.insert(bytes.end(), piece.begin(), piece.end()); });
    return test::ImportBytes(bytes);
}

SonicVelocitySettings Settings(std::vector<double> offsets)
{
    SonicVelocitySettings s;
    for (std::size_t r = 0; r < offsets.size(); ++r) s.receivers.push_back(r);
    s.offsets = std::move(offsets);
    return s;
}

const CLineTrace& Log(const CBoreAnalystDoc& doc, const std::string& name)
{
    return dynamic_cast<const CLineTrace&>(*doc.FindTrace(name));
}

// The slowness logs of generated waveforms: each mode within one grid step at every
// station with a coherence above 0.9; the same document, to the byte, on one thread or two.
TEST(SonicVelocity, SlownessLogsOfGeneratedWaveformsAnyThreadCount)
{
    struct Case {
        double dtc, dts, dtst;
        std::vector<double> offsets;
        std::optional<BandPass> bandpass;
    };
    const Case cases[] = {{60.0, 110.0, 220.0, {3.0, 4.0, 5.0}, std::nullopt},
                          {80.0, 140.0, 240.0, {3.0, 4.0, 5.0, 6.0}, std::nullopt},
                          {60.0, 110.0, 220.0, {3.0, 4.0, 5.0}, BandPass{1000.0, 25000.0, 4}}};
    for (const Case& c : cases) {
        synth::Formation formation;
        formation.compressionalSlowness = c.dtc;
        formation.shearSlowness = c.dts;
        formation.stoneleySlowness = c.dtst;
        std::vector<std::vector<std::uint8_t>> documents;
        for (const unsigned threads : {1u, 2u}) {
            auto run = LoggedInterval(formation, c.offsets);
            ASSERT_EQ(run.doc->TraceCount(), c.offsets.size());
            SonicVelocitySettings settings = Settings(c.offsets);
            settings.bandpass = c.bandpass;
            CollectingMessageSink sink;
            ASSERT_TRUE(CheckSonicVelocitySettings(*run.doc, settings, sink)) << sink.Texts().front();
            CSonicVelocityProcess job(*run.doc, settings);
            RunWithoutPanel(job, threads);
            documents.push_back(WriteDocumentBytes(*run.doc));
            const CBoreAnalystDoc& doc = *run.doc;
            ASSERT_EQ(doc.TraceCount(), c.offsets.size() + 9);
            EXPECT_EQ(Log(doc, "DTC").Units(), "us/ft");
            for (const auto& [name, expected] : {std::pair{"DTC", c.dtc}, {"DTS", c.dts}, {"DTST", c.dtst}}) {
                const CLineTrace& log = Log(doc, name);
                const CLineTrace& coherence = Log(doc, std::string("COH") + (name + 2));
                ASSERT_EQ(log.SampleCount(), 16u);
                for (std::size_t i = 0; i < log.SampleCount(); ++i) {
                    EXPECT_NEAR(log.Value(i), expected, 1.0) << name << " at station " << i;
                    EXPECT_GT(coherence.Value(i), 0.9f) << name << " at station " << i;
                }
            }
        }
        EXPECT_EQ(documents[0], documents[1]) << c.dtc;
    }
}

TEST(SonicVelocity, SettingsAreCheckedBeforeAnythingRuns)
{
    synth::Formation formation;
    auto run = LoggedInterval(formation, {3.0, 4.0, 5.0});
    struct Case {
        const char* what;
        SonicVelocitySettings settings;
        std::string message;
    };
    SonicVelocitySettings one = Settings({3.0});
    SonicVelocitySettings decreasing = Settings({3.0, 5.0, 4.0});
    SonicVelocitySettings longWindow = Settings({3.0, 4.0, 5.0});
    longWindow.windowMicroseconds = 2500.0;
    SonicVelocitySettings noGrid = Settings({3.0, 4.0, 5.0});
    noGrid.grid = {300.0, 40.0, 1.0};
    SonicVelocitySettings fewOffsets = Settings({3.0, 4.0, 5.0});
    fewOffsets.offsets.pop_back();
    SonicVelocitySettings wideBand = Settings({3.0, 4.0, 5.0});
    wideBand.bandpass = BandPass{1000.0, 200000.0, 4};
    const Case cases[] = {
        {"one receiver", one, "Error: sonic velocities need two to five receivers; 1 was chosen."},
        {"offsets out of order", decreasing,
         "Error: the offsets must increase from the first receiver to the last; receiver 3 is at 4 ft, receiver 2 at 5 ft."},
        {"window longer than the record", longWindow,
         "Error: the window of 2500 us must be longer than 0 and no longer than the record of 2000 us."},
        {"empty grid", noGrid, "Error: the slownesses from 300 to 40 us/ft every 1 us/ft are none."},
        {"an offset missing", fewOffsets, "Error: 2 offsets were given for 3 receivers."},
        {"band above Nyquist", wideBand,
         "Error: the band-pass from 1 to 200 kHz must stay below half the sampling rate, 125 kHz for samples every 4 us."},
    };
    for (const Case& c : cases) {
        CollectingMessageSink sink;
        EXPECT_FALSE(CheckSonicVelocitySettings(*run.doc, c.settings, sink)) << c.what;
        EXPECT_EQ(sink.Texts(), std::vector<std::string>{c.message}) << c.what;
    }

    // Receivers sampled differently.
    dynamic_cast<CSonicTrace&>(run.doc->Trace(2)).Acquisition().rxSampleRate1 = 8;
    CollectingMessageSink sink;
    EXPECT_FALSE(CheckSonicVelocitySettings(*run.doc, Settings({3.0, 4.0, 5.0}), sink));
    EXPECT_EQ(sink.Texts(), std::vector<std::string>{"Error: \"RX 3\" records 500 samples every 8 us from 100 us, but "
                                                     "\"RX 1\" 500 every 4 us from 100 us; the receivers must be "
                                                     "sampled alike."});
}

// What the job makes follows its choices; replacing keeps the earlier logs' places and
// looks, and one undo takes the whole run back.
TEST(SonicVelocity, OutputChoicesAndReplacingEarlierLogs)
{
    struct Case {
        const char* what;
        std::array<bool, 3> modes;
        bool label, image;
        std::vector<std::string> added;
    };
    const Case cases[] = {
        {"compressional only", {true, false, false}, true, false, {"DTC", "COHC", "TTC"}},
        {"shear and image", {false, true, false}, true, true, {"DTS", "COHS", "TTS", "STC"}},
        {"coherence only", {true, true, true}, false, true, {"STC"}},
    };
    for (const Case& c : cases) {
        auto run = LoggedInterval(synth::Formation{}, {3.0, 4.0, 5.0});
        SonicVelocitySettings settings = Settings({3.0, 4.0, 5.0});
        settings.modes = c.modes;
        settings.labelModes = c.label;
        settings.projectionImage = c.image;
        CSonicVelocityProcess job(*run.doc, settings);
        RunWithoutPanel(job, 1);
        std::vector<std::string> added;
        for (std::size_t t = 3; t < run.doc->TraceCount(); ++t) added.push_back(run.doc->Trace(t).Name());
        EXPECT_EQ(added, c.added) << c.what;
        if (!c.image) continue;
        // The projection peaks at the compressional slowness's column (60 us/ft on 40, 41, ...).
        const auto& image = dynamic_cast<const CImageTrace&>(*run.doc->FindTrace("STC"));
        ASSERT_EQ(image.RowCount(), 16u);
        ASSERT_EQ(image.Row(0).size(), 261u);
        EXPECT_GT(image.Row(0)[20], 0.9 * 4095) << c.what;
        EXPECT_LT(image.Row(0)[5], image.Row(0)[20]) << c.what;
    }

    auto run = LoggedInterval(synth::Formation{}, {3.0, 4.0, 5.0});
    SonicVelocitySettings settings = Settings({3.0, 4.0, 5.0});
    settings.modes = {true, false, false};
    CSonicVelocityProcess first(*run.doc, settings);
    RunWithoutPanel(first, 1);
    CLineTrace& dtc = dynamic_cast<CLineTrace&>(*run.doc->FindTrace("DTC"));
    dtc.SetTrackIndex(3);
    dtc.ChangePen(2, 1, 4);
    const auto before = WriteDocumentBytes(*run.doc);
    settings.replaceEarlier = true;
    settings.windowMicroseconds = 200.0;
    CSonicVelocityProcess again(*run.doc, settings);
    RunWithoutPanel(again, 1);
    ASSERT_EQ(run.doc->TraceCount(), 6u);
    const CLineTrace& replaced = Log(*run.doc, "DTC");
    EXPECT_EQ(replaced.TrackIndex(), 3);
    EXPECT_EQ(replaced.PenWidth(), 2);
    EXPECT_EQ(replaced.ColourIndex(), 4);
    EXPECT_NE(WriteDocumentBytes(*run.doc), before);
    run.doc->Undo();
    EXPECT_EQ(WriteDocumentBytes(*run.doc), before);
}

} // namespace
} // namespace ba
