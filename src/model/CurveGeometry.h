#pragma once
// The window-free half of drawing a line trace: which depths a plot window shows, how a
// curve breaks into pieces at null samples, and where a value falls across a track.

#include "model/LineTrace.h"

#include <cstdint>
#include <vector>

namespace ba {

// Depth at the bottom of the plot. On screen the window extent height is negative (the
// y axis grows upward) and bottom = top - h * scale * 0.01; a printer's mapping mode
// gives a positive extent and bottom = top + h * scale * 0.1.
float BottomDepth(float topDepth, std::int32_t windowExtentHeight, float verticalScale, bool printing);

struct CurvePoint {
    float value;
    float depth; // display units
    friend bool operator==(const CurvePoint&, const CurvePoint&) = default;
};

// The polylines a line trace draws between `top` and `bottom` (both exclusive): samples
// outside the window are skipped, and a null sample ends the current piece so the next
// valid sample starts a new one. Pieces are never empty.
std::vector<std::vector<CurvePoint>> CurvePieces(const CLineTrace& trace, float top, float bottom);

// Horizontal position of `value` across a track from `left` to `right`, with scaleLeft
// at the left edge and scaleRight at the right edge (either may be the larger). A zero
// scale width puts every value at the left edge.
double ValueToX(float value, float scaleLeft, float scaleRight, std::int32_t left, std::int32_t right);

} // namespace ba
