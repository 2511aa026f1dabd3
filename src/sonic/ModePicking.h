#pragma once
// From a station's coherence map to its compressional, shear and Stoneley arrivals: the
// peaks of the map above a threshold, each given at most one label by the physics of a
// fluid-filled borehole.
// - Compressional: the earliest coherent arrival faster than the borehole fluid, among those
//   at least kClearCoherence times as coherent as the most coherent such arrival.
// - Shear: later than the compressional and before the Stoneley begins, at least √2 times
//   the compressional slowness and still faster than the fluid; absent where the
//   formation's shear is slower than the fluid.
// - Stoneley: later than the compressional, at or beyond the fluid's slowness.
// Depth continuity: where a mode has several candidates, the one nearest the slowness picked
// at the station before wins when it lies within kContinuityTolerance of it; otherwise the
// rule above decides (earliest for compressional, most coherent for shear and Stoneley).
// Stations are labelled in depth order after their maps, so the result does not depend on
// how many threads computed the maps.

#include "sonic/Semblance.h"

#include <cstddef>
#include <optional>
#include <vector>

namespace ba {

// The coherence an arrival must reach to be labelled. Noise alone gives about 1/M over M
// receivers, and the side lobes of a strong arrival reach 0.6 or so with three or four.
inline constexpr float kDefaultCoherenceThreshold = 0.7f;

struct CoherencePeak {
    double slowness = 0.0; // µs per length unit
    double time = 0.0;     // window start on the first receiver, µs
    float rho = 0.0f;
    // The window starts around `time`, at this slowness, over which the coherence stays at
    // or above the threshold: how long the arrival lasts.
    double firstTime = 0.0;
    double lastTime = 0.0;
};

// How far apart two peaks must lie to be two arrivals: along an arrival the coherence stays
// high for as long as the wavelet lasts and wavers with the noise, which would otherwise
// give a peak every few samples.
struct PeakSeparation {
    double time = 150.0;          // µs; the coherence window is a good choice
    double slownessFraction = 0.1; // of the stronger peak's slowness
};

// The local maxima of the map (no neighbour across slowness or time higher, none earlier in
// scan order equal) at or above `threshold`, most coherent first; a peak within the
// separation of a more coherent one is the same arrival and is dropped. At most `limit`.
std::vector<CoherencePeak> FindCoherencePeaks(const CoherenceMap& map, float threshold, PeakSeparation separation = {},
                                              std::size_t limit = 16);

struct ModePicks {
    std::optional<CoherencePeak> compressional;
    std::optional<CoherencePeak> shear;
    std::optional<CoherencePeak> stoneley;
};

struct ModeRules {
    double fluidSlowness = 189.0; // fresh water, µs/ft
    double shearFactor = 1.41421356237;
};

inline constexpr float kClearCoherence = 0.8f;

// A mode's candidate within this fraction of the previous station's slowness keeps the
// previous station's mode.
inline constexpr double kContinuityTolerance = 0.1;

ModePicks LabelModes(const std::vector<CoherencePeak>& peaks, const ModeRules& rules, const ModePicks* previous);

} // namespace ba
