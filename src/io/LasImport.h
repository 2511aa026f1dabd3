#pragma once
// Imports a LAS file into a document: every curve after the index becomes a line trace.
//
// The traces are named by their mnemonics, carry the curve's unit label and the index's
// display unit, and go alternately to the left and the right track (a trace that makes the
// document's trace count odd goes left). Depths are stored in metres (feet times 0.3048)
// or, for a time index, in minutes. A row deeper than every row before it is added at the
// deep end, one shallower than all at the shallow end, and one within the depths already
// read is not written; a new trace, still empty, takes the first row. A document whose
// title still begins with "BoreAnalyst" takes the file's name (its stem) as its title.
//
// All or nothing: the traces are built aside and added only once the whole file has been
// read, so a refused file leaves the document exactly as it was, title included.

#include "base/MessageSink.h"
#include "io/LasText.h"
#include "model/BoreAnalystDoc.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string_view>

namespace ba {

inline constexpr std::string_view kLasOpenFailedMessage = "Error: unable to open file.";

struct LasImportResult {
    bool imported = false;
    std::size_t tracesAdded = 0;
    std::size_t samplesPerTrace = 0; // every trace of one import has the same depths
    std::size_t dataLines = 0;       // lines of the data section read
    std::size_t rowsRead = 0;        // rows met in them (rows left out included)
    std::int32_t depthUnit = kDepthMetres;
    // Where a log view starts after the import: the document's smallest depth (display
    // units) cut to a whole number and lowered to a multiple of 100. The views apply it.
    float viewTopDepth = 0.0f;
};

LasImportResult ImportLas(CBoreAnalystDoc& doc, const std::filesystem::path& path, IMessageSink& sink);

// The same from any source of bytes; `fileName` names it in messages and `title` is what
// the document may take as its title.
LasImportResult ImportLas(CBoreAnalystDoc& doc, ILasByteSource& source, std::string_view fileName,
                          std::string_view title, IMessageSink& sink,
                          std::size_t chunkBytes = LasLineReader::kDefaultChunkBytes);

// The document's smallest depth in display units, cut to a whole number and lowered to
// the next multiple of 100 (1234.5 gives 1200, -5.5 gives -100); 0 for a document with no
// samples.
float LasViewTopDepth(const CBoreAnalystDoc& doc);

} // namespace ba
