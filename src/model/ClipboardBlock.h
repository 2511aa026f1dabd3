#pragma once
// The byte block that carries traces through the system clipboard under the private
// format "BoreAnalystTraceData", between documents and between running instances:
//
//   int32 count n
//   n entries: int32 kind code (0 line, 1 image, 2 sonic, 3 spectral), int32 length L,
//              then L bytes holding the trace's image
//
// all little-endian. The image of a line, image or spectrum trace is its trace record
// exactly as the document file holds it (the CTrace fields, then those of its class, as
// Serialize writes them) but WITHOUT the object tag and class record that precede it in a
// file: the kind code already names the class, and a block must not depend on the class
// map of an archive around it. A sonic trace has an image of its own
// (CSonicTrace::ClipboardImage), which other running copies of the program also read.
//
// Windows hands over the clipboard's whole memory block, which may end in slack, so the
// reader takes the block structurally and ignores whatever follows the last entry.

#include "model/LineTrace.h"
#include "model/Trace.h"

#include <cstdint>
#include <memory>
#include <span>
#include <vector>

namespace ba {

// One entry as found in a block; `image` views the block's bytes.
struct ClipboardEntry {
    std::int32_t kind = 0;
    std::size_t offset = 0;      // where the entry's kind code starts
    std::size_t imageOffset = 0; // where its image starts
    std::span<const std::uint8_t> image;
};

// Splits a block into its entries. Refuses, with an ArchiveException naming the byte
// offset, a negative count, a count the block cannot hold (each entry needs at least its
// eight framing bytes), a negative length, or a length running past the block's end.
std::vector<ClipboardEntry> ReadClipboardEntries(std::span<const std::uint8_t> block);

// Builds the line trace an entry of kind 0 holds. The trace record must fill the image
// exactly: a record that needs more bytes than the entry's length, or that ends before the
// length is used up, is refused with an ArchiveException at the offending byte (offsets
// count from the start of `block`).
std::unique_ptr<CLineTrace> ReadLineTraceImage(std::span<const std::uint8_t> block, const ClipboardEntry& entry);

// Builds the trace an entry of kind 0 to 3 holds, with the same checks as
// ReadLineTraceImage. Returns null for any other kind code: such an entry is well framed
// but names no trace class.
std::unique_ptr<CTrace> ReadTraceImage(std::span<const std::uint8_t> block, const ClipboardEntry& entry);

// The image of a line trace: its trace record without object tag or class record.
std::vector<std::uint8_t> LineTraceImage(const CLineTrace& trace);

// An entry to write: its kind code and its image.
struct ClipboardImage {
    std::int32_t kind = 0;
    std::vector<std::uint8_t> image;
};

// The entry of any trace: its kind code and the image that kind uses.
ClipboardImage TraceImage(const CTrace& trace);

// Lays out count, kinds, lengths and images. Throws std::length_error when the count or an
// image does not fit an int32.
std::vector<std::uint8_t> WriteClipboardBlock(std::span<const ClipboardImage> images);

} // namespace ba
