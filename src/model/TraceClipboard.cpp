#include "model/TraceClipboard.h"

#include "model/Archive.h"
#include "model/ClipboardBlock.h"
#include "model/ClipboardSync.h"
#include "model/DocumentChanges.h"
#include "model/LineTrace.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <stdexcept>

namespace ba {
namespace {

constexpr float kNoShallowestDepth = 9999.9f;

std::string EntryPlace(std::string_view source, std::size_t index, std::size_t count, std::size_t offset)
{
    return "Error: " + std::string(source) + ": clipboard entry " + std::to_string(index + 1) + " of " +
           std::to_string(count) + " (byte offset " + std::to_string(offset) + ")";
}

// The message for an entry that is well framed but whose kind code names no trace class.
std::string LeftOutMessage(std::string_view source, std::size_t index, std::size_t count,
                           const ClipboardEntry& entry)
{
    return EntryPlace(source, index, count, entry.offset) + " has the unknown kind code " +
           std::to_string(entry.kind) + "; it is left out.";
}

void TakeDocumentAxis(const CBoreAnalystDoc& doc, CTrace& pasted)
{
    pasted.SetDepthUnit(doc.Trace(0).DepthUnit());
    pasted.SetVerticalScale(doc.Trace(0).VerticalScale());
}

} // namespace

std::optional<std::vector<std::uint8_t>> CopyTraces(std::span<const CTrace* const> traces, IMessageSink& sink)
{
    std::vector<ClipboardImage> images;
    images.reserve(traces.size());
    try {
        for (const CTrace* trace : traces) images.push_back(TraceImage(*trace));
        return WriteClipboardBlock(images);
    } catch (const std::length_error& e) {
        sink.Error(std::string("Error: cannot copy the traces: ") + e.what() + ".");
        return std::nullopt;
    }
}

void ApplyPastedAxis(const CBoreAnalystDoc& doc, CTrace& pasted, std::uint32_t kind, IYesNoQuestion& question,
                     IMessageSink& sink, PasteResult& result)
{
    const bool documentIsTime = IsTimeAxisCode(doc.Trace(0).DepthUnit());
    const bool traceIsTime = pasted.IsTimeAxis();
    if (documentIsTime == traceIsTime) {
        TakeDocumentAxis(doc, pasted);
        return;
    }
    if (kind != static_cast<std::uint32_t>(TraceKind::Line)) {
        sink.Warning(std::string(kImageAxisMismatchWarning));
        return;
    }
    auto* line = dynamic_cast<CLineTrace*>(&pasted);
    if (line == nullptr) throw std::logic_error("a pasted trace of the line kind is not a line trace");
    const std::string_view text = documentIsTime ? kSyncWithDepthQuestion : kSyncWithTimeQuestion;
    if (!question.AskYesNo(std::string(text))) return;
    const SynchroniseResult sync = SynchroniseTrace(doc, *line, sink);
    if (sync.done) {
        ++result.synchronised;
        result.droppedSamples += sync.dropped;
    }
}

double FreshDocumentTopDepth(const CBoreAnalystDoc& doc)
{
    float shallowest = kNoShallowestDepth;
    for (std::size_t i = 0; i < doc.TraceCount(); ++i) shallowest = std::min(shallowest, doc.Trace(i).FirstDepth());
    return std::floor(std::trunc(static_cast<double>(shallowest)) / 100.0) * 100.0;
}

PasteResult PasteTraces(CBoreAnalystDoc& doc, std::optional<std::span<const std::uint8_t>> block,
                        std::string_view source, IYesNoQuestion& question, IMessageSink& sink)
{
    PasteResult result;
    if (block) {
        // Everything is decoded before the document is touched, so a damaged block changes
        // nothing; only then are the left-out entries reported.
        std::vector<std::unique_ptr<CTrace>> traces;
        std::vector<std::string> leftOut;
        try {
            const std::vector<ClipboardEntry> entries = ReadClipboardEntries(*block);
            for (std::size_t i = 0; i < entries.size(); ++i) {
                if (auto trace = ReadTraceImage(*block, entries[i])) {
                    traces.push_back(std::move(trace));
                } else {
                    leftOut.push_back(LeftOutMessage(source, i, entries.size(), entries[i]));
                }
            }
        } catch (const ArchiveException& e) {
            sink.Error("Error: cannot paste from " + std::string(source) + ": " + e.what() + ".");
            result.refused = true;
            return result;
        }
        for (auto& message : leftOut) sink.Error(std::move(message));
        result.skipped = leftOut.size();

        // One entry in the history; each trace joins the document before the next is
        // synchronised, since a pasted "Depth" or "Time" trace serves the ones after it.
        result.freshDocument = doc.TraceCount() == 0;
        CChangeGroup paste(doc, "Paste");
        for (auto& trace : traces) {
            const auto kind = static_cast<std::uint32_t>(trace->Kind());
            if (!result.freshDocument) ApplyPastedAxis(doc, *trace, kind, question, sink, result);
            std::vector<std::unique_ptr<CTrace>> one;
            one.push_back(std::move(trace));
            doc.Apply(MakeAddTracesChange("Paste", std::move(one)));
            ++result.added;
        }
        paste.Commit();
        if (result.freshDocument) result.topDepth = FreshDocumentTopDepth(doc);
    }
    return result;
}

} // namespace ba
