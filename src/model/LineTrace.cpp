#include "model/LineTrace.h"

#include "model/Archive.h"

#include <array>

namespace ba {

std::uint32_t LineColourFromIndex(std::int32_t index)
{
    static constexpr std::array<std::uint32_t, kLineColourCount> kTable = {
        0x000000, 0x0000FF, 0x00FF00, 0xFF0000, 0xFF00FF, 0xFFFF00, 0x00FFFF,
    };
    if (index < 0 || index >= kLineColourCount) return 0x000000;
    return kTable[static_cast<std::size_t>(index)];
}

CLineTrace::CLineTrace() = default;

CLineTrace::CLineTrace(std::int32_t penWidth, std::int32_t penStyle, std::int32_t colourIndex, float scaleLeft,
                       float scaleRight, std::string name, std::string units)
    : m_penWidth(penWidth), m_penStyle(penStyle), m_colourIndex(colourIndex),
      m_colour(LineColourFromIndex(colourIndex))
{
    SetScale(scaleLeft, scaleRight);
    SetName(std::move(name));
    SetUnits(std::move(units));
}

void CLineTrace::Serialize(CArchiveWriter& ar) const
{
    CTrace::Serialize(ar);
    ar.WriteInt32(static_cast<std::int32_t>(m_values.Size()));
    ar.WriteInt32(m_penWidth);
    ar.WriteInt32(m_penStyle);
    ar.WriteInt32(m_colourIndex);
    ar.WriteUInt32(m_colour);
    ar.WriteFloats(m_values.Items());
}

void CLineTrace::Deserialize(CArchiveReader& ar)
{
    CTrace::Deserialize(ar);
    const std::size_t countOffset = ar.Offset();
    const std::int32_t count = ar.ReadInt32();
    m_penWidth = ar.ReadInt32();
    m_penStyle = ar.ReadInt32();
    m_colourIndex = ar.ReadInt32();
    m_colour = ar.ReadUInt32();
    const std::size_t m = ar.CheckElementCount(count, countOffset, "the values", sizeof(float));
    ar.ReadFloats(m, m_values);
}

void CLineTrace::RemoveSample(std::size_t i)
{
    if (i < m_values.Size()) m_values.RemoveAt(i);
    CTrace::RemoveSample(i);
}

void CLineTrace::ChangePen(std::int32_t width, std::int32_t style, std::int32_t colourIndex, std::uint32_t colour)
{
    m_penWidth = width;
    m_penStyle = style;
    m_colourIndex = colourIndex;
    m_colour = colour;
}

float CLineTrace::ValueAt(float d) const
{
    const SampleBracket at = FindSamplesAround(d);
    switch (at.code) {
    case SampleBracket::Exact: return Value(at.i0);
    case SampleBracket::Bracketed: {
        const float v0 = Value(at.i0);
        const float v1 = Value(at.i1);
        if (IsNullSample(v0) || IsNullSample(v1)) return kNullValue;
        const double d0 = Depth(at.i0);
        const double d1 = Depth(at.i1);
        if (d1 == d0) return v0;
        return static_cast<float>(v0 + (d - d0) * (static_cast<double>(v1) - v0) / (d1 - d0));
    }
    default: return kNullValue;
    }
}

void CLineTrace::AppendSample(float storedDepth, float value)
{
    m_depths.Add(storedDepth);
    m_values.Add(value);
}

void CLineTrace::InsertSample(std::size_t i, float storedDepth, float value)
{
    if (i < SampleCount()) {
        m_depths.InsertAt(i, storedDepth);
        m_values.InsertAt(i < m_values.Size() ? i : m_values.Size(), value);
        return;
    }
    m_depths.SetSize(i + 1);
    m_values.SetSize(i + 1);
    m_depths[i] = storedDepth;
    m_values[i] = value;
}

ValueRange CLineTrace::MinMax() const
{
    ValueRange range{1.0e6f, -1.0e6f};
    for (const float v : m_values.Items()) {
        if (!IsNullSample(v) && v < range.minimum) range.minimum = v;
        if (v > range.maximum) range.maximum = v;
    }
    return range;
}

} // namespace ba
