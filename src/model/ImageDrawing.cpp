#include "model/ImageDrawing.h"

#include <algorithm>
#include <cmath>

namespace ba {
namespace {

// A half-open run of pixel columns, for telling whether one row's cells hide another's.
struct ColumnSpan {
    std::int64_t left;
    std::int64_t right;
};

// Cells of one painted row with the columns they cover, merged into ascending spans.
struct PaintedRow {
    std::int64_t y = 0;
    std::int64_t height = 0;
    std::vector<ImageCell> cells;
    std::vector<ColumnSpan> cover;

    void Add(const ImageCell& cell)
    {
        cells.push_back(cell);
        const ColumnSpan span{cell.x, cell.x + cell.width};
        if (span.right <= span.left) return;
        // Cells arrive with ascending x, so a new cell only ever touches the last span.
        if (!cover.empty() && span.left <= cover.back().right) {
            cover.back().right = std::max(cover.back().right, span.right);
        } else {
            cover.push_back(span);
        }
    }

    // Whether painting this row hides every pixel `earlier` painted.
    bool Hides(const PaintedRow& earlier) const
    {
        if (earlier.cells.empty()) return true;
        if (y > earlier.y || y + height < earlier.y + earlier.height) return false;
        std::size_t k = 0;
        for (const ColumnSpan& span : earlier.cover) {
            while (k < cover.size() && cover[k].right <= span.left) ++k;
            if (k == cover.size() || cover[k].left > span.left || cover[k].right < span.right) return false;
        }
        return true;
    }
};

// The state one drawing pass carries from cell to cell and row to row.
class CellPass {
public:
    CellPass(const ImageTrackPixels& track, std::uint32_t background, std::int64_t trackTop)
        : m_track(track), m_firstRow(background != 0), m_firstCell(background != 0),
          m_height(static_cast<std::int64_t>(background)), m_width(static_cast<std::int64_t>(background)),
          m_previousY(trackTop)
    {
    }

    // Places the band of a row whose depth lies on pixel row y.
    void StartRow(std::int64_t y, PaintedRow& row)
    {
        if (m_firstRow) {
            m_firstRow = false; // keeps the starting height
        } else {
            m_height = y > m_previousY ? y - m_previousY + 1 : 1;
        }
        const std::int64_t bottom = m_track.bottom;
        y = ClampedY(y);
        // Shrinking one unit at a time while the band reaches the bottom row ends here.
        if (m_height > 1 && y + m_height >= bottom - 1) m_height = std::max<std::int64_t>(1, bottom - 2 - y);
        m_previousY = y;
        row.y = y;
        row.height = m_height;
    }

    // Adds the cells of samples [first, last] of a row, which all lie at column x, with the
    // colour of the last one for the cells that follow the first.
    void AddColumn(std::int64_t x, std::uint32_t firstColour, std::uint32_t lastColour, bool several, PaintedRow& row)
    {
        const std::int64_t firstWidth = NextWidth(x);
        if (!several) {
            row.Add({x, row.y, firstWidth, row.height, firstColour});
            return;
        }
        // Every later cell at the same column has the same rectangle; the last one's shows.
        const std::int64_t laterWidth = NextWidth(x);
        if (firstWidth > laterWidth) row.Add({x, row.y, firstWidth, row.height, firstColour});
        row.Add({x, row.y, laterWidth, row.height, lastColour});
    }

    // Where a row at pixel row y is painted: the bottom row moves up by one.
    std::int64_t ClampedY(std::int64_t y) const { return y >= m_track.bottom - 1 ? m_track.bottom - 2 : y; }

    // Whether the cells of a row that ends at column lastX would start just as the last
    // row's did: the first cell of the pass is behind, and the previous row ended there.
    bool ContinuesAt(std::int64_t lastX) const { return !m_firstCell && m_previousX == lastX; }

    // The state after a row ending at column lastX, without its cells.
    void SkipCells(std::int64_t lastX) { m_previousX = lastX; }

private:
    std::int64_t NextWidth(std::int64_t x)
    {
        if (m_firstCell) {
            m_firstCell = false; // keeps the starting width
        } else {
            m_width = x > m_previousX ? x - m_previousX + 1 : 2;
            if (x + m_width >= m_track.right) m_width = 1;
        }
        m_previousX = x;
        return m_width;
    }

