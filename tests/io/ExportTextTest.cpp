#include "io/TextExport.h"

#include "ExportTestDocuments.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace ba {
namespace {

using test::Exported;
using test::GammaRay;
using test::LineRecipe;
using test::MakeDocument;
using test::Resistivity;

Exported Export(const CBoreAnalystDoc& doc) { return test::ExportInScratchFolder(ExportText, doc, "out.txt"); }

TEST(ExportText, NamesAndUnitsLines)
{
    LineRecipe sonic = Resistivity();
    sonic.name = "Delta T";
    sonic.units = "us/ft";
    LineRecipe feet = GammaRay();
    feet.depthUnit = kDepthFeet;
    LineRecipe minutes = GammaRay();
    minutes.depthUnit = kTimeMinutes;
    struct Case {
        const char* name;
        std::vector<LineRecipe> traces;
        std::string names;
        std::string units;
    };
    const Case cases[] = {
        {"metres", {GammaRay(), sonic}, "\"Depth\"     \"Gamma_Ray\"     \"Delta_T\"     ",
         "\"Meters\"     \"api_units\"     \"us/ft\"     "},
        {"feet", {feet}, "\"Depth\"     \"Gamma_Ray\"     ", "\"Feet\"     \"api_units\"     "},
        // Anything that is not feet is labelled metres, a time axis too.
        {"minutes", {minutes}, "\"Depth\"     \"Gamma_Ray\"     ", "\"Meters\"     \"api_units\"     "},
    };
    for (const auto& c : cases) {
        const Exported out = Export(*MakeDocument("W", c.traces));
        ASSERT_TRUE(out.ok) << c.name;
        ASSERT_GE(out.lines.size(), 2u) << c.name;
        EXPECT_EQ(out.lines[0], c.names) << c.name;
        EXPECT_EQ(out.lines[1], c.units) << c.name;
    }
}

TEST(ExportText, RowsRunTopDownWithSixDecimals)
{
    // Rows at 10, 10.4, 10.8, 11.2, 11.6 and 12 m, each the float nearest 10 + k * 0.4: the
    // interpolated values show the float arithmetic of the lookup (27.999992 is 20 plus
    // 0.3999996 m of a 20-per-metre slope).
    const Exported out = Export(*MakeDocument("W", {GammaRay(), Resistivity()}));
    ASSERT_TRUE(out.ok);
    const std::vector<std::string> rows = {
        "     10.000000          20.000000           2.500000     ",
        "     10.400000          27.999992           3.699999     ",
        "     10.800000           -9999.99           6.400002     ",
        "     11.200000           -9999.99           8.000000     ",
        "     11.600000          52.000008           8.000000     ",
        "     12.000000          60.000000           -9999.99     ",
    };
    ASSERT_EQ(out.lines.size(), 8u);
    EXPECT_EQ(std::vector<std::string>(out.lines.begin() + 2, out.lines.end()), rows);
}

TEST(ExportText, FirstLineTraceSetsUnitAndStepAndEveryTraceTheRange)
{
    // A feet image trace (29.52756 to 42.65092 ft) comes first but only line traces count for
    // the unit label and the step (0.4): the rows run from the gamma ray's 10 m up to the
    // image's 42.65092, 82 of them.
    const Exported out = Export(*test::FeetImageThenGammaRay());
    ASSERT_TRUE(out.ok);
    ASSERT_EQ(out.lines.size(), 2u + 82u);
    EXPECT_EQ(out.lines[0], "\"Depth\"     \"Gamma_Ray\"     ");
    EXPECT_EQ(out.lines[1], "\"Meters\"     \"api_units\"     ");
    EXPECT_EQ(out.lines[2], "     10.000000          20.000000     ");
    EXPECT_EQ(out.lines.back(), "     42.400002           -9999.99     ");
}

TEST(ExportText, NoLineTraceIsRefused)
{
    const auto empty = MakeDocument("W", {});
    const auto imagesOnly = test::ImageOnlyDocument();
    for (const CBoreAnalystDoc* doc : {empty.get(), imagesOnly.get()}) {
        const Exported out = Export(*doc);
        EXPECT_FALSE(out.ok);
        EXPECT_EQ(out.messages, std::vector<std::string>{"Error: No line traces present to export."});
        EXPECT_TRUE(out.files.empty());
    }
}

TEST(ExportText, UncreatableTarget)
{
    test::TempDir dir;
    const auto target = dir.Path("no_such_folder") / "out.txt";
    CollectingMessageSink sink;
    EXPECT_FALSE(ExportText(*MakeDocument("W", {GammaRay()}), target, sink));
    EXPECT_EQ(sink.Texts(), (std::vector<std::string>{"Error: unable to create file.",
                                                      "Note: cannot create \"" + target.string() +
                                                          "\": No such file or directory."}));
}

} // namespace
} // namespace ba
