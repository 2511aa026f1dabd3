#pragma once
// A trace with a whole row of samples at each depth instead of one value: a sonic
// waveform, a gamma-ray spectrum, any array shown as a colour band along the borehole.
// The plain image kind on its own, and the base of the sonic and spectrum kinds.
//
// Rows and depths are parallel: row i belongs to depth i. Samples are unsigned 16-bit
// words, 12-bit values (0..4095) by convention. In a document file the trace record is
// the common trace fields, then int32 row count, then per row int32 sample count and the
// samples as 16-bit words.

#include "model/Trace.h"

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace ba {

using ImageRow = std::vector<std::uint16_t>;

class CImageTrace : public CTrace {
public:
    static constexpr std::string_view kClassName = "CImageTrace";

    // The object made when a document is read, before its fields are loaded.
    CImageTrace() = default;
    CImageTrace(std::string name, float scaleLeft, float scaleRight, std::string units);

    std::string_view ClassName() const override { return kClassName; }
    TraceKind Kind() const override { return TraceKind::Image; }
    std::unique_ptr<CTrace> Clone() const override { return std::make_unique<CImageTrace>(*this); }
    // The common trace fields, then the rows.
    void Serialize(CArchiveWriter& ar) const override;
    // Reads the common fields and appends the rows read (the rows are not emptied first).
    // Counts are checked against the bytes left before anything is allocated.
    void Deserialize(CArchiveReader& ar) override;
    // Removes depth i and row i together; both arrays are shrunk to their exact size.
    void RemoveSample(std::size_t i) override;

    std::size_t RowCount() const { return m_rows.size(); }
    const ImageRow& Row(std::size_t i) const { return m_rows[i]; }
    ImageRow& Row(std::size_t i) { return m_rows[i]; }
    std::size_t RowSampleCount(std::size_t i) const { return m_rows[i].size(); }
    const std::vector<ImageRow>& Rows() const { return m_rows; }

    // Appends depth and row together, keeping both arrays the same length.
    void AppendRow(float storedDepth, ImageRow row);
    // Opens both arrays at i (i <= RowCount()) for depth and row.
    void InsertRow(std::size_t i, float storedDepth, ImageRow row);

protected:
    std::vector<ImageRow> m_rows;
};

// Colour of an image sample as the plot draws it, a COLORREF (0x00BBGGRR): red =
// (u >> 4) & 255, green = ((4095 - u) / 16) & 255, blue = 128. Low values are green,
// high values red.
std::uint32_t ImageSampleColour(std::uint16_t u);

} // namespace ba
