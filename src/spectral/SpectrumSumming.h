#pragma once
// Summing neighbouring spectra of a spectral gamma log into one count-rate spectrum around
// a chosen sample. Near the ends of the log the neighbours are taken from a mirror image
// of the log, so a spectrum at the top or bottom is summed over as many spectra as one in
// the middle.

#include "model/SpectralTrace.h"

#include <cstddef>
#include <optional>
#include <vector>

namespace ba {

// How far summing goes: accumulated live time (seconds) or accumulated depth span (the
// trace's display depth unit).
struct SummingTarget {
    bool byDepth = false;
    double timeSum = 60.0;  // seconds, used when !byDepth
    double depthSum = 0.5;  // display depth units, used when byDepth
};

// Every added spectrum advances depth summing by its sample spacing, but by at least this.
inline constexpr double kMinimumSummingSpacing = 0.001;

struct SummedSpectrum {
    std::vector<float> cps;         // counts per second, one per channel of the centre spectrum
    double acquisitionTime = 0.0;   // live seconds actually accumulated (centre spectrum included)
    double depthSpan = 0.0;         // depth span accumulated by the added spectra
    std::size_t spectraSummed = 0;  // the centre spectrum and every spectrum added, repeats included
    std::size_t ChannelCount() const { return cps.size(); }
};

// The sample a summing index stands for, or none when it stands for no sample. Indices
// 0..n-1 are the samples themselves; an index k below 0 is mirrored to -k; an index k past
// n-1 is mirrored to 2n - k. The index n would mirror to itself, which is no sample, so it
// is skipped rather than clamped (the last sample is therefore met again at n + 1, while
// the first is not met again at -0). Index 2n mirrors to sample 0; indices past 2n, and
// -n and below, stand for nothing.
std::optional<std::size_t> MirroredSample(long long index, std::size_t n);

// The order in which summing visits the samples around `centre`: the centre, then
// centre+1, centre-1, centre+2, centre-2, ... through the mirror, until both directions
// have run past the mirror bounds (forward index reaching 2n, backward index below -n).
// A skipped index still takes its turn. Meant for tests and diagnostics; summing itself
// walks the same order without building the list.
std::vector<std::size_t> SummingOrder(std::size_t centre, std::size_t n);

// Sums the spectra around sample `centre` in summing order until the target is reached or
// the mirror bounds are exhausted, and divides every channel by the live time accumulated.
// The result has the channel count of the centre spectrum; a spectrum with fewer channels
// adds to its own channels only, one with more has its extra channels ignored. With no
// accumulated time (all live times zero) the count rates are all zero and
// acquisitionTime says 0. `out` is reused so that summing while dragging allocates
// nothing after the first call. Precondition: centre < trace.RowCount().
void SumSpectraAround(const CSpectralTrace& trace, std::size_t centre, const SummingTarget& target,
                      SummedSpectrum& out);
SummedSpectrum SumSpectraAround(const CSpectralTrace& trace, std::size_t centre, const SummingTarget& target);

} // namespace ba