    ImageTrackPixels m_track;
    bool m_firstRow;
    bool m_firstCell;
    std::int64_t m_height;
    std::int64_t m_width;
    std::int64_t m_previousX = 0;
    std::int64_t m_previousY;
};

// Adds the cells of one image row, one or two per distinct column however many samples
// share it.
void AddRowCells(const ImageRow& samples, const ImageTrackPixels& track, std::int32_t multiplier, CellPass& pass,
                 PaintedRow& row)
{
    const std::size_t n = samples.size();
    if (n < 2) return;
    const std::int64_t last = static_cast<std::int64_t>(n) - 2; // the last sample is never painted
    const std::int64_t divisor = static_cast<std::int64_t>(n) - 1;
    const std::int64_t span = track.right - track.left - 1;
    std::int64_t j = 0;
    while (j <= last) {
        const std::int64_t offset = j * span / divisor;
        // The last sample at the same column: the largest j' with j' * span / divisor ==
        // offset, i.e. j' * span < (offset + 1) * divisor.
        std::int64_t end = last;
        if (span > 0) end = std::min(last, ((offset + 1) * divisor - 1) / span);
        const std::uint32_t firstColour = ScaledImageSampleColour(samples[static_cast<std::size_t>(j)], multiplier);
        const std::uint32_t lastColour = ScaledImageSampleColour(samples[static_cast<std::size_t>(end)], multiplier);
        pass.AddColumn(track.left + offset, firstColour, lastColour, end > j, row);
        j = end + 1;
    }
}

// Column of the last painted cell of a row of n samples (n >= 2).
std::int64_t LastColumn(const ImageTrackPixels& track, std::size_t n)
{
    const auto count = static_cast<std::int64_t>(n);
    return track.left + (count - 2) * (track.right - track.left - 1) / (count - 1);
}

// Holds back each painted row until the next one shows whether it hides it.
class RowCollector {
public:
    explicit RowCollector(std::vector<ImageCell>& out) : m_out(out) {}

    // Takes the row's cells; `row` comes back empty, to be filled again.
    void Add(PaintedRow& row)
    {
        if (m_hasPending && !row.Hides(m_pending)) Flush();
        std::swap(m_pending, row);
        m_hasPending = true;
        row.cells.clear();
        row.cover.clear();
    }

    void Finish() { Flush(); }

private:
    void Flush()
    {
        if (m_hasPending) m_out.insert(m_out.end(), m_pending.cells.begin(), m_pending.cells.end());
        m_hasPending = false;
    }

