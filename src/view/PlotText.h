#pragma once
// Texts of the log plot: the scale ends of a legend, depth labels and the depth-unit caption.

#include <cstdint>
#include <string>

namespace ba {

// A scale end as a legend shows it: formatted "%1.7f", then trailing zeros and a trailing
// point removed (150.0000000 -> "150", 0.2500000 -> "0.25"); minus zero reads "0".
std::string LegendNumberText(float value);

// Short caption of a depth-unit code: m, ft, s, min, h, d; empty for an unknown code.
std::string DepthUnitCaption(std::int32_t depthUnit);

// The step between labelled depth lines: the smallest of 1, 2 and 5 times a power of ten
// that is at least `minimumStep` (which must be positive).
double NiceDepthStep(double minimumStep);

// A depth label: `depth` with as many decimals as `step` needs, shortened as for a legend.
std::string DepthLabelText(double depth, double step);

} // namespace ba
