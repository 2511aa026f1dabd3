#pragma once
// The common base of every trace kind: identity, plot scale, track placement, header box,
// display depth unit, flags and the ascending array of sample depths that every kind
// shares. Depths are stored in a base unit (metres for a depth axis, minutes for a time
// axis); every read for display goes through the depth-unit code.

#include "model/GrowableArray.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace ba {

class CArchiveReader;
class CArchiveWriter;
class CTrack;

inline constexpr float kNullValue = -9999.99f;

// A sample is null when it holds the single-precision null value. (Widened to double the
// stored float is -9999.990234375, so the test is made against the double constant as
// rounded to float; a literal double comparison would never match a stored null.)
inline bool IsNullSample(float value) { return value == kNullValue; }

// The flag that hides a trace in the log plot (flags 0 and 1 carry no other meaning).
inline constexpr std::size_t kHiddenTraceFlag = 0;

enum class TraceKind : std::uint32_t { Line = 0, Image = 1, Sonic = 2, Spectral = 3 };

// Depth-unit codes of the display axis.
enum DepthUnitCode : std::int32_t {
    kDepthFeet = 0,
    kDepthMetres = 1,
    kTimeSeconds = 2,
    kTimeMinutes = 3,
    kTimeHours = 4,
    kTimeDays = 5,
};

// Factor that converts a stored depth (metres or minutes) to the display unit of `code`.
double DepthUnitFactor(std::int32_t code);
// Codes 0 and 1 are a depth axis, 2 and above a time axis.
bool IsTimeAxisCode(std::int32_t code);

struct CRect32 {
    std::int32_t left = 0;
    std::int32_t top = 0;
    std::int32_t right = 0;
    std::int32_t bottom = 0;
    friend bool operator==(const CRect32&, const CRect32&) = default;
};

// Result of the search for the samples around a depth.
struct SampleBracket {
    enum Code : int { NotFound = -1, Exact = 0, Bracketed = 1 };
    int code = NotFound;
    std::size_t i0 = 0;
    std::size_t i1 = 0;
};

class CTrace {
public:
    CTrace() = default;
    virtual ~CTrace() = default;
    CTrace(const CTrace&) = default;
    CTrace& operator=(const CTrace&) = default;

    // The archive class name of the concrete kind ("CLineTrace", ...).
    virtual std::string_view ClassName() const = 0;
    virtual TraceKind Kind() const = 0;

    // A deep copy of the trace, of its own kind: how an edit builds a changed trace aside.
    virtual std::unique_ptr<CTrace> Clone() const = 0;

    virtual void Serialize(CArchiveWriter& ar) const;
    virtual void Deserialize(CArchiveReader& ar);

    // Removes sample i: the tail shifts down by one and storage is reallocated to exactly
    // the new length. An index past the end changes nothing.
    virtual void RemoveSample(std::size_t i);

    // --- identity and placement
    const std::string& Name() const { return m_name; }
    void SetName(std::string name) { m_name = std::move(name); }
    const std::string& Units() const { return m_units; }
    void SetUnits(std::string units) { m_units = std::move(units); }

    std::int32_t TrackIndex() const { return m_trackIndex; }
    void SetTrackIndex(std::int32_t index) { m_trackIndex = index; }
    CTrack* Track() const { return m_track; }
    void SetTrack(CTrack* track) { m_track = track; }

    float ScaleLeft() const { return m_scaleLeft; }
    float ScaleRight() const { return m_scaleRight; }
    void SetScale(float left, float right)
    {
        m_scaleLeft = left;
        m_scaleRight = right;
    }

    const CRect32& HeaderBox() const { return m_headerBox; }
    void SetHeaderBox(const CRect32& box) { m_headerBox = box; }
    float ViewParameter() const { return m_viewParameter; }
    void SetViewParameter(float value) { m_viewParameter = value; }
    float VerticalScale() const { return m_verticalScale; }
    void SetVerticalScale(float value) { m_verticalScale = value; }
    float TopDepth() const { return m_topDepth; }
    void SetTopDepth(float value) { m_topDepth = value; }
    const std::array<std::int32_t, 2>& LegendMarks() const { return m_legendMarks; }
    void SetLegendMark(std::size_t which, bool on) { m_legendMarks.at(which) = on ? 1 : 0; }

    std::int32_t DepthUnit() const { return m_depthUnit; }
    void SetDepthUnit(std::int32_t code) { m_depthUnit = code; }
    bool IsTimeAxis() const { return IsTimeAxisCode(m_depthUnit); }

    // --- flags: bit 0, 1 and 2 of one int32. Setting from the value 20 clears all three:
    // documents written by early versions carry 20 where they meant "no flags".
    bool Flag(std::size_t which) const { return m_flags.at(which); }
    void SetFlag(std::size_t which, bool on) { m_flags.at(which) = on; }
    std::int32_t Flags() const;
    void SetFlags(std::int32_t value);
    // Flag 2 marks an axis that is not a regular depth sampling.
    bool IrregularAxis() const { return m_flags[2]; }
    // Flag 0 marks a trace the user has hidden: it keeps its data and legend but draws no curve.
    bool IsHidden() const { return m_flags[kHiddenTraceFlag]; }

    // --- depths
    std::size_t SampleCount() const { return m_depths.Size(); }
    const CFloatArray& StoredDepths() const { return m_depths; }
    CFloatArray& StoredDepths() { return m_depths; }
    float StoredDepth(std::size_t i) const { return m_depths[i]; }
    // Takes the storage of `other`'s depths when they hold the same values bit for bit, so
    // that traces recorded together keep one copy of their depths; says whether it did.
    bool ShareDepthsIfSame(const CTrace& other);

    // Depth of sample i in display units; 0.0 when i is not below the sample count.
    float Depth(std::size_t i) const;
    float FirstDepth() const;
    float LastDepth() const;

    // Overwrites depth i (stored units), or appends the value until the count exceeds i.
    void SetDepth(std::size_t i, float storedDepth);

    // Sampling step in display units: (last - first) / n with n the sample count itself.
    float SamplingStep() const;
    // The step used when there are fewer than two samples or the axis is irregular.
    static float DefaultStep(std::int32_t depthUnit);
    // The step used when the computed step is exactly zero.
    static float FallbackStep(std::int32_t depthUnit);

    // Finds the sample at, or the two samples around, display depth d.
    SampleBracket FindSamplesAround(float d) const;

protected:
    CFloatArray m_depths;

private:
    std::string m_name = "Unnamed";
    std::string m_units;
    std::int32_t m_trackIndex = 0;
    CTrack* m_track = nullptr;
    float m_scaleLeft = 0.0f;
    float m_scaleRight = 100.0f;
    CRect32 m_headerBox;
    float m_viewParameter = 0.0f;
    float m_verticalScale = 10.0f;
    float m_topDepth = 0.0f;
    std::array<std::int32_t, 2> m_legendMarks{0, 0};
    std::int32_t m_depthUnit = kDepthMetres;
    std::array<bool, 3> m_flags{false, false, false};
};

} // namespace ba
