#pragma once
// The rows of one receiver while a file is read. A station shallower than every station
// so far goes in front, one deeper than all goes behind, one within the range held (or at
// either end's depth) is dropped; the first station is always taken.
//
// Putting a row in front of a growing array costs a shift of every row after it, which
// makes a file recorded downhole-to-uphole (every station shallower than the last)
// quadratic. So the front part is kept reversed in its own list and the two are joined
// once, in depth order, when the import ends.

#include "model/ImageTrace.h"

#include <vector>

namespace ba {

class CImageTrace;

class SonicStationRows {
public:
    enum class Place { Front, Back, Dropped };

    // Where a station at `depth` goes (nothing is changed).
    Place PlaceFor(float depth) const;
    // Adds a row where PlaceFor says it goes; `place` must be Front or Back.
    void Add(Place place, float depth, ImageRow row);

    std::size_t Count() const { return m_frontDepths.size() + m_backDepths.size(); }
    float FirstDepth() const;
    float LastDepth() const;

    // Appends every row, shallowest first, to `trace` and empties this collector.
    void MoveInto(CImageTrace& trace);

private:
    std::vector<float> m_frontDepths; // deepest first: the last one is the shallowest station
    std::vector<ImageRow> m_frontRows;
    std::vector<float> m_backDepths;  // shallowest first
    std::vector<ImageRow> m_backRows;
};

} // namespace ba
