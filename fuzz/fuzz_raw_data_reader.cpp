// libFuzzer target: imports arbitrary bytes as a logger raw-data file into a new document.
//
// A fault in the file is an expected outcome; a crash, a sanitizer report, a hang or an
// outsized allocation is a finding, and so is any broken promise of the import:
// - every trace added is a sonic trace with one row per depth, 12-bit words only, depths
//   ascending strictly (unless a depth is NaN, which no comparison places), and rows no
//   longer than the record could justify;
// - an import that stopped at a fault reported exactly one message naming the file, and
//   the rate-2 and time-digitising messages appear at most once;
// - the document saves and reads back;
// - reading the same bytes in pieces of a few bytes gives the same document and messages.

#include "base/MessageSink.h"
#include "model/Archive.h"
#include "model/BoreAnalystDoc.h"
#include "model/SonicTrace.h"
#include "sonic/RawDataImport.h"
#include "sonic/SonicRecord.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <span>
#include <string>

namespace {

[[noreturn]] void Finding(const char* what)
{
    std::fprintf(stderr, "fuzz_raw_data_reader: %s\n", what);
    std::abort();
}

void CheckTraces(const ba::CBoreAnalystDoc& doc)
{
    // A row holds at most n1 + ratio x n2 words, with n1 + n2 below half a record.
    const std::size_t longestRow = std::size_t{0xFFFF} / 2 * ba::kMaxSampleRateRatio;
    for (std::size_t i = 0; i < doc.TraceCount(); ++i) {
        const auto* sonic = dynamic_cast<const ba::CSonicTrace*>(&doc.Trace(i));
        if (sonic == nullptr) Finding("an imported trace is not a sonic trace");
        if (sonic->RowCount() != sonic->SampleCount()) Finding("rows and depths differ in number");
        bool anyNaN = false;
        for (std::size_t k = 0; k < sonic->SampleCount(); ++k) anyNaN = anyNaN || std::isnan(sonic->StoredDepth(k));
        for (std::size_t k = 1; k < sonic->SampleCount() && !anyNaN; ++k) {
            if (!(sonic->StoredDepth(k - 1) < sonic->StoredDepth(k))) Finding("depths do not ascend strictly");
        }
        for (std::size_t k = 0; k < sonic->RowCount(); ++k) {
            const ba::ImageRow& row = sonic->Row(k);
            if (row.size() > longestRow) Finding("a row is longer than a record can justify");
            if (std::any_of(row.begin(), row.end(), [](std::uint16_t w) { return w > 4095; })) {
                Finding("a row holds a word above 12 bits");
            }
        }
    }
}

std::size_t Count(const std::vector<std::string>& texts, std::string_view text)
{
    return static_cast<std::size_t>(std::count(texts.begin(), texts.end(), std::string(text)));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::span<const std::uint8_t> bytes(data, size);

    ba::CBoreAnalystDoc doc;
    ba::CollectingMessageSink sink;
    ba::RawMemorySource source(bytes);
    const ba::RawDataImportResult result = ba::ImportRawData(doc, source, "fuzz.rd", sink);
    CheckTraces(doc);
    const std::vector<std::string> texts = sink.Texts();
    if (Count(texts, ba::kRate2MultipleMessage) > 1 || Count(texts, ba::kTimeDigitizingNote) > 1) {
        Finding("a once-per-import message came twice");
    }
    const auto faults = std::count_if(texts.begin(), texts.end(), [](const std::string& t) {
        return t.rfind("Error: \"fuzz.rd\" record ", 0) == 0;
    });
    if (faults != (result.complete ? 0 : 1)) Finding("a fault was not reported exactly once");
    if (result.tracesAdded != doc.TraceCount()) Finding("the traces added were not counted");

    try {
        ba::NullMessageSink quiet;
        const auto reopened = ba::ReadDocumentBytes(ba::WriteDocumentBytes(doc), quiet, "saved copy");
        if (reopened->TraceCount() != doc.TraceCount()) Finding("the saved document lost traces");
    } catch (const ba::ArchiveException& e) {
        std::fprintf(stderr, "fuzz_raw_data_reader: %s\n", e.what());
        Finding("an imported document was saved in a form that does not read back");
    }

    // The same bytes in pieces of a few bytes.
    ba::CBoreAnalystDoc chunked;
    ba::CollectingMessageSink chunkedSink;
    ba::RawMemorySource again(bytes);
    ba::RawDataImportOptions options;
    options.chunkBytes = 1 + size % 7;
    const ba::RawDataImportResult second = ba::ImportRawData(chunked, again, "fuzz.rd", chunkedSink, options);
    if (second.complete != result.complete || chunkedSink.Texts() != texts ||
        ba::WriteDocumentBytes(chunked) != ba::WriteDocumentBytes(doc)) {
        Finding("reading in small pieces gave another result");
    }
    return 0;
}
