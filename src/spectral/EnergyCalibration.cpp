#include "spectral/EnergyCalibration.h"

#include <cmath>
#include <string>

namespace ba {

EnergyRange ComputeEnergyRange(const EnergyCoefficients& c, int channels, double x)
{
    EnergyRange range;
    range.e0 = std::ceil(c.offsetSlope * x + c.offsetIntercept);
    range.e1 = std::ceil(static_cast<double>(channels) * (c.gainSlope * x + c.gainIntercept) + range.e0);
    return range;
}

double BinEnergy(const EnergyRange& range, int channels, double bin)
{
    if (channels <= 0) return range.e0;
    return range.e0 + (range.e1 - range.e0) * bin / static_cast<double>(channels);
}

std::optional<LinearScale> ScaleFromCalibration(const CalibrationState& s, const char* which, IMessageSink& sink)
{
    const std::string name(which);
    if (!std::isfinite(s.binOne) || !std::isfinite(s.binTwo) || !std::isfinite(s.energyOne) ||
        !std::isfinite(s.energyTwo) || !std::isfinite(s.x)) {
        sink.Error("Error: the " + name + " calibration has a value that is not a finite number.");
        return std::nullopt;
    }
    if (s.binOne == s.binTwo) {
        sink.Error("Error: the two bins of the " + name + " calibration must differ.");
        return std::nullopt;
    }
    if (s.energyOne == s.energyTwo) {
        sink.Error("Error: the two energies of the " + name + " calibration must differ.");
        return std::nullopt;
    }
    LinearScale scale;
    scale.gain = (s.energyTwo - s.energyOne) / (s.binTwo - s.binOne);
    scale.offset = s.energyOne - scale.gain * s.binOne;
    return scale;
}

std::optional<EnergyCoefficients> DeriveEnergyCoefficients(const CalibrationState& first,
                                                           const CalibrationState& second, IMessageSink& sink)
{
    const auto one = ScaleFromCalibration(first, "first", sink);
    const auto two = ScaleFromCalibration(second, "second", sink);
    if (!one || !two) return std::nullopt;

    EnergyCoefficients c;
    if (first.x == second.x) {
        sink.Warning("Warning: both calibrations were taken at the same temperature or time, so the drift of the "
                     "energy scale is unknown; the scale is held constant at the mean of the two.");
        c.gainSlope = 0.0;
        c.gainIntercept = (one->gain + two->gain) / 2.0;
        c.offsetSlope = 0.0;
        c.offsetIntercept = (one->offset + two->offset) / 2.0;
        return c;
    }
    const double dx = second.x - first.x;
    c.gainSlope = (two->gain - one->gain) / dx;
    c.gainIntercept = one->gain - c.gainSlope * first.x;
    c.offsetSlope = (two->offset - one->offset) / dx;
    c.offsetIntercept = one->offset - c.offsetSlope * first.x;
    return c;
}

} // namespace ba
