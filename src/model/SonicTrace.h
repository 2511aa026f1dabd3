#pragma once
// A full-waveform sonic log: one recorded waveform of one receiver per station (the image
// rows, 12-bit words whose zero line is 2047) and the acquisition settings of the tool.
// The scale ends are the recorded time window in microseconds.

#include "model/ImageTrace.h"

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace ba {

inline constexpr std::uint16_t kSonicZeroLine = 2047;
// The acquisition gain code that means automatic gain control.
inline constexpr std::int32_t kAgcGainCode = 32;

// The acquisition fields in their stored order (after the tool type). All are 0 after
// construction.
struct SonicAcquisition {
    std::int32_t txFrequency = 0;     // kHz
    std::int32_t txMode = 0;          // 0 monopole/dipole, other: reverse dipole stacking
    std::int32_t txNumStacks = 0;
    std::int32_t txStackInterval = 0; // ms
    std::int32_t rxMode = 0;          // 0 monopole, 1 dipole, other: reverse dipole stacking
    std::int32_t rxNumSamples1 = 0;
    std::int32_t rxNumSamples2 = 0;
    std::int32_t rxSampleRate1 = 0;   // microseconds per sample
    std::int32_t rxSampleRate2 = 0;
    std::int32_t rxHoldoff = 0;       // units of 10 microseconds
    std::int32_t rxGain = 0;          // gain code + 100 * (intensity multiplier - 1)
    std::int32_t reserved = 0;        // carried, never interpreted
    friend bool operator==(const SonicAcquisition&, const SonicAcquisition&) = default;
};

class CSonicTrace final : public CImageTrace {
public:
    static constexpr std::string_view kClassName = "CSonicTrace";
    static constexpr std::string_view kUnknownToolType = "Unknown";

    // The object made when a document is read: image defaults, empty tool type.
    CSonicTrace() = default;
    // Tool type "Unknown", every acquisition field 0.
    CSonicTrace(std::string name, float scaleMinimum, float scaleMaximum, std::string units);

    std::string_view ClassName() const override { return kClassName; }
    TraceKind Kind() const override { return TraceKind::Sonic; }
    std::unique_ptr<CTrace> Clone() const override { return std::make_unique<CSonicTrace>(*this); }
    // The image part, the tool type as an archive string, then the twelve fields as int32.
    void Serialize(CArchiveWriter& ar) const override;
    void Deserialize(CArchiveReader& ar) override;

    const std::string& ToolType() const { return m_toolType; }
    void SetToolType(std::string toolType) { m_toolType = std::move(toolType); }
    const SonicAcquisition& Acquisition() const { return m_acquisition; }
    SonicAcquisition& Acquisition() { return m_acquisition; }

    // RX gain mod 100.
    std::int32_t GainCode() const;
    // RX gain div 100 + 1.
    std::int32_t IntensityMultiplier() const;
    // Keeps the gain code; `multiplier` is 1..10.
    void SetIntensityMultiplier(std::int32_t multiplier);

    // The clipboard image of a sonic trace (rows, name and units in 25 bytes each, ten
    // common header values, depths, tool type in 25 bytes, eleven acquisition integers
    // without RX mode).
    std::vector<std::uint8_t> ClipboardImage() const;
    // Builds a trace from such an image; RX mode stays 0. Throws ArchiveException naming
    // the offset (counted from `baseOffset`) when the image is malformed or not used up.
    static std::unique_ptr<CSonicTrace> FromClipboardImage(std::span<const std::uint8_t> image,
                                                           std::size_t baseOffset = 0);

private:
    std::string m_toolType;
    SonicAcquisition m_acquisition;
};

// The property page's acquisition text for `trace` ("Acquisition Properties:\n" ...).
std::string SonicAcquisitionText(const CSonicTrace& trace);
// Whether the tool type names a tool whose rows are not waveforms ("2SNA-1000-S",
// "2GSA-1000"): its page shows only the sample count and locks the numeric fields.
bool IsNonWaveformSonicTool(std::string_view toolType);

} // namespace ba
