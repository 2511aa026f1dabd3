// Writes the seed corpus of the document reader fuzzer: small documents that each reach a
// different part of the reader. Most are made through the document API and encoded by
// WriteDocumentBytes; a few take such an encoding and change a handful of bytes to hold a
// form the writer never produces but the reader accepts (an entry of an unknown kind, a
// title in the Unicode string form, bytes after the end). Every seed is decoded again
// before it is written, so the corpus holds only documents the reader accepts.
//
//   make_document_seeds OUTPUT_DIRECTORY

#include "base/MessageSink.h"
#include "base/FileIO.h"
#include "model/Archive.h"
#include "model/BoreAnalystDoc.h"
#include "model/LineTrace.h"

#include <cstdint>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace {

using Bytes = std::vector<std::uint8_t>;

// The document starts with its signature, twelve int32 settings and the float vertical
// scale; the int32 entry count follows.
constexpr std::size_t kEntryCountOffset = ba::kDocumentSignature.size() + 13 * 4;
// A document's last fields are the header area (four int32) and the two 16-bit header
// settings, after the length-prefixed title.
constexpr std::size_t kHeaderTailSize = 4 * 4 + 2 * 2;

struct Sample {
    float depth;
    float value;
};

std::unique_ptr<ba::CLineTrace> LineTrace(std::string name, std::string units, std::int32_t track,
                                          const std::vector<Sample>& samples)
{
    auto trace = std::make_unique<ba::CLineTrace>(1, ba::kPenSolid, 1, 0.0f, 150.0f, std::move(name), std::move(units));
    trace->SetTrackIndex(track);
    for (const Sample& s : samples) trace->AppendSample(s.depth, s.value);
    return trace;
}

const std::vector<Sample> kFiveSamples = {
    {100.0f, 45.5f}, {100.5f, 50.25f}, {101.0f, 61.0f}, {101.5f, 58.75f}, {102.0f, 40.0f}};

void PutInt32(Bytes& bytes, std::size_t at, std::int32_t value)
{
    for (int b = 0; b < 4; ++b) bytes.at(at + static_cast<std::size_t>(b)) = static_cast<std::uint8_t>(static_cast<std::uint32_t>(value) >> (8 * b));
}

std::int32_t GetInt32(const Bytes& bytes, std::size_t at)
{
    std::uint32_t v = 0;
    for (int b = 3; b >= 0; --b) v = (v << 8) | bytes.at(at + static_cast<std::size_t>(b));
    return static_cast<std::int32_t>(v);
}

Bytes EmptyDocument() { return ba::WriteDocumentBytes(ba::CBoreAnalystDoc()); }

Bytes OneLineTrace()
{
    ba::CBoreAnalystDoc doc;
    doc.Header().SetTitle("Well A-1");
    doc.AddTrace(LineTrace("GR", "API", 0, kFiveSamples));
    return ba::WriteDocumentBytes(doc);
}

// The second trace's class record is a back-reference to the first one's class; the title
// is longer than its 25-byte fixed copy; "³" is a Windows-1252 byte above 0x7F.
Bytes TwoLineTraces()
{
    ba::CBoreAnalystDoc doc;
    doc.Header().SetTitle("Borehole BH-17, Northfield quarry, run 2");
    doc.Header().SetH1(3);
    doc.Header().SetH2(1);
    doc.SetSetting(4, 2);
    auto& gr = doc.AddTrace(LineTrace("GR", "API", 0, kFiveSamples));
    gr.SetFlag(0, true);
    auto density = LineTrace("RHOB", "g/cm\u00B3", 3,
                             {{100.0f, 2.31f}, {100.5f, ba::kNullValue}, {101.0f, 2.45f}, {101.5f, 2.52f}});
    density->SetDepthUnit(ba::kDepthFeet);
    density->SetFlag(1, true);
    doc.AddTrace(std::move(density));
    return ba::WriteDocumentBytes(doc);
}

// A logging-while-drilling style trace over time in minutes, irregularly spaced.
Bytes TimeIndexed()
{
    ba::CBoreAnalystDoc doc;
    auto trace = LineTrace("TEMP", "degC", 1, {{0.0f, 12.5f}, {0.25f, 12.75f}, {1.5f, 13.0f}, {4.0f, 14.25f}});
    trace->SetDepthUnit(ba::kTimeMinutes);
    trace->SetFlag(2, true);
    doc.AddTrace(std::move(trace));
    return ba::WriteDocumentBytes(doc);
}

