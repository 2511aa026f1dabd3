#pragma once
// Image export: one image trace written as a plain table, a line per row, the row's
// display depth and then its raw samples (0 to 65535), for spreadsheets and other tools.

#include "base/MessageSink.h"
#include "model/BoreAnalystDoc.h"
#include "model/ImageTrace.h"

#include <filesystem>
#include <span>
#include <string>
#include <string_view>

namespace ba {

// The save-file dialog of the image export.
inline constexpr std::string_view kImageExportFileFilter = "Data Files (*.dat)|*.dat|All Files (*.*)|*.*||";
inline constexpr std::string_view kImageExportExtension = "dat";
// The name the dialog offers: the document title followed by ".dat".
std::string ImageExportDefaultFileName(const CBoreAnalystDoc& doc);

inline constexpr std::string_view kNoImageTraceSelectedMessage = "Error: No image trace selected for export.";
inline constexpr std::string_view kSeveralImageTracesSelectedMessage =
    "Error: Only one image trace must be selected for export.";

// The image trace to export among the selected traces, taken in the order given: the
// first image trace, when it is the only one. Sonic and spectrum traces are image traces
// too. No image trace, or more than one, reports the message and gives null; the other
// kinds are passed over.
const CImageTrace* ImageTraceToExport(std::span<const CTrace* const> selected, IMessageSink& sink);

// Writes `image` to `path` (atomically): for each row, its display depth as "%9.3f, ",
// then its samples as "%5i" separated by ", ", then a newline (a row without samples still
// ends its line). "Error: unable to create file." or "File I/O Error: ..." go to `sink`
// and give false; nothing is then left under `path`.
bool ExportImageAscii(const CImageTrace& image, const std::filesystem::path& path, IMessageSink& sink);

} // namespace ba
