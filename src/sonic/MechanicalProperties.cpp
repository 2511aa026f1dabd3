#include "sonic/MechanicalProperties.h"

#include "model/LineTraceCursor.h"
#include "model/BoreAnalystDoc.h"
#include "model/DerivedLineTraces.h"
#include "model/DocumentChanges.h"
#include "model/LineTrace.h"
#include "units/UnitVocabulary.h"

#include <array>
#include <cstring>
#include <memory>
#include <optional>
#include <stdexcept>

namespace ba {
namespace {

struct PropertyDescription {
    std::string_view name;
    std::string_view units;
};

constexpr std::array<PropertyDescription, kMechanicalPropertyCount> kProperties = {{
    {"Bulk Modulus", "GPa"},
    {"Lambda", "GPa"},
    {"Shear Modulus - Mu", "GPa"},
    {"Mu/Lambda", ""},
    {"Rho/Lambda", "us^2/m^2"},
    {"Rho/Mu", "us^2/m^2"},
    {"Poisson's Ratio", ""},
    {"Vp/Vs", ""},
    {"Young's Modulus", "GPa"},
}};

// The value of `trace` at each station depth, exactly as CLineTrace::ValueAt gives it.
//
// When the trace is sampled at the stations' own depths (same depth unit, bit-identical
// stored depths, at least three samples, display depths strictly ascending), the bracket
// ValueAt would search for is known without searching: on an irregular axis, and at the
// first sample, the sample itself; otherwise the pair ending at the station's sample,
// whose interpolation is repeated here with ValueAt's own expression and types so the
// result is bit-identical (a null in either sample gives null, as there). Any other trace
// is looked up station by station, with a cursor that walks along it.
std::vector<float> ValuesAtStations(const CLineTrace& trace, const CLineTrace& stations,
                                    std::span<const float> stationDepths, bool stationsShareable, StationLookup lookup)
{
    const std::size_t n = stationDepths.size();
    std::vector<float> values(n);
    const bool shared = lookup == StationLookup::Fastest && stationsShareable &&
                        trace.DepthUnit() == stations.DepthUnit() && trace.SampleCount() == n &&
                        (&trace == &stations ||
                         std::memcmp(trace.StoredDepths().Data(), stations.StoredDepths().Data(), n * sizeof(float)) ==
                             0);
    if (!shared) {
        if (lookup == StationLookup::EveryStationByDepth) {
            for (std::size_t k = 0; k < n; ++k) values[k] = trace.ValueAt(stationDepths[k]);
            return values;
        }
        // Stations follow each other along the hole, so the search for each one carries on
        // from the last instead of starting again; the answers are ValueAt's own.
        CLineTraceCursor cursor(trace);
        for (std::size_t k = 0; k < n; ++k) values[k] = cursor.ValueAt(stationDepths[k]);
        return values;
    }
    if (trace.IrregularAxis()) {
        for (std::size_t k = 0; k < n; ++k) values[k] = trace.Value(k);
        return values;
    }
    values[0] = trace.Value(0);
    for (std::size_t k = 1; k < n; ++k) {
        const float v0 = trace.Value(k - 1);
        const float v1 = trace.Value(k);
        if (IsNullSample(v0) || IsNullSample(v1)) {
            values[k] = kNullValue;
            continue;
        }
        const float d = stationDepths[k];
        const double d0 = stationDepths[k - 1];
        const double d1 = stationDepths[k];
        values[k] = static_cast<float>(v0 + (d - d0) * (static_cast<double>(v1) - v0) / (d1 - d0));
    }
    return values;
}

// Whether the shortcut in ValuesAtStations may be taken for traces sharing these depths.
bool StationDepthsShareable(std::span<const float> depths)
{
    if (depths.size() < 3) return false;
    for (std::size_t k = 1; k < depths.size(); ++k) {
        if (!(depths[k - 1] < depths[k])) return false; // also refuses NaN
    }
    return true;
}

double ToMetresPerSecond(float value, ConversionFactor conversion)
{
    const double factor = conversion.factor;
    // Slowness labels (us/ft, us/m) carry a reciprocal factor in the unit tables.
    return conversion.reciprocal ? factor / value : value * factor;
}

// The velocity factor to metres per second of a trace's unit label, or nothing when the
// label is not a velocity or slowness unit.
std::optional<ConversionFactor> VelocityFactor(const CLineTrace& trace)
{
    const UnitClassification unit = ClassifyUnits(trace.Units());
    if (unit.type != UnitType::VelocitySlowness) return std::nullopt;
    return FindConversion(unit.type, unit.canonical, "m/s");
}

} // namespace

std::string_view PropertyTraceName(MechanicalProperty property)
{
    return kProperties.at(static_cast<std::size_t>(property)).name;
}

std::string_view PropertyTraceUnits(MechanicalProperty property)
{
    return kProperties.at(static_cast<std::size_t>(property)).units;
}

std::vector<MechanicalProperty> RequestedProperties(const MechanicalOutputs& outputs)
{
    using P = MechanicalProperty;
    std::vector<P> properties;
    if (outputs.bulkModulus) properties.push_back(P::BulkModulus);
    if (outputs.lambdaMu) properties.insert(properties.end(), {P::Lambda, P::ShearModulus});
    if (outputs.ratios) properties.insert(properties.end(), {P::MuOverLambda, P::RhoOverLambda, P::RhoOverMu});
    if (outputs.poissonRatio) properties.push_back(P::PoissonRatio);
    if (outputs.vpVs) properties.push_back(P::VpOverVs);
    if (outputs.youngModulus) properties.push_back(P::YoungModulus);
    return properties;
}

void ComputeMechanicalProperties(const MechanicalInputs& inputs, std::span<const MechanicalProperty> properties,
                                 std::span<CLineTrace* const> outputs, StationLookup lookup)
{
    if (inputs.compressional == nullptr) {
        throw std::invalid_argument("mechanical properties need a compressional trace");
    }
    if (properties.size() != outputs.size()) throw std::invalid_argument("one output trace per property is needed");
    const CLineTrace& stations = *inputs.compressional;
    const std::size_t n = stations.SampleCount();

    std::vector<float> depths(n);
    for (std::size_t k = 0; k < n; ++k) depths[k] = stations.Depth(k);
    const bool shareable = StationDepthsShareable(depths);
    auto column = [&](const CLineTrace* trace) {
        return trace != nullptr ? ValuesAtStations(*trace, stations, depths, shareable, lookup) : std::vector<float>{};
    };
    const std::vector<float> vpValues = column(inputs.compressional);
    const std::vector<float> vsValues = column(inputs.shear);
    const std::vector<float> rhoValues = column(inputs.density);

    std::vector<float*> outValues(outputs.size());
    for (std::size_t j = 0; j < outputs.size(); ++j) {
        CLineTrace& out = *outputs[j];
        std::vector<float> stored(depths);
        for (float& d : stored) d = DerivedStoredDepth(d, out.DepthUnit());
        out.StoredDepths().Assign(stored);
        out.Values().Clear();
        out.Values().SetSize(n);
        outValues[j] = out.Values().Data();
    }

    // A null shear value makes Vp null and leaves Vs as it was at the previous station
    // (the default before the first one), so outputs of Vs alone keep a value there.
    double vs = kDefaultVs;
    for (std::size_t k = 0; k < n; ++k) {
        double vp = kDefaultVp;
        double rho = kDefaultDensity;
        bool vpNull = false;
        bool rhoNull = false;
        if (!vpValues.empty()) {
            if (IsNullSample(vpValues[k])) vpNull = true;
            else vp = ToMetresPerSecond(vpValues[k], inputs.compressionalToMetresPerSecond);
        }
        if (!vsValues.empty()) {
            if (IsNullSample(vsValues[k])) vpNull = true;
            else vs = ToMetresPerSecond(vsValues[k], inputs.shearToMetresPerSecond);
        }
        if (!rhoValues.empty()) {
            if (IsNullSample(rhoValues[k])) rhoNull = true;
            else rho = rhoValues[k];
        }
        const double vp2 = vp * vp;
        const double vs2 = vs * vs;
        // Vs itself is never null (see above), so only Vp and rho decide nulls. The three
        // ratios use velocities only: each is null exactly when a velocity it uses is.
        for (std::size_t j = 0; j < properties.size(); ++j) {
            double value = 0.0;
            bool isNull = false;
            switch (properties[j]) {
            case MechanicalProperty::BulkModulus:
                isNull = vpNull || rhoNull;
                value = (rho * vp2 - rho * vs2 * 1.3333334) * 1e-6;
                break;
            case MechanicalProperty::Lambda:
                isNull = vpNull || rhoNull;
                value = (rho * vp2 - 2.0 * rho * vs2) * 1e-6;
                break;
            case MechanicalProperty::ShearModulus:
                isNull = rhoNull;
                value = rho * vs2 * 1e-6;
                break;
            case MechanicalProperty::MuOverLambda:
                isNull = vpNull;
                value = vs2 / (vp2 - 2.0 * vs2);
                break;
            case MechanicalProperty::RhoOverLambda:
                isNull = vpNull;
                value = 1e6 / (vp2 - 2.0 * vs2);
                break;
            case MechanicalProperty::RhoOverMu: value = 1e6 / vs2; break;
            case MechanicalProperty::PoissonRatio:
                isNull = vpNull;
                value = 0.5 * (2.0 * vs2 - vp2) / (vs2 - vp2);
                break;
            case MechanicalProperty::VpOverVs:
                isNull = vpNull;
                value = vp / vs;
                break;
            case MechanicalProperty::YoungModulus:
                // Kept as the program has always computed it, not the textbook form.
                isNull = vpNull || rhoNull;
                value = -(4.0 * vs2 - 3.0 * vp2) * (2.0 * vs2 - vp2) / (vs2 - vp2) * rho * 1e-6;
                break;
            }
            outValues[j][k] = isNull ? kNullValue : static_cast<float>(value);
        }
    }
}

bool CMechanicalProperties::OnOk(CBoreAnalystDoc& doc, IMessageSink& sink)
{
    const bool vpSelected = !compressionalTrace.empty();
    const bool vsSelected = !shearTrace.empty();
    // The ratios use the velocities only, so asking for them alone checks what Vp/Vs and
    // Poisson's ratio check. With nothing asked for there is nothing to check or add.
    if (outputs.NeedsDensity()) {
        if (!vpSelected) sink.Error(std::string(kNoCompressionalTraceMessage));
        if (!vsSelected) sink.Error(std::string(kNoShearTraceMessage));
        if (densityTrace.empty()) {
            sink.Error(std::string(kNoDensityTraceMessage));
            return false;
        }
        if (!vpSelected || !vsSelected) return false;
    } else if (outputs.Any()) {
        if (!vpSelected) sink.Error(std::string(kNoCompressionalTraceMessage));
        if (!vsSelected) {
            sink.Error(std::string(kNoShearTraceMessage));
            return false;
        }
        if (!vpSelected) return false;
    } else {
        return true;
    }

    // The lists offer only the document's line traces; a name that is not one of them
    // (possible when the choices come from elsewhere) stops the run.
    MechanicalInputs inputs;
    auto lookUp = [&](const std::string& name, const CLineTrace*& trace) {
        if (name.empty()) return true;
        trace = FindLineTrace(doc, name);
        if (trace == nullptr) sink.Error(NoLineTraceMessage(name));
        return trace != nullptr;
    };
    if (!lookUp(compressionalTrace, inputs.compressional) || !lookUp(shearTrace, inputs.shear) ||
        !lookUp(densityTrace, inputs.density)) {
        return false;
    }

    const auto vpFactor = VelocityFactor(*inputs.compressional);
    if (!vpFactor) {
        sink.Error(std::string(kCompressionalUnitsMessage));
        return false;
    }
    const auto vsFactor = VelocityFactor(*inputs.shear);
    if (!vsFactor) {
        sink.Error(std::string(kShearUnitsMessage));
        return false;
    }
    m_vpFactor = *vpFactor;
    m_vsFactor = *vsFactor;
    inputs.compressionalToMetresPerSecond = m_vpFactor;
    inputs.shearToMetresPerSecond = m_vsFactor;

    // Every output follows the document's first trace in depth unit and depth scale; the
    // pass fills the traces before they join the document as one change.
    const std::vector<MechanicalProperty> properties = RequestedProperties(outputs);
    std::vector<std::unique_ptr<CTrace>> made;
    std::vector<CLineTrace*> traces;
    for (const MechanicalProperty property : properties) {
        auto trace = MakeDerivedLineTrace(doc, 0.0f, 100.0f, std::string(PropertyTraceName(property)),
                                          std::string(PropertyTraceUnits(property)));
        traces.push_back(trace.get());
        made.push_back(std::move(trace));
    }
    ComputeMechanicalProperties(inputs, properties, traces);
    if (!made.empty()) doc.Apply(MakeAddTracesChange("Mechanical Properties", std::move(made)));
    return true;
}

} // namespace ba
