#pragma once
// The logic of the sonic velocity dialog, without its window: the settings it remembers
// under `SonicDialog`, its receiver choices, and the job settings it hands to the sonic
// velocity job once they pass the checks.
//
// What each remembered value means (lengths in the probe's unit, "ProbeUnits" 0 ft, 1 m):
//   "Offset1".."Offset5"  transmitter to receiver 1..5
//   "HPFreq", "LPFreq"    the band-pass corners, kHz (high-pass, low-pass)
//   "WindowLength"        the coherence window, µs
//   "MaxSlowness"         the slowest slowness searched, µs per "Units" length
//   "SemblanceMultiplier" the share of perfect coherence an arrival must reach to be picked
//   "MaxOffset"           receivers farther from the transmitter are left out
//   "AutoProcess"         band-pass the waveforms first (zero-phase Butterworth, order 4)
//   "NoAutoPick"          compute the coherence only: no mode logs, the projection image
//   "Save"                keep the slowness-projection image trace in the document
//   "Pick1".."Pick3"      make the compressional, shear, Stoneley logs
//   "NewTraces"           add new logs beside earlier ones instead of replacing them
//   "ProbeUnits", "Units" 0 feet, 1 metres (the output slowness is µs/ft or µs/m)
//   "ProbeDiameter"       kept with the tool's settings; no computation uses it

#include "base/MessageSink.h"
#include "model/BoreAnalystDoc.h"
#include "settings/SettingFields.h"
#include "sonic/SonicVelocity.h"

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ba {

inline constexpr std::string_view kSonicDialogKey = "SOFTWARE\\Quartzline Geodata\\BoreAnalyst\\SonicDialog\\";
inline constexpr std::size_t kSonicDialogReceivers = 5;

// Built-in defaults suit a three-receiver monopole tool at 3, 4 and 5 ft with a 1 to 25 kHz
// source in a fluid-filled hole: the whole source band passed, a window of about two
// periods of a 15 kHz compressional arrival, slownesses to 300 µs/ft (past the Stoneley of
// most formations), every mode picked into new logs, the projection image kept.
struct SonicDialogSettings {
    std::array<double, kSonicDialogReceivers> offsets{3.0, 4.0, 5.0, 6.0, 7.0};
    double highPassKilohertz = 1.0;
    double lowPassKilohertz = 25.0;
    double windowLength = 120.0;
    double maxSlowness = 300.0;
    double semblanceMultiplier = 0.7;
    double maxOffset = 10.0;
    bool autoProcess = true;
    bool noAutoPick = false;
    bool save = true;
    std::array<bool, 3> pick{true, true, true};
    bool newTraces = true;
    int probeUnits = 0;
    int units = 0;
    double probeDiameter = 0.1667; // 2 in

    friend bool operator==(const SonicDialogSettings&, const SonicDialogSettings&) = default;
};

// The value names, in the order they are read and written.
std::vector<std::string> SonicSettingNames();

SettingsLoadReport LoadSonicSettings(ISettingsStore& store, SonicDialogSettings& settings);
bool SaveSonicSettings(ISettingsStore& store, const SonicDialogSettings& settings);

// The fastest slowness of the grid and its step in an output unit.
double FastestSlowness(LengthUnit unit);
double SlownessStep(LengthUnit unit);

class CSonicDialogModel {
public:
    explicit CSonicDialogModel(ISettingsStore& store) : m_store(store) {}

    // The built-in defaults, then the remembered values over them ("Restore Defaults" too).
    SettingsLoadReport Open();
    SonicDialogSettings& Settings() { return m_settings; }
    const SonicDialogSettings& Settings() const { return m_settings; }

    // "Save As Default": remembers the settings; a refused write is reported as a warning.
    bool SaveAsDefault(IMessageSink& sink);

    // The sonic traces of the document (indices), and the first choice of receivers: its
    // first sonic traces in document order, up to five.
    static std::vector<std::size_t> SonicTraces(const CBoreAnalystDoc& doc);
    void ChooseFirstReceivers(const CBoreAnalystDoc& doc);
    std::array<std::optional<std::size_t>, kSonicDialogReceivers>& Receivers() { return m_receivers; }

    // OK: the job's settings from the choices, checked against the document; the first
    // problem is reported and none is returned.
    std::optional<SonicVelocitySettings> JobSettings(const CBoreAnalystDoc& doc, IMessageSink& sink) const;

private:
    ISettingsStore& m_store;
    SonicDialogSettings m_settings;
    std::array<std::optional<std::size_t>, kSonicDialogReceivers> m_receivers;
};

} // namespace ba
