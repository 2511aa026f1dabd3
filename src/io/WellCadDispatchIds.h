#pragma once
// Dispatch identifiers of WellCAD's automation objects that the export uses.

#include "io/Automation.h"

namespace ba::wellcad {

inline constexpr std::string_view kBoreholeProgId = "WellCAD.Borehole";

// The borehole object.
inline constexpr DispatchId kGetBoreholeSettings = 6; // property get: the settings object
inline constexpr DispatchId kGetVersionMajor = 8;     // property get: int16
inline constexpr DispatchId kGetVersionBuild = 9;     // property get: int16
inline constexpr DispatchId kGetVersionMinor = 10;    // property get: int16
inline constexpr DispatchId kInsertNewLog = 13;       // method (int16 kind): the new log object
inline constexpr DispatchId kSaveAs = 15;             // method (string path): bool

inline constexpr std::int16_t kWellLogKind = 1;

// A log object.
inline constexpr DispatchId kLogName = 1;         // property put: string
inline constexpr DispatchId kLogBottomDepth = 6;  // property put: float
inline constexpr DispatchId kLogScaleLeft = 9;    // property put: float
inline constexpr DispatchId kLogScaleRight = 10;  // property put: float
inline constexpr DispatchId kLogPenStyle = 11;    // property put: bool
inline constexpr DispatchId kLogPenColor = 12;    // property put: int32 RGB, red in the low byte
inline constexpr DispatchId kLogPenWidth = 13;    // property put: int16
inline constexpr DispatchId kLogStep = 27;        // property put: float
inline constexpr DispatchId kLogSetPosition = 35; // method (float left, float right), page fractions
inline constexpr DispatchId kLogAddValue = 48;    // method (int32 0, float value)

// The settings object.
inline constexpr DispatchId kSettingsDepthUnit = 5;          // property put: int16, 0 metres, 1 feet
inline constexpr DispatchId kSettingsDepthAxisPosition = 8;  // method (float left, float right)

} // namespace ba::wellcad
