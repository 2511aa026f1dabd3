#include "model/ImageDrawing.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <vector>

namespace ba {
namespace {

constexpr std::uint32_t kWhite = 0x00FFFFFF;
constexpr std::uint32_t kBlack = 0;
constexpr std::uint32_t kUnpainted = 0xFF000000; // no COLORREF has the top byte set

// The pixels of a track, rows [trackTop, bottom) and columns [left, right).
class TrackRaster {
public:
    TrackRaster(const ImageTrackPixels& track, std::int64_t trackTop)
        : m_track(track), m_top(trackTop),
          m_pixels(static_cast<std::size_t>((track.right - track.left) * (track.bottom - trackTop)), kUnpainted)
    {
    }

    void Fill(std::int64_t x, std::int64_t y, std::int64_t width, std::int64_t height, std::uint32_t colour)
    {
        const std::int64_t x0 = std::max(x, m_track.left), x1 = std::min(x + width, m_track.right);
        const std::int64_t y0 = std::max(y, m_top), y1 = std::min(y + height, m_track.bottom);
        for (std::int64_t yy = y0; yy < y1; ++yy)
            for (std::int64_t xx = x0; xx < x1; ++xx) m_pixels[Index(xx, yy)] = colour;
    }

    std::uint32_t At(std::int64_t x, std::int64_t y) const { return m_pixels[Index(x, y)]; }
    const std::vector<std::uint32_t>& Pixels() const { return m_pixels; }

private:
    std::size_t Index(std::int64_t x, std::int64_t y) const
    {
        return static_cast<std::size_t>((y - m_top) * (m_track.right - m_track.left) + (x - m_track.left));
    }

