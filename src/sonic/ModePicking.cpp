#include "sonic/ModePicking.h"

#include <algorithm>
#include <cmath>

namespace ba {

std::vector<CoherencePeak> FindCoherencePeaks(const CoherenceMap& map, float threshold, PeakSeparation separation,
                                              std::size_t limit)
{
    std::vector<CoherencePeak> peaks;
    const std::size_t rows = map.time.size();
    const std::size_t columns = map.slowness.size();
    if (rows == 0 || columns == 0 || map.rho.size() != rows * columns) return peaks;
    for (std::size_t c = 0; c < columns; ++c) {
        for (std::size_t r = 0; r < rows; ++r) {
            const float v = map.At(r, c);
            if (!(v >= threshold)) continue;
            // A plateau keeps only its first point in scan order (slowness, then time).
            bool highest = true;
            for (int dc = -1; dc <= 1 && highest; ++dc) {
                for (int dr = -1; dr <= 1 && highest; ++dr) {
                    if (dc == 0 && dr == 0) continue;
                    const auto cc = static_cast<std::ptrdiff_t>(c) + dc;
                    const auto rr = static_cast<std::ptrdiff_t>(r) + dr;
                    if (cc < 0 || rr < 0 || cc >= static_cast<std::ptrdiff_t>(columns) ||
                        rr >= static_cast<std::ptrdiff_t>(rows)) {
                        continue;
                    }
                    const float w = map.At(static_cast<std::size_t>(rr), static_cast<std::size_t>(cc));
                    const bool before = dc < 0 || (dc == 0 && dr < 0);
                    if (w > v || (w == v && before)) highest = false;
                }
            }
            if (!highest) continue;
            std::size_t first = r;
            while (first > 0 && map.At(first - 1, c) >= threshold) --first;
            std::size_t last = r;
            while (last + 1 < rows && map.At(last + 1, c) >= threshold) ++last;
            peaks.push_back({map.slowness[c], map.time[r], v, map.time[first], map.time[last]});
        }
    }
    std::stable_sort(peaks.begin(), peaks.end(), [](const CoherencePeak& a, const CoherencePeak& b) {
        return a.rho > b.rho;
    });
    std::vector<CoherencePeak> arrivals;
    for (const CoherencePeak& p : peaks) {
        const bool known = std::any_of(arrivals.begin(), arrivals.end(), [&](const CoherencePeak& a) {
            return std::fabs(p.time - a.time) < separation.time &&
                   std::fabs(p.slowness - a.slowness) < separation.slownessFraction * a.slowness;
        });
        if (known) continue;
        arrivals.push_back(p);
        if (arrivals.size() == limit) break;
    }
    return arrivals;
}

namespace {

// The candidate nearest the previous pick, when one lies within the tolerance of it.
const CoherencePeak* Continuing(const std::vector<const CoherencePeak*>& candidates,
                                const std::optional<CoherencePeak>& before)
{
    if (!before) return nullptr;
    const CoherencePeak* nearest = nullptr;
    for (const CoherencePeak* p : candidates) {
        const double distance = std::fabs(p->slowness - before->slowness);
        if (distance > kContinuityTolerance * before->slowness) continue;
        if (nearest == nullptr || distance < std::fabs(nearest->slowness - before->slowness)) nearest = p;
    }
    return nearest;
}

const CoherencePeak* Earliest(const std::vector<const CoherencePeak*>& candidates)
{
    const CoherencePeak* best = nullptr;
    for (const CoherencePeak* p : candidates) {
        if (best == nullptr || p->time < best->time || (p->time == best->time && p->rho > best->rho)) best = p;
    }
    return best;
}

const CoherencePeak* MostCoherent(const std::vector<const CoherencePeak*>& candidates)
{
    const CoherencePeak* best = nullptr;
    for (const CoherencePeak* p : candidates) {
        if (best == nullptr || p->rho > best->rho) best = p;
    }
    return best;
}

} // namespace

ModePicks LabelModes(const std::vector<CoherencePeak>& peaks, const ModeRules& rules, const ModePicks* previous)
{
    ModePicks picks;
    std::vector<const CoherencePeak*> faster;
    std::vector<const CoherencePeak*> slower;
    for (const CoherencePeak& p : peaks) (p.slowness < rules.fluidSlowness ? faster : slower).push_back(&p);

    // Before the first arrival there is only noise, whose coherence over a few receivers now
    // and then comes near the threshold: the compressional is the earliest of the arrivals
    // that are clearly coherent, next to the best faster than the fluid.
    float bestFaster = 0.0f;
    for (const CoherencePeak* q : faster) bestFaster = std::max(bestFaster, q->rho);
    std::vector<const CoherencePeak*> clear;
    for (const CoherencePeak* q : faster) {
        if (q->rho >= kClearCoherence * bestFaster) clear.push_back(q);
    }
    const CoherencePeak* p = Continuing(clear, previous ? previous->compressional : std::nullopt);
    if (p == nullptr) p = Earliest(clear);
    if (p == nullptr) {
        // No arrival faster than the fluid: a Stoneley alone, if anything.
        if (const CoherencePeak* st = MostCoherent(slower)) picks.stoneley = *st;
        return picks;
    }
    picks.compressional = *p;

    // The Stoneley before the shear: the side lobes of a strong Stoneley may lie just faster
    // than the fluid, while the shear arrives before the Stoneley's coherence begins.
    std::vector<const CoherencePeak*> stoneley;
    for (const CoherencePeak* q : slower) {
        if (q->time > p->time) stoneley.push_back(q);
    }
    const CoherencePeak* st = Continuing(stoneley, previous ? previous->stoneley : std::nullopt);
    if (st == nullptr) st = MostCoherent(stoneley);
    if (st != nullptr) picks.stoneley = *st;

    std::vector<const CoherencePeak*> shear;
    for (const CoherencePeak* q : faster) {
        if (q != p && q->time > p->time && (st == nullptr || q->time < st->firstTime) &&
            q->slowness >= rules.shearFactor * p->slowness) {
            shear.push_back(q);
        }
    }
    const CoherencePeak* s = Continuing(shear, previous ? previous->shear : std::nullopt);
    if (s == nullptr) s = MostCoherent(shear);
    if (s != nullptr) picks.shear = *s;
    return picks;
}

} // namespace ba
