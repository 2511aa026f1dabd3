#pragma once
// The changes the value utilities make: new values for a line trace whose depths stay as
// they are. Cheaper than replacing the whole trace: the depths are neither copied nor kept
// for undo. A change holds only what it swaps in and out of the trace: a whole values
// array (for a filter, which changes every sample) or the changed samples alone (for a
// clip or an edit, which change few samples of a long trace).

#include "model/DocumentChange.h"
#include "model/GrowableArray.h"
#include "model/LineTrace.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace ba {

// New values for some samples of a line trace.
struct ValuePatch {
    std::vector<std::size_t> indices;
    std::vector<float> values;

    void Add(std::size_t index, float value)
    {
        indices.push_back(index);
        values.push_back(value);
    }
};

// Gives line trace `index` of `trace`'s document the values `values` (one per depth) in
// its place; with a `newName`, adds a copy of `trace` with those values under that name
// after the other traces instead.
std::unique_ptr<CDocumentChange> MakeValuesResultChange(std::string description, const CLineTrace& trace,
                                                        std::size_t index, CFloatArray values,
                                                        const std::string& newName);

// The same for new values of the samples listed in `patch`.
std::unique_ptr<CDocumentChange> MakePatchResultChange(std::string description, const CLineTrace& trace,
                                                       std::size_t index, ValuePatch patch,
                                                       const std::string& newName);

// The same for new values that `newValue(i, value)` gives sample by sample (nothing for a
// sample that keeps its value), at most `candidates` of them: kept as a patch when few
// samples change, as a whole array when many do (a patch takes three times the memory of
// an array per sample).
template <typename NewValue>
std::unique_ptr<CDocumentChange> MakeChangedValuesResult(std::string description, const CLineTrace& trace,
                                                         std::size_t index, std::size_t candidates,
                                                         NewValue&& newValue, const std::string& newName)
{
    const CFloatArray& old = trace.Values();
    const std::size_t n = old.Size();
    if (candidates * 3 > n) {
        CFloatArray values = old;
        float* v = values.Data();
        for (std::size_t i = 0; i < n; ++i) {
            if (const auto changed = newValue(i, v[i])) v[i] = *changed;
        }
        return MakeValuesResultChange(std::move(description), trace, index, std::move(values), newName);
    }
    ValuePatch patch;
    patch.indices.reserve(candidates);
    patch.values.reserve(candidates);
    for (std::size_t i = 0; i < n; ++i) {
        if (const auto changed = newValue(i, old[i])) patch.Add(i, *changed);
    }
    return MakePatchResultChange(std::move(description), trace, index, std::move(patch), newName);
}

} // namespace ba
