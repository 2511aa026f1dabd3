#include "model/Archive.h"
#include "model/TraceClasses.h"

#include "model/ImageTraceSamples.h"

#include <gtest/gtest.h>

#include <functional>

namespace ba {
namespace {

using test::Hex;
using test::ToHex;

struct RecordCase {
    const char* kind;
    std::function<std::unique_ptr<CTrace>()> make;
    std::vector<std::uint8_t> record;
};

std::vector<RecordCase> RecordCases()
{
    return {
        {"image", [] { return std::unique_ptr<CTrace>(test::SampleImage()); }, test::SampleImageRecord()},
        {"sonic", [] { return std::unique_ptr<CTrace>(test::SampleSonic()); }, test::SampleSonicRecord()},
        {"spectral", [] { return std::unique_ptr<CTrace>(test::SampleSpectral()); }, test::SampleSpectralRecord()},
    };
}

std::vector<std::uint8_t> RecordOf(const CTrace& trace)
{
    CArchiveWriter w;
    trace.Serialize(w);
    return w.TakeBytes();
}

std::unique_ptr<CTrace> ReadRecord(std::string_view className, std::span<const std::uint8_t> bytes)
{
    auto trace = TraceClassForName(className)->create();
    CArchiveReader r(bytes);
    trace->Deserialize(r);
    EXPECT_EQ(r.Remaining(), 0u) << className;
    return trace;
}

TEST(ImageTraceRecord, WritesTheHandComputedBytes)
{
    for (const auto& c : RecordCases()) {
        EXPECT_EQ(ToHex(RecordOf(*c.make())), ToHex(c.record)) << c.kind;
    }
}

TEST(ImageTraceRecord, ReadsTheHandComputedBytesBackToTheSameRecord)
{
    for (const auto& c : RecordCases()) {
        const auto original = c.make();
        const auto read = ReadRecord(original->ClassName(), c.record);
        EXPECT_EQ(read->Kind(), original->Kind()) << c.kind;
        EXPECT_EQ(ToHex(RecordOf(*read)), ToHex(c.record)) << c.kind;
        const auto& image = dynamic_cast<const CImageTrace&>(*read);
        EXPECT_EQ(image.Rows(), (std::vector<ImageRow>{{0x0001, 0x0FFF}, {}})) << c.kind;
        EXPECT_EQ(image.TrackIndex(), 1) << c.kind;
    }
}

TEST(ImageTraceRecord, SonicAndSpectralFieldsAreReadIntoTheirPlaces)
{
    const auto sonic = ReadRecord(CSonicTrace::kClassName, test::SampleSonicRecord());
    const auto& s = dynamic_cast<const CSonicTrace&>(*sonic);
    EXPECT_EQ(s.ToolType(), "2SAA-1000");
    EXPECT_EQ(s.Acquisition().txFrequency, 1);
    EXPECT_EQ(s.Acquisition().rxMode, 5);
    EXPECT_EQ(s.Acquisition().reserved, 12);

    const auto spectral = ReadRecord(CSpectralTrace::kClassName, test::SampleSpectralRecord());
    const auto& p = dynamic_cast<const CSpectralTrace&>(*spectral);
    EXPECT_EQ(p.Text(), "K");
    EXPECT_EQ(p.Value(), 7);
    EXPECT_EQ(p.AcquisitionTime(1), 2.0f);
    EXPECT_EQ(p.TotalTime(0), 10.0f);
    EXPECT_EQ(p.Temperature(1), -2.0f);
    EXPECT_EQ(p.HighVoltage(0), 0.5f);
}

TEST(ImageTraceRecord, LoadingAppendsToRowsAlreadyHeld)
{
    CImageTrace trace;
    trace.AppendRow(0.5f, {7});
    CArchiveReader r(test::SampleImageRecord());
    trace.Deserialize(r);
    ASSERT_EQ(trace.RowCount(), 3u);
    EXPECT_EQ(trace.Row(0), ImageRow{7});
    EXPECT_EQ(trace.Row(1), (ImageRow{0x0001, 0x0FFF}));
}

TEST(ImageTraceRecord, EveryTruncatedPrefixIsRefusedWithAnOffsetInsideIt)
{
    for (const auto& c : RecordCases()) {
        const auto className = c.make()->ClassName();
        for (std::size_t n = 0; n < c.record.size(); ++n) {
            auto trace = TraceClassForName(className)->create();
            CArchiveReader r(std::span(c.record).first(n));
            try {
                trace->Deserialize(r);
                ADD_FAILURE() << c.kind << " prefix " << n << " accepted";
            } catch (const ArchiveException& e) {
                EXPECT_TRUE(e.Fault() == ArchiveFault::EndOfFile || e.Fault() == ArchiveFault::BadCount)
                    << c.kind << " prefix " << n << ": " << e.what();
                EXPECT_LE(e.Offset(), n) << c.kind << " prefix " << n << ": " << e.what();
            }
        }
    }
}

void Put32(std::vector<std::uint8_t>& bytes, std::size_t at, std::uint32_t v)
{
    for (int k = 0; k < 4; ++k) bytes[at + static_cast<std::size_t>(k)] = static_cast<std::uint8_t>(v >> (8 * k));
}

// Offsets inside the sample records.
constexpr std::size_t kRowCountAt = 110;
constexpr std::size_t kFirstRowLengthAt = 114;
constexpr std::size_t kSecondRowLengthAt = 122;
constexpr std::size_t kSpectrumCountAt = 126;

TEST(ImageTraceRecord, CountsTheBytesCannotHoldAreRefusedAtTheCount)
{
    struct Case {
        const char* defect;
        std::string_view className;
        std::vector<std::uint8_t> record;
        std::size_t countAt;
        std::uint32_t count;
        const char* message;
    };
    const Case cases[] = {
        {"row count past the end", CImageTrace::kClassName, test::SampleImageRecord(), kRowCountAt, 5,
         "count 5 for the image rows needs 20 bytes but only 12 bytes remain (byte offset 110)"},
        {"negative row count", CImageTrace::kClassName, test::SampleImageRecord(), kRowCountAt, 0xFFFFFFFF,
         "negative count -1 for the image rows (byte offset 110)"},
        {"huge row count", CSonicTrace::kClassName, test::SampleSonicRecord(), kRowCountAt, 0x7FFFFFFF, nullptr},
        {"row longer than the record", CImageTrace::kClassName, test::SampleImageRecord(), kFirstRowLengthAt, 5,
         "count 5 for the samples of image row 0 needs 10 bytes but only 8 bytes remain (byte offset 114)"},
        {"last row longer than the record", CImageTrace::kClassName, test::SampleImageRecord(), kSecondRowLengthAt, 1,
         "count 1 for the samples of image row 1 needs 2 bytes but only 0 bytes remain (byte offset 122)"},
        {"negative row length", CSpectralTrace::kClassName, test::SampleSpectralRecord(), kFirstRowLengthAt, 0x80000000,
         "negative count -2147483648 for the samples of image row 0 (byte offset 114)"},
        {"spectrum count past the four arrays", CSpectralTrace::kClassName, test::SampleSpectralRecord(), kSpectrumCountAt, 3,
         "count 3 for the spectrum acquisition values needs 48 bytes but only 32 bytes remain (byte offset 126)"},
        {"negative spectrum count", CSpectralTrace::kClassName, test::SampleSpectralRecord(), kSpectrumCountAt, 0xFFFFFFFE,
         "negative count -2 for the spectrum acquisition values (byte offset 126)"},
    };
    for (const auto& c : cases) {
        auto bytes = c.record;
        Put32(bytes, c.countAt, c.count);
        auto trace = TraceClassForName(c.className)->create();
        CArchiveReader r(bytes);
        try {
            trace->Deserialize(r);
            ADD_FAILURE() << c.defect << ": accepted";
        } catch (const ArchiveException& e) {
            EXPECT_EQ(e.Fault(), ArchiveFault::BadCount) << c.defect << ": " << e.what();
            EXPECT_EQ(e.Offset(), c.countAt) << c.defect << ": " << e.what();
            if (c.message != nullptr) {
                EXPECT_STREQ(e.what(), c.message) << c.defect;
            }
        }
    }
}

} // namespace
} // namespace ba