    ImageTrackPixels m_track;
    std::int64_t m_top;
    std::vector<std::uint32_t> m_pixels;
};

// The image drawing as a literal loop over every row and every sample, the height shrunk
// one unit at a time: what ImageCells must reproduce pixel for pixel.
TrackRaster LiteralImage(const CImageTrace& trace, const ImageWindow& window, const ImageTrackPixels& track,
                         std::uint32_t background)
{
    TrackRaster raster(track, window.trackTop);
    bool firstRow = background != 0;
    bool firstCell = background != 0;
    std::int64_t height = background;
    std::int64_t width = background;
    std::int64_t previousX = 0;
    std::int64_t previousY = window.trackTop;
    for (std::size_t i = 0; i < trace.RowCount(); ++i) {
        if (!(trace.Depth(i) > window.topDepth && trace.StoredDepth(i) < window.bottomDepth)) continue;
        const std::size_t k = i == 0 ? 0 : i - 1;
        std::int64_t y = window.trackTop +
                         static_cast<std::int64_t>(std::floor((trace.Depth(k) - window.topDepth) * window.rowsPerDepth));
        if (firstRow)
            firstRow = false;
        else
            height = y > previousY ? y - previousY + 1 : 1;
        if (y >= track.bottom - 1) y = track.bottom - 2;
        while (y + height >= track.bottom - 1 && height > 1) --height;
        previousY = y;
        const ImageRow& row = trace.Row(k);
        const auto n = static_cast<std::int64_t>(row.size());
        for (std::int64_t j = 0; j <= n - 2; ++j) {
            const std::int64_t x = track.left + j * (track.right - track.left - 1) / (n - 1);
            if (firstCell) {
                firstCell = false;
            } else {
                width = x > previousX ? x - previousX + 1 : 2;
                if (x + width >= track.right) width = 1;
            }
            previousX = x;
            raster.Fill(x, y, width, height, ImageSampleColour(row[static_cast<std::size_t>(j)]));
        }
    }
    return raster;
}

TrackRaster PaintCells(const std::vector<ImageCell>& cells, const ImageWindow& window, const ImageTrackPixels& track)
{
    TrackRaster raster(track, window.trackTop);
    for (const ImageCell& cell : cells) raster.Fill(cell.x, cell.y, cell.width, cell.height, cell.colour);
    return raster;
}

CImageTrace RandomTrace(std::mt19937& rng, std::size_t rows, std::size_t maxSamples, float firstDepth, float step)
{
    CImageTrace trace("IMG", 0.0f, 100.0f, "cps");
    std::uniform_int_distribution<std::size_t> length(0, maxSamples);
    std::uniform_int_distribution<int> sample(0, 4095);
    std::uniform_real_distribution<float> jitter(0.0f, step);
    float depth = firstDepth;
    for (std::size_t r = 0; r < rows; ++r) {
        ImageRow row(length(rng));
        for (auto& u : row) u = static_cast<std::uint16_t>(sample(rng));
        trace.AppendRow(depth, std::move(row));
        depth += jitter(rng) + 0.001f;
    }
    return trace;
}

struct LiteralCase {
    const char* name;
    std::size_t rows;
    std::size_t maxSamples;
    double rowsPerDepth; // small: several rows share a pixel row; large: bands are tall
    ImageTrackPixels track;
    std::uint32_t background;
};

TEST(ImageCells, PaintTheSamePixelsAsTheLiteralLoop)
{
    const LiteralCase cases[] = {
        {"light, sparse rows", 12, 9, 6.0, {3, 40, 70}, kWhite},
        {"black, sparse rows", 12, 9, 6.0, {3, 40, 70}, kBlack},
        {"light, many samples per column", 10, 300, 4.0, {5, 25, 60}, kWhite},
        {"black, many samples per column", 10, 300, 4.0, {5, 25, 60}, kBlack},
        {"light, many rows per pixel row", 200, 40, 0.6, {0, 30, 50}, kWhite},
        {"black, many rows per pixel row", 200, 40, 0.6, {0, 30, 50}, kBlack},
        {"odd background value", 15, 12, 3.0, {2, 33, 45}, 0x0000000Au},
        {"one column track", 8, 20, 5.0, {4, 5, 40}, kWhite},
        {"bands reach the bottom", 30, 10, 9.0, {1, 20, 40}, kBlack},
    };
    std::mt19937 rng(7);
    for (const LiteralCase& c : cases) {
        for (int trial = 0; trial < 20; ++trial) {
            const CImageTrace trace = RandomTrace(rng, c.rows, c.maxSamples, 0.5f, 2.0f);
            // The window starts inside the data, so rows above it lag into it.
            const ImageWindow window{1.5f, 1.5f + 40.0f / static_cast<float>(c.rowsPerDepth), c.rowsPerDepth, 10};
            const TrackRaster expected = LiteralImage(trace, window, c.track, c.background);
            const TrackRaster actual = PaintCells(ImageCells(trace, window, c.track, c.background), window, c.track);
            ASSERT_EQ(actual.Pixels(), expected.Pixels()) << c.name << ", trial " << trial;
        }
    }
}

TEST(ImageCells, FewerCellsThanSamplesWhenSamplesShareColumns)
{
    std::mt19937 rng(3);
    const CImageTrace trace = RandomTrace(rng, 50, 2000, 0.0f, 0.1f);
    const ImageWindow window{-1.0f, 100.0f, 10.0, 0};
    const ImageTrackPixels track{0, 50, 200};
    std::size_t samples = 0;
    for (const ImageRow& row : trace.Rows()) samples += row.size();
    const std::vector<ImageCell> cells = ImageCells(trace, window, track, kWhite);
    EXPECT_LT(cells.size(), samples / 10);
    EXPECT_EQ(PaintCells(cells, window, track).Pixels(), LiteralImage(trace, window, track, kWhite).Pixels());
}

ImageCell OnlyCell(const std::vector<ImageCell>& cells)
{
    EXPECT_EQ(cells.size(), 1u);
    return cells.empty() ? ImageCell{} : cells.front();
}

TEST(ImageCells, StartUpOnLightAndBlackBackgrounds)
{
    CImageTrace trace;
    trace.AppendRow(2.0f, {0, 4095}); // one cell each: the last sample is never painted
    trace.AppendRow(3.0f, {4095, 0});
    trace.AppendRow(4.0f, {9, 9});
    const ImageWindow window{0.0f, 10.0f, 10.0, 5}; // depth 2 at pixel row 25, depth 3 at 35
    const ImageTrackPixels track{10, 50, 100};
    const std::uint32_t low = ImageSampleColour(0);
    const std::uint32_t high = ImageSampleColour(4095);

    // On a light background the first band runs down to just above the bottom and its
    // cell across the track. Index 1 paints row 0 again, index 2 paints row 1.
    const std::vector<ImageCell> light = ImageCells(trace, window, track, kWhite);
    const std::vector<ImageCell> lightExpected = {
        {10, 25, kWhite, 100 - 2 - 25, low}, {10, 25, 2, 1, low}, {10, 35, 2, 35 - 25 + 1, high}};
    EXPECT_EQ(light, lightExpected);

    // On black the first band reaches up to the track's top and the first cell is as wide
    // as the step from the plot's left edge.
    const std::vector<ImageCell> black = ImageCells(trace, window, track, kBlack);
    const std::vector<ImageCell> blackExpected = {
        {10, 25, 10 - 0 + 1, 25 - 5 + 1, low}, {10, 25, 2, 1, low}, {10, 35, 2, 11, high}};
    EXPECT_EQ(black, blackExpected);
}

TEST(ImageCells, RowSelectionAndLag)
{
    const ImageWindow window{1.0f, 5.0f, 10.0, 0};
    const ImageTrackPixels track{0, 20, 40};
    struct Case {
        const char* name;
        std::vector<float> depths;
        std::vector<std::size_t> samples;
        std::vector<std::int64_t> paintedRows; // pixel rows of the cells, in order
    };
    const Case cases[] = {
        {"a single row inside shows itself", {2.0f}, {3}, {10, 10}},
        {"a single row outside shows nothing", {6.0f}, {3}, {}},
        {"a row of one sample paints nothing", {2.0f, 3.0f}, {1, 1}, {}},
        // The row above the window paints at its own place (clipped later) when the next
        // row is inside; the last row inside is never painted.
        {"rows outside keep their place", {0.5f, 2.0f, 4.0f, 6.0f}, {2, 2, 2, 2}, {-5, 10}},
    };
    for (const Case& c : cases) {
        CImageTrace trace;
        for (std::size_t r = 0; r < c.depths.size(); ++r) trace.AppendRow(c.depths[r], ImageRow(c.samples[r], 100));
        std::vector<std::int64_t> rows;
        for (const ImageCell& cell : ImageCells(trace, window, track, kBlack)) rows.push_back(cell.y);
        EXPECT_EQ(rows, c.paintedRows) << c.name;
    }
}

TEST(ImageCells, ClampAtTheBottom)
{
    CImageTrace trace;
    trace.AppendRow(1.0f, {7, 7});
    trace.AppendRow(3.99f, {9, 9});
    trace.AppendRow(3.995f, {9, 9});
    const ImageWindow window{0.0f, 4.0f, 10.0, 0};
    const ImageTrackPixels track{0, 10, 40};
    // Depth 3.99 lands on pixel row 39, the bottom row: it moves up to 38 and its band,
    // 39 - 10 + 1 tall, is cut to 1.
    const std::vector<ImageCell> cells = ImageCells(trace, window, track, kBlack);
    ASSERT_FALSE(cells.empty());
    EXPECT_EQ(cells.back().y, 38);
    EXPECT_EQ(cells.back().height, 1);
}

TEST(ImageCells, IntensityMultiplierScalesAndHoldsSamples)
{
    EXPECT_EQ(ScaledImageSampleColour(1000, 1), ImageSampleColour(1000));
    EXPECT_EQ(ScaledImageSampleColour(1000, 3), ImageSampleColour(3000));
    EXPECT_EQ(ScaledImageSampleColour(1500, 3), ImageSampleColour(4095));
    CImageTrace trace;
    trace.AppendRow(2.0f, {1000, 1000});
    const ImageWindow window{0.0f, 10.0f, 10.0, 0};
    EXPECT_EQ(OnlyCell(ImageCells(trace, window, {0, 10, 100}, kBlack, 2)).colour, ImageSampleColour(2000));
}

// --- sonic

TEST(SonicDrawing, SampleIndexFromTime)
{
    struct Case {
        std::int64_t t, holdoffTime, span;
        std::size_t words;
        std::int64_t index;
    };
    const Case cases[] = {
        {100, 100, 2000, 251, 0},     // the first sample at the end of the holdoff
        {1100, 100, 2000, 251, 125},  // half way
        {2099, 100, 2000, 251, 249},  // truncated, not rounded
        {2100, 100, 2000, 251, 250},  // the end of the window
        {50, 100, 2000, 251, 0},      // before the window: held to the first
        {90000, 100, 2000, 251, 250}, // after it: held to the last
        {500, 0, 1000, 1, 0},         // a row of one word
    };
    for (const Case& c : cases)
        EXPECT_EQ(SonicSampleIndex(c.t, c.holdoffTime, c.span, c.words), c.index) << "t = " << c.t;
}

constexpr std::uint32_t Rgb(std::uint32_t r, std::uint32_t g, std::uint32_t b) { return r | g << 8 | b << 16; }

TEST(SonicDrawing, WordColourAndGain)
{
    struct Case {
        std::uint16_t word;
        std::int64_t multiplier;
        std::uint32_t colour;
    };
    const Case cases[] = {
        {2047, 1, Rgb(127, 128, 128)}, // the zero line is mid-grey
        {4095, 1, Rgb(255, 0, 128)},   // held to 2047 above the zero line: u = 4094
        {0, 1, Rgb(0, 255, 128)},
        {2147, 1, Rgb(134, 121, 128)}, // u = 2147
        {2147, 3, Rgb(146, 109, 128)}, // three times the amplitude: u = 2347
        {2747, 3, Rgb(255, 0, 128)},   // 2100 above the zero line, held to 2047
        {1347, 3, Rgb(0, 255, 128)},   // 2100 below, held to -2047
    };
    for (const Case& c : cases)
        EXPECT_EQ(SonicWordColour(c.word, c.multiplier), c.colour) << c.word << " x " << c.multiplier;
}

CSonicTrace SmallSonic()
{
    CSonicTrace trace("RX 1", 100.0f, 200.0f, "us");
    SonicAcquisition& a = trace.Acquisition();
    a.rxHoldoff = 10;   // 100 us
    a.rxSampleRate1 = 10;
    a.rxNumSamples1 = 10; // 100 us recorded: 11 words
    a.rxGain = 32;
    return trace;
}

ImageRow Ramp(std::size_t words, std::uint16_t from, std::uint16_t step)
{
    ImageRow row(words);
    for (std::size_t j = 0; j < words; ++j) row[j] = static_cast<std::uint16_t>(from + step * j);
    return row;
}

TEST(SonicDrawing, BandsRunFromThePreviousRowAndColumnsFollowTime)
{
    CSonicTrace trace = SmallSonic();
    trace.AppendRow(1.0f, Ramp(11, 1000, 200));  // the window's top: not shown
    trace.AppendRow(2.0f, Ramp(11, 1000, 200));  // pixel row 20
    trace.AppendRow(2.04f, Ramp(11, 3000, 0));   // same pixel row: adds nothing
    trace.AppendRow(3.0f, Ramp(11, 2047, 0));    // pixel rows 21..30
    trace.AppendRow(5.0f, Ramp(11, 0, 0));       // the window's bottom: not shown
    const ImageWindow window{1.0f, 5.0f, 10.0, 10};
    const ImageTrackPixels track{0, 20, 50};
    const SonicImage image = SonicBands(trace, window, track);

    ASSERT_EQ(image.bands.size(), 2u);
    EXPECT_EQ(image.bands[0].row, 1u);
    EXPECT_EQ(image.bands[0].top, 20);
    EXPECT_EQ(image.bands[0].bottom, 21);
    EXPECT_EQ(image.bands[1].row, 3u);
    EXPECT_EQ(image.bands[1].top, 21);
    EXPECT_EQ(image.bands[1].bottom, 31);

    // Row 1, column c: time 100 + 5c, sample index trunc(5c * 10 / 100) = c / 2.
    const SonicBand& ramp = image.bands[0];
    std::vector<std::uint32_t> columns;
    for (std::size_t r = ramp.firstRun; r < ramp.endRun; ++r) {
        EXPECT_LT(image.runs[r].left, image.runs[r].right);
        for (std::int64_t x = image.runs[r].left; x < image.runs[r].right; ++x) columns.push_back(image.runs[r].colour);
    }
    ASSERT_EQ(columns.size(), 20u);
    for (std::size_t c = 0; c < columns.size(); ++c)
        EXPECT_EQ(columns[c], SonicWordColour(static_cast<std::uint16_t>(1000 + 200 * (c / 2)), 1)) << "column " << c;
    EXPECT_EQ(ramp.endRun - ramp.firstRun, 10u); // two columns per sample, merged

    // A flat row is one run across the track.
    const SonicBand& flat = image.bands[1];
    ASSERT_EQ(flat.endRun - flat.firstRun, 1u);
    EXPECT_EQ(image.runs[flat.firstRun], (SonicRun{0, 20, Rgb(127, 128, 128)}));
}

TEST(SonicDrawing, GainMultiplierTriplesTheDrawnAmplitude)
{
    CSonicTrace trace = SmallSonic();
    trace.AppendRow(2.0f, ImageRow(11, 2147));
    const ImageWindow window{1.0f, 5.0f, 10.0, 0};
    const ImageTrackPixels track{0, 10, 50};
    ASSERT_EQ(SonicBands(trace, window, track).runs.size(), 1u);
    EXPECT_EQ(SonicBands(trace, window, track).runs[0].colour, Rgb(134, 121, 128));
    trace.SetIntensityMultiplier(3);
    EXPECT_EQ(trace.Acquisition().rxGain, 232);
    EXPECT_EQ(SonicBands(trace, window, track).runs[0].colour, Rgb(146, 109, 128));
}

TEST(SonicDrawing, NothingWithoutARecordedWindowOrOutsideTheTrack)
{
    CSonicTrace trace("RX 1", 0.0f, 100.0f, "us"); // every acquisition field 0
    trace.AppendRow(2.0f, ImageRow(11, 4000));
    const ImageWindow window{1.0f, 5.0f, 10.0, 0};
    EXPECT_TRUE(SonicBands(trace, window, {0, 10, 50}).bands.empty());

    CSonicTrace clipped = SmallSonic();
    clipped.AppendRow(2.0f, ImageRow(11, 4000));
    EXPECT_TRUE(SonicBands(clipped, window, {0, 10, 10}).bands.empty()); // pixel row 10 is below the track
    EXPECT_EQ(SonicBands(clipped, window, {0, 10, 11}).bands.size(), 1u);
}

} // namespace
} // namespace ba
