#include "model/SonicTrace.h"

#include "model/Archive.h"

#include <array>

namespace ba {
namespace {

// The acquisition fields in stored order, as pointers into the struct, so that the
// document record and the clipboard image walk one list instead of repeating it.
using AcquisitionField = std::int32_t SonicAcquisition::*;
constexpr std::array<AcquisitionField, 12> kStoredFields = {
    &SonicAcquisition::txFrequency,   &SonicAcquisition::txMode,        &SonicAcquisition::txNumStacks,
    &SonicAcquisition::txStackInterval, &SonicAcquisition::rxMode,      &SonicAcquisition::rxNumSamples1,
    &SonicAcquisition::rxNumSamples2, &SonicAcquisition::rxSampleRate1, &SonicAcquisition::rxSampleRate2,
    &SonicAcquisition::rxHoldoff,     &SonicAcquisition::rxGain,        &SonicAcquisition::reserved,
};

// The clipboard image leaves RX mode out: a pasted trace is always taken as monopole.
constexpr std::array<AcquisitionField, 11> kClipboardFields = {
    &SonicAcquisition::txFrequency,   &SonicAcquisition::txMode,        &SonicAcquisition::txNumStacks,
    &SonicAcquisition::txStackInterval, &SonicAcquisition::rxNumSamples1, &SonicAcquisition::rxNumSamples2,
    &SonicAcquisition::rxSampleRate1, &SonicAcquisition::rxSampleRate2, &SonicAcquisition::rxHoldoff,
    &SonicAcquisition::rxGain,        &SonicAcquisition::reserved,
};

} // namespace

CSonicTrace::CSonicTrace(std::string name, float scaleMinimum, float scaleMaximum, std::string units)
    : CImageTrace(std::move(name), scaleMinimum, scaleMaximum, std::move(units)),
      m_toolType(kUnknownToolType)
{
}

void CSonicTrace::Serialize(CArchiveWriter& ar) const
{
    CImageTrace::Serialize(ar);
    ar.WriteString(m_toolType);
    for (const AcquisitionField field : kStoredFields) ar.WriteInt32(m_acquisition.*field);
}

void CSonicTrace::Deserialize(CArchiveReader& ar)
{
    CImageTrace::Deserialize(ar);
    m_toolType = ar.ReadString();
    for (const AcquisitionField field : kStoredFields) m_acquisition.*field = ar.ReadInt32();
}

std::int32_t CSonicTrace::GainCode() const { return m_acquisition.rxGain % 100; }

std::int32_t CSonicTrace::IntensityMultiplier() const { return m_acquisition.rxGain / 100 + 1; }

void CSonicTrace::SetIntensityMultiplier(std::int32_t multiplier)
{
    m_acquisition.rxGain = GainCode() + 100 * (multiplier - 1);
}

// Clipboard image, little-endian, no padding:
//   int32 R; R times (int32 n, n words); name and units, 25 bytes each;
//   ten 4-byte header values; int32 D and D float depths; tool type, 25 bytes;
//   the eleven acquisition integers without RX mode.
// The ten header values are, in order: scale minimum, scale maximum, track index, flags,
// header box left, top, right, bottom, vertical scale, depth-unit code. The depth-unit code
// is needed by the paste axis rules; the view parameter and top depth are display state
// and are not carried.
std::vector<std::uint8_t> CSonicTrace::ClipboardImage() const
{
    CArchiveWriter ar;
    ar.WriteInt32(static_cast<std::int32_t>(m_rows.size()));
    for (const ImageRow& row : m_rows) {
        ar.WriteInt32(static_cast<std::int32_t>(row.size()));
        ar.WriteWords(row);
    }
    ar.WriteFixedText(Name());
    ar.WriteFixedText(Units());
    ar.WriteFloat(ScaleLeft());
    ar.WriteFloat(ScaleRight());
    ar.WriteInt32(TrackIndex());
    ar.WriteInt32(Flags());
    ar.WriteInt32(HeaderBox().left);
    ar.WriteInt32(HeaderBox().top);
    ar.WriteInt32(HeaderBox().right);
    ar.WriteInt32(HeaderBox().bottom);
    ar.WriteFloat(VerticalScale());
    ar.WriteInt32(DepthUnit());
    ar.WriteInt32(static_cast<std::int32_t>(m_depths.Size()));
    ar.WriteFloats(m_depths.Items());
    ar.WriteFixedText(m_toolType);
    for (const AcquisitionField field : kClipboardFields) ar.WriteInt32(m_acquisition.*field);
    return ar.TakeBytes();
}

std::unique_ptr<CSonicTrace> CSonicTrace::FromClipboardImage(std::span<const std::uint8_t> image,
                                                             std::size_t baseOffset)
{
    CArchiveReader ar(image);
    ar.SetContext("a sonic trace clipboard image");
    auto trace = std::make_unique<CSonicTrace>();
    try {
        const std::size_t rowCount = ar.ReadElementCount("the waveform rows", 4);
        trace->m_rows.reserve(rowCount);
        for (std::size_t r = 0; r < rowCount; ++r) {
            const std::size_t n = ar.ReadElementCount("the samples of waveform row " + std::to_string(r), 2);
            const auto bytes = ar.ReadBytes(2 * n);
            ImageRow row(n);
            for (std::size_t j = 0; j < n; ++j) {
                row[j] = static_cast<std::uint16_t>(bytes[2 * j] | (bytes[2 * j + 1] << 8));
            }
            trace->m_rows.push_back(std::move(row));
        }
        trace->SetName(ar.ReadFixedText());
        trace->SetUnits(ar.ReadFixedText());
        const float scaleMinimum = ar.ReadFloat();
        const float scaleMaximum = ar.ReadFloat();
        trace->SetScale(scaleMinimum, scaleMaximum);
        trace->SetTrackIndex(ar.ReadInt32());
        trace->SetFlags(ar.ReadInt32());
        CRect32 box;
        box.left = ar.ReadInt32();
        box.top = ar.ReadInt32();
        box.right = ar.ReadInt32();
        box.bottom = ar.ReadInt32();
        trace->SetHeaderBox(box);
        trace->SetVerticalScale(ar.ReadFloat());
        trace->SetDepthUnit(ar.ReadInt32());
        const std::size_t depthCount = ar.ReadElementCount("the depths", sizeof(float));
        ar.ReadFloats(depthCount, trace->m_depths);
        trace->m_toolType = ar.ReadFixedText();
        for (const AcquisitionField field : kClipboardFields) trace->m_acquisition.*field = ar.ReadInt32();
        if (ar.Remaining() != 0) {
            ar.Fail(ArchiveFault::BadCount, std::to_string(ar.Remaining()) +
                                                " bytes follow the end of the sonic trace clipboard image");
        }
    } catch (const ArchiveException& e) {
        if (baseOffset == 0) throw;
        // The reader counted from the start of the image; the message and the offset are
        // restated from the start of the block that holds it.
        std::string what = e.what();
        const std::string localSuffix = " (byte offset " + std::to_string(e.Offset()) + ")";
        if (what.ends_with(localSuffix)) what.resize(what.size() - localSuffix.size());
        const std::uint64_t offset = baseOffset + e.Offset();
        throw ArchiveException(e.Fault(), offset, what + " (byte offset " + std::to_string(offset) + ")");
    }
    return trace;
}

std::string SonicAcquisitionText(const CSonicTrace& trace)
{
    const SonicAcquisition& a = trace.Acquisition();
    auto line = [](std::string_view label, std::int32_t value, std::string_view unit = {}) {
        return std::string(label) + std::to_string(value) + std::string(unit) + "\n";
    };
    std::string text = "Acquisition Properties:\n";
    text += "Tool Type: " + trace.ToolType() + "\n";
    if (IsNonWaveformSonicTool(trace.ToolType())) {
        text += line("Num Samples: ", a.rxNumSamples1);
        return text;
    }
    text += line("TX Frequency: ", a.txFrequency, " KHz");
    text += a.txMode == 0 ? "TX Mode: Monopole/Dipole\n" : "TX Mode: Reverse Dipole Stacking\n";
    text += line("TX Num Stacks: ", a.txNumStacks);
    text += line("TX Stack Interval: ", a.txStackInterval, " ms");
    text += a.rxMode == 0   ? "RX Mode: Monopole\n"
            : a.rxMode == 1 ? "RX Mode: Dipole\n"
                            : "RX Mode: Reverse Dipole Stacking\n";
    text += line("RX Num Samples 1: ", a.rxNumSamples1);
    text += line("RX Num Samples 2: ", a.rxNumSamples2);
    text += line("RX Sample Rate 1: ", a.rxSampleRate1, " us");
    text += line("RX Sample Rate 2: ", a.rxSampleRate2, " us");
    text += line("RX Holdoff Time: ", a.rxHoldoff * 10, " us");
    const std::int32_t gainCode = trace.GainCode();
    // The AGC line is the last one and, unlike the numeric gain line, ends without a break.
    text += gainCode == kAgcGainCode ? std::string("RX Gain: AGC") : line("RX Gain: ", gainCode);
    return text;
}

bool IsNonWaveformSonicTool(std::string_view toolType)
{
    return toolType == "2SNA-1000-S" || toolType == "2GSA-1000";
}

} // namespace ba
