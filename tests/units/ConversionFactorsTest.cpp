#include "model/Trace.h"
#include "units/ConversionFactors.h"
#include "units/UnitTypes.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace ba {
namespace {

constexpr UnitType kTypesWithUnits[] = {UnitType::Length, UnitType::VelocitySlowness, UnitType::ResistivityConductivity,
                                        UnitType::Flow,   UnitType::Transmissivity,   UnitType::Time,
                                        UnitType::Volume, UnitType::Temperature};

// Physical model of the units, independent of the stored table: each unit's size in a base
// unit of its type. An inverse unit measures the reciprocal quantity (slowness against
// velocity, conductivity against resistivity), in the reciprocal base unit.
struct UnitSize {
    double scale;
    bool inverse;
};

constexpr double kFoot = 0.3048;
constexpr double kUsGallon = 3.785411784e-3;

const std::map<std::string_view, UnitSize>& UnitSizes()
{
    static const std::map<std::string_view, UnitSize> sizes = {
        // metres
        {"ft", {kFoot, false}},
        {"in", {0.0254, false}},
        {"m", {1.0, false}},
        {"cm", {0.01, false}},
        {"mm", {0.001, false}},
        // m/s, and s/m for slownesses
        {"ft/s", {kFoot, false}},
        {"m/s", {1.0, false}},
        {"ft/min", {kFoot / 60, false}},
        {"m/min", {1.0 / 60, false}},
        {"us/ft", {1e-6 / kFoot, true}},
        {"us/m", {1e-6, true}},
        // ohm-m, and S/m for conductivities
        {"ohm-m", {1.0, false}},
        {"ohm-cm", {0.01, false}},
        {"mho/cm", {100.0, true}},
        {"mho/m", {1.0, true}},
        {"mmho/cm", {0.1, true}},
        {"mmho/m", {1e-3, true}},
        {"umho/cm", {1e-4, true}},
        {"umho/m", {1e-6, true}},
        // m^3/s
        {"gal/min", {kUsGallon / 60, false}},
        {"gal/s", {kUsGallon, false}},
        {"l/min", {1e-3 / 60, false}},
        {"l/s", {1e-3, false}},
        // m^2/s
        {"ft^2/s", {kFoot * kFoot, false}},
        {"ft^2/min", {kFoot * kFoot / 60, false}},
        {"ft^2/day", {kFoot * kFoot / 86400, false}},
        {"m^2/s", {1.0, false}},
        {"m^2/min", {1.0 / 60, false}},
        {"m^2/day", {1.0 / 86400, false}},
        // seconds
        {"s", {1.0, false}},
        {"min", {60.0, false}},
        {"ms", {1e-3, false}},
        {"us", {1e-6, false}},
        // m^3
        {"ft^3", {kFoot * kFoot * kFoot, false}},
        {"yards^3", {27 * kFoot * kFoot * kFoot, false}},
        {"m^3", {1.0, false}},
        {"liters", {1e-3, false}},
        {"gal", {kUsGallon, false}},
    };
    return sizes;
}

ConversionFactor PhysicalFactor(std::string_view from, std::string_view to)
{
    if (from == "Deg F" && to == "Deg C") return {static_cast<float>(5.0 / 9.0), false};
    if (from == "Deg C" && to == "Deg F") return {static_cast<float>(9.0 / 5.0), false};
    const UnitSize a = UnitSizes().at(from);
    const UnitSize b = UnitSizes().at(to);
    if (a.inverse == b.inverse) return {static_cast<float>(a.scale / b.scale), false};
    return {static_cast<float>(1.0 / (a.scale * b.scale)), true};
}

int UlpDistance(float a, float b) { return std::abs(std::bit_cast<std::int32_t>(a) - std::bit_cast<std::int32_t>(b)); }

TEST(ConversionFactors, OneEntryForEveryPairOfOfferedUnits)
{
    for (const UnitType type : kTypesWithUnits) {
        const auto offered = OfferedUnits(type);
        const std::set<std::string_view> units(offered.begin(), offered.end());
        std::set<std::pair<std::string_view, std::string_view>> pairs;
        for (const auto& entry : ConversionTable(type)) {
            EXPECT_TRUE(units.count(entry.from) == 1 && units.count(entry.to) == 1)
                << entry.from << " -> " << entry.to << " names a unit not offered for " << UnitTypeName(type);
            EXPECT_NE(entry.from, entry.to);
            EXPECT_TRUE(pairs.emplace(entry.from, entry.to).second) << entry.from << " -> " << entry.to << " twice";
        }
        EXPECT_EQ(pairs.size(), units.size() * (units.size() - 1)) << UnitTypeName(type);
    }
    for (const std::int32_t code : {0, 6, 7, 8, 12}) EXPECT_TRUE(ConversionTable(static_cast<UnitType>(code)).empty());
}

// Every stored factor is the physical ratio to within the rounding of single-precision
// arithmetic, except three factors that have always been stored otherwise.
TEST(ConversionFactors, StoredFactorsAgreeWithThePhysicalRatios)
{
    const std::map<std::pair<std::string_view, std::string_view>, ConversionFactor> storedOtherwise = {
        // the factors of us/ft -> m/s and us/ft -> m/min
        {{"us/m", "ft/s"}, {304800.0f, true}},
        {{"us/m", "ft/min"}, {18288000.0f, true}},
        // the imperial gallon of 4.546092 litres
        {{"liters", "gal"}, {static_cast<float>(1.0 / 4.546092), false}},
    };
    for (const UnitType type : kTypesWithUnits) {
        for (const auto& entry : ConversionTable(type)) {
            const auto special = storedOtherwise.find({entry.from, entry.to});
            const ConversionFactor expected =
                special != storedOtherwise.end() ? special->second : PhysicalFactor(entry.from, entry.to);
            EXPECT_EQ(entry.conversion.reciprocal, expected.reciprocal) << entry.from << " -> " << entry.to;
            EXPECT_LE(UlpDistance(entry.conversion.factor, expected.factor), 2)
                << entry.from << " -> " << entry.to << ": stored " << entry.conversion.factor << ", expected about "
                << expected.factor;
        }
    }
}

// The constants exactly as stored, chiefly those that single-precision arithmetic left an
// ulp or two away from the exact ratio.
TEST(ConversionFactors, StoredConstants)
{
    struct StoredCase {
        UnitType type;
        std::string_view from;
        std::string_view to;
        float factor;
        bool reciprocal;
    };
    const StoredCase cases[] = {
        {UnitType::Length, "ft", "m", 0.3048f, false},
        {UnitType::Length, "in", "ft", 0.083333336f, false},
        {UnitType::Length, "cm", "ft", 0.032808397f, false},
        {UnitType::Length, "mm", "ft", 0.0032808401f, false},
        {UnitType::VelocitySlowness, "ft/s", "us/m", 3280839.8f, true},
        {UnitType::VelocitySlowness, "ft/min", "us/m", 196850380.0f, true},
        {UnitType::VelocitySlowness, "us/ft", "us/m", 3.2808399f, false},
        {UnitType::VelocitySlowness, "us/m", "ft/s", 304800.0f, true},
        {UnitType::ResistivityConductivity, "ohm-m", "mho/cm", 0.01f, true},
        {UnitType::ResistivityConductivity, "ohm-cm", "umho/m", 100000000.0f, true},
        {UnitType::ResistivityConductivity, "mmho/m", "ohm-cm", 100000.0f, true},
        {UnitType::ResistivityConductivity, "mho/cm", "umho/m", 100000000.0f, false},
        {UnitType::ResistivityConductivity, "umho/m", "mho/cm", 0.00000001f, false},
        {UnitType::ResistivityConductivity, "ohm-cm", "ohm-m", 0.01f, false},
        {UnitType::Flow, "gal/min", "l/min", 3.7854121f, false},
        {UnitType::Flow, "gal/s", "l/min", 227.12473f, false},
        {UnitType::Flow, "l/min", "gal/s", 0.0044028671f, false},
        {UnitType::Flow, "l/s", "gal/min", 15.850322f, false},
        {UnitType::Transmissivity, "ft^2/min", "m^2/s", 0.0015483841f, false},
        {UnitType::Transmissivity, "m^2/s", "ft^2/day", 930001.81f, false},
        {UnitType::Transmissivity, "m^2/min", "ft^2/day", 15500.03f, false},
        {UnitType::Transmissivity, "m^2/day", "ft^2/min", 0.0074749375f, false},
        {UnitType::Time, "us", "min", 0.000000016666666f, false},
        {UnitType::Volume, "yards^3", "ft^3", 26.999998f, false},
        {UnitType::Volume, "ft^3", "m^3", 0.02831685f, false},
        {UnitType::Volume, "ft^3", "liters", 28.316851f, false},
        {UnitType::Volume, "m^3", "gal", 264.17203f, false},
        {UnitType::Volume, "liters", "gal", 0.21996915f, false},
        {UnitType::Volume, "gal", "liters", 3.7854121f, false},
        {UnitType::Temperature, "Deg F", "Deg C", 0.55555558f, false},
        {UnitType::Temperature, "Deg C", "Deg F", 1.8f, false},
    };
    for (const auto& c : cases) {
        const auto found = FindConversion(c.type, c.from, c.to);
        ASSERT_TRUE(found.has_value()) << c.from << " -> " << c.to;
        EXPECT_EQ(found->factor, c.factor) << c.from << " -> " << c.to;
        EXPECT_EQ(found->reciprocal, c.reciprocal) << c.from << " -> " << c.to;
    }
    // A few computed here rather than copied: the nearest floats of the exact ratios.
    EXPECT_EQ(FindConversion(UnitType::Length, "m", "ft")->factor, static_cast<float>(1.0 / 0.3048));
    EXPECT_EQ(FindConversion(UnitType::Length, "m", "ft")->factor, 3.2808399f);
    EXPECT_EQ(FindConversion(UnitType::Length, "in", "ft")->factor, static_cast<float>(1.0 / 12.0));
    EXPECT_EQ(FindConversion(UnitType::Transmissivity, "ft^2/s", "m^2/s")->factor, static_cast<float>(kFoot * kFoot));
    EXPECT_EQ(FindConversion(UnitType::Temperature, "Deg F", "Deg C")->factor, static_cast<float>(5.0 / 9.0));
}

TEST(ConversionFactors, PairsOutsideTheirTypesTableFindNothing)
{
    struct LookupCase {
        UnitType type;
        std::string_view from;
        std::string_view to;
        std::optional<ConversionFactor> expected;
    };
    const LookupCase cases[] = {
        {UnitType::Length, "m", "m", ConversionFactor{1.0f, false}},
        {UnitType::Temperature, "Deg C", "Deg C", ConversionFactor{1.0f, false}},
        {UnitType::VelocitySlowness, "us/ft", "us/ft", ConversionFactor{1.0f, false}},
        // what the flow recogniser calls gallons is not in the flow table
        {UnitType::Flow, "g/min", "gal/s", std::nullopt},
        {UnitType::Flow, "g/s", "g/s", std::nullopt},
        {UnitType::Flow, "l/min", "gal/min", ConversionFactor{0.26417202f, false}},
        // only the type's own table is searched
        {UnitType::Length, "ft/s", "m/s", std::nullopt},
        {UnitType::Volume, "gal/min", "gal/s", std::nullopt},
        {UnitType::Unknown, "ft", "m", std::nullopt},
        {UnitType::Unknown, "Unknown", "Unknown", std::nullopt},
        {static_cast<UnitType>(7), "ft", "m", std::nullopt},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(FindConversion(c.type, c.from, c.to), c.expected)
            << UnitTypeName(c.type) << ": " << c.from << " -> " << c.to;
    }
}

TEST(ConversionFactors, ConvertValue)
{
    const float infinity = std::numeric_limits<float>::infinity();
    const ConversionFactor slownessToVelocity = *FindConversion(UnitType::VelocitySlowness, "us/ft", "ft/s");
    const ConversionFactor fahrenheitToCelsius = *FindConversion(UnitType::Temperature, "Deg F", "Deg C");
    const ConversionFactor celsiusToFahrenheit = *FindConversion(UnitType::Temperature, "Deg C", "Deg F");
    const ConversionFactor feetToMetres = *FindConversion(UnitType::Length, "ft", "m");
    const ConversionFactor feetToMillimetres = *FindConversion(UnitType::Length, "ft", "mm");
    const ConversionFactor unchanged{1.0f, false};
    struct ValueCase {
        const char* what;
        float value;
        UnitType type;
        ConversionFactor conversion;
        float expected;
    };
    const ValueCase cases[] = {
        {"1 us/ft", 1.0f, UnitType::VelocitySlowness, slownessToVelocity, 1000000.0f},
        {"0 us/ft", 0.0f, UnitType::VelocitySlowness, slownessToVelocity, infinity},
        {"-0 us/ft", -0.0f, UnitType::VelocitySlowness, slownessToVelocity, -infinity},
        {"null us/ft", kNullValue, UnitType::VelocitySlowness, slownessToVelocity, -100.000099f},
        {"212 Deg F", 212.0f, UnitType::Temperature, fahrenheitToCelsius, 100.00001f},
        {"32 Deg F", 32.0f, UnitType::Temperature, fahrenheitToCelsius, 0.0f},
        {"null Deg F", kNullValue, UnitType::Temperature, fahrenheitToCelsius, -5573.32812f},
        {"100 Deg C", 100.0f, UnitType::Temperature, celsiusToFahrenheit, 212.0f},
        // rounded once from double: float steps would give 0.990358353
        {"-17.2275791 Deg C", -17.2275791f, UnitType::Temperature, celsiusToFahrenheit, 0.990358412f},
        {"Deg C to itself", 37.5f, UnitType::Temperature, unchanged, 37.5f},
        {"null Deg C to itself", kNullValue, UnitType::Temperature, unchanged, kNullValue},
        {"1 liter", 1.0f, UnitType::Volume, *FindConversion(UnitType::Volume, "liters", "gal"), 0.21996915f},
        {"1 gal", 1.0f, UnitType::Volume, *FindConversion(UnitType::Volume, "gal", "liters"), 3.7854121f},
        {"null ft", kNullValue, UnitType::Length, feetToMetres, -3047.99707f},
        {"10 ft", 10.0f, UnitType::Length, feetToMetres, 3.048f},
        {"3e38 ft past the float range", 3e38f, UnitType::Length, feetToMillimetres, infinity},
    };
    for (const auto& c : cases) {
        const float converted = ConvertValue(c.value, c.type, c.conversion);
        EXPECT_EQ(std::bit_cast<std::uint32_t>(converted), std::bit_cast<std::uint32_t>(c.expected))
            << c.what << ": got " << converted << ", expected " << c.expected;
    }
}

TEST(ConversionFactors, ConvertValuesConvertsEverySampleNullsIncluded)
{
    std::vector<float> values = {2.5f, kNullValue, 0.0f, 8.0f};
    ConvertValues(values, UnitType::VelocitySlowness, {1000000.0f, true});
    EXPECT_EQ(values, (std::vector<float>{400000.0f, -100.000099f, std::numeric_limits<float>::infinity(), 125000.0f}));
}

} // namespace
} // namespace ba
