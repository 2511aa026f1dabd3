#include "model/ImageTrace.h"

#include "model/Archive.h"

#include <stdexcept>

namespace ba {

CImageTrace::CImageTrace(std::string name, float scaleLeft, float scaleRight, std::string units)
{
    SetName(std::move(name));
    SetScale(scaleLeft, scaleRight);
    SetUnits(std::move(units));
}

void CImageTrace::Serialize(CArchiveWriter& ar) const
{
    CTrace::Serialize(ar);
    ar.WriteInt32(static_cast<std::int32_t>(m_rows.size()));
    for (const ImageRow& row : m_rows) {
        ar.WriteInt32(static_cast<std::int32_t>(row.size()));
        ar.WriteWords(row);
    }
}

void CImageTrace::Deserialize(CArchiveReader& ar)
{
    CTrace::Deserialize(ar);
    // Every row takes at least its four-byte sample count.
    const std::size_t rowCount = ar.ReadElementCount("the image rows", 4);
    m_rows.reserve(m_rows.size() + rowCount);
    for (std::size_t r = 0; r < rowCount; ++r) {
        const std::size_t n = ar.ReadElementCount("the samples of image row " + std::to_string(r), 2);
        const auto bytes = ar.ReadBytes(2 * n);
        ImageRow row(n);
        for (std::size_t j = 0; j < n; ++j) {
            row[j] = static_cast<std::uint16_t>(bytes[2 * j] | (bytes[2 * j + 1] << 8));
        }
        m_rows.push_back(std::move(row));
    }
}

void CImageTrace::RemoveSample(std::size_t i)
{
    if (i < m_rows.size()) {
        m_rows.erase(m_rows.begin() + static_cast<std::ptrdiff_t>(i));
        m_rows.shrink_to_fit();
    }
    CTrace::RemoveSample(i);
}

void CImageTrace::AppendRow(float storedDepth, ImageRow row)
{
    m_depths.Add(storedDepth);
    m_rows.push_back(std::move(row));
}

void CImageTrace::InsertRow(std::size_t i, float storedDepth, ImageRow row)
{
    if (i > m_rows.size() || i > m_depths.Size()) {
        throw std::out_of_range("CImageTrace::InsertRow: position " + std::to_string(i) + " is past the " +
                                std::to_string(m_rows.size()) + " rows of \"" + Name() + "\"");
    }
    m_depths.InsertAt(i, storedDepth);
    m_rows.insert(m_rows.begin() + static_cast<std::ptrdiff_t>(i), std::move(row));
}

std::uint32_t ImageSampleColour(std::uint16_t u)
{
    const int value = u;
    const auto red = static_cast<std::uint32_t>((value >> 4) & 255);
    const auto green = static_cast<std::uint32_t>(((4095 - value) / 16) & 255);
    const std::uint32_t blue = 128;
    return red | (green << 8) | (blue << 16);
}

} // namespace ba
