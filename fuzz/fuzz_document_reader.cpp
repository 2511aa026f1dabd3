// libFuzzer target: decodes arbitrary bytes as a document file.
//
// An ArchiveException is the reader's way of refusing a damaged file and is expected. Any
// other exception, a crash, a sanitizer report, a hang or an outsized allocation is a
// finding. A document the reader accepts must also survive what a user does next: its
// traces are queried, and it is saved again; the saved bytes must read back and save to
// exactly the same bytes (the first save may normalise, e.g. text the code page cannot
// hold, but a second one must change nothing).

#include "base/MessageSink.h"
#include "model/Archive.h"
#include "model/BoreAnalystDoc.h"
#include "model/LineTrace.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <span>
#include <vector>

namespace {

[[noreturn]] void Finding(const char* what)
{
    std::fprintf(stderr, "fuzz_document_reader: %s\n", what);
    std::abort();
}

void QueryTraces(const ba::CBoreAnalystDoc& doc)
{
    volatile float keep = 0.0f; // results feed this so the calls are not optimised away
    for (std::size_t i = 0; i < doc.TraceCount(); ++i) {
        const ba::CTrace& trace = doc.Trace(i);
        keep = keep + trace.SamplingStep();
        const auto* line = dynamic_cast<const ba::CLineTrace*>(&trace);
        if (line == nullptr) continue;
        const float first = line->FirstDepth();
        const float last = line->LastDepth();
        for (const float d : {first, last, first + (last - first) / 2.0f, first - 1.0f, last + 1.0f}) {
            keep = keep + line->ValueAt(d);
        }
        keep = keep + line->MinMax().minimum;
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    ba::NullMessageSink sink;
    std::unique_ptr<ba::CBoreAnalystDoc> doc;
    try {
        doc = ba::ReadDocumentBytes(std::span<const std::uint8_t>(data, size), sink, "fuzz input");
    } catch (const ba::ArchiveException&) {
        return 0;
    }
    if (!doc) Finding("the reader returned no document and threw nothing");
    QueryTraces(*doc);

    const std::vector<std::uint8_t> saved = ba::WriteDocumentBytes(*doc);
    std::unique_ptr<ba::CBoreAnalystDoc> reopened;
    try {
        reopened = ba::ReadDocumentBytes(saved, sink, "saved copy");
    } catch (const ba::ArchiveException& e) {
        std::fprintf(stderr, "fuzz_document_reader: reading the saved copy failed: %s\n", e.what());
        Finding("a document the reader accepted was saved in a form it refuses");
    }
    if (ba::WriteDocumentBytes(*reopened) != saved) Finding("saving a saved document again changed its bytes");
    return 0;
}
