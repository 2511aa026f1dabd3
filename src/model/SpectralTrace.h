#pragma once
// A spectral gamma log: at every sample one energy spectrum (an image row, one count per
// channel) with its live acquisition time, time since the start of logging, tool
// temperature and detector high voltage.

#include "model/ImageTrace.h"

#include <cstdint>
#include <string>

namespace ba {

class CSpectralTrace final : public CImageTrace {
public:
    static constexpr std::string_view kClassName = "CSpectralTrace";

    CSpectralTrace() = default;
    CSpectralTrace(std::string name, float scaleLeft, float scaleRight, std::string units);

    std::string_view ClassName() const override { return kClassName; }
    TraceKind Kind() const override { return TraceKind::Spectral; }
    std::unique_ptr<CTrace> Clone() const override { return std::make_unique<CSpectralTrace>(*this); }
    // The image part, then int32 N, the text, the value, and N floats of each array in turn.
    void Serialize(CArchiveWriter& ar) const override;
    void Deserialize(CArchiveReader& ar) override;
    // Removes the spectrum and its four values.
    void RemoveSample(std::size_t i) override;

    // Appends one spectrum with its values.
    void AppendSpectrum(float storedDepth, ImageRow counts, float acquisitionTime, float totalTime,
                        float temperature, float highVoltage);

    const std::string& Text() const { return m_text; }
    void SetText(std::string text) { m_text = std::move(text); }
    std::int32_t Value() const { return m_value; }
    void SetValue(std::int32_t value) { m_value = value; }

    float AcquisitionTime(std::size_t i) const { return m_acquisitionTimes[i]; } // seconds
    float TotalTime(std::size_t i) const { return m_totalTimes[i]; }             // seconds
    float Temperature(std::size_t i) const { return m_temperatures[i]; }         // degrees C
    float HighVoltage(std::size_t i) const { return m_highVoltages[i]; }         // volts
    const CFloatArray& AcquisitionTimes() const { return m_acquisitionTimes; }
    const CFloatArray& TotalTimes() const { return m_totalTimes; }
    const CFloatArray& Temperatures() const { return m_temperatures; }
    const CFloatArray& HighVoltages() const { return m_highVoltages; }

private:
    std::string m_text;
    std::int32_t m_value = 0;
    CFloatArray m_acquisitionTimes;
    CFloatArray m_totalTimes;
    CFloatArray m_temperatures;
    CFloatArray m_highVoltages;
};

} // namespace ba
