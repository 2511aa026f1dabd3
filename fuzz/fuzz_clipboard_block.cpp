// libFuzzer target: decodes arbitrary bytes as a clipboard block and pastes it, once into
// a fresh document and once into a document that already holds a trace (so the axis
// rules and, for line traces, the re-indexing through the "Time" trace run too).
//
// A refused block must leave the document untouched. Any exception, a crash, a sanitizer
// report, a hang or an outsized allocation is a finding. A pasted document must save and
// read back, and copying the pasted traces must give a block that pastes again to the same
// traces.

#include "base/MessageSink.h"
#include "model/Archive.h"
#include "model/BoreAnalystDoc.h"
#include "model/LineTrace.h"
#include "model/TraceClipboard.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <span>
#include <vector>

namespace {

[[noreturn]] void Finding(const char* what)
{
    std::fprintf(stderr, "fuzz_clipboard_block: %s\n", what);
    std::abort();
}

// Answers every synchronisation question with Yes, so the re-indexing path is reached.
class AnswerYes final : public ba::IYesNoQuestion {
public:
    bool AskYesNo(const std::string&) override { return true; }
};

// A depth document with a "Time" reference trace, for pasted traces of the time class.
std::unique_ptr<ba::CBoreAnalystDoc> DocumentWithTimeReference()
{
    auto doc = std::make_unique<ba::CBoreAnalystDoc>();
    auto time = std::make_unique<ba::CLineTrace>(1, ba::kPenSolid, 0, 0.0f, 100.0f, "Time", "MINUTES");
    for (int i = 0; i < 8; ++i) time->AppendSample(100.0f + 0.5f * static_cast<float>(i), 2.0f * static_cast<float>(i));
    doc->AddTrace(std::move(time));
    return doc;
}

std::vector<std::uint8_t> TraceRecords(const ba::CBoreAnalystDoc& doc, std::size_t from)
{
    ba::CArchiveWriter w;
    for (std::size_t i = from; i < doc.TraceCount(); ++i) doc.Trace(i).Serialize(w);
    return w.TakeBytes();
}

void PasteInto(ba::CBoreAnalystDoc& doc, std::span<const std::uint8_t> block)
{
    ba::NullMessageSink sink;
    AnswerYes yes;
    const std::size_t before = doc.TraceCount();
    const std::vector<std::uint8_t> savedBefore = ba::WriteDocumentBytes(doc);
    const ba::PasteResult result = ba::PasteTraces(doc, block, "fuzz input", yes, sink);
    if (result.refused) {
        if (ba::WriteDocumentBytes(doc) != savedBefore) Finding("a refused block changed the document");
        return;
    }
    if (doc.TraceCount() != before + result.added) Finding("the trace count does not match what was added");

    const std::vector<std::uint8_t> saved = ba::WriteDocumentBytes(doc);
    try {
        (void)ba::ReadDocumentBytes(saved, sink, "saved copy");
    } catch (const ba::ArchiveException& e) {
        std::fprintf(stderr, "fuzz_clipboard_block: reading the saved copy failed: %s\n", e.what());
        Finding("a pasted document was saved in a form the reader refuses");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::span<const std::uint8_t> block(data, size);

    ba::CBoreAnalystDoc fresh;
    PasteInto(fresh, block);

    // Copy what was pasted and paste the copy: the traces must come back unchanged (a
    // sonic trace's copy carries no RX mode, so the first paste already set it to 0).
    if (fresh.TraceCount() > 0) {
        std::vector<const ba::CTrace*> traces;
        for (std::size_t i = 0; i < fresh.TraceCount(); ++i) traces.push_back(&fresh.Trace(i));
        ba::NullMessageSink sink;
        const auto copy = ba::CopyTraces(traces, sink);
        if (!copy) Finding("traces that were pasted cannot be copied");
        ba::CBoreAnalystDoc again;
        AnswerYes yes;
        const ba::PasteResult result = ba::PasteTraces(again, *copy, "copy", yes, sink);
        if (result.refused) Finding("a block made by copying was refused");
        if (TraceRecords(again, 0) != TraceRecords(fresh, 0)) Finding("copy and paste changed the traces");
    }

    auto withTraces = DocumentWithTimeReference();
    PasteInto(*withTraces, block);
    return 0;
}