// A trace that names track 7 of the four a document has.
Bytes MissingTrack()
{
    ba::CBoreAnalystDoc doc;
    doc.AddTrace(LineTrace("SP", "mV", 7, kFiveSamples));
    return ba::WriteDocumentBytes(doc);
}

// An entry of kind code 9 (which carries no object) ahead of two line traces.
Bytes UnknownKindEntry()
{
    ba::CBoreAnalystDoc doc;
    doc.AddTrace(LineTrace("GR", "API", 0, kFiveSamples));
    doc.AddTrace(LineTrace("CALI", "in", 1, kFiveSamples));
    Bytes bytes = ba::WriteDocumentBytes(doc);
    PutInt32(bytes, kEntryCountOffset, GetInt32(bytes, kEntryCountOffset) + 1);
    const std::uint8_t unknownKind[] = {9, 0, 0, 0};
    bytes.insert(bytes.begin() + static_cast<std::ptrdiff_t>(kEntryCountOffset + 4), std::begin(unknownKind),
                 std::end(unknownKind));
    return bytes;
}

Bytes TrailingBytes()
{
    Bytes bytes = OneLineTrace();
    for (const char c : std::string_view("TRAILING")) bytes.push_back(static_cast<std::uint8_t>(c));
    return bytes;
}

// The header title in the Unicode string form (FF FE FF, a character count, UTF-16LE),
// with a character Windows-1252 cannot hold.
Bytes UnicodeHeaderTitle()
{
    Bytes bytes = EmptyDocument(); // its title is empty: a single 0x00 length byte
    const std::size_t lengthAt = bytes.size() - kHeaderTailSize - 1;
    if (bytes.at(lengthAt) != 0) throw std::runtime_error("the empty title is not where it was expected");
    const std::u16string title = u"\u0394 well";
    Bytes form = {0xFF, 0xFE, 0xFF, static_cast<std::uint8_t>(title.size())};
    for (const char16_t c : title) {
        form.push_back(static_cast<std::uint8_t>(c & 0xFF));
        form.push_back(static_cast<std::uint8_t>(c >> 8));
    }
    bytes.erase(bytes.begin() + static_cast<std::ptrdiff_t>(lengthAt));
    bytes.insert(bytes.begin() + static_cast<std::ptrdiff_t>(lengthAt), form.begin(), form.end());
    return bytes;
}

// A title of 300 characters takes the FF-and-word length prefix.
Bytes LongHeaderTitle()
{
    ba::CBoreAnalystDoc doc;
    std::string title;
    while (title.size() < 300) title += "Long title ";
    title.resize(300);
    doc.Header().SetTitle(title);
    return ba::WriteDocumentBytes(doc);
}

struct Seed {
    const char* fileName;
    std::function<Bytes()> make;
};

const std::vector<Seed> kSeeds = {
    {"empty.bal", EmptyDocument},
    {"one-line-trace.bal", OneLineTrace},
    {"two-line-traces.bal", TwoLineTraces},
    {"time-indexed.bal", TimeIndexed},
    {"missing-track.bal", MissingTrack},
    {"unknown-kind-entry.bal", UnknownKindEntry},
    {"trailing-bytes.bal", TrailingBytes},
    {"unicode-header-title.bal", UnicodeHeaderTitle},
    {"long-header-title.bal", LongHeaderTitle},
};

} // namespace

int main(int argc, char** argv)
{
    if (argc != 2) {
        std::fprintf(stderr, "usage: make_document_seeds OUTPUT_DIRECTORY\n");
        return 2;
    }
    const std::filesystem::path out = argv[1];
    try {
        std::filesystem::create_directories(out);
        for (const Seed& seed : kSeeds) {
            const Bytes bytes = seed.make();
            ba::CollectingMessageSink quirks;
            const auto doc = ba::ReadDocumentBytes(bytes, quirks, seed.fileName);
            ba::WriteFileAtomically(out / seed.fileName, bytes);
            std::printf("%-26s %5zu bytes, %zu trace(s)\n", seed.fileName, bytes.size(), doc->TraceCount());
            for (const auto& text : quirks.Texts()) std::printf("    reader says: %s\n", text.c_str());
        }
    } catch (const std::exception& e) {
        std::fprintf(stderr, "make_document_seeds: %s\n", e.what());
        return 1;
    }
    return 0;
}
