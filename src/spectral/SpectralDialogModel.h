#pragma once
// The logic of the spectral processing dialog, without its window: the settings it
// remembers between sessions, the checks made on OK, and what the settings mean for
// summing, the energy scale and the spectrum view.

#include "base/MessageSink.h"
#include "settings/SettingFields.h"
#include "model/SpectralTrace.h"
#include "spectral/EnergyCalibration.h"
#include "spectral/SpectrumDisplay.h"
#include "spectral/SpectrumSumming.h"

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ba {

inline constexpr std::string_view kSpectralDialogKey = "SOFTWARE\\Quartzline Geodata\\BoreAnalyst\\SpectralDialog\\";

// Built-in defaults suit a 1024-channel NaI(Tl) tool covering about 0 to 3 MeV (3 keV per
// channel) logged at 1 s per spectrum: a minute of live time per summed spectrum (about
// 0.5 m at typical logging speeds), a linear plot to 100 CPS per channel, four decades
// when plotted logarithmically. The two default calibrations put the Bi-214 609 keV and
// Tl-208 2614 keV peaks where such a tool has them at 20 and 40 degrees C (its gain falls
// as it warms); they feed the energy scale only when the user calibrates.
struct SpectralDialogSettings {
    bool logPlot = false;          // "LogPlot"
    double plottingScale = 100.0;  // "PlottingScale": full-scale CPS
    int decades = 4;               // "Decades"
    double depthSum = 0.5;         // "DepthSum": display depth units
    double timeSum = 60.0;         // "TimeSum": seconds
    bool sumDepth = false;         // "SumDepth": sum by depth rather than by time
    bool automatic = true;         // "Automatic": the plotting scale follows the largest count rate
    CalibrationState first{203.0, 609.0, 871.0, 2614.0, 20.0};  // "FirstBinOne" ... "FirstTimeTemp"
    CalibrationState second{199.0, 609.0, 853.0, 2614.0, 40.0}; // "SecondBinOne" ... "SecondTimeTemp"
    bool timeTempCal = false;      // "TimeTempCal": the energy scale follows total time, not temperature
    std::array<std::string, 5> windowNames{"K40", "Bi214", "Tl208", "Total", ""}; // "Win1Name".."Win5Name"
    int processingMode = 0;        // "ProcessingMode": 0 energy windows, 1 full-spectrum basis fit
    std::string windowModelName;   // "WinModelName"
    std::string basisModelName;    // "BasisModelName"
    double basisCutoff = 0.01;     // "BasisCutoff"

    friend bool operator==(const SpectralDialogSettings&, const SpectralDialogSettings&) = default;
};

// The value names, in the order they are read and written.
std::vector<std::string> SpectralSettingNames();

// Reads every setting from the local-machine store, over the values `settings` holds.
SettingsLoadReport LoadSpectralSettings(ISettingsStore& store, SpectralDialogSettings& settings);
// Writes every setting; false when any write was refused (the others are still written).
bool SaveSpectralSettings(ISettingsStore& store, const SpectralDialogSettings& settings);

class CSpectralDialogModel {
public:
    explicit CSpectralDialogModel(ISettingsStore& store) : m_store(store) {}

    // Loads the remembered settings over the built-in defaults. When both calibrations
    // were remembered whole, the energy scale is derived from them (messages to `sink`);
    // otherwise it stays the identity.
    SettingsLoadReport Open(IMessageSink& sink);

    SpectralDialogSettings& Settings() { return m_settings; }
    const SpectralDialogSettings& Settings() const { return m_settings; }

    // The spectrum trace chosen (a document trace index), none until one is chosen.
    void SelectTrace(std::optional<std::size_t> traceIndex) { m_selectedTrace = traceIndex; }
    std::optional<std::size_t> SelectedTrace() const { return m_selectedTrace; }

    // Derives the energy scale from the two calibrations of the settings. On failure the
    // message is reported and the scale in use is kept.
    bool Calibrate(IMessageSink& sink);
    const EnergyCoefficients& Coefficients() const { return m_coefficients; }
    void SetCoefficients(const EnergyCoefficients& c) { m_coefficients = c; }

    SummingTarget Target() const;
    SpectrumScale Scale() const;
    // The reference variable of the energy scale at `sample`: its temperature, or its total
    // time with "TimeTempCal" on.
    double ReferenceX(const CSpectralTrace& trace, std::size_t sample) const;
    EnergyRange EnergyRangeAt(const CSpectralTrace& trace, std::size_t sample) const;

    // OK: checks, in order, that a trace is chosen and that the plotting scale suits the
    // plot kind; the first failure is reported and the dialog stays open (false).
    // Otherwise the settings are saved and the dialog may close (true); a refused save is
    // reported as a warning but does not keep the dialog open.
    bool OnOk(IMessageSink& sink);

private:
    ISettingsStore& m_store;
    SpectralDialogSettings m_settings;
    std::optional<std::size_t> m_selectedTrace;
    EnergyCoefficients m_coefficients;
};

} // namespace ba
