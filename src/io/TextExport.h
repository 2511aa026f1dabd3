#pragma once
// Text export: every line trace of a document as a column of a plain table, sampled on a
// common depth grid from the shallowest depth down to the deepest.

#include "base/MessageSink.h"
#include "model/BoreAnalystDoc.h"

#include <filesystem>

namespace ba {

// Writes `doc` to `path` (atomically). Failures are reported to `sink` with their exact
// texts ("Error: No line traces present to export.", "Error: unable to create file.",
// "File I/O Error: ...") and return false; nothing is then left under `path`.
bool ExportText(const CBoreAnalystDoc& doc, const std::filesystem::path& path, IMessageSink& sink);

} // namespace ba
