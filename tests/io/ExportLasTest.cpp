#include "io/LasExport.h"

#include "ExportTestDocuments.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#ifndef _WIN32
#include <csignal>
#include <sys/resource.h>
#endif

namespace ba {
namespace {

using test::Exported;
using test::GammaRay;
using test::LineRecipe;
using test::MakeDocument;
using test::Resistivity;

Exported Export(const CBoreAnalystDoc& doc) { return test::ExportInScratchFolder(ExportLas, doc, "out.las"); }

// Lines from..to-1 of `lines`.
std::vector<std::string> Slice(const std::vector<std::string>& lines, std::size_t from, std::size_t to)
{
    if (to > lines.size() || from > to) return {"(only " + std::to_string(lines.size()) + " lines)"};
    return {lines.begin() + static_cast<std::ptrdiff_t>(from), lines.begin() + static_cast<std::ptrdiff_t>(to)};
}

const std::vector<std::string> kFixedWellLines = {
    "NULL.            -9999.99            :NULL VALUE",
    "COMP.     ANY COMPANY INC.           :COMPANY",
};
const std::vector<std::string> kFixedLocationLines = {
    "FLD .     WILDCAT                    :FIELD",
    "LOC .     12-34-12-34W5              :LOCATION",
    "PROV.     COLORADO                   :PROVINCE",
    "SRVC.     ANY LOGGING COMPANY INC.   :SERVICE COMPANY",
    "DATE.     01-JAN-00                  :LOG DATE",
    "UWI .     1234567890                 :UNIQUE WELL ID",
};

std::vector<std::string> Header(const std::vector<std::string>& range, const std::string& well,
                                const std::vector<std::string>& curves)
{
    std::vector<std::string> lines = {"~V", "VERS .               2.0 :   CWLS log ASCII Standard -VERSION 2.0",
                                      "WRAP.                NO  :   One line per depth step", "~W"};
    lines.insert(lines.end(), range.begin(), range.end());
    lines.insert(lines.end(), kFixedWellLines.begin(), kFixedWellLines.end());
    lines.push_back(well);
    lines.insert(lines.end(), kFixedLocationLines.begin(), kFixedLocationLines.end());
    lines.push_back("~C");
    lines.insert(lines.end(), curves.begin(), curves.end());
    lines.push_back("~A");
    return lines;
}

TEST(ExportLas, HeaderInMetresAndInFeet)
{
    // Gamma ray from 10 to 12 m in five samples: the step is (12 - 10) / 5 = 0.4 m. In feet
    // the same depths read 32.8084 to 39.37008 ft and the step 1.312336 ft, written negated.
    LineRecipe feet = GammaRay();
    feet.depthUnit = kDepthFeet;
    struct Case {
        const char* name;
        std::vector<LineRecipe> traces;
        std::vector<std::string> header;
    };
    const Case cases[] = {
        {"metres",
         {GammaRay(), Resistivity()},
         Header({"STRT.M               12.000          :START DEPTH", "STOP.M               10.000          :START DEPTH",
                 "STEP.M                0.400          :STEP"},
                "WELL.     TEST WELL                  :WELL",
                {"DEPT.M                   : DEPTH", "GAMMA_RAY.API_UNITS           : Gamma Ray",
                 "RES.OHMM                : RES"})},
        {"feet",
         {feet},
         Header({"STRT.FT              39.370          :START DEPTH", "STOP.FT              32.808          :START DEPTH",
                 "STEP.FT              -1.312          :STEP"},
                "WELL.     TEST WELL                  :WELL",
                {"DEPT.FT                  : DEPTH", "GAMMA_RAY.API_UNITS           : Gamma Ray"})},
    };
    for (const auto& c : cases) {
        const Exported out = Export(*MakeDocument("Test Well", c.traces));
        ASSERT_TRUE(out.ok) << c.name;
        EXPECT_EQ(Slice(out.lines, 0, c.header.size()), c.header) << c.name;
    }
}

TEST(ExportLas, WellNameIsTheTitleInCapitalsPaddedTo27)
{
    struct Case {
        std::string title;
        std::string line;
    };
    const Case cases[] = {
        {"Test Well", "WELL.     TEST WELL                  :WELL"},
        {"", "WELL.                                :WELL"},
        {"exactly_twenty_seven_chars_", "WELL.     EXACTLY_TWENTY_SEVEN_CHARS_:WELL"},
        {"north_field_observation_well_7", "WELL.     NORTH_FIELD_OBSERVATION_WELL_7:WELL"},
        // Windows-1252 in the file; only ASCII letters change case, one byte per letter.
        {"Forêt 2", "WELL.     FOR\xEAT 2                    :WELL"},
    };
    for (const auto& c : cases) {
        const Exported out = Export(*MakeDocument(c.title, {GammaRay()}));
        ASSERT_TRUE(out.ok) << c.title;
        EXPECT_EQ(Slice(out.lines, 9, 10), std::vector<std::string>{c.line}) << c.title;
    }
}

TEST(ExportLas, CurveLines)
{
    struct Case {
        std::string name;
        std::string units;
        std::string line;
    };
    const Case cases[] = {
        {"Gamma Ray", "api units", "GAMMA_RAY.API_UNITS           : Gamma Ray"},
        {"GR", "API", "GR.API                 : GR"},
        {"Cal", "", "CAL.                    : Cal"},
        {"Deep Res", "ohm metres x", "DEEP_RES.OHM_METRES_X          : Deep Res"},
        {"sonic", "us/ft", "SONIC.US/FT               : sonic"},
    };
    for (const auto& c : cases) {
        LineRecipe recipe = GammaRay();
        recipe.name = c.name;
        recipe.units = c.units;
        const Exported out = Export(*MakeDocument("W", {recipe}));
        ASSERT_TRUE(out.ok) << c.name;
        EXPECT_EQ(Slice(out.lines, 18, 19), std::vector<std::string>{c.line}) << c.name;
    }
}

TEST(ExportLas, RowsRunBottomUpWithNullsAsMinus9999_99)
{
    // Rows at 12, 11.6, 11.2, 10.8, 10.4, 10 m. Gamma ray: 60 at its last sample, 52 between
    // 50 and 60, null next to its null sample, 28 between 20 and 30, 20 at its first sample.
    // Resistivity (10 to 11 m, step 1/3) reaches 2/3 m beyond its last sample: 12 m is null,
    // 11.6 and 11.2 read 8, 10.8 interpolates 6.4, 10.4 gives 3.7.
    const Exported out = Export(*MakeDocument("W", {GammaRay(), Resistivity()}));
    ASSERT_TRUE(out.ok);
    const std::vector<std::string> rows = {
        "        12.000            60.0000           -9999.99     ",
        "        11.600            52.0000             8.0000     ",
        "        11.200           -9999.99             8.0000     ",
        "        10.800           -9999.99             6.4000     ",
        "        10.400            28.0000             3.7000     ",
        "        10.000            20.0000             2.5000     ",
    };
    EXPECT_EQ(Slice(out.lines, 21, out.lines.size()), rows);
}

TEST(ExportLas, FeetRowsCarryFeetDepths)
{
    // 39.37008 ft down to 32.8084 ft by 1.312336 ft; the values as at the metre depths.
    LineRecipe feet = GammaRay();
    feet.depthUnit = kDepthFeet;
    const Exported out = Export(*MakeDocument("W", {feet}));
    ASSERT_TRUE(out.ok);
    const std::vector<std::string> rows = {
        "        39.370            60.0000     ", "        38.058            52.0000     ",
        "        36.745           -9999.99     ", "        35.433           -9999.99     ",
        "        34.121            28.0000     ", "        32.808            20.0000     ",
    };
    EXPECT_EQ(Slice(out.lines, 20, out.lines.size()), rows);
}

TEST(ExportLas, FirstTraceOfAnyKindSetsUnitAndStepAndEveryTraceTheRange)
{
    // A feet image trace at 9 and 13 m (29.52756 and 42.65092 ft) comes first: the file is
    // in feet, steps by its (42.65092 - 29.52756) / 2 = 6.56168, and spans 42.651 down to
    // the gamma ray's 10 (its metres, not converted). No row reaches the gamma ray's 10-12.
    const Exported out = Export(*test::FeetImageThenGammaRay());
    ASSERT_TRUE(out.ok);
    EXPECT_EQ(Slice(out.lines, 4, 7), (std::vector<std::string>{"STRT.FT              42.651          :START DEPTH",
                                                                "STOP.FT              10.000          :START DEPTH",
                                                                "STEP.FT              -6.562          :STEP"}));
    EXPECT_EQ(Slice(out.lines, 17, 19),
              (std::vector<std::string>{"DEPT.FT                  : DEPTH", "GAMMA_RAY.API_UNITS           : Gamma Ray"}));
    const std::vector<std::string> rows = {
        "        42.651           -9999.99     ", "        36.089           -9999.99     ",
        "        29.528           -9999.99     ", "        22.966           -9999.99     ",
        "        16.404           -9999.99     ",
    };
    EXPECT_EQ(Slice(out.lines, 20, out.lines.size()), rows);
}

TEST(ExportLas, TracesWithoutSamplesGiveTheHeaderAndNoRows)
{
    LineRecipe empty = GammaRay();
    empty.samples.clear();
    const Exported out = Export(*MakeDocument("W", {empty}));
    ASSERT_TRUE(out.ok);
    EXPECT_EQ(Slice(out.lines, 4, 7), (std::vector<std::string>{"STRT.M                0.000          :START DEPTH",
                                                                "STOP.M                0.000          :START DEPTH",
                                                                "STEP.M                0.010          :STEP"}));
    EXPECT_EQ(out.lines.size(), 20u);
    EXPECT_EQ(out.lines.back(), "~A");
}

TEST(ExportLas, RefusalsWriteNothing)
{
    LineRecipe unbounded = GammaRay();
    unbounded.samples.back().first = INFINITY;
    LineRecipe finelySampled = GammaRay();
    finelySampled.samples = {{0.0f, 1.0f}, {1e-6f, 2.0f}}; // a step of 5e-7 m
    LineRecipe deepRes = Resistivity();
    deepRes.samples.back().first = 100.0f;
    LineRecipe backwards = GammaRay();
    std::reverse(backwards.samples.begin(), backwards.samples.end());

    struct Case {
        const char* name;
        std::unique_ptr<CBoreAnalystDoc> doc;
        std::string message;
    };
    const Case cases[] = {
        {"empty document", MakeDocument("W", {}), "Error: No line traces present to export."},
        {"image traces only", test::ImageOnlyDocument(), "Error: No line traces present to export."},
        {"infinite depth", MakeDocument("W", {unbounded}),
         "has a depth that is not a finite number at sample 4."},
        {"over 100 million rows", MakeDocument("W", {finelySampled, deepRes}), "gives more than 100000000 rows."},
        {"descending depths", MakeDocument("W", {backwards}),
         "is -0.4, not a positive number; its depths do not ascend."},
    };
    for (const auto& c : cases) {
        const Exported out = Export(*c.doc);
        EXPECT_FALSE(out.ok) << c.name;
        ASSERT_EQ(out.messages.size(), 1u) << c.name;
        EXPECT_TRUE(out.messages[0].starts_with("Error: ")) << out.messages[0];
        EXPECT_TRUE(out.messages[0].ends_with(c.message)) << out.messages[0];
        EXPECT_TRUE(out.files.empty()) << c.name;
    }
}

TEST(ExportLas, TargetsThatCannotBeCreated)
{
    test::TempDir dir;
    std::filesystem::create_directory(dir.Path("folder.las"));
    const auto doc = MakeDocument("W", {GammaRay()});
    struct Case {
        std::filesystem::path target;
        std::string reason;
    };
    const Case cases[] = {
        {dir.Path("no_such_folder") / "out.las", "No such file or directory"},
        {dir.Path("folder.las"), "it is a folder"},
    };
    for (const auto& c : cases) {
        CollectingMessageSink sink;
        EXPECT_FALSE(ExportLas(*doc, c.target, sink));
        EXPECT_EQ(sink.Texts(), (std::vector<std::string>{"Error: unable to create file.",
                                                          "Note: cannot create \"" + c.target.string() + "\": " +
                                                              c.reason + "."}));
    }
    EXPECT_EQ(dir.FileNames(), std::vector<std::string>{"folder.las"});
    EXPECT_TRUE(std::filesystem::is_empty(dir.Path("folder.las")));
}

#ifndef _WIN32
// Limits the size of files this process writes; a write past it fails with EFBIG instead
// of raising SIGXFSZ.
class FileSizeLimit {
public:
    explicit FileSizeLimit(rlim_t bytes)
    {
        getrlimit(RLIMIT_FSIZE, &m_previous);
        m_previousHandler = std::signal(SIGXFSZ, SIG_IGN);
        rlimit limit = m_previous;
        limit.rlim_cur = bytes;
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FileSizeLimit()
    {
        setrlimit(RLIMIT_FSIZE, &m_previous);
        std::signal(SIGXFSZ, m_previousHandler);
    }
    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;

private:
    rlimit m_previous{};
    void (*m_previousHandler)(int) = SIG_DFL;
};

TEST(ExportLas, AFailedWriteKeepsTheOldFileAndLeavesNoOther)
{
    test::TempDir dir;
    dir.Write("out.las", "the previous export\n");
    LineRecipe many = GammaRay();
    many.samples.clear();
    for (int i = 0; i < 2000; ++i) many.samples.push_back({static_cast<float>(i) * 0.1f, static_cast<float>(i)});
    const auto doc = MakeDocument("W", {many});
    CollectingMessageSink sink;
    {
        const FileSizeLimit limit(4096);
        EXPECT_FALSE(ExportLas(*doc, dir.Path("out.las"), sink));
    }
    EXPECT_EQ(sink.Texts(), std::vector<std::string>{"File I/O Error: cannot write \"" +
                                                     dir.Path("out.las").string() + "\": File too large."});
    EXPECT_EQ(dir.FileNames(), std::vector<std::string>{"out.las"});
    EXPECT_EQ(dir.Read("out.las"), "the previous export\n");
}
#endif

} // namespace
} // namespace ba
