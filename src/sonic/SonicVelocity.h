#pragma once
// Compressional, shear and Stoneley slowness logs from the waveforms of two to five sonic
// receivers, station by station: the slowness-time coherence of each station, its peaks,
// and their labels (ModePicking.h). A job of the background processing: each step computes
// one station's coherence peaks; the labels are given in depth order at the end, and the
// nine logs join the document as one change:
//   "DTC", "DTS", "DTST"    slowness, in the output unit
//   "COHC", "COHS", "COHST" coherence, 0..1
//   "TTC", "TTS", "TTST"    arrival time on the first receiver (window start), µs
// A mode not found at a station is null there. Optionally also "STC", an image trace of the
// slowness projection: at each station, for each slowness of the grid (across), the largest
// coherence over time, as 0..4095.

#include "base/MessageSink.h"
#include "model/BoreAnalystDoc.h"
#include "model/SonicTrace.h"
#include "sonic/BackgroundProcess.h"
#include "sonic/BandPassFilter.h"
#include "sonic/ModePicking.h"
#include "sonic/Semblance.h"

#include <array>
#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace ba {

enum class LengthUnit { Feet, Metres };

struct SonicVelocitySettings {
    std::vector<std::size_t> receivers; // document indices of sonic traces, nearest first
    std::vector<double> offsets;        // transmitter to receiver, in offsetUnit
    LengthUnit offsetUnit = LengthUnit::Feet;
    // The slowness grid, in µs per output unit.
    SlownessGrid grid{40.0, 300.0, 1.0};
    LengthUnit outputUnit = LengthUnit::Feet;
    double windowMicroseconds = 120.0; // about two periods of a 15 kHz compressional arrival
    float threshold = kDefaultCoherenceThreshold;
    double fluidSlownessPerFoot = 189.0; // the borehole fluid, µs/ft (fresh water)
    // Each waveform is band-passed (zero phase) before the coherence when set.
    std::optional<BandPass> bandpass;

    // What the job makes: the logs of each mode (compressional, shear, Stoneley; none when
    // the modes are not labelled at all), the projection image, and whether logs of the
    // same names made before are replaced (keeping their place and look) or joined by new ones.
    std::array<bool, 3> modes{true, true, true};
    bool labelModes = true;
    bool projectionImage = false;
    bool replaceEarlier = false;
};

inline constexpr const char* kSlownessProjectionName = "STC";

// "us/ft" or "us/m".
const char* SlownessUnitText(LengthUnit unit);

// Checks the settings against the document: two to five receivers, each a sonic trace with
// waveforms, all sampled alike over the same time window and at the same stations; offsets
// one per receiver and increasing; a window no longer than the record; a grid with at least
// one slowness. Reports the first problem found and says whether there was none.
bool CheckSonicVelocitySettings(const CBoreAnalystDoc& doc, const SonicVelocitySettings& settings,
                                IMessageSink& sink);

class CSonicVelocityProcess final : public CProcess {
public:
    // The settings must have passed CheckSonicVelocitySettings.
    CSonicVelocityProcess(CBoreAnalystDoc& doc, SonicVelocitySettings settings);

    std::string JobName() const override { return "Sonic Velocity"; }
    std::size_t StationCount() const override { return m_stations; }
    bool StationsIndependent() const override { return true; }
    void ComputeStation(std::size_t i) override;

    // The labels of each station handed over, in depth order (for tests and the QC view).
    const std::vector<ModePicks>& Picks() const { return m_picks; }

    // One station's coherence map, from its waveforms as the job reads them, and its labels
    // judged on their own (without the station before).
    CoherenceMap StationMap(std::size_t i) const;
    ModePicks StationLabels(const CoherenceMap& map) const;
    // The station nearest display depth `depth`: none where the depth lies beyond the first
    // or last station by more than half a sampling step.
    std::optional<std::size_t> StationNear(double depth) const;
    double StationDepth(std::size_t i) const;
    const SonicVelocitySettings& Settings() const { return m_settings; }

protected:
    void Finish(std::size_t stations) override;

private:
    ModeRules Rules() const;
    std::vector<std::unique_ptr<CTrace>> ModeLogs(std::size_t stations) const;
    std::unique_ptr<CTrace> ProjectionImage(std::size_t stations) const;
    // Adds `made`, or replaces the last trace of each name made before.
    void Deliver(std::vector<std::unique_ptr<CTrace>> made);

    CBoreAnalystDoc& m_doc;
    SonicVelocitySettings m_settings;
    std::vector<const CSonicTrace*> m_traces;
    std::vector<double> m_offsetsInOutputUnit;
    std::size_t m_stations = 0;
    double m_sampleInterval = 1.0;
    double m_startTime = 0.0;
    std::vector<std::vector<CoherencePeak>> m_peaks; // per station
    std::vector<ImageRow> m_projection;              // per station, when asked for
    std::optional<CBandPassFilter> m_filter;
    std::vector<ModePicks> m_picks;
};

} // namespace ba
