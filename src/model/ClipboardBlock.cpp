#include "model/ClipboardBlock.h"

#include "model/Archive.h"
#include "model/SonicTrace.h"
#include "model/TraceClasses.h"

#include <limits>
#include <stdexcept>
#include <string>

namespace ba {
namespace {

// The kind code and the length that frame every entry.
constexpr std::size_t kEntryFramingBytes = 8;

std::string EntryName(std::size_t index, std::size_t count)
{
    return "clipboard entry " + std::to_string(index + 1) + " of " + std::to_string(count);
}

std::int32_t CheckedInt32(std::size_t n, const char* what)
{
    if (n > static_cast<std::size_t>(std::numeric_limits<std::int32_t>::max())) {
        throw std::length_error(std::string(what) + " of " + std::to_string(n) + " does not fit a clipboard block");
    }
    return static_cast<std::int32_t>(n);
}

} // namespace

std::vector<ClipboardEntry> ReadClipboardEntries(std::span<const std::uint8_t> block)
{
    CArchiveReader ar(block);
    ar.SetContext("clipboard block");
    const std::size_t count = ar.ReadElementCount("the clipboard entries", kEntryFramingBytes);

    std::vector<ClipboardEntry> entries;
    entries.reserve(count);
    for (std::size_t i = 0; i < count; ++i) {
        ar.SetContext(EntryName(i, count));
        ClipboardEntry entry;
        entry.offset = ar.Offset();
        entry.kind = ar.ReadInt32();
        const std::size_t lengthOffset = ar.Offset();
        const std::int32_t length = ar.ReadInt32();
        if (length < 0) {
            ar.FailAt(ArchiveFault::BadCount, lengthOffset, "negative image length " + std::to_string(length));
        }
        const auto size = static_cast<std::size_t>(length);
        if (size > ar.Remaining()) {
            ar.FailAt(ArchiveFault::BadCount, lengthOffset,
                      "image length " + std::to_string(size) + " runs past the end of the block (" +
                          std::to_string(ar.Remaining()) + " bytes remain)");
        }
        entry.imageOffset = ar.Offset();
        entry.image = ar.ReadBytes(size);
        entries.push_back(entry);
    }
    // Whatever follows the last entry is slack of the memory block and is not read.
    return entries;
}

namespace {

// Loads `trace` from the record that fills the image of `entry`.
void ReadTraceRecordImage(std::span<const std::uint8_t> block, const ClipboardEntry& entry, CTrace& trace)
{
    // The reader sees the block only up to the end of this image, and starts at the image,
    // so a record longer than the image ends in the reader's end-of-data error and every
    // offset it reports counts from the start of the block.
    const std::size_t end = entry.imageOffset + entry.image.size();
    if (end > block.size()) throw std::out_of_range("clipboard entry lies outside its block");
    CArchiveReader ar(block.first(end));
    ar.ReadBytes(entry.imageOffset);
    ar.SetContext("clipboard entry at byte " + std::to_string(entry.offset) + " (" + std::string(trace.ClassName()) +
                  ")");
    trace.Deserialize(ar);
    if (ar.Remaining() != 0) {
        ar.Fail(ArchiveFault::BadCount, "the trace record ends " + std::to_string(ar.Remaining()) +
                                            " bytes before the image length " + std::to_string(entry.image.size()));
    }
}

} // namespace

std::unique_ptr<CLineTrace> ReadLineTraceImage(std::span<const std::uint8_t> block, const ClipboardEntry& entry)
{
    auto trace = std::make_unique<CLineTrace>();
    ReadTraceRecordImage(block, entry, *trace);
    return trace;
}

std::unique_ptr<CTrace> ReadTraceImage(std::span<const std::uint8_t> block, const ClipboardEntry& entry)
{
    if (entry.kind == static_cast<std::int32_t>(TraceKind::Sonic)) {
        return CSonicTrace::FromClipboardImage(entry.image, entry.imageOffset);
    }
    const TraceClassInfo* info = entry.kind >= 0 ? TraceClassForKind(static_cast<std::uint32_t>(entry.kind)) : nullptr;
    if (info == nullptr) return nullptr;
    std::unique_ptr<CTrace> trace = info->create();
    ReadTraceRecordImage(block, entry, *trace);
    return trace;
}

std::vector<std::uint8_t> LineTraceImage(const CLineTrace& trace)
{
    CArchiveWriter ar;
    trace.Serialize(ar);
    return ar.TakeBytes();
}

ClipboardImage TraceImage(const CTrace& trace)
{
    const auto kind = static_cast<std::int32_t>(trace.Kind());
    if (const auto* sonic = dynamic_cast<const CSonicTrace*>(&trace)) return {kind, sonic->ClipboardImage()};
    CArchiveWriter ar;
    trace.Serialize(ar);
    return {kind, ar.TakeBytes()};
}

std::vector<std::uint8_t> WriteClipboardBlock(std::span<const ClipboardImage> images)
{
    CArchiveWriter ar;
    ar.WriteInt32(CheckedInt32(images.size(), "a trace count"));
    for (const auto& entry : images) {
        ar.WriteInt32(entry.kind);
        ar.WriteInt32(CheckedInt32(entry.image.size(), "a trace image"));
        ar.WriteBytes(entry.image);
    }
    return ar.TakeBytes();
}

} // namespace ba
