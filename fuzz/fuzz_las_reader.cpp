// libFuzzer target: imports arbitrary bytes as a LAS file into a new document.
//
// A refusal is an expected outcome; a crash, a sanitizer report, a hang or an outsized
// allocation is a finding, and so is any broken promise of the import:
// - a refused file leaves the document as it was (no trace, the default title);
// - an imported one gives line traces with strictly ascending finite depths, one value per
//   depth, names of 1 to 25 characters, a valid depth unit and the left or right track;
// - the document saves and reads back;
// - reading the same bytes in tiny chunks (every line end, UTF-16 unit and surrogate pair
//   cut apart) gives the same messages and the same samples, bit for bit.

#include "base/MessageSink.h"
#include "io/LasCurveNames.h"
#include "io/LasImport.h"
#include "model/Archive.h"
#include "model/BoreAnalystDoc.h"
#include "model/LineTrace.h"

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string_view>

namespace {

[[noreturn]] void Finding(const char* what)
{
    std::fprintf(stderr, "fuzz_las_reader: %s\n", what);
    std::abort();
}

std::size_t Characters(std::string_view utf8)
{
    std::size_t n = 0;
    for (const char c : utf8) n += (static_cast<unsigned char>(c) & 0xC0) != 0x80 ? 1 : 0;
    return n;
}

void CheckTraces(const ba::CBoreAnalystDoc& doc)
{
    for (std::size_t i = 0; i < doc.TraceCount(); ++i) {
        const auto* line = dynamic_cast<const ba::CLineTrace*>(&doc.Trace(i));
        if (line == nullptr) Finding("an imported trace is not a line trace");
        if (line->SampleCount() == 0 || line->Values().Size() != line->SampleCount()) {
            Finding("an imported trace has no samples or not one value per depth");
        }
        if (line->SampleCount() != doc.Trace(0).SampleCount()) Finding("the traces of one import differ in length");
        for (std::size_t k = 0; k < line->SampleCount(); ++k) {
            if (!std::isfinite(line->StoredDepth(k))) Finding("a depth is not finite");
            if (k > 0 && !(line->StoredDepth(k - 1) < line->StoredDepth(k))) Finding("depths do not ascend strictly");
        }
        const std::size_t nameLength = Characters(line->Name());
        if (nameLength == 0 || nameLength > ba::kTraceTextChars || Characters(line->Units()) > ba::kTraceTextChars) {
            Finding("a name or unit label does not fit its 25-character field");
        }
        if (line->DepthUnit() < ba::kDepthFeet || line->DepthUnit() > ba::kTimeDays) Finding("a depth unit is unknown");
        if (line->TrackIndex() != (i % 2 == 0 ? 0 : 1)) Finding("the tracks do not alternate left and right");
    }
}

bool SameSamples(const ba::CBoreAnalystDoc& a, const ba::CBoreAnalystDoc& b)
{
    if (a.TraceCount() != b.TraceCount()) return false;
    for (std::size_t i = 0; i < a.TraceCount(); ++i) {
        const auto& x = dynamic_cast<const ba::CLineTrace&>(a.Trace(i));
        const auto& y = dynamic_cast<const ba::CLineTrace&>(b.Trace(i));
        if (x.Name() != y.Name() || x.Units() != y.Units() || x.SampleCount() != y.SampleCount()) return false;
        const std::size_t bytes = x.SampleCount() * sizeof(float);
        if (std::memcmp(x.StoredDepths().Data(), y.StoredDepths().Data(), bytes) != 0 ||
            std::memcmp(x.Values().Data(), y.Values().Data(), bytes) != 0) {
            return false;
        }
    }
    return true;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);

    ba::CBoreAnalystDoc doc;
    ba::CollectingMessageSink sink;
    ba::LasMemorySource source(bytes);
    const ba::LasImportResult result = ba::ImportLas(doc, source, "fuzz.las", "fuzz", sink);
    if (!result.imported) {
        if (doc.TraceCount() != 0 || doc.DocumentTitle() != ba::kDefaultDocumentTitle || doc.IsModified()) {
            Finding("a refused file changed the document");
        }
        if (sink.messages.empty() || sink.messages.back().severity != ba::Severity::Error) {
            Finding("a refused file did not end with an error message");
        }
    } else {
        if (doc.TraceCount() == 0 || result.tracesAdded != doc.TraceCount()) Finding("an import added no trace");
        if (doc.DocumentTitle() != "fuzz") Finding("the document did not take the file's title");
        CheckTraces(doc);
        try {
            ba::NullMessageSink quiet;
            const auto reopened = ba::ReadDocumentBytes(ba::WriteDocumentBytes(doc), quiet, "saved copy");
            if (reopened->TraceCount() != doc.TraceCount()) Finding("the saved document lost traces");
        } catch (const ba::ArchiveException& e) {
            std::fprintf(stderr, "fuzz_las_reader: %s\n", e.what());
            Finding("an imported document was saved in a form that does not read back");
        }
    }

    // The same bytes in chunks of a few bytes.
    ba::CBoreAnalystDoc chunked;
    ba::CollectingMessageSink chunkedSink;
    ba::LasMemorySource again(bytes);
    const std::size_t chunk = 1 + size % 7;
    const ba::LasImportResult second = ba::ImportLas(chunked, again, "fuzz.las", "fuzz", chunkedSink, chunk);
    if (second.imported != result.imported || chunkedSink.Texts() != sink.Texts() || !SameSamples(doc, chunked)) {
        Finding("reading in small chunks gave another result");
    }
    return 0;
}
