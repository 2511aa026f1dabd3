#pragma once
// Depth shift of a trace of any kind. Every depth moves by one constant, or by a shift
// given as tie points FROM:TO (the depth FROM moves to TO): between two tie points the
// shift changes linearly, which stretches or squeezes that interval, and beyond the first
// and the last tie point the shift stays theirs. Values and image rows travel with their
// depths unchanged. Depths are in the trace's display unit.

#include "base/MessageSink.h"
#include "model/BoreAnalystDoc.h"
#include "model/DocumentChange.h"

#include <cstddef>
#include <memory>
#include <span>
#include <string_view>

namespace ba {

struct DepthTie {
    double from = 0.0;
    double to = 0.0;
};

// The change that moves every depth of trace `traceIndex` by `offset`, or null (reported to
// `sink`, nothing touched) when the trace has no samples, its depths or the shifted ones
// do not ascend strictly, or `newName` is taken. An empty `newName` shifts the trace in
// place; otherwise the shifted copy is added under that name.
std::unique_ptr<CDocumentChange> ShiftDepthsBy(const CBoreAnalystDoc& doc, std::size_t traceIndex, double offset,
                                               std::string_view newName, IMessageSink& sink);

// As ShiftDepthsBy, with the shift given by tie points, in any order. Refused as well when
// there is none, when two share a FROM depth, or when two cross (a greater FROM with a
// TO that is not greater).
std::unique_ptr<CDocumentChange> ShiftDepthsByTies(const CBoreAnalystDoc& doc, std::size_t traceIndex,
                                                   std::span<const DepthTie> ties, std::string_view newName,
                                                   IMessageSink& sink);

} // namespace ba
