#pragma once
// A line trace with every property of another (name, units, scale, track, header box,
// view settings, depth unit, flags, legend marks, pen) and no samples: the start of a
// utility's result whose samples are all new, without copying the old ones first.

#include "model/LineTrace.h"

#include <memory>

namespace ba {

std::unique_ptr<CLineTrace> CopyWithoutSamples(const CLineTrace& trace);

} // namespace ba
