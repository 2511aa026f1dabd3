#pragma once
// Which samples of a log the filters may read. A null is a gap; a value that is not a
// finite number (only a damaged file holds one) is treated the same way, since one infinity
// would turn every average it enters into one.

#include "model/Trace.h"

#include <cmath>

namespace ba {

inline bool IsUsableSample(float value) { return !IsNullSample(value) && std::isfinite(value); }

} // namespace ba
