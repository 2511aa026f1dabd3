#pragma once
// Turns a receiver block into an image row of uniform spacing: samples recorded at the
// coarser rate 2 are expanded to rate 1 by straight-line steps from the sample before.

#include "model/ImageTrace.h"
#include "sonic/SonicRecord.h"

#include <cstdint>

namespace ba {

// Whether the block's rate-2 samples can be expanded: false when it has rate-2 samples
// and rate 2 is not a whole multiple of rate 1 (they are then left out of the row).
bool Rate2SamplesUsable(const SonicBlock& block);

// The rate-2 to rate-1 ratio k (rate 2 div rate 1; 0 when rate 1 is 0).
std::int32_t Rate2Expansion(const SonicBlock& block);

// Words in the row: n1 + k x n2, whether or not the rate-2 samples are usable (a row whose
// rate-2 samples are left out keeps those trailing words at 0).
std::size_t SonicRowWords(const SonicBlock& block);

// Fills `row` (resized to SonicRowWords) with the n1 rate-1 samples and, when `useRate2`,
// each rate-2 sample s expanded to k words p + trunc((s - p)(m + 1) / k), m = 0..k-1,
// where p is the sample before (the last rate-1 sample for the first; the zero line 2047
// when the block has no rate-1 samples).
void BuildSonicRow(const SonicBlock& block, bool useRate2, ImageRow& row);

} // namespace ba
