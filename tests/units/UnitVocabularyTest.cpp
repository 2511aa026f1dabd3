#include "units/UnitTypes.h"
#include "units/UnitVocabulary.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace ba {
namespace {

struct LabelCase {
    std::string label;
    std::string_view canonical;
    std::string_view typeName;
};

void ExpectClassifiedAs(const std::vector<LabelCase>& cases)
{
    for (const auto& c : cases) {
        const UnitClassification unit = ClassifyUnits(c.label);
        EXPECT_EQ(unit.canonical, c.canonical) << '"' << c.label << '"';
        EXPECT_EQ(UnitTypeName(unit.type), c.typeName) << '"' << c.label << '"';
    }
}

std::string Lower(std::string text)
{
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return text;
}

TEST(UnitVocabulary, EveryFamilyInAnyCase)
{
    ExpectClassifiedAs({
        {"ft", "ft", "Length"},
        {"Feet", "ft", "Length"},
        {"inches", "in", "Length"},
        {"Mtrs", "m", "Length"},
        {"cm", "cm", "Length"},
        {"mm", "mm", "Length"},
        {"feet/second", "ft/s", "Velocity-Slowness"},
        {"Feet/Second", "ft/s", "Velocity-Slowness"},
        {"FEET/SECOND", "ft/s", "Velocity-Slowness"},
        {"Meters/S", "m/s", "Velocity-Slowness"},
        {"mtrs/second", "m/s", "Velocity-Slowness"},
        {"M/M", "m/min", "Velocity-Slowness"},
        {"meters/minute", "m/min", "Velocity-Slowness"},
        {"FT/M", "ft/min", "Velocity-Slowness"},
        {"usec/ft", "us/ft", "Velocity-Slowness"},
        {"Micro-Seconds/Foot", "us/ft", "Velocity-Slowness"},
        {"microsec/meter", "us/m", "Velocity-Slowness"},
        {"USECONDS/MTR", "us/m", "Velocity-Slowness"},
        {"ohm-m", "ohm-m", "Resistivity-Conductivity"},
        {"OHM-CMTR", "ohm-cm", "Resistivity-Conductivity"},
        {"S/CM", "mho/cm", "Resistivity-Conductivity"},
        {"smns/mtr", "mho/m", "Resistivity-Conductivity"},
        {"S/M", "mho/m", "Resistivity-Conductivity"},
        {"mS/cm", "mmho/cm", "Resistivity-Conductivity"},
        {"MilliSiemens/CM", "mmho/cm", "Resistivity-Conductivity"},
        {"MSMN/M", "mmho/m", "Resistivity-Conductivity"},
        {"uS/cm", "umho/cm", "Resistivity-Conductivity"},
        {"microsiemens/cmtr", "umho/cm", "Resistivity-Conductivity"},
        {"USIEMENS/MTRS", "umho/m", "Resistivity-Conductivity"},
        {"gal/min", "g/min", "Flow"},
        {"Gallon/Minute", "g/min", "Flow"},
        {"G/M", "g/min", "Flow"},
        {"gal/sec", "g/s", "Flow"},
        {"L/M", "l/min", "Flow"},
        {"liter/minute", "l/min", "Flow"},
        {"LITER/SECOND", "l/s", "Flow"},
        {"square feet/second", "ft^2/s", "Transmissivity"},
        {"Feet^2/Min", "ft^2/min", "Transmissivity"},
        {"sq ft/day", "ft^2/day", "Transmissivity"},
        {"FT^2/D", "ft^2/day", "Transmissivity"},
        {"SQ MTR/S", "m^2/s", "Transmissivity"},
        {"mtr^2/minute", "m^2/min", "Transmissivity"},
        {"square meters/day", "m^2/day", "Transmissivity"},
        {"Minutes", "min", "Time"},
        {"sec", "s", "Time"},
        {"msec", "ms", "Time"},
        {"Milli-Seconds", "ms", "Time"},
        {"M-S", "ms", "Time"},
        {"micro-sec", "us", "Time"},
        {"u-s", "us", "Time"},
        {"Liters", "liters", "Volume"},
        {"gallons", "gal", "Volume"},
        {"cubic feet", "ft^3", "Volume"},
        {"cubic yards", "yards^3", "Volume"},
        {"yrds^3", "yards^3", "Volume"},
        {"m^3", "m^3", "Volume"},
        {"Cubic-Meter", "m^3", "Volume"},
        {"cubic mtrs", "m^3", "Volume"},
        {"METERS^3", "m^3", "Volume"},
        {"celcius", "Deg C", "Temperature"},
        {"degc", "Deg C", "Temperature"},
        {"DEGREES CELCIUS", "Deg C", "Temperature"},
        {"DegreesCentigrade", "Deg C", "Temperature"},
        {"fahrenheit", "Deg F", "Temperature"},
        {"DEGREES F", "Deg F", "Temperature"},
        {"degreesf", "Deg F", "Temperature"},
        {"Deg Fahrenheit", "Deg F", "Temperature"},
        {"DEGFAHRENHEIT", "Deg F", "Temperature"},
        {"DegreesFahrenheit", "Deg F", "Temperature"},
        {"degrees fahrenheit", "Deg F", "Temperature"},
        {"DEGF", "Deg F", "Temperature"},
        {"Centigrade", "Deg C", "Temperature"},
        {"DEG CELCIUS", "Deg C", "Temperature"},
        {"deg centigrade", "Deg C", "Temperature"},
        {"DEGREES CENTIGRADE", "Deg C", "Temperature"},
        {"DEGREESC", "Deg C", "Temperature"},
        {"DegCelcius", "Deg C", "Temperature"},
        {"DEGCENTIGRADE", "Deg C", "Temperature"},
        {"DEGREESCELCIUS", "Deg C", "Temperature"},
    });
}

TEST(UnitVocabulary, SpellingsTwoRecognisersAcceptGoToTheOneTriedFirst)
{
    ExpectClassifiedAs({
        // slowness before conductivity
        {"US/M", "us/m", "Velocity-Slowness"},
        {"us/mtr", "us/m", "Velocity-Slowness"},
        // the slowness list has no "/MTRS", so this one is conductivity
        {"US/MTRS", "umho/m", "Resistivity-Conductivity"},
        {"US/CM", "umho/cm", "Resistivity-Conductivity"},
        // single letters and short forms go to the first recogniser that has them
        {"M", "m", "Length"},
        {"MS", "ms", "Time"},
        {"S", "s", "Time"},
        {"US", "us", "Time"},
        {"L", "liters", "Volume"},
        {"GAL", "gal", "Volume"},
        {"C", "Deg C", "Temperature"},
        {"F", "Deg F", "Temperature"},
        // volume before temperature: the Fahrenheit list's last spelling never wins
        {"CUBIC METERS", "m^3", "Volume"},
    });
}

TEST(UnitVocabulary, ExactWholeLabelsOnly)
{
    const std::string tooLong(200, 'F');
    ExpectClassifiedAs({
        {" FEET/SECOND", "Unknown", "Unknown"},
        {"FEET/SECOND ", "Unknown", "Unknown"},
        {"FEET / SECOND", "Unknown", "Unknown"},
        {"DEG  C", "Unknown", "Unknown"},
        {std::string("FT\0", 3), "Unknown", "Unknown"},
        {"", "Unknown", "Unknown"},
        {tooLong, "Unknown", "Unknown"},
        {"API", "Unknown", "Unknown"},
        {"OHMM", "Unknown", "Unknown"},
        // kept gaps of the vocabulary
        {"DEGREES C", "Unknown", "Unknown"},
        {"CELSIUS", "Unknown", "Unknown"},
        {"SECOND", "Unknown", "Unknown"},
        {"M^2/S", "Unknown", "Unknown"},
        // only ASCII letters are folded
        {"F\xC3\xA9"
         "ET",
         "Unknown", "Unknown"},
    });
}

// Numbers of spellings per canonical unit, counted by hand from the product lists.
TEST(UnitVocabulary, SpellingCountsPerCanonicalUnit)
{
    const std::map<std::string_view, std::size_t> expected = {
        {"ft", 2},        {"in", 3},        {"m", 3},      {"cm", 1},       {"mm", 1},       {"m/s", 9},
        {"ft/s", 6},      {"m/min", 9},     {"ft/min", 6}, {"us/m", 30},    {"us/ft", 20},   {"ohm-m", 3},
        {"ohm-cm", 3},    {"mho/cm", 15},   {"mho/m", 15}, {"mmho/cm", 30}, {"mmho/m", 30},  {"umho/cm", 30},
        {"umho/m", 30},   {"g/min", 9},     {"g/s", 9},    {"l/min", 6},    {"l/s", 6},      {"ft^2/s", 18},
        {"ft^2/min", 18}, {"ft^2/day", 12}, {"m^2/s", 36}, {"m^2/min", 36}, {"m^2/day", 24}, {"min", 3},
        {"s", 3},         {"ms", 8},        {"us", 8},     {"liters", 3},   {"gal", 3},      {"ft^3", 6},
        {"yards^3", 6},   {"m^3", 15},      {"Deg C", 14}, {"Deg F", 11},
    };
    std::map<std::string_view, std::size_t> counted;
    for (const auto& s : AcceptedSpellings()) ++counted[s.unit.canonical];
    EXPECT_EQ(counted, expected);
}

// The lookup must answer what trying the recognisers one after another answers: the first
// recogniser that lists a spelling, in any letter case.
TEST(UnitVocabulary, LookupAgreesWithTryingTheRecognisersInOrder)
{
    const std::vector<AcceptedSpelling> spellings = AcceptedSpellings();
    std::map<std::string, UnitClassification> firstListing;
    std::map<std::string, std::set<std::size_t>> recognisersListing;
    for (const auto& s : spellings) {
        firstListing.try_emplace(s.spelling, s.unit);
        const bool newInThisRecogniser = recognisersListing[s.spelling].insert(s.recogniser).second;
        EXPECT_TRUE(newInThisRecogniser) << s.spelling << " listed twice by recogniser " << s.recogniser;
    }
    for (const auto& [spelling, unit] : firstListing) {
        EXPECT_EQ(ClassifyUnits(spelling), unit) << spelling;
        EXPECT_EQ(ClassifyUnits(Lower(spelling)), unit) << Lower(spelling);
    }

    std::set<std::string> shared;
    for (const auto& [spelling, recognisers] : recognisersListing) {
        if (recognisers.size() > 1) shared.insert(spelling);
    }
    EXPECT_EQ(shared, (std::set<std::string>{"CUBIC METERS", "US/M", "US/MTR"}));
}

// A relabelled trace carries a canonical unit; most read back as themselves.
TEST(UnitVocabulary, CanonicalUnitsReadBackAsLabels)
{
    const std::map<std::string_view, std::string_view> exceptions = {
        {"gal/min", "g/min"}, {"gal/s", "g/s"}, {"m^2/s", "Unknown"}, {"m^2/min", "Unknown"}, {"m^2/day", "Unknown"},
    };
    for (const UnitType type :
         {UnitType::Length, UnitType::VelocitySlowness, UnitType::ResistivityConductivity, UnitType::Flow,
          UnitType::Transmissivity, UnitType::Time, UnitType::Volume, UnitType::Temperature}) {
        for (const std::string_view unit : OfferedUnits(type)) {
            const auto exception = exceptions.find(unit);
            const UnitClassification read = ClassifyUnits(unit);
            if (exception == exceptions.end()) {
                EXPECT_EQ(read, (UnitClassification{type, unit})) << unit;
            } else {
                EXPECT_EQ(read.canonical, exception->second) << unit;
            }
        }
    }
}

// Reserved and unused codes have no name and offer no units.
TEST(UnitTypes, Names)
{
    const std::map<std::int32_t, std::string_view> names = {
        {0, "Unknown"},
        {1, "Length"},
        {2, "Velocity-Slowness"},
        {3, "Resistivity-Conductivity"},
        {4, "Flow"},
        {5, "Transmissivity"},
        {6, ""},
        {7, ""},
        {8, ""},
        {9, "Time"},
        {10, "Volume"},
        {11, "Temperature"},
        {12, ""},
        {-1, ""},
    };
    for (const auto& [code, name] : names) {
        const auto type = static_cast<UnitType>(code);
        EXPECT_EQ(UnitTypeName(type), name) << code;
        EXPECT_EQ(OfferedUnits(type).empty(), name.empty() || name == "Unknown") << code;
    }
}

} // namespace
} // namespace ba
