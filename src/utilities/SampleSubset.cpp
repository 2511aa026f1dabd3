#include "utilities/SampleSubset.h"

#include "model/ImageTrace.h"
#include "model/LineTrace.h"
#include "model/SonicTrace.h"
#include "model/SpectralTrace.h"

#include <stdexcept>

namespace ba {
namespace {

std::size_t CountKept(std::span<const std::uint8_t> keep)
{
    std::size_t count = 0;
    for (const std::uint8_t k : keep) count += k != 0 ? 1 : 0;
    return count;
}

// A line trace's samples are two arrays the copy can compact in place.
std::unique_ptr<CTrace> KeepLineSamples(const CLineTrace& line, std::span<const std::uint8_t> keep)
{
    auto copy = line.Clone();
    auto& result = static_cast<CLineTrace&>(*copy);
    float* depths = result.StoredDepths().Data();
    float* values = result.Values().Data();
    std::size_t kept = 0;
    for (std::size_t i = 0; i < keep.size(); ++i) {
        if (keep[i] == 0) continue;
        depths[kept] = depths[i];
        values[kept] = values[i];
        ++kept;
    }
    result.StoredDepths().SetSize(kept);
    result.Values().SetSize(kept);
    result.StoredDepths().FreeExtra();
    result.Values().FreeExtra();
    return copy;
}

// Image kinds hold their rows out of reach of a compaction, so the copy starts with the
// common fields alone and takes the kept rows one by one.
template <typename Image>
std::unique_ptr<Image> ImageFieldsOnly(const Image& source, std::size_t kept)
{
    auto copy = std::make_unique<Image>();
    static_cast<CTrace&>(*copy) = source;
    copy->StoredDepths().Clear();
    copy->StoredDepths().Reserve(kept);
    return copy;
}

template <typename Image>
void KeepRows(const Image& source, std::span<const std::uint8_t> keep, Image& copy)
{
    for (std::size_t i = 0; i < keep.size(); ++i) {
        if (keep[i] != 0) copy.AppendRow(source.StoredDepth(i), source.Row(i));
    }
}

std::unique_ptr<CTrace> KeepSpectra(const CSpectralTrace& source, std::span<const std::uint8_t> keep)
{
    auto copy = ImageFieldsOnly(source, CountKept(keep));
    copy->SetText(source.Text());
    copy->SetValue(source.Value());
    for (std::size_t i = 0; i < keep.size(); ++i) {
        if (keep[i] == 0) continue;
        copy->AppendSpectrum(source.StoredDepth(i), source.Row(i), source.AcquisitionTime(i), source.TotalTime(i),
                             source.Temperature(i), source.HighVoltage(i));
    }
    return copy;
}

} // namespace

std::unique_ptr<CTrace> CopyKeepingSamples(const CTrace& trace, std::span<const std::uint8_t> keep)
{
    if (keep.size() != trace.SampleCount()) throw std::logic_error("CopyKeepingSamples: one mark per depth");
    switch (trace.Kind()) {
    case TraceKind::Line: return KeepLineSamples(static_cast<const CLineTrace&>(trace), keep);
    case TraceKind::Image: {
        const auto& image = static_cast<const CImageTrace&>(trace);
        auto copy = ImageFieldsOnly(image, CountKept(keep));
        KeepRows(image, keep, *copy);
        return copy;
    }
    case TraceKind::Sonic: {
        const auto& sonic = static_cast<const CSonicTrace&>(trace);
        auto copy = ImageFieldsOnly(sonic, CountKept(keep));
        copy->SetToolType(sonic.ToolType());
        copy->Acquisition() = sonic.Acquisition();
        KeepRows(sonic, keep, *copy);
        return copy;
    }
    case TraceKind::Spectral: return KeepSpectra(static_cast<const CSpectralTrace&>(trace), keep);
    }
    throw std::logic_error("CopyKeepingSamples: unknown trace kind");
}

} // namespace ba
