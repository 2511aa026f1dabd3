#include "spectral/SpectrumDisplay.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace ba {
namespace {

template <typename... Args>
std::string Format(const char* format, Args... args)
{
    const int size = std::snprintf(nullptr, 0, format, args...);
    if (size <= 0) return {};
    std::string text(static_cast<std::size_t>(size) + 1, '\0');
    std::snprintf(text.data(), text.size(), format, args...);
    text.resize(static_cast<std::size_t>(size));
    return text;
}

} // namespace

std::string SpectrumStatusLine(double acquisitionTime, double totalTime, double temperature, double highVoltage)
{
    return Format("Acq. Time: %4.2f seconds    Total Time: %6.2f seconds    Temperature: %4.2f degrees C    "
                  "HV: %5.2f Volts",
                  acquisitionTime, totalTime, temperature, highVoltage);
}

std::string SpectrumStatusLine(const CSpectralTrace& trace, std::size_t i)
{
    return SpectrumStatusLine(trace.AcquisitionTime(i), trace.TotalTime(i), trace.Temperature(i),
                              trace.HighVoltage(i));
}

std::string ChannelCountCaption(int channels) { return Format("Num Chans: %i", channels); }

std::string EnergyRangeCaption(const EnergyRange& range) { return Format("%3.1f to %4.1f KeV", range.e0, range.e1); }

std::string MaxValueCaption(double maxCps) { return Format("Max Value: %3.1f CPS", maxCps); }

std::string CursorReadout(double energy, int bin) { return Format("%6.2f KeV (Bin %i)", energy, bin); }

float MaxCountRate(std::span<const float> cps)
{
    if (cps.empty()) return 0.0f;
    return *std::max_element(cps.begin(), cps.end());
}

SpectrumScale DisplayedScale(const SpectrumScale& set, bool automatic, double maxCps)
{
    SpectrumScale shown = set;
    if (automatic && maxCps > 0.0 && std::isfinite(maxCps)) shown.plottingScale = maxCps;
    return shown;
}

double ChannelX(const SpectrumPlotArea& area, int channels, double channel)
{
    if (channels <= 0) return area.left;
    return area.left + area.Width() * channel / static_cast<double>(channels);
}

int ChannelAtX(const SpectrumPlotArea& area, int channels, double x)
{
    if (channels <= 0 || area.Width() <= 0.0) return 0;
    const double channel = std::floor((x - area.left) / area.Width() * static_cast<double>(channels));
    return static_cast<int>(std::clamp(channel, 0.0, static_cast<double>(channels - 1)));
}

double CountRateY(const SpectrumPlotArea& area, const SpectrumScale& scale, double cps)
{
    double fraction = 0.0; // of the height, from the baseline up
    if (scale.logarithmic) {
        const double decades = std::max(scale.decades, 1);
        if (cps > 0.0 && scale.plottingScale > 0.0) {
            fraction = (std::log10(cps) - std::log10(scale.plottingScale)) / decades + 1.0;
        }
    } else if (scale.plottingScale > 0.0) {
        fraction = cps / scale.plottingScale;
    }
    if (!std::isfinite(fraction)) fraction = 0.0;
    fraction = std::clamp(fraction, 0.0, 1.0);
    return area.bottom - area.Height() * fraction;
}

} // namespace ba
