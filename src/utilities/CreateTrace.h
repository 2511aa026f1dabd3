#pragma once
// Create: a new line trace sampled from TOP to BOTTOM at STEP, holding a constant, a ramp
// from one value to another, or a formula's values at its depths. Its depth unit is the
// document's first trace's (metres in an empty document), and TOP, BOTTOM and STEP are in
// that unit.

#include "base/MessageSink.h"
#include "model/BoreAnalystDoc.h"
#include "model/DocumentChange.h"
#include "utilities/DepthInterval.h"

#include <cstddef>
#include <memory>
#include <string>

namespace ba {

enum class CreateSource {
    Constant, // every sample holds `constant`
    Ramp,     // linear in sample number from `rampStart` at TOP to `rampEnd` at the last sample
    Formula,  // the formula's values at the new depths (DEPTH is each sample's depth)
};

struct CreateRequest {
    std::string name;
    std::string units;
    DepthInterval interval;
    double step = 1.0;
    CreateSource source = CreateSource::Constant;
    float constant = 0.0f;
    float rampStart = 0.0f;
    float rampEnd = 0.0f;
    std::string formula;
};

// The most samples a created trace may have.
inline constexpr std::size_t kMostCreatedSamples = 100'000'000;

// "Create <name>", adding the trace after the others, or null after a message. Samples lie
// at TOP + k × STEP for every k that does not pass BOTTOM (a last sample within a
// millionth of a step of BOTTOM counts as at BOTTOM).
std::unique_ptr<CDocumentChange> MakeCreateChange(const CBoreAnalystDoc& doc, const CreateRequest& request,
                                                  IMessageSink& sink);

} // namespace ba
