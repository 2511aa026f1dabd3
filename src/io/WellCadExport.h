#pragma once
// WellCAD export: the document's line traces become the well-log columns of a WellCAD
// borehole, built by driving WellCAD through its automation objects and saved by WellCAD
// itself as a ".wcl" file.

#include "base/MessageSink.h"
#include "io/Automation.h"
#include "model/BoreAnalystDoc.h"

#include <functional>
#include <string>
#include <string_view>

namespace ba {

inline constexpr std::string_view kWellCadInitialisingStatus = "Initializing WellCAD Automation...please wait.";
inline constexpr std::string_view kWellCadUnavailableMessage = "Error: WellCAD not installed or dongle not present.";
inline constexpr std::string_view kWellCadTooOldMessage = "Error: Requires WellCAD version 3.0 build 928 or greater.";

// Receives the text of the status window the caller shows while the export runs; the
// caller opens the window before the call and closes it afterwards.
using StatusTextSink = std::function<void(const std::string&)>;

// Exports `doc` into a new WellCAD borehole created through `factory` and asks WellCAD to
// save it as `path` (UTF-8). Failures are reported to `sink`: no line trace, WellCAD not
// creatable, WellCAD too old, or an automation call that failed (naming the call and
// `path`); they return false. Every automation object is released before returning.
bool ExportWellCad(const CBoreAnalystDoc& doc, const std::string& path, IAutomationFactory& factory,
                   IMessageSink& sink, const StatusTextSink& status);

} // namespace ba
