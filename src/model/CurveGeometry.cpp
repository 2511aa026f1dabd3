#include "model/CurveGeometry.h"

namespace ba {

float BottomDepth(float topDepth, std::int32_t windowExtentHeight, float verticalScale, bool printing)
{
    const double span = static_cast<double>(windowExtentHeight) * verticalScale;
    return static_cast<float>(printing ? topDepth + span * 0.1 : topDepth - span * 0.01);
}

std::vector<std::vector<CurvePoint>> CurvePieces(const CLineTrace& trace, float top, float bottom)
{
    std::vector<std::vector<CurvePoint>> pieces;
    bool joined = false; // whether the next valid point continues the last piece
    for (std::size_t i = 0; i < trace.SampleCount(); ++i) {
        const float depth = trace.Depth(i);
        if (!(top < depth && depth < bottom)) continue;
        const float value = trace.Value(i);
        if (IsNullSample(value)) {
            joined = false;
            continue;
        }
        if (!joined) pieces.emplace_back();
        pieces.back().push_back({value, depth});
        joined = true;
    }
    return pieces;
}

double ValueToX(float value, float scaleLeft, float scaleRight, std::int32_t left, std::int32_t right)
{
    const double width = static_cast<double>(scaleRight) - scaleLeft;
    if (width == 0.0) return left;
    return left + (static_cast<double>(value) - scaleLeft) / width * (static_cast<double>(right) - left);
}

} // namespace ba
