#pragma once
// What the image and sonic property pages do apart from any window: the values they show
// when they open, and the checks and writes of OK. The common entries (name, units, scale
// ends, track, hidden) follow the line-trace sheet's rules (TraceProperties.h); this adds
// the intensity multiplier.
//
// Where the multiplier lives: a sonic trace keeps it in its RX gain word (gain code + 100
// * (multiplier - 1)), so the acquisition gain survives. Plain image and spectrum traces
// keep it in the trace's view parameter, a stored field with no other use; 0 there (the
// value of every trace that never had one set) means 1.

#include "base/MessageSink.h"
#include "model/BoreAnalystDoc.h"
#include "model/ImageTrace.h"
#include "model/TraceProperties.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace ba {

inline constexpr std::int32_t kMinIntensityMultiplier = 1;
inline constexpr std::int32_t kMaxIntensityMultiplier = 10;
inline constexpr std::string_view kIntensityMultiplierRangeMessage = "Please enter an integer between 1 and 10.";
inline constexpr std::string_view kLockedNumericFieldsMessage =
    "Error: The time window and intensity multiplier of this tool's traces cannot be changed.";
inline constexpr std::string_view kInitialAcquisitionText = "Acquisition Properties: Unknown.";

// The multiplier the image is drawn with (1..10; a stored value outside that range
// draws as 1, as an unset one does).
std::int32_t ImageIntensityMultiplier(const CImageTrace& trace);

// What a page shows when it opens.
struct ImagePageValues {
    std::string name;
    float minimum = 0.0f;
    float maximum = 0.0f;
    std::string units;
    std::int32_t trackIndex = 0; // 0 Left, 1 Right, 2 RLeft, 3 RRight
    bool hidden = false;
    std::int32_t intensityMultiplier = 1;
    // Sonic traces: the acquisition text; the tools whose rows are not waveforms lock the
    // minimum, maximum and multiplier fields.
    std::string acquisitionText;
    bool numericFieldsLocked = false;
};

ImagePageValues ImagePageValuesOf(const CImageTrace& trace);

// Reads the multiplier as typed on a page: a whole number 1..10, blanks around it
// allowed. Anything else is reported (kIntensityMultiplierRangeMessage) and gives nothing.
std::optional<std::int32_t> ParseIntensityMultiplier(std::string_view text, IMessageSink& sink);

struct ImagePropertyEdit {
    TracePropertyEdit common; // the pen entries are not used
    std::optional<std::int32_t> intensityMultiplier;
};

// Checks the edit (common entries first, then the multiplier range, then the locked fields
// of non-waveform tools, which may only be sent unchanged), reporting the first refused
// entry and changing nothing; otherwise writes it, marks the document modified, updates
// its views and returns true.
bool ApplyImageProperties(CBoreAnalystDoc& doc, CImageTrace& trace, const ImagePropertyEdit& edit, IMessageSink& sink);

} // namespace ba
