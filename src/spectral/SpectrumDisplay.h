#pragma once
// What the spectrum view shows, without a window: its texts and where a channel and a
// count rate land on the drawing area. The Qt view draws from these.

#include "model/SpectralTrace.h"
#include "spectral/EnergyCalibration.h"

#include <cstddef>
#include <span>
#include <string>

namespace ba {

// "Acq. Time: ... seconds    Total Time: ...    Temperature: ...    HV: ... Volts" for
// sample i (i < trace.RowCount()).
std::string SpectrumStatusLine(const CSpectralTrace& trace, std::size_t i);
std::string SpectrumStatusLine(double acquisitionTime, double totalTime, double temperature, double highVoltage);

// "Num Chans: 1024"
std::string ChannelCountCaption(int channels);
// "0.0 to 3072.0 KeV"
std::string EnergyRangeCaption(const EnergyRange& range);
// "Max Value: 12.5 CPS"
std::string MaxValueCaption(double maxCps);
// " 609.00 KeV (Bin 203)"
std::string CursorReadout(double energy, int bin);

// The largest count rate, 0 for an empty spectrum.
float MaxCountRate(std::span<const float> cps);

// The drawing area in device units; y grows downwards, so the baseline is `bottom`.
struct SpectrumPlotArea {
    double left = 0.0;
    double top = 0.0;
    double right = 0.0;
    double bottom = 0.0;
    double Width() const { return right - left; }
    double Height() const { return bottom - top; }
};

// How count rates are scaled: linearly from 0 at the baseline to `plottingScale` CPS at
// the top, or logarithmically over `decades` decades ending at `plottingScale` CPS at the
// top. Fewer than one decade is drawn as one.
struct SpectrumScale {
    bool logarithmic = false;
    double plottingScale = 100.0; // full-scale CPS
    int decades = 4;
};

// The scale the view draws with. With "Automatic" on, full scale follows the largest count
// rate of the spectrum shown, so a quiet and a hot zone both fill the plot; a spectrum
// without counts keeps the set scale, which would otherwise collapse to zero.
SpectrumScale DisplayedScale(const SpectrumScale& set, bool automatic, double maxCps);

// The x of the left edge of `channel` (channel `channels` is the right edge).
double ChannelX(const SpectrumPlotArea& area, int channels, double channel);
// The channel under x, clamped to 0..channels-1; for the cursor read-out.
int ChannelAtX(const SpectrumPlotArea& area, int channels, double x);
// The y of a count rate, clamped to the area: rates above full scale are drawn at the
// top, rates at or below the bottom of the scale (0 linearly, full scale / 10^decades
// logarithmically) on the baseline.
double CountRateY(const SpectrumPlotArea& area, const SpectrumScale& scale, double cps);

} // namespace ba
