#include "model/Archive.h"
#include "base/LicenceCheck.h"
#include "model/BoreAnalystDoc.h"
#include "model/DocumentChanges.h"
#include "model/LineTrace.h"

#include "support/Bytes.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

namespace ba {
namespace {

std::unique_ptr<CLineTrace> Line(const std::string& name, std::int32_t track = 0)
{
    auto t = std::make_unique<CLineTrace>(1, kPenSolid, 0, 0.0f, 100.0f, name, "u");
    t->SetTrackIndex(track);
    return t;
}

TEST(Document, NewDocumentDefaultsAndTheFourTracks)
{
    const CBoreAnalystDoc doc;
    EXPECT_EQ(doc.PlotWidth(), 850);
    EXPECT_EQ(doc.PlotHeight(), 1100);
    EXPECT_EQ(doc.VerticalScale(), 10.0f);
    EXPECT_EQ(doc.TrackGridValue(), 100);
    EXPECT_EQ(doc.TrackTop(), -60);
    EXPECT_EQ(doc.HeaderRect(), (CRect32{0, 0, 800, -61}));
    EXPECT_EQ(doc.Setting(1), 0);
    EXPECT_EQ(doc.Setting(2), 1);
    struct Expected {
        const char* name;
        CRect32 area;
        std::array<std::int32_t, 6> t;
    };
    const Expected tracks[] = {
        {"Left Track", {0, -60, 250, -1100}, {1, 0, 1, 100, 4, 4}},
        {"Right Track", {300, -60, 800, -1100}, {1, 0, 3, 100, 4, 4}},
        {"RLeft Track", {300, -60, 550, -1100}, {0, 0, 2, 100, 4, 4}},
        {"RRight Track", {550, -60, 800, -1100}, {0, 0, 2, 100, 4, 4}},
    };
    ASSERT_EQ(doc.TrackCount(), 4u);
    for (std::size_t i = 0; i < 4; ++i) {
        EXPECT_EQ(doc.Track(i).Name(), tracks[i].name);
        EXPECT_EQ(doc.Track(i).Area(), tracks[i].area) << i;
        EXPECT_EQ(doc.Track(i).Settings(), tracks[i].t) << i;
    }
}

TEST(Document, FindRemoveAndLegendRegistration)
{
    CBoreAnalystDoc doc;
    doc.AddTrace(Line("GR", 0));
    doc.AddTrace(Line("RES", 1));
    CTrace& second = doc.AddTrace(Line("GR", 3));
    EXPECT_EQ(doc.FindTrace("GR"), &doc.Trace(0));
    EXPECT_EQ(doc.FindTraceIndex("RES"), 1);
    EXPECT_EQ(doc.FindTrace("gr"), nullptr);
    EXPECT_EQ(second.Track(), &doc.Track(3));
    EXPECT_EQ(doc.Header().LegendTraces().size(), 3u);

    doc.Apply(MakeRemoveTracesChange("Delete GR", {0}));
    EXPECT_EQ(doc.TraceCount(), 2u);
    EXPECT_EQ(doc.FindTrace("GR"), &second);
    EXPECT_EQ(doc.Header().LegendTraces(), (std::vector<const CTrace*>{&doc.Trace(0), &second}));
    EXPECT_FALSE(doc.IsTimeIndexed());
    doc.Trace(0).SetDepthUnit(kTimeHours);
    EXPECT_TRUE(doc.IsTimeIndexed());
}

TEST(DocumentSave, LicensedSaveWritesAndReopens)
{
    test::TempDir dir;
    CBoreAnalystDoc doc;
    doc.AddTrace(Line("GR"));
    doc.Apply(MakeRemoveTracesChange("Delete GR", {0}));
    ASSERT_TRUE(doc.IsModified());
    int updates = 0;
    doc.AddViewUpdater([&] { ++updates; });
    CollectingMessageSink sink;
    EXPECT_EQ(doc.OnSaveDocument(dir.Path("a.bal"), sink), SaveOutcome::Written);
    EXPECT_TRUE(sink.messages.empty());
    EXPECT_FALSE(doc.IsModified());
    EXPECT_EQ(doc.DocumentTitle(), "a");
    EXPECT_EQ(updates, 1);
    const auto reopened = OpenDocument(dir.Path("a.bal"), sink);
    ASSERT_NE(reopened, nullptr);
    EXPECT_EQ(reopened->TraceCount(), 0u);
    EXPECT_EQ(dir.FileNames(), (std::vector<std::string>{"a.bal"}));
}

TEST(DocumentSave, TheLicenceCheckRefusesWithTheProgramsMessage)
{
    CollectingMessageSink sink;
    EXPECT_TRUE(SavingAllowed(LicensedInstallation(), sink));
    EXPECT_FALSE(SavingAllowed(UnlicensedInstallation(), sink));
    EXPECT_EQ(sink.Texts(), (std::vector<std::string>{"Error: Unlicesed installation.  Saving disabled."}));
}

TEST(DocumentSave, FailedSaveLeavesTheDocumentAndDiskAsTheyWere)
{
    test::TempDir dir;
    CBoreAnalystDoc doc;
    doc.AddTrace(Line("GR"));
    doc.Apply(MakeRemoveTracesChange("Delete GR", {0}));
    CollectingMessageSink sink;
    const auto target = dir.Path("missing-folder") / "x.bal";
    EXPECT_EQ(doc.OnSaveDocument(target, sink), SaveOutcome::Failed);
    ASSERT_EQ(sink.messages.size(), 1u);
    EXPECT_EQ(sink.messages[0].text,
              "Error: cannot save \"" + target.string() + "\": No such file or directory.");
    EXPECT_TRUE(doc.IsModified());
    EXPECT_EQ(doc.DocumentTitle(), "BoreAnalyst1");
    EXPECT_TRUE(dir.FileNames().empty());
}

// --- hostile files --------------------------------------------------------------------

std::vector<std::uint8_t> SmallDocument()
{
    CBoreAnalystDoc doc;
    doc.Header().SetTitle("Hostile");
    auto t = Line("GR");
    t->AppendSample(1.0f, 2.0f);
    t->AppendSample(2.0f, 3.0f);
    doc.AddTrace(std::move(t));
    doc.AddTrace(Line("SP"));
    return WriteDocumentBytes(doc);
}

// Offsets into SmallDocument: the trace count, the first entry's kind, its object tag.
constexpr std::size_t kCountAt = 78;
constexpr std::size_t kFirstKindAt = 82;
constexpr std::size_t kFirstTagAt = 86;
constexpr std::size_t kClassNameAt = kFirstTagAt + 6;
constexpr std::size_t kSampleCountAt = kClassNameAt + 10 + 50;

void Put32(std::vector<std::uint8_t>& bytes, std::size_t at, std::uint32_t v)
{
    for (int k = 0; k < 4; ++k) bytes[at + static_cast<std::size_t>(k)] = static_cast<std::uint8_t>(v >> (8 * k));
}

TEST(DocumentHostile, EveryTruncationIsRefusedCleanly)
{
    const auto whole = SmallDocument();
    for (std::size_t cut = 0; cut < whole.size(); ++cut) {
        const std::vector<std::uint8_t> prefix(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(cut));
        NullMessageSink sink;
        try {
            ReadDocumentBytes(prefix, sink, "cut.bal");
            ADD_FAILURE() << "a file cut at " << cut << " was accepted";
        } catch (const ArchiveException& e) {
            const bool expected = e.Fault() == ArchiveFault::EndOfFile || e.Fault() == ArchiveFault::BadCount ||
                                  (cut < 26 && e.Fault() == ArchiveFault::BadSchema);
            EXPECT_TRUE(expected) << cut << ": " << e.what();
            EXPECT_LE(e.Offset(), cut) << cut;
        }
    }
}

TEST(DocumentHostile, CorruptionsAreRefusedWithTheirFaultAndOffset)
{
    struct Case {
        const char* defect;
        void (*corrupt)(std::vector<std::uint8_t>&);
        ArchiveFault fault;
        std::uint64_t offset;
        const char* message;
    };
    const Case cases[] = {
        {"wrong signature", [](auto& b) { b[12] = 'd'; }, ArchiveFault::BadSchema, 0,
         "the signature: the file does not begin with \"BoreAnalyst Document V.1.0\", so it is not a BoreAnalyst "
         "document (byte offset 0)"},
        {"negative trace count", [](auto& b) { Put32(b, kCountAt, 0xFFFFFFFF); }, ArchiveFault::BadCount, kCountAt,
         "the trace list: negative count -1 for the trace entries (byte offset 78)"},
        {"trace count beyond the file", [](auto& b) { Put32(b, kCountAt, 0x10000000); }, ArchiveFault::BadCount,
         kCountAt, nullptr},
        {"sample count beyond the file", [](auto& b) { Put32(b, kSampleCountAt, 400000000); },
         ArchiveFault::BadCount, kSampleCountAt, nullptr},
        {"negative sample count", [](auto& b) { Put32(b, kSampleCountAt, 0x80000000); }, ArchiveFault::BadCount,
         kSampleCountAt, "trace entry 1 of 2: negative count -2147483648 for the depths (byte offset 152)"},
        {"class that is not a trace class", [](auto& b) { b[kClassNameAt + 1] = 'X'; }, ArchiveFault::BadClass,
         kFirstTagAt, "trace entry 1 of 2: the class \"CXineTrace\" is not a trace class (byte offset 86)"},
        {"kind and class disagree", [](auto& b) { Put32(b, kFirstKindAt, 2); }, ArchiveFault::BadClass, kFirstTagAt,
         "trace entry 1 of 2: kind code 2 announces a CSonicTrace but the object is a CLineTrace (byte offset 86)"},
        {"class schema 2", [](auto& b) { b[kFirstTagAt + 2] = 2; }, ArchiveFault::BadSchema, kFirstTagAt, nullptr},
        {"null object", [](auto& b) { b[kFirstTagAt] = 0; b[kFirstTagAt + 1] = 0; }, ArchiveFault::BadIndex,
         kFirstTagAt, "trace entry 1 of 2: a null object where a CLineTrace was expected (byte offset 86)"},
        {"object read twice", [](auto& b) { b[kFirstTagAt] = 2; b[kFirstTagAt + 1] = 0; }, ArchiveFault::BadIndex,
         kFirstTagAt, nullptr},
    };
    for (const auto& c : cases) {
        auto bytes = SmallDocument();
        c.corrupt(bytes);
        NullMessageSink sink;
        try {
            ReadDocumentBytes(bytes, sink, "bad.bal");
            ADD_FAILURE() << c.defect << ": accepted";
        } catch (const ArchiveException& e) {
            EXPECT_EQ(e.Fault(), c.fault) << c.defect << ": " << e.what();
            EXPECT_EQ(e.Offset(), c.offset) << c.defect << ": " << e.what();
            if (c.message != nullptr) {
                EXPECT_STREQ(e.what(), c.message) << c.defect;
            }
        }
    }
}

TEST(DocumentOpen, MessagesNameTheFile)
{
    test::TempDir dir;
    auto bytes = SmallDocument();
    bytes.resize(110);
    dir.Write("cut.bal", std::string(bytes.begin(), bytes.end()));
    dir.Write("text.bal", "hello");
    CollectingMessageSink sink;
    EXPECT_EQ(OpenDocument(dir.Path("cut.bal"), sink), nullptr);
    EXPECT_EQ(OpenDocument(dir.Path("text.bal"), sink), nullptr);
    EXPECT_EQ(OpenDocument(dir.Path("absent.bal"), sink), nullptr);
    const std::string d = dir.Path("").string();
    EXPECT_EQ(sink.Texts(),
              (std::vector<std::string>{
                  "Error: cannot open \"" + d + "cut.bal\": trace entry 1 of 2: the file ends inside a 25-byte text: "
                  "25 bytes needed, 8 bytes left (byte offset 102).",
                  "Error: cannot open \"" + d + "text.bal\": the signature: the file does not begin with "
                  "\"BoreAnalyst Document V.1.0\", so it is not a BoreAnalyst document (byte offset 0).",
                  "Error: cannot open \"" + d + "absent.bal\": No such file or directory."}));
}

TEST(DocumentOpen, TrailingBytesAreReportedAndIgnored)
{
    test::TempDir dir;
    auto bytes = SmallDocument();
    const std::size_t end = bytes.size();
    bytes.insert(bytes.end(), {1, 2, 3});
    dir.Write("tail.bal", std::string(bytes.begin(), bytes.end()));
    CollectingMessageSink sink;
    const auto doc = OpenDocument(dir.Path("tail.bal"), sink);
    ASSERT_NE(doc, nullptr);
    EXPECT_EQ(doc->TraceCount(), 2u);
    EXPECT_EQ(sink.Texts(), (std::vector<std::string>{"Warning: \"" + dir.Path("tail.bal").string() +
                                                      "\": 3 bytes after the end of the document (byte offset " +
                                                      std::to_string(end) + ") were ignored."}));
}

} // namespace
} // namespace ba
