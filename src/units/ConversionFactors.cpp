#include "units/ConversionFactors.h"

#include <algorithm>
#include <array>
#include <limits>

namespace ba {
namespace {

// Division by a zero value must give an infinity, as IEEE arithmetic does.
static_assert(std::numeric_limits<double>::is_iec559 && std::numeric_limits<float>::is_iec559);

constexpr ConversionFactor Times(float factor) { return {factor, false}; }
constexpr ConversionFactor Over(float factor) { return {factor, true}; }

constexpr ConversionEntry kLength[] = {
    {"ft", "in", Times(12.0f)},        {"ft", "m", Times(0.3048f)},        {"ft", "cm", Times(30.48f)},
    {"ft", "mm", Times(304.8f)},       {"in", "ft", Times(0.083333336f)},  {"in", "m", Times(0.0254f)},
    {"in", "cm", Times(2.54f)},        {"in", "mm", Times(25.4f)},         {"m", "ft", Times(3.2808399f)},
    {"m", "in", Times(39.370079f)},    {"m", "cm", Times(100.0f)},         {"m", "mm", Times(1000.0f)},
    {"cm", "ft", Times(0.032808397f)}, {"cm", "in", Times(0.39370078f)},   {"cm", "m", Times(0.01f)},
    {"cm", "mm", Times(10.0f)},        {"mm", "ft", Times(0.0032808401f)}, {"mm", "in", Times(0.039370079f)},
    {"mm", "m", Times(0.001f)},        {"mm", "cm", Times(0.1f)},
};

// Between a velocity and a slowness the conversion is reciprocal. us/m to ft/s and to
// ft/min carry the factors of us/ft to m/s and to m/min; they are kept as stored.
constexpr ConversionEntry kVelocitySlowness[] = {
    {"ft/s", "m/s", Times(0.3048f)},         {"ft/s", "ft/min", Times(60.0f)},
    {"ft/s", "m/min", Times(18.288f)},       {"ft/s", "us/ft", Over(1000000.0f)},
    {"ft/s", "us/m", Over(3280839.8f)},      {"m/s", "ft/s", Times(3.2808399f)},
    {"m/s", "ft/min", Times(196.85039f)},    {"m/s", "m/min", Times(60.0f)},
    {"m/s", "us/ft", Over(304800.0f)},       {"m/s", "us/m", Over(1000000.0f)},
    {"ft/min", "ft/s", Times(0.016666668f)}, {"ft/min", "m/s", Times(0.00508f)},
    {"ft/min", "m/min", Times(0.3048f)},     {"ft/min", "us/ft", Over(60000000.0f)},
    {"ft/min", "us/m", Over(196850380.0f)},  {"m/min", "ft/s", Times(0.054680664f)},
    {"m/min", "m/s", Times(0.016666668f)},   {"m/min", "ft/min", Times(3.2808399f)},
    {"m/min", "us/ft", Over(18288000.0f)},   {"m/min", "us/m", Over(60000000.0f)},
    {"us/ft", "ft/s", Over(1000000.0f)},     {"us/ft", "m/s", Over(304800.0f)},
    {"us/ft", "ft/min", Over(60000000.0f)},  {"us/ft", "m/min", Over(18288000.0f)},
    {"us/ft", "us/m", Times(3.2808399f)},    {"us/m", "ft/s", Over(304800.0f)},
    {"us/m", "m/s", Over(1000000.0f)},       {"us/m", "ft/min", Over(18288000.0f)},
    {"us/m", "m/min", Over(60000000.0f)},    {"us/m", "us/ft", Times(0.3048f)},
};

// Resistivity and conductivity units differ from their base unit by powers of ten:
// resistivities from ohm-m, conductivities from mho/m. Between two units of one kind the
// factor is the ratio of their scales; between a resistivity and a conductivity the value
// is inverted as well, so the conversion is reciprocal.
struct DecimalUnit {
    std::string_view unit;
    int exponent; // 1 unit = 10^exponent base units
    bool conductivity;
};

constexpr DecimalUnit kResistivityUnits[] = {
    {"ohm-m", 0, false},   {"ohm-cm", -2, false}, {"mho/cm", 2, true},   {"mho/m", 0, true},
    {"mmho/cm", -1, true}, {"mmho/m", -3, true},  {"umho/cm", -4, true}, {"umho/m", -6, true},
};

// The single-precision constants 1e-8 .. 1e8, each the float nearest its power of ten.
constexpr float kPowersOfTen[] = {1e-8f, 1e-7f, 1e-6f, 1e-5f, 1e-4f, 1e-3f, 1e-2f, 1e-1f, 1e0f,
                                  1e1f,  1e2f,  1e3f,  1e4f,  1e5f,  1e6f,  1e7f,  1e8f};
constexpr int kPowersOfTenOffset = 8;

constexpr std::size_t kResistivityPairCount = std::size(kResistivityUnits) * (std::size(kResistivityUnits) - 1);

constexpr std::array<ConversionEntry, kResistivityPairCount> MakeResistivityTable()
{
    std::array<ConversionEntry, kResistivityPairCount> table{};
    std::size_t next = 0;
    for (const DecimalUnit& from : kResistivityUnits) {
        for (const DecimalUnit& to : kResistivityUnits) {
            if (from.unit == to.unit) continue;
            const bool inverts = from.conductivity != to.conductivity;
            const int exponent = inverts ? -from.exponent - to.exponent : from.exponent - to.exponent;
            table[next++] = {from.unit, to.unit, {kPowersOfTen[exponent + kPowersOfTenOffset], inverts}};
        }
    }
    return table;
}

constexpr auto kResistivityConductivity = MakeResistivityTable();

constexpr ConversionEntry kFlow[] = {
    {"gal/min", "gal/s", Times(0.016666668f)}, {"gal/min", "l/min", Times(3.7854121f)},
    {"gal/min", "l/s", Times(0.063090198f)},   {"gal/s", "gal/min", Times(60.0f)},
    {"gal/s", "l/min", Times(227.12473f)},     {"gal/s", "l/s", Times(3.7854121f)},
    {"l/min", "gal/min", Times(0.26417202f)},  {"l/min", "gal/s", Times(0.0044028671f)},
    {"l/min", "l/s", Times(0.016666668f)},     {"l/s", "gal/min", Times(15.850322f)},
    {"l/s", "gal/s", Times(0.26417202f)},      {"l/s", "l/min", Times(60.0f)},
};

constexpr ConversionEntry kTransmissivity[] = {
    {"ft^2/s", "ft^2/min", Times(60.0f)},
    {"ft^2/s", "ft^2/day", Times(86400.0f)},
    {"ft^2/s", "m^2/s", Times(0.09290304f)},
    {"ft^2/s", "m^2/min", Times(5.5741825f)},
    {"ft^2/s", "m^2/day", Times(8026.8228f)},
    {"ft^2/min", "ft^2/s", Times(0.016666668f)},
    {"ft^2/min", "ft^2/day", Times(1440.0f)},
    {"ft^2/min", "m^2/s", Times(0.0015483841f)},
    {"ft^2/min", "m^2/min", Times(0.09290304f)},
    {"ft^2/min", "m^2/day", Times(133.78038f)},
    {"ft^2/day", "ft^2/s", Times(0.000011574074f)},
    {"ft^2/day", "ft^2/min", Times(0.00069444446f)},
    {"ft^2/day", "m^2/s", Times(0.0000010752667f)},
    {"ft^2/day", "m^2/min", Times(0.000064516003f)},
    {"ft^2/day", "m^2/day", Times(0.09290304f)},
    {"m^2/s", "ft^2/s", Times(10.76391f)},
    {"m^2/s", "ft^2/min", Times(645.83459f)},
    {"m^2/s", "ft^2/day", Times(930001.81f)},
    {"m^2/s", "m^2/min", Times(60.0f)},
    {"m^2/s", "m^2/day", Times(86400.0f)},
    {"m^2/min", "ft^2/s", Times(0.17939851f)},
    {"m^2/min", "ft^2/min", Times(10.76391f)},
    {"m^2/min", "ft^2/day", Times(15500.03f)},
    {"m^2/min", "m^2/s", Times(0.016666668f)},
    {"m^2/min", "m^2/day", Times(1440.0f)},
    {"m^2/day", "ft^2/s", Times(0.00012458229f)},
    {"m^2/day", "ft^2/min", Times(0.0074749375f)},
    {"m^2/day", "ft^2/day", Times(10.76391f)},
    {"m^2/day", "m^2/s", Times(0.000011574074f)},
    {"m^2/day", "m^2/min", Times(0.00069444446f)},
};

constexpr ConversionEntry kTime[] = {
    {"s", "min", Times(0.016666668f)},
    {"s", "ms", Times(1000.0f)},
    {"s", "us", Times(1000000.0f)},
    {"min", "s", Times(60.0f)},
    {"min", "ms", Times(60000.0f)},
    {"min", "us", Times(60000000.0f)},
    {"ms", "s", Times(0.001f)},
    {"ms", "min", Times(0.000016666667f)},
    {"ms", "us", Times(1000.0f)},
    {"us", "s", Times(0.000001f)},
    {"us", "min", Times(0.000000016666666f)},
    {"us", "ms", Times(0.001f)},
};

// Litres to gallons uses the imperial gallon while every other gallon factor, gallons to
// litres included, uses the US gallon; kept as stored.
constexpr ConversionEntry kVolume[] = {
    {"ft^3", "yards^3", Times(0.037037041f)}, {"ft^3", "m^3", Times(0.02831685f)},
    {"ft^3", "liters", Times(28.316851f)},    {"ft^3", "gal", Times(7.4805198f)},
    {"yards^3", "ft^3", Times(26.999998f)},   {"yards^3", "m^3", Times(0.76455492f)},
    {"yards^3", "liters", Times(764.55487f)}, {"yards^3", "gal", Times(201.97403f)},
    {"m^3", "ft^3", Times(35.314663f)},       {"m^3", "yards^3", Times(1.3079505f)},
    {"m^3", "liters", Times(1000.0f)},        {"m^3", "gal", Times(264.17203f)},
    {"liters", "ft^3", Times(0.035314664f)},  {"liters", "yards^3", Times(0.0013079506f)},
    {"liters", "m^3", Times(0.001f)},         {"liters", "gal", Times(0.21996915f)},
    {"gal", "ft^3", Times(0.13368055f)},      {"gal", "yards^3", Times(0.0049511315f)},
    {"gal", "m^3", Times(0.0037854121f)},     {"gal", "liters", Times(3.7854121f)},
};

// The 32 degree offset is added by ConvertValue, which tells the direction by the factor.
constexpr ConversionEntry kTemperature[] = {
    {"Deg F", "Deg C", Times(0.55555558f)},
    {"Deg C", "Deg F", Times(1.8f)},
};

} // namespace

std::span<const ConversionEntry> ConversionTable(UnitType type)
{
    switch (type) {
    case UnitType::Length:
        return kLength;
    case UnitType::VelocitySlowness:
        return kVelocitySlowness;
    case UnitType::ResistivityConductivity:
        return kResistivityConductivity;
    case UnitType::Flow:
        return kFlow;
    case UnitType::Transmissivity:
        return kTransmissivity;
    case UnitType::Time:
        return kTime;
    case UnitType::Volume:
        return kVolume;
    case UnitType::Temperature:
        return kTemperature;
    case UnitType::Unknown:
        break;
    }
    return {};
}

std::optional<ConversionFactor> FindConversion(UnitType type, std::string_view from, std::string_view to)
{
    if (from == to) {
        const auto offered = OfferedUnits(type);
        if (std::find(offered.begin(), offered.end(), to) != offered.end()) return ConversionFactor{};
        return std::nullopt;
    }
    for (const ConversionEntry& entry : ConversionTable(type)) {
        if (entry.from == from && entry.to == to) return entry.conversion;
    }
    return std::nullopt;
}

float ConvertValue(float value, UnitType type, ConversionFactor conversion)
{
    const double old = value;
    const double factor = conversion.factor;
    if (conversion.reciprocal) return static_cast<float>(factor / old);
    if (type != UnitType::Temperature) return static_cast<float>(old * factor);
    if (factor < 0.9) return static_cast<float>((old - 32.0) * factor);
    if (factor > 1.1) return static_cast<float>(old * factor + 32.0);
    // A temperature converted to its own unit (factor 1.0) has no offset to apply.
    return value;
}

void ConvertValues(std::span<float> values, UnitType type, ConversionFactor conversion)
{
    for (float& value : values) value = ConvertValue(value, type, conversion);
}

} // namespace ba
