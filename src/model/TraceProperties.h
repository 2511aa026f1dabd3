#pragma once
// What the trace property sheet does on OK, apart from any window: checks the entries
// and writes them into the trace. The desktop sheet and the command line's set-trace
// both go through here, so a trace is edited by the same rules whichever way.

#include "base/MessageSink.h"
#include "model/BoreAnalystDoc.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace ba {

inline constexpr std::string_view kEmptyTraceNameMessage = "Error: The trace name must not be empty.";
inline constexpr std::string_view kEqualScaleEndsMessage = "Error: The left and right scale values must differ.";

// Pen widths the sheet offers, in plot units.
inline constexpr std::int32_t kMinPenWidth = 1;
inline constexpr std::int32_t kMaxPenWidth = 20;

// The entries of the sheet; an empty entry leaves that property as it is. The pen
// entries apply to line traces only.
struct TracePropertyEdit {
    std::optional<std::string> name{};
    std::optional<std::string> units{};
    std::optional<float> scaleLeft{};
    std::optional<float> scaleRight{};
    std::optional<std::int32_t> trackIndex{};
    std::optional<bool> hidden{};
    std::optional<std::int32_t> penWidth{};
    std::optional<std::int32_t> penStyle{};
    std::optional<std::int32_t> colourIndex{};
    // Image kinds: the intensity multiplier (checked by the image property page).
    std::optional<std::int32_t> intensityMultiplier{};
};

// Checks the edit against the trace it would produce, in the sheet's order (name, scale,
// track, pen), reporting the first refused entry and changing nothing; otherwise writes
// applies it to the document as one change and returns true. Names and units are
// taken without leading and trailing blanks. Choosing the colour the line already has
// keeps its exact colour value (which a document may hold outside the colour table).
bool ApplyTraceProperties(CBoreAnalystDoc& doc, CTrace& trace, const TracePropertyEdit& edit, IMessageSink& sink);

} // namespace ba
