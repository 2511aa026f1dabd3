#pragma once
// What the mechanical properties dialog does, without a window: the user picks a
// compressional-velocity, a shear-velocity and a density trace among the document's line
// traces and the properties wanted; OK checks the choices, then derives each property
// station by station along the compressional trace and adds it to the document as a new
// line trace. The desktop dialog shows this state and forwards its OK button here.

#include "base/MessageSink.h"
#include "units/ConversionFactors.h"

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace ba {

class CBoreAnalystDoc;
class CLineTrace;

inline constexpr std::string_view kNoCompressionalTraceMessage = "Error: No compressional velocity trace selected.";
inline constexpr std::string_view kNoShearTraceMessage = "Error: No shear velocity trace selected.";
inline constexpr std::string_view kNoDensityTraceMessage = "Error: No density trace selected.";
inline constexpr std::string_view kCompressionalUnitsMessage =
    "Error: Compressional velocity trace units must be of type velocity.";
inline constexpr std::string_view kShearUnitsMessage = "Error: Shear velocity trace units must be of type velocity.";

// What a trace that is not selected stands for.
inline constexpr double kDefaultVp = 5000.0; // m/s
inline constexpr double kDefaultVs = 2000.0; // m/s
inline constexpr double kDefaultDensity = 2.3; // g/cc

// The output check boxes.
struct MechanicalOutputs {
    bool bulkModulus = false;  // "Bulk Modulus"
    bool lambdaMu = false;     // "Lambda", "Shear Modulus - Mu"
    bool poissonRatio = false; // "Poisson's Ratio"
    bool vpVs = false;         // "Vp/Vs"
    bool youngModulus = false; // "Young's Modulus"
    bool ratios = false;       // "Mu/Lambda", "Rho/Lambda", "Rho/Mu"

    bool NeedsDensity() const { return bulkModulus || lambdaMu || youngModulus; }
    bool Any() const { return bulkModulus || lambdaMu || poissonRatio || vpVs || youngModulus || ratios; }
};

// One derived property: its trace name and unit, in the order the traces are added.
enum class MechanicalProperty : std::size_t {
    BulkModulus,
    Lambda,
    ShearModulus,
    MuOverLambda,
    RhoOverLambda,
    RhoOverMu,
    PoissonRatio,
    VpOverVs,
    YoungModulus,
};
inline constexpr std::size_t kMechanicalPropertyCount = 9;

std::string_view PropertyTraceName(MechanicalProperty property);
std::string_view PropertyTraceUnits(MechanicalProperty property);
// The properties the checks ask for, in the order their traces are added.
std::vector<MechanicalProperty> RequestedProperties(const MechanicalOutputs& outputs);

// How the value of an input trace at a station's depth is found. Both give the same
// numbers; `EveryStationByDepth` is the plain per-station depth lookup and exists so the
// shortcuts (traces sampled at the stations' own depths, a cursor along any other) can be
// checked against it.
enum class StationLookup { Fastest, EveryStationByDepth };

// The inputs of one pass. A null trace is one that was not selected (its default value
// is used); a velocity trace's values are turned into metres per second by its conversion.
struct MechanicalInputs {
    const CLineTrace* compressional = nullptr; // gives the stations; required for any output
    const CLineTrace* shear = nullptr;
    const CLineTrace* density = nullptr;
    ConversionFactor compressionalToMetresPerSecond;
    ConversionFactor shearToMetresPerSecond;
};

// Fills each trace of `outputs` (one per entry of `properties`, in the same order) with
// one sample per station of the compressional trace, replacing what they held. Each
// output's own depth unit decides how the station's depth is stored.
void ComputeMechanicalProperties(const MechanicalInputs& inputs, std::span<const MechanicalProperty> properties,
                                 std::span<CLineTrace* const> outputs,
                                 StationLookup lookup = StationLookup::Fastest);

class CMechanicalProperties {
public:
    // The three trace lists offer LineTraceNames(doc) (model/DerivedLineTraces.h).

    // An empty name means no trace is selected in that list.
    std::string compressionalTrace;
    std::string shearTrace;
    std::string densityTrace;
    MechanicalOutputs outputs;

    // The factors to metres per second found by the last OK that got past the unit checks.
    ConversionFactor CompressionalFactor() const { return m_vpFactor; }
    ConversionFactor ShearFactor() const { return m_vsFactor; }

    // The OK button: checks the choices (reporting each failed check to `sink`), adds one
    // line trace per requested property to `doc` and fills them. Returns false, adding
    // nothing, when a check stops the run.
    bool OnOk(CBoreAnalystDoc& doc, IMessageSink& sink);

private:
    ConversionFactor m_vpFactor;
    ConversionFactor m_vsFactor;
};

} // namespace ba
