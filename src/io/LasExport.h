#pragma once
// LAS 2.0 export: every line trace of a document as one curve of a LAS file, sampled on a
// common depth grid from the deepest depth up to the shallowest.

#include "base/MessageSink.h"
#include "model/BoreAnalystDoc.h"

#include <filesystem>

namespace ba {

// Writes `doc` to `path` (atomically). Failures are reported to `sink` with their exact
// texts ("Error: No line traces present to export.", "Error: unable to create file.",
// "File I/O Error: ...") and return false; nothing is then left under `path`.
bool ExportLas(const CBoreAnalystDoc& doc, const std::filesystem::path& path, IMessageSink& sink);

} // namespace ba
