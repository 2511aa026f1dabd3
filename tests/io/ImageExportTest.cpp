#include "io/ImageExport.h"

#include "model/LineTrace.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace ba {
namespace {

std::unique_ptr<CImageTrace> MakeImage(std::string name, std::int32_t depthUnit,
                                       const std::vector<std::pair<float, ImageRow>>& rows)
{
    auto image = std::make_unique<CImageTrace>(std::move(name), 0.0f, 4095.0f, "counts");
    image->SetDepthUnit(depthUnit);
    for (const auto& [depth, row] : rows) image->AppendRow(depth, row);
    return image;
}

TEST(ImageExport, OneLinePerRowWithDisplayDepthAndRawSamples)
{
    struct Case {
        const char* what;
        std::int32_t depthUnit;
        std::vector<std::pair<float, ImageRow>> rows;
        std::string expected;
    };
    const Case cases[] = {
        {"whole 16-bit range, widths kept",
         kDepthMetres,
         {{10.0f, {0, 7, 4095, 65535}}, {10.25f, {12345, 1, 0, 99}}},
         "   10.000,     0,     7,  4095, 65535\n"
         "   10.250, 12345,     1,     0,    99\n"},
        {"three decimals, rounded; negative and wide depths",
         kDepthMetres,
         {{1.0005f, {1}}, {-5.5f, {2}}, {123456.789f, {3}}},
         "    1.000,     1\n"
         "   -5.500,     2\n"
         "123456.789,     3\n"},
        {"depths in the trace's display unit", kDepthFeet, {{100.0f, {42, 43}}}, "  328.084,    42,    43\n"},
        {"a row without samples still ends its line", kDepthMetres, {{1.0f, {}}, {2.0f, {5}}},
         "    1.000, \n"
         "    2.000,     5\n"},
        {"no rows, empty file", kDepthMetres, {}, ""},
    };
    for (const auto& c : cases) {
        test::TempDir dir;
        CollectingMessageSink sink;
        const auto image = MakeImage("IMG", c.depthUnit, c.rows);
        ASSERT_TRUE(ExportImageAscii(*image, dir.Path("out.dat"), sink)) << c.what;
        EXPECT_TRUE(sink.messages.empty()) << c.what;
        EXPECT_EQ(dir.Read("out.dat"), c.expected) << c.what;
        EXPECT_EQ(dir.FileNames(), std::vector<std::string>{"out.dat"}) << c.what;
    }
}

TEST(ImageExport, SelectionMustHoldExactlyOneImageTrace)
{
    const auto first = MakeImage("FIRST", kDepthMetres, {{1.0f, {1}}});
    const auto second = MakeImage("SECOND", kDepthMetres, {{1.0f, {2}}});
    const CLineTrace line(1, kPenSolid, 0, 0.0f, 100.0f, "GR", "API");
    struct Case {
        const char* what;
        std::vector<const CTrace*> selected;
        const CImageTrace* chosen;
        std::vector<std::string> messages;
    };
    const Case cases[] = {
        {"nothing selected", {}, nullptr, {"Error: No image trace selected for export."}},
        {"only a line trace", {&line}, nullptr, {"Error: No image trace selected for export."}},
        {"a line trace and an image trace", {&line, second.get()}, second.get(), {}},
        {"two image traces", {first.get(), &line, second.get()}, nullptr,
         {"Error: Only one image trace must be selected for export."}},
    };
    for (const auto& c : cases) {
        CollectingMessageSink sink;
        EXPECT_EQ(ImageTraceToExport(c.selected, sink), c.chosen) << c.what;
        EXPECT_EQ(sink.Texts(), c.messages) << c.what;
    }
}

TEST(ImageExport, FileThatCannotBeCreatedLeavesNothing)
{
    test::TempDir dir;
    CollectingMessageSink sink;
    const auto image = MakeImage("IMG", kDepthMetres, {{1.0f, {1}}});
    EXPECT_FALSE(ExportImageAscii(*image, dir.Path("missing") / "out.dat", sink));
    ASSERT_FALSE(sink.messages.empty());
    EXPECT_EQ(sink.messages.front().text, "Error: unable to create file.");
    EXPECT_TRUE(dir.FileNames().empty());
}

TEST(ImageExport, DialogOffersTheDocumentTitleWithDat)
{
    CBoreAnalystDoc doc;
    doc.SetDocumentTitle("Well 7");
    EXPECT_EQ(ImageExportDefaultFileName(doc), "Well 7.dat");
}

} // namespace
} // namespace ba
