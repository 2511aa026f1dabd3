#pragma once
// JSON output of the command-line tool. Keys keep the order they are added in, integers
// stay integers, and every float is written in the shortest text that reads back to the
// same 32-bit float, so the null value prints as -9999.99 rather than as the
// -9999.990234375 its widening to double would give.

#include "model/Trace.h"

#include <nlohmann/json.hpp>

#include <span>
#include <string>

namespace ba::cli {

using Json = nlohmann::ordered_json;

// A float as a JSON number. nlohmann writes a double in its shortest round-trip form, so
// carrying the double that the float's own shortest text reads as prints those same
// digits. JSON has no infinities or NaN: a non-finite float (possible only in a damaged
// document) becomes null.
Json FloatJson(float value);
Json FloatArrayJson(std::span<const float> values);
// [left, top, right, bottom]
Json RectJson(const CRect32& rect);

// Two-space indented text with a final newline, in which an array of numbers or strings
// stays on one line ("area": [0, -60, 250, -1100]) so that a document's description reads
// as a page rather than a column. Bytes that are not UTF-8 are replaced rather than
// aborting the output.
std::string JsonText(const Json& json);

} // namespace ba::cli
