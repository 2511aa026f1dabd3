#pragma once
// The synthetic log curve the benchmarks fill their large documents with.

#include "model/LineTrace.h"

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <utility>

namespace ba::bench {

// A gamma-ray-like line trace of `samples` samples from `firstDepth` down by `step`, with
// a null every 997th sample so the values are not all alike. `seed` shifts the curve and
// picks its colour, so the traces of one document differ.
inline std::unique_ptr<CLineTrace> MakeGammaRayTrace(std::string name, std::size_t samples, double firstDepth,
                                                     double step, std::size_t seed)
{
    auto trace = std::make_unique<CLineTrace>(1, kPenSolid, static_cast<std::int32_t>(seed % 7), 0.0f, 150.0f,
                                              std::move(name), "API");
    trace->StoredDepths().Reserve(samples);
    trace->Values().Reserve(samples);
    const double phase = static_cast<double>(seed);
    for (std::size_t i = 0; i < samples; ++i) {
        const double x = static_cast<double>(i) * 0.001 + phase;
        const float value =
            i % 997 == 0 ? kNullValue : static_cast<float>(75.0 + 40.0 * std::sin(x) + 10.0 * std::sin(7.3 * x));
        trace->AppendSample(static_cast<float>(firstDepth + static_cast<double>(i) * step), value);
    }
    return trace;
}

} // namespace ba::bench
