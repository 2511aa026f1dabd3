#pragma once
// The ordinary curve: one value per depth, drawn with a pen.

#include "model/Trace.h"

#include <cstdint>

namespace ba {

// Pen styles as the window system numbers them.
enum PenStyle : std::int32_t {
    kPenSolid = 0,
    kPenDash = 1,
    kPenDot = 2,
    kPenDashDot = 3,
    kPenDashDotDot = 4,
    kPenNull = 5,
};

inline constexpr std::int32_t kLineColourCount = 7;

// COLORREF (0x00BBGGRR) of entry `index` of the line colour table: black, red, green,
// blue, magenta, cyan, yellow. An index outside the table gives black.
std::uint32_t LineColourFromIndex(std::int32_t index);

struct ValueRange {
    float minimum = 0.0f;
    float maximum = 0.0f;
};

class CLineTrace final : public CTrace {
public:
    static constexpr std::string_view kClassName = "CLineTrace";

    // The object made when a document is read, before its fields are loaded.
    CLineTrace();
    CLineTrace(std::int32_t penWidth, std::int32_t penStyle, std::int32_t colourIndex, float scaleLeft,
               float scaleRight, std::string name, std::string units);

    std::string_view ClassName() const override { return kClassName; }
    TraceKind Kind() const override { return TraceKind::Line; }
    std::unique_ptr<CTrace> Clone() const override { return std::make_unique<CLineTrace>(*this); }
    void Serialize(CArchiveWriter& ar) const override;
    void Deserialize(CArchiveReader& ar) override;
    void RemoveSample(std::size_t i) override;

    // --- pen
    std::int32_t PenWidth() const { return m_penWidth; }
    std::int32_t PenStyle() const { return m_penStyle; }
    std::int32_t ColourIndex() const { return m_colourIndex; }
    std::uint32_t Colour() const { return m_colour; }
    void ChangePen(std::int32_t width, std::int32_t style, std::int32_t colourIndex, std::uint32_t colour);
    void ChangePen(std::int32_t width, std::int32_t style, std::int32_t colourIndex)
    {
        ChangePen(width, style, colourIndex, LineColourFromIndex(colourIndex));
    }

    // --- values
    const CFloatArray& Values() const { return m_values; }
    CFloatArray& Values() { return m_values; }
    // The stored value of sample i; null when i is past the end.
    float Value(std::size_t i) const { return i < m_values.Size() ? m_values[i] : kNullValue; }

    // Value at display depth d: the matched sample, a linear interpolation between the two
    // samples around d (null when either is null), or null when d is not covered.
    float ValueAt(float d) const;

    void AppendSample(float storedDepth, float value);
    // Opens both arrays at i when i is below the count; otherwise extends both to i + 1
    // (new elements zero) and writes the sample at i.
    void InsertSample(std::size_t i, float storedDepth, float value);

    // The minimum skips null values but the maximum does not: a trace of nulls only has
    // the range (1.0e6, -9999.99).
    ValueRange MinMax() const;

private:
    CFloatArray m_values;
    std::int32_t m_penWidth = 1;
    std::int32_t m_penStyle = kPenSolid;
    std::int32_t m_colourIndex = 0;
    std::uint32_t m_colour = 0;
};

} // namespace ba
