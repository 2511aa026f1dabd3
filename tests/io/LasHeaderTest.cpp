#include "io/LasHeader.h"

#include <gtest/gtest.h>

#include <cmath>
#include <optional>
#include <string>

namespace ba {
namespace {

TEST(LasHeaderLine, FieldsAreCutAtTheirDelimiters)
{
    struct Case {
        std::string line;
        std::string mnemonic;
        std::string unit;
        std::string value;     // as VERS is read
        std::string wordValue; // as WRAP is read
        std::string dataField; // LAS 2.0: between the unit and the last colon
    };
    const Case cases[] = {
        {" VERS.                 2.0 :   CWLS LOG ASCII", "VERS", "", "2.0", "2", "2.0"},
        {" WRAP.                  NO :   ONE LINE", "WRAP", "", "NO", "NO", "NO"},
        {"WRAP.YES:multiple lines", "WRAP", "YES", "YES", "YES", ""},
        {" DEPT .M                  : 1 DEPTH", "DEPT", "M", "M", "M", ""},
        {"RHOB .K/M3   45 350 01 00 : 3 BULK DENSITY", "RHOB", "K/M3", "K/M3", "K/M3", "45 350 01 00"},
        {"DT\t.US/M\t\t : sonic", "DT", "US/M", "US/M", "US/M", ""},
        {"GR.gAPI: mean gamma ray value", "GR", "gAPI", "gAPI", "gAPI", ""},
        {"DEPT  ..1IN      : depth", "DEPT", ".1IN", ".1IN", "", ""},
        {"Cond..MS/M       : Cond.", "Cond", ".MS/M", ".MS/M", "", ""},
        {"TIME.DD/MM/YYYY-HH:MM:SS   :   0 Date", "TIME", "DD/MM/YYYY-HH:MM:SS", "DD/MM/YYYY-HH", "DD/MM/YYYY-HH", ""},
        {" .OHMM   : no mnemonic", "", "OHMM", "OHMM", "OHMM", ""},
        {"NO FULL STOP HERE : x", "NO", "", "", "", ""},
        {"COMP.   ANY OIL COMPANY INC. : COMPANY", "COMP", "", "ANY", "ANY", "ANY OIL COMPANY INC."},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(LasMnemonic(c.line), c.mnemonic) << c.line;
        EXPECT_EQ(LasUnitToken(c.line), c.unit) << c.line;
        EXPECT_EQ(LasItemValue(c.line), c.value) << c.line;
        EXPECT_EQ(LasWordValue(c.line), c.wordValue) << c.line;
        EXPECT_EQ(LasDataField(c.line), c.dataField) << c.line;
    }
}

TEST(LasHeaderLine, NumbersOfStrtStopStepAndNull)
{
    struct Case {
        std::string line;
        std::optional<double> afterUnit;     // STRT, STOP, STEP
        std::optional<double> afterFullStop; // NULL
    };
    const Case cases[] = {
        {" STRT.M        1670.000000:", 1670.0, std::nullopt},
        {"STEP    .M              -0.1250                  :STEP", -0.125, std::nullopt},
        // With an empty unit the number follows the full stop directly.
        {" NULL.           -999.2500:", -999.25, -999.25},
        {"NULL    .               -999.25                  :NULL VALUE", -999.25, -999.25},
        {" NULL.              -0.0:", -0.0, -0.0},
        // The number right after the full stop is the ".1" of the unit.
        {"STRT    ..1IN   986904.0000  : START INDEX", 986904.0, 0.1},
        {"NULL. +9999 :", 9999.0, 9999.0},
        {"NULL.   :", std::nullopt, std::nullopt},
        {"NULL. none :", std::nullopt, std::nullopt},
        {"STRT", std::nullopt, std::nullopt},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(LasNumberAfterUnit(c.line), c.afterUnit) << c.line;
        EXPECT_EQ(LasNumberAfterFullStop(c.line), c.afterFullStop) << c.line;
    }
    EXPECT_TRUE(std::signbit(*LasNumberAfterFullStop(" NULL.  -0.0:")));
}

TEST(LasHeaderLine, FormatFieldsThatMarkTextCurves)
{
    struct Case {
        std::string line;
        std::string format;
        bool text;
    };
    const Case cases[] = {
        {" DT   .US/M  123 456 : SONIC TRANSIT TIME  {F} ", "F", false},
        {" CDES .      123 456 : CORE DESCRIPTION    {S} ", "S", true},
        {"ETIM.S : Elapsed Logging Time {AS}", "AS", true},
        {" NMR[1] .ms : NMR Echo Array {AF;0ms}", "AF;0ms", false},
        {"TIME .s : Time {hh:mm:ss/DD-MMM-YYYY}", "hh:mm:ss/DD-MMM-YYYY", true},
        {"YME .PA : YOUNGS MODULES {E0.00E+00}", "E0.00E+00", false},
        {"GR .GAPI : gamma ray", "", false},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(LasFormatField(c.line), c.format) << c.line;
        EXPECT_EQ(IsLasTextFormat(LasFormatField(c.line)), c.text) << c.line;
    }
}

TEST(LasSection, ClassifiedByNameAndAssociation)
{
    struct Case {
        std::string line;
        LasSectionKind kind;
        std::string name;
        std::string association;
    };
    const Case cases[] = {
        {"~V", LasSectionKind::Version, "V", ""},
        {"~VERSION INFORMATION", LasSectionKind::Version, "VERSION", ""},
        {"~Well Information Block", LasSectionKind::Well, "Well", ""},
        {"~Curve Information", LasSectionKind::Curves, "Curve", ""},
        {"~C", LasSectionKind::Curves, "C", ""},
        {"~A  DEPTH     DT", LasSectionKind::LogData, "A", ""},
        {"~ASCII", LasSectionKind::LogData, "ASCII", ""},
        {"~P", LasSectionKind::Ignored, "P", ""},
        {"~Other", LasSectionKind::Ignored, "Other", ""},
        {"~SPECIAL INFORMATION", LasSectionKind::Ignored, "SPECIAL", ""},
        {"~Log_Definition", LasSectionKind::Curves, "Log_Definition", ""},
        {"~Log_Parameter", LasSectionKind::Ignored, "Log_Parameter", ""},
        {"~Log_Data | Log_Definition", LasSectionKind::LogData, "Log_Data", "Log_Definition"},
        {"~ASCII | CURVE", LasSectionKind::LogData, "ASCII", "CURVE"},
        {"~Drilling_Definition ", LasSectionKind::Definition, "Drilling_Definition", ""},
        {"~Drilling_Data | Drilling_Definition", LasSectionKind::Data, "Drilling_Data", "Drilling_Definition"},
        {"~Core_Data[1] | Core_Definition", LasSectionKind::Data, "Core_Data[1]", "Core_Definition"},
        {"~Phase_A_Parameter", LasSectionKind::Ignored, "Phase_A_Parameter", ""},
        {"~Phase_data_RMDATA|Phase_Definition_RMDATA", LasSectionKind::Data, "Phase_data_RMDATA",
         "Phase_Definition_RMDATA"},
        {"~   DEPTH     TENSION", LasSectionKind::Nameless, "", ""},
        {"~", LasSectionKind::Nameless, "", ""},
    };
    for (const Case& c : cases) {
        const LasSectionLine section = ClassifyLasSection(c.line);
        EXPECT_EQ(section.kind, c.kind) << c.line;
        EXPECT_EQ(section.name, c.name) << c.line;
        EXPECT_EQ(section.association, c.association) << c.line;
    }
}

TEST(LasIndexUnit, LengthAndTimeUnitsAndTheFirstLetterRule)
{
    struct Case {
        std::string unit;
        LasAxis axis;
        std::int32_t code;
        double toStored;
        bool recognised;
    };
    const Case cases[] = {
        {"M", LasAxis::Length, 1, 1.0, true},
        {"m", LasAxis::Length, 1, 1.0, true},
        {"METRES", LasAxis::Length, 1, 1.0, true},
        {"[M]", LasAxis::Length, 1, 1.0, true},
        {"CM", LasAxis::Length, 1, 0.01, true},
        {"F", LasAxis::Length, 0, 0.3048, true},
        {"FT", LasAxis::Length, 0, 0.3048, true},
        {"feet", LasAxis::Length, 0, 0.3048, true},
        {".1IN", LasAxis::Length, 0, 0.00254, true},
        {"\xD0\xBC\xD0\xB5\xD1\x82\xD1\x80", LasAxis::Length, 1, 1.0, true}, // "метр"
        {"S", LasAxis::Time, 2, 1.0 / 60.0, true},
        {"ms", LasAxis::Time, 2, 1.0 / 60000.0, true},
        {"MIN", LasAxis::Time, 3, 1.0, true},
        {"HR", LasAxis::Time, 4, 60.0, true},
        {"D", LasAxis::Time, 5, 1440.0, true},
        {"MTRS", LasAxis::Length, 1, 1.0, false}, // not known, begins with M: metres
        {"KFT", LasAxis::Length, 0, 0.3048, false}, // not known: feet
        {"", LasAxis::Length, 0, 0.3048, false},
    };
    for (const Case& c : cases) {
        const LasIndexUnit unit = ClassifyLasIndexUnit(c.unit);
        EXPECT_EQ(unit.axis, c.axis) << c.unit;
        EXPECT_EQ(unit.depthUnitCode, c.code) << c.unit;
        EXPECT_DOUBLE_EQ(unit.toStored, c.toStored) << c.unit;
        EXPECT_EQ(unit.recognised, c.recognised) << c.unit;
        EXPECT_FALSE(unit.dateOrClock) << c.unit;
    }
    for (const char* clock : {"DD/MM/YYYY-HH:MM:SS", "HHMMSS", "hh:mm:ss", "YYYYMMDD"}) {
        EXPECT_TRUE(ClassifyLasIndexUnit(clock).dateOrClock) << clock;
    }
}

} // namespace
} // namespace ba
