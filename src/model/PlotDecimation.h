#pragma once
// Reduces a line trace to what a raster plot can show: one run per pixel row the curve
// passes through, holding the first, last, smallest and largest value of the samples that
// fall in that row. Drawing each run as a horizontal stroke from its smallest to its
// largest value, joined from the previous run's last value to this run's first, covers
// exactly the pixels that drawing every sample would (once sample positions are snapped
// to their row), at a cost bounded by the number of rows rather than samples.

#include "model/LineTrace.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace ba {

// The depth window of a plot and its division into pixel rows. A sample at display depth
// d is shown when top < d < bottom (both strict, as for CurvePieces) and its row,
// floor((d - top) * rowsPerDepth), lies in [0, rows).
struct PlotRowWindow {
    float top = 0.0f;
    float bottom = 0.0f;
    double rowsPerDepth = 1.0;
    std::int32_t rows = 0;

    // Row of display depth d, before the range check.
    std::int64_t RowOf(float d) const;
};

// The samples of one trace that fall in one row between two nulls.
struct CurveRun {
    std::int32_t row = 0;
    float first = 0.0f;
    float last = 0.0f;
    float minimum = 0.0f;
    float maximum = 0.0f;
    // Whether the curve continues into this run from the previous run's last value (no
    // null in between). The first run of a trace is never joined.
    bool joined = false;
    friend bool operator==(const CurveRun&, const CurveRun&) = default;
};

// Index of the first sample whose display depth is greater than `depth`, by binary search
// over the ascending depths.
std::size_t FirstSampleAfter(const CTrace& trace, float depth);

// The runs of `trace` in `window`, in row order. Within a row a null ends one run and
// the next valid sample starts another. Costs a binary search per row plus a pass over
// the samples of densely sampled rows; samples outside the window are never visited.
std::vector<CurveRun> DecimateCurve(const CLineTrace& trace, const PlotRowWindow& window);

// The same runs computed by visiting every sample: the reference for tests and for
// traces too short to gain from the search.
std::vector<CurveRun> DecimateCurveBySample(const CLineTrace& trace, const PlotRowWindow& window);

// DecimateCurve for each trace, result k for traces[k]. A plot of the whole depth range
// reads every sample of every trace once, so when the traces hold enough samples the work
// is shared among the processor's cores, whole traces to each; the runs are the same as
// computed one after the other.
std::vector<std::vector<CurveRun>> DecimateCurves(std::span<const CLineTrace* const> traces,
                                                  const PlotRowWindow& window);

} // namespace ba
