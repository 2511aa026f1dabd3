#pragma once
// The window-free half of drawing image traces: which rows a plot window shows, where
// their bands and cells fall in device pixels, and their colours. The plain image kind
// and spectrum traces are drawn as coloured cells (ImageCells); sonic waveforms as bands
// of column runs across a time axis (SonicBands).
//
// Pixel frame: x grows to the right, y grows downward (device pixels). A depth d maps to
// pixel row trackTop + floor((d - topDepth) * rowsPerDepth), the row in which the line
// curves put a sample at d, so images and curves line up.

#include "model/ImageTrace.h"
#include "model/SonicTrace.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace ba {

// The depth window of a plot and where its rows lie.
struct ImageWindow {
    float topDepth = 0.0f;      // display units, at pixel row trackTop
    float bottomDepth = 0.0f;   // display units, the far end of the window
    double rowsPerDepth = 1.0;  // pixel rows per display depth unit
    std::int64_t trackTop = 0;  // pixel row of topDepth

    // Pixel row of display depth d (depths far outside the window stay ordered without
    // overflowing).
    std::int64_t RowOf(float d) const;
};

// A track's pixel columns [left, right) and the pixel row just below it.
struct ImageTrackPixels {
    std::int64_t left = 0;
    std::int64_t right = 0;
    std::int64_t bottom = 0;
};

// One filled rectangle of an image trace: columns [x, x + width), rows [y, y + height),
// colour as a COLORREF (0x00BBGGRR). Cells are painted in order, later over earlier.
struct ImageCell {
    std::int64_t x = 0;
    std::int64_t y = 0;
    std::int64_t width = 0;
    std::int64_t height = 0;
    std::uint32_t colour = 0;
    friend bool operator==(const ImageCell&, const ImageCell&) = default;
};

// The colour of image sample `u` after the intensity multiplier: u * multiplier, held to
// 0..4095, coloured as ImageSampleColour does. A multiplier of 1 leaves u as it is.
std::uint32_t ScaledImageSampleColour(std::uint16_t u, std::int32_t multiplier);

// The cells of an image trace for one drawing pass, in painting order.
//
// Row i is considered when its display depth lies below the window's top and its stored
// depth above the window's bottom; it then paints row i - 1 (row 0 for i = 0) at the
// pixel row of that row's depth, so a row shows when the next row is inside the window.
// A band reaches from its row down to where the previous band lay (y - previous y + 1
// when it lies further down, else 1), so neighbouring bands touch. Cell j of a row of n
// samples (the last sample is never painted) lies at x = left + trunc(j * (right - left
// - 1) / (n - 1)) and is x - previous x + 1 wide when it lies right of the previous cell,
// else 2, and 1 wide when it would reach the track's right edge.
//
// The first row of a pass keeps the starting height and the first cell the starting
// width, both the numeric value of `backgroundColour` (a COLORREF), and the previous x
// and y start at 0 (the plot's left edge and the track area's top): on a light background
// the first band fills the track below it and its first cell the track's width until
// later cells paint over them; on black (0) the ordinary rules apply from the start. A
// band reaching the bottom row bottom - 1 is cut back to end above it, and a row at the
// bottom row moves up to bottom - 2.
//
// Cells that the next cell paints over completely are left out, and so is a row whose
// band the next row covers completely, so the pixels are those of painting every cell
// while the work per row is bounded by the track's width, not the sample count.
std::vector<ImageCell> ImageCells(const CImageTrace& trace, const ImageWindow& window, const ImageTrackPixels& track,
                                  std::uint32_t backgroundColour, std::int32_t intensityMultiplier = 1);

// --- sonic waveforms

// Sample index of time t (microseconds) in a waveform of `wordCount` words: (t - 10 *
// holdoff) * (wordCount - 1) div (rate2 * n2 + rate1 * n1), truncating, held to
// 0..wordCount - 1. `recordedSpan` is rate2 * n2 + rate1 * n1 and must be positive.
std::int64_t SonicSampleIndex(std::int64_t t, std::int64_t holdoffTime, std::int64_t recordedSpan,
                              std::size_t wordCount);

// Colour of a waveform word: v = (word - 2047) * multiplier held to -2047..2047, u = v +
// 2047; red = u div 16, green = (4095 - u) div 16, blue = 128 (COLORREF 0x00BBGGRR).
std::uint32_t SonicWordColour(std::uint16_t word, std::int64_t multiplier);

struct SonicRun {
    std::int64_t left = 0;  // first column
    std::int64_t right = 0; // one past the last column
    std::uint32_t colour = 0;
    friend bool operator==(const SonicRun&, const SonicRun&) = default;
};

// One row's band: pixel rows [top, bottom) filled by runs[firstRun, endRun).
struct SonicBand {
    std::size_t row = 0; // the trace row shown
    std::int64_t top = 0;
    std::int64_t bottom = 0;
    std::size_t firstRun = 0;
    std::size_t endRun = 0;
};

struct SonicImage {
    std::vector<SonicBand> bands;
    std::vector<SonicRun> runs;
};

// The bands of a sonic trace in a window, clipped to the track's columns and to its rows
// [window.trackTop, track.bottom).
//
// Rows strictly inside the window are shown. A row's band covers the pixel rows below the
// previous shown row's pixel row down to its own (the first shown row only its own), so a
// pixel row shows the first row that reaches it; a row on the same pixel row as the one
// before it adds nothing. Column c stands for the time scaleMinimum + (c - left) *
// (scaleMaximum - scaleMinimum) / (right - left), truncated to whole microseconds. Equal
// neighbouring colours are merged into one run. A trace whose recorded span (rate2 * n2 +
// rate1 * n1) is not positive has no time axis to draw on and gives no bands.
SonicImage SonicBands(const CSonicTrace& trace, const ImageWindow& window, const ImageTrackPixels& track);

} // namespace ba