    std::vector<ImageCell>& m_out;
    PaintedRow m_pending;
    bool m_hasPending = false;
};

// Times and indices are held to this size before they are multiplied, so that no value a
// file can hold overflows.
constexpr double kTimeLimit = 1.0e15;

__extension__ using WideInt = __int128;

} // namespace

std::int64_t ImageWindow::RowOf(float d) const
{
    const double row = std::floor((static_cast<double>(d) - topDepth) * rowsPerDepth);
    constexpr double kLimit = 1.0e15;
    if (row != row) return trackTop; // a NaN depth: nowhere in particular, but no overflow
    return trackTop + static_cast<std::int64_t>(std::clamp(row, -kLimit, kLimit));
}

std::uint32_t ScaledImageSampleColour(std::uint16_t u, std::int32_t multiplier)
{
    if (multiplier == 1) return ImageSampleColour(u);
    const std::int64_t scaled = std::clamp<std::int64_t>(static_cast<std::int64_t>(u) * multiplier, 0, 4095);
    return ImageSampleColour(static_cast<std::uint16_t>(scaled));
}

std::vector<ImageCell> ImageCells(const CImageTrace& trace, const ImageWindow& window, const ImageTrackPixels& track,
                                  std::uint32_t backgroundColour, std::int32_t intensityMultiplier)
{
    std::vector<ImageCell> cells;
    if (track.right <= track.left) return cells; // a track without columns shows nothing
    CellPass pass(track, backgroundColour, window.trackTop);
    RowCollector collector(cells);
    PaintedRow row;
    const std::size_t rowCount = std::min(trace.RowCount(), trace.SampleCount());
    std::vector<std::size_t> considered;
    for (std::size_t i = 0; i < rowCount; ++i) {
        if (trace.Depth(i) > window.topDepth && trace.StoredDepth(i) < window.bottomDepth) considered.push_back(i);
    }
    const auto shownBy = [](std::size_t i) { return i == 0 ? std::size_t{0} : i - 1; };
    for (std::size_t q = 0; q < considered.size(); ++q) {
        const std::size_t shown = shownBy(considered[q]);
        pass.StartRow(window.RowOf(trace.Depth(shown)), row);
        const ImageRow& samples = trace.Row(shown);
        // Where many rows share a pixel row, a one-pixel band followed by a row of as many
        // samples on the same pixel row is painted over cell for cell: its cells would
        // start where the last row's ended, and so would the next row's.
        if (q + 1 < considered.size() && row.height == 1 && samples.size() >= 2) {
            const std::int64_t lastX = LastColumn(track, samples.size());
            const std::size_t next = shownBy(considered[q + 1]);
            if (pass.ContinuesAt(lastX) && trace.Row(next).size() == samples.size() &&
                pass.ClampedY(window.RowOf(trace.Depth(next))) == row.y) {
                pass.SkipCells(lastX);
                continue;
            }
        }
        AddRowCells(samples, track, intensityMultiplier, pass, row);
        collector.Add(row);
    }
    collector.Finish();
    return cells;
}

std::int64_t SonicSampleIndex(std::int64_t t, std::int64_t holdoffTime, std::int64_t recordedSpan,
                              std::size_t wordCount)
{
    if (wordCount == 0 || recordedSpan <= 0) return 0;
    const WideInt index = (static_cast<WideInt>(t) - holdoffTime) * static_cast<WideInt>(wordCount - 1) / recordedSpan;
    return static_cast<std::int64_t>(std::clamp<WideInt>(index, 0, static_cast<WideInt>(wordCount - 1)));
}

std::uint32_t SonicWordColour(std::uint16_t word, std::int64_t multiplier)
{
    const WideInt amplitude = (static_cast<WideInt>(word) - kSonicZeroLine) * multiplier;
    const auto v = static_cast<std::int64_t>(std::clamp<WideInt>(amplitude, -2047, 2047));
    const auto u = static_cast<std::uint32_t>(v + 2047);
    const std::uint32_t red = u / 16;
    const std::uint32_t green = (4095 - u) / 16;
    return red | (green << 8) | (128u << 16);
}

SonicImage SonicBands(const CSonicTrace& trace, const ImageWindow& window, const ImageTrackPixels& track)
{
    SonicImage image;
    const SonicAcquisition& acquisition = trace.Acquisition();
    const std::int64_t span = static_cast<std::int64_t>(acquisition.rxSampleRate2) * acquisition.rxNumSamples2 +
                              static_cast<std::int64_t>(acquisition.rxSampleRate1) * acquisition.rxNumSamples1;
    const double minimum = trace.ScaleLeft();
    const double maximum = trace.ScaleRight();
    if (span <= 0 || track.right <= track.left || !std::isfinite(minimum) || !std::isfinite(maximum)) return image;
    const std::int64_t holdoffTime = 10 * static_cast<std::int64_t>(acquisition.rxHoldoff);
    const std::int64_t multiplier = static_cast<std::int64_t>(acquisition.rxGain) / 100 + 1;

    // The time of each column, shared by every band.
    const std::int64_t columns = track.right - track.left;
    std::vector<std::int64_t> times(static_cast<std::size_t>(columns));
    for (std::int64_t c = 0; c < columns; ++c) {
        const double t = minimum + static_cast<double>(c) * (maximum - minimum) / static_cast<double>(columns);
        times[static_cast<std::size_t>(c)] = static_cast<std::int64_t>(std::clamp(std::trunc(t), -kTimeLimit, kTimeLimit));
    }
    // The sample index of each column, for the word count of the rows met last (all rows
    // of one trace normally have the same).
    std::vector<std::size_t> indices(times.size());
    std::size_t indexedWordCount = 0;

    bool first = true;
    std::int64_t previousPixel = 0;
    const std::size_t rowCount = std::min(trace.RowCount(), trace.SampleCount());
    for (std::size_t i = 0; i < rowCount; ++i) {
        const float depth = trace.Depth(i);
        if (!(depth > window.topDepth && depth < window.bottomDepth)) continue;
        const std::int64_t pixel = window.RowOf(depth);
        std::int64_t top = first ? pixel : previousPixel + 1;
        std::int64_t bottom = pixel + 1;
        previousPixel = first ? pixel : std::max(previousPixel, pixel);
        first = false;
        top = std::max(top, window.trackTop);
        bottom = std::min(bottom, track.bottom);
        const ImageRow& words = trace.Row(i);
        if (top >= bottom || words.empty()) continue;
        if (words.size() != indexedWordCount) {
            for (std::size_t c = 0; c < times.size(); ++c)
                indices[c] = static_cast<std::size_t>(SonicSampleIndex(times[c], holdoffTime, span, words.size()));
            indexedWordCount = words.size();
        }
        SonicBand band{i, top, bottom, image.runs.size(), image.runs.size()};
        for (std::size_t c = 0; c < indices.size(); ++c) {
            const std::uint32_t colour = SonicWordColour(words[indices[c]], multiplier);
            const std::int64_t x = track.left + static_cast<std::int64_t>(c);
            if (image.runs.size() > band.firstRun && image.runs.back().colour == colour) {
                image.runs.back().right = x + 1;
            } else {
                image.runs.push_back({x, x + 1, colour});
            }
        }
        band.endRun = image.runs.size();
        image.bands.push_back(band);
    }
    return image;
}

} // namespace ba
