#include "spectral/SpectrumSumming.h"

#include <algorithm>
#include <cmath>

namespace ba {
namespace {

// Walks the summing order after the centre: forward index centre+1, centre+2, ... and
// backward index centre-1, centre-2, ..., alternately. `visit(sample)` returns true when
// summing has reached its target. Ends when both directions are exhausted: the forward
// one once its index has reached 2n, the backward one once its index is below -n.
template <typename Visit>
void WalkAround(std::size_t centre, std::size_t n, Visit&& visit)
{
    const auto count = static_cast<long long>(n);
    long long forward = static_cast<long long>(centre);
    long long backward = forward;
    for (;;) {
        const bool forwardDone = forward >= 2 * count;
        const bool backwardDone = backward < -count;
        if (forwardDone && backwardDone) return;
        if (!forwardDone) {
            ++forward;
            if (const auto sample = MirroredSample(forward, n); sample && visit(*sample)) return;
        }
        if (!backwardDone) {
            --backward;
            if (const auto sample = MirroredSample(backward, n); sample && visit(*sample)) return;
        }
    }
}

// Spacing of sample j: its distance from the sample before it (the first sample takes the
// spacing of the second).
double SampleSpacing(const CSpectralTrace& trace, std::size_t j)
{
    const std::size_t n = trace.SampleCount();
    if (n < 2) return 0.0;
    const std::size_t i = j == 0 ? 1 : j;
    return std::fabs(static_cast<double>(trace.Depth(i)) - static_cast<double>(trace.Depth(i - 1)));
}

// Reached within a relative hair, so that ten spacings of 0.001 do reach 0.01 although
// their binary sum falls a rounding short of it.
bool Reached(double accumulated, double target) { return accumulated >= target - 1e-9 * std::max(1.0, target); }

void AddCounts(const ImageRow& row, std::vector<float>& sums)
{
    const std::size_t channels = std::min(row.size(), sums.size());
    const std::uint16_t* counts = row.data();
    float* out = sums.data();
    for (std::size_t ch = 0; ch < channels; ++ch) out[ch] += static_cast<float>(counts[ch]);
}

} // namespace

std::optional<std::size_t> MirroredSample(long long index, std::size_t n)
{
    const auto count = static_cast<long long>(n);
    long long sample = index;
    if (index < 0) sample = -index;
    else if (index >= count) sample = 2 * count - index;
    if (sample < 0 || sample >= count) return std::nullopt; // index n (or out of both mirrors)
    return static_cast<std::size_t>(sample);
}

std::vector<std::size_t> SummingOrder(std::size_t centre, std::size_t n)
{
    std::vector<std::size_t> order;
    if (centre >= n) return order;
    order.push_back(centre);
    WalkAround(centre, n, [&](std::size_t sample) {
        order.push_back(sample);
        return false;
    });
    return order;
}

void SumSpectraAround(const CSpectralTrace& trace, std::size_t centre, const SummingTarget& target,
                      SummedSpectrum& out)
{
    const std::size_t n = std::min(trace.RowCount(), trace.AcquisitionTimes().Size());
    out.cps.assign(centre < n ? trace.Row(centre).size() : 0, 0.0f);
    out.acquisitionTime = 0.0;
    out.depthSpan = 0.0;
    out.spectraSummed = 0;
    if (centre >= n) return;

    auto add = [&](std::size_t sample) {
        AddCounts(trace.Row(sample), out.cps);
        out.acquisitionTime += static_cast<double>(trace.AcquisitionTime(sample));
        ++out.spectraSummed;
    };
    add(centre);
    if (target.byDepth) {
        if (!Reached(out.depthSpan, target.depthSum)) {
            WalkAround(centre, n, [&](std::size_t sample) {
                add(sample);
                out.depthSpan += std::max(SampleSpacing(trace, sample), kMinimumSummingSpacing);
                return Reached(out.depthSpan, target.depthSum);
            });
        }
    } else if (!Reached(out.acquisitionTime, target.timeSum)) {
        WalkAround(centre, n, [&](std::size_t sample) {
            add(sample);
            return Reached(out.acquisitionTime, target.timeSum);
        });
    }

    if (out.acquisitionTime > 0.0) {
        for (float& c : out.cps) c = static_cast<float>(static_cast<double>(c) / out.acquisitionTime);
    } else {
        std::fill(out.cps.begin(), out.cps.end(), 0.0f);
    }
}

SummedSpectrum SumSpectraAround(const CSpectralTrace& trace, std::size_t centre, const SummingTarget& target)
{
    SummedSpectrum out;
    SumSpectraAround(trace, centre, target, out);
    return out;
}

} // namespace ba
