#pragma once
// The energy scale of a spectrum. A scintillation detector's gain and offset drift with
// tool temperature (or, for tools that warm up steadily, with elapsed time), so the keV of
// channel 0 and the keV per channel are each a straight line in that reference variable X:
//   offset(X) = offsetSlope·X + offsetIntercept        (keV at channel 0)
//   gain(X)   = gainSlope·X + gainIntercept            (keV per channel)
// Two calibrations taken at two values of X fix the four coefficients.

#include "base/MessageSink.h"

#include <optional>

namespace ba {

struct EnergyCoefficients {
    // Identity until a calibration is set.
    double offsetSlope = 1.0;
    double offsetIntercept = 0.0;
    double gainSlope = 1.0;
    double gainIntercept = 0.0;
    friend bool operator==(const EnergyCoefficients&, const EnergyCoefficients&) = default;
};

// The energies of the bottom and top of a spectrum, whole keV.
struct EnergyRange {
    double e0 = 0.0; // channel 0
    double e1 = 0.0; // the top of the last channel
    friend bool operator==(const EnergyRange&, const EnergyRange&) = default;
};

// E0 = ceil(offset(X)), E1 = ceil(channels·gain(X) + E0).
EnergyRange ComputeEnergyRange(const EnergyCoefficients& coefficients, int channels, double x);

// The energy at the left edge of `bin` on a linear scale from E0 to E1 over `channels`.
double BinEnergy(const EnergyRange& range, int channels, double bin);

// One calibration: two channels whose energies are known (two peaks identified in a
// spectrum), and the value of the reference variable when the spectrum was taken.
struct CalibrationState {
    double binOne = 0.0;
    double energyOne = 0.0; // keV
    double binTwo = 0.0;
    double energyTwo = 0.0; // keV
    double x = 0.0;         // temperature (degrees C) or total time (seconds)
    friend bool operator==(const CalibrationState&, const CalibrationState&) = default;
};

struct LinearScale {
    double gain = 0.0;   // keV per channel
    double offset = 0.0; // keV at channel 0
};

// The channel-to-energy line of one calibration; none when its two bins coincide or a
// value is not finite. `which` ("first", "second") names the calibration in the message
// sent to `sink`.
std::optional<LinearScale> ScaleFromCalibration(const CalibrationState& state, const char* which,
                                                IMessageSink& sink);

// The coefficients two calibrations give. When either calibration is unusable, an error
// names it and the result is none: the caller keeps the coefficients it had. When both
// were taken at the same X, the drift cannot be known: the scale is held constant at the
// mean of the two lines (slopes 0) and a warning says so, because a user who calibrates
// twice at one temperature wants a working scale, not a refusal.
std::optional<EnergyCoefficients> DeriveEnergyCoefficients(const CalibrationState& first,
                                                           const CalibrationState& second, IMessageSink& sink);

} // namespace ba
