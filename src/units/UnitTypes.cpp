#include "units/UnitTypes.h"

#include <array>

namespace ba {
namespace {

constexpr std::string_view kLengthUnits[] = {"ft", "in", "m", "cm", "mm"};
constexpr std::string_view kVelocityUnits[] = {"ft/s", "m/s", "ft/min", "m/min", "us/ft", "us/m"};
constexpr std::string_view kResistivityUnits[] = {"ohm-m",   "ohm-cm", "mho/cm",  "mho/m",
                                                  "mmho/cm", "mmho/m", "umho/cm", "umho/m"};
// The flow recogniser answers "g/min" and "g/s" for gallons; the offered units (and the
// conversion table) spell them "gal/min" and "gal/s".
constexpr std::string_view kFlowUnits[] = {"gal/min", "gal/s", "l/min", "l/s"};
constexpr std::string_view kTransmissivityUnits[] = {"ft^2/s", "ft^2/min", "ft^2/day", "m^2/s", "m^2/min", "m^2/day"};
constexpr std::string_view kTimeUnits[] = {"s", "min", "ms", "us"};
constexpr std::string_view kVolumeUnits[] = {"ft^3", "yards^3", "m^3", "liters", "gal"};
constexpr std::string_view kTemperatureUnits[] = {"Deg C", "Deg F"};

struct TypeInfo {
    UnitType type;
    std::string_view name;
    std::span<const std::string_view> units;
};

constexpr std::array<TypeInfo, 9> kTypes = {{
    {UnitType::Unknown, "Unknown", {}},
    {UnitType::Length, "Length", kLengthUnits},
    {UnitType::VelocitySlowness, "Velocity-Slowness", kVelocityUnits},
    {UnitType::ResistivityConductivity, "Resistivity-Conductivity", kResistivityUnits},
    {UnitType::Flow, "Flow", kFlowUnits},
    {UnitType::Transmissivity, "Transmissivity", kTransmissivityUnits},
    {UnitType::Time, "Time", kTimeUnits},
    {UnitType::Volume, "Volume", kVolumeUnits},
    {UnitType::Temperature, "Temperature", kTemperatureUnits},
}};

const TypeInfo* FindType(UnitType type)
{
    for (const auto& info : kTypes) {
        if (info.type == type) return &info;
    }
    return nullptr;
}

} // namespace

std::string_view UnitTypeName(UnitType type)
{
    const TypeInfo* info = FindType(type);
    return info != nullptr ? info->name : std::string_view();
}

std::span<const std::string_view> OfferedUnits(UnitType type)
{
    const TypeInfo* info = FindType(type);
    return info != nullptr ? info->units : std::span<const std::string_view>();
}

} // namespace ba
