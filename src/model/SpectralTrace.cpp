#include "model/SpectralTrace.h"

#include "model/Archive.h"

namespace ba {

CSpectralTrace::CSpectralTrace(std::string name, float scaleLeft, float scaleRight, std::string units)
    : CImageTrace(std::move(name), scaleLeft, scaleRight, std::move(units))
{
}

void CSpectralTrace::Serialize(CArchiveWriter& ar) const
{
    CImageTrace::Serialize(ar);
    ar.WriteInt32(static_cast<std::int32_t>(m_acquisitionTimes.Size()));
    ar.WriteString(m_text);
    ar.WriteInt32(m_value);
    ar.WriteFloats(m_acquisitionTimes.Items());
    ar.WriteFloats(m_totalTimes.Items());
    ar.WriteFloats(m_temperatures.Items());
    ar.WriteFloats(m_highVoltages.Items());
}

void CSpectralTrace::Deserialize(CArchiveReader& ar)
{
    CImageTrace::Deserialize(ar);
    const std::size_t countOffset = ar.Offset();
    const std::int32_t count = ar.ReadInt32();
    m_text = ar.ReadString();
    m_value = ar.ReadInt32();
    // One count serves the four arrays, so it must leave room for all of them.
    const std::size_t n = ar.CheckElementCount(count, countOffset, "the spectrum acquisition values", 4 * sizeof(float));
    ar.ReadFloats(n, m_acquisitionTimes);
    ar.ReadFloats(n, m_totalTimes);
    ar.ReadFloats(n, m_temperatures);
    ar.ReadFloats(n, m_highVoltages);
}

void CSpectralTrace::RemoveSample(std::size_t i)
{
    for (CFloatArray* values : {&m_acquisitionTimes, &m_totalTimes, &m_temperatures, &m_highVoltages}) {
        if (i < values->Size()) values->RemoveAt(i);
    }
    CImageTrace::RemoveSample(i);
}

void CSpectralTrace::AppendSpectrum(float storedDepth, ImageRow counts, float acquisitionTime, float totalTime,
                                    float temperature, float highVoltage)
{
    AppendRow(storedDepth, std::move(counts));
    m_acquisitionTimes.Add(acquisitionTime);
    m_totalTimes.Add(totalTime);
    m_temperatures.Add(temperature);
    m_highVoltages.Add(highVoltage);
}

} // namespace ba
