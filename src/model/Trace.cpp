#include "model/Trace.h"

#include "model/Archive.h"

#include <cmath>
#include <cstring>
#include <utility>

namespace ba {

double DepthUnitFactor(std::int32_t code)
{
    switch (code) {
    case kDepthFeet: return 3.28084;
    case kDepthMetres: return 1.0;
    case kTimeSeconds: return 60.0;
    case kTimeMinutes: return 1.0;
    case kTimeHours: return 0.016666668;
    case kTimeDays: return 0.00069444446;
    default: return 1.0;
    }
}

bool IsTimeAxisCode(std::int32_t code) { return code >= kTimeSeconds; }

// --- serialisation --------------------------------------------------------------------

void CTrace::Serialize(CArchiveWriter& ar) const
{
    ar.WriteFixedText(m_name);
    ar.WriteFixedText(m_units);
    ar.WriteInt32(static_cast<std::int32_t>(m_depths.Size()));
    ar.WriteFloat(m_scaleLeft);
    ar.WriteFloat(m_scaleRight);
    ar.WriteInt32(m_trackIndex);
    ar.WriteInt32(Flags());
    ar.WriteInt32(m_headerBox.left);
    ar.WriteInt32(m_headerBox.top);
    ar.WriteInt32(m_headerBox.right);
    ar.WriteInt32(m_headerBox.bottom);
    ar.WriteFloat(m_viewParameter);
    ar.WriteFloat(m_verticalScale);
    ar.WriteFloat(m_topDepth);
    ar.WriteInt32(m_depthUnit);
    ar.WriteFloats(m_depths.Items());
}

void CTrace::Deserialize(CArchiveReader& ar)
{
    m_name = ar.ReadFixedText();
    m_units = ar.ReadFixedText();
    const std::int32_t count = ar.ReadInt32();
    const std::size_t countOffset = ar.Offset() - 4;
    m_scaleLeft = ar.ReadFloat();
    m_scaleRight = ar.ReadFloat();
    m_trackIndex = ar.ReadInt32();
    SetFlags(ar.ReadInt32());
    m_headerBox.left = ar.ReadInt32();
    m_headerBox.top = ar.ReadInt32();
    m_headerBox.right = ar.ReadInt32();
    m_headerBox.bottom = ar.ReadInt32();
    m_viewParameter = ar.ReadFloat();
    m_verticalScale = ar.ReadFloat();
    m_topDepth = ar.ReadFloat();
    m_depthUnit = ar.ReadInt32();
    // The count sits before the fixed fields but the depths after them, so it is checked
    // here, against what remains once the fixed fields are read.
    const std::size_t n = ar.CheckElementCount(count, countOffset, "the depths", sizeof(float));
    ar.ReadFloats(n, m_depths);
}

void CTrace::RemoveSample(std::size_t i)
{
    if (i < m_depths.Size()) m_depths.RemoveAt(i);
}

// --- flags ----------------------------------------------------------------------------

std::int32_t CTrace::Flags() const
{
    return (m_flags[0] ? 1 : 0) | (m_flags[1] ? 2 : 0) | (m_flags[2] ? 4 : 0);
}

void CTrace::SetFlags(std::int32_t value)
{
    if (value == 20) {
        m_flags = {false, false, false};
        return;
    }
    m_flags = {(value & 1) != 0, (value & 2) != 0, (value & 4) != 0};
}

// --- depths ---------------------------------------------------------------------------

float CTrace::Depth(std::size_t i) const
{
    if (i >= m_depths.Size()) return 0.0f;
    return static_cast<float>(static_cast<double>(m_depths[i]) * DepthUnitFactor(m_depthUnit));
}

float CTrace::FirstDepth() const { return m_depths.Empty() ? 0.0f : Depth(0); }
float CTrace::LastDepth() const { return m_depths.Empty() ? 0.0f : Depth(m_depths.Size() - 1); }

void CTrace::SetDepth(std::size_t i, float storedDepth)
{
    if (i < m_depths.Size()) {
        m_depths[i] = storedDepth;
        return;
    }
    while (m_depths.Size() <= i) m_depths.Add(storedDepth);
}

float CTrace::DefaultStep(std::int32_t depthUnit)
{
    switch (depthUnit) {
    case kDepthFeet: return 0.032808397f;
    case kDepthMetres: return 0.01f;
    case kTimeSeconds: return 0.1f;
    case kTimeMinutes: return 0.0016666667f;
    case kTimeHours: return 2.7777778e-05f;
    case kTimeDays: return 1.1574074e-06f;
    default: return 0.01f;
    }
}

float CTrace::FallbackStep(std::int32_t depthUnit)
{
    return depthUnit == kDepthFeet ? 0.164042f : DefaultStep(depthUnit);
}

float CTrace::SamplingStep() const
{
    const std::size_t n = m_depths.Size();
    if (n < 2 || IrregularAxis()) return DefaultStep(m_depthUnit);
    // Divided by n, not n - 1: the slight underestimate is what the search strides and gap
    // tests of the plotting code are tuned on.
    const float step = (LastDepth() - FirstDepth()) / static_cast<float>(n);
    return step == 0.0f ? FallbackStep(m_depthUnit) : step;
}

SampleBracket CTrace::FindSamplesAround(float d) const
{
    const std::size_t n = m_depths.Size();
    SampleBracket result;
    if (n == 0) return result;
    if (n == 1) {
        if (Depth(0) == d) result.code = SampleBracket::Exact;
        return result;
    }
    const float step = SamplingStep();
    if (n == 2) {
        result.i1 = 1;
        if (Depth(0) == d) result.code = SampleBracket::Exact;
        else if (std::fabs(d - Depth(0)) <= 2.0f * step) result.code = SampleBracket::Bracketed;
        return result;
    }

    // The search walks forward from sample 0 and keeps the last sample still before d. With
    // an irregular axis it may stop on a sample at d itself and reach the last sample;
    // otherwise it stops short of any sample at d and of the last sample. Over ascending
    // depths a binary search over the same range lands on the same index.
    const bool irregular = IrregularAxis();
    const std::size_t last = irregular ? n - 1 : n - 2;
    const double factor = DepthUnitFactor(m_depthUnit);
    auto display = [&](std::size_t i) { return static_cast<float>(static_cast<double>(m_depths[i]) * factor); };
    auto beforeD = [&](std::size_t i) { return irregular ? display(i) <= d : display(i) < d; };
    std::size_t lo = 0;  // Depth(lo) is taken as the answer unless a later one qualifies
    std::size_t hi = last + 1;
    if (beforeD(0)) {
        // Invariant: beforeD(lo) holds, beforeD(hi) does not (or hi is past the range).
        while (hi - lo > 1) {
            const std::size_t mid = lo + (hi - lo) / 2;
            if (beforeD(mid)) lo = mid;
            else hi = mid;
        }
    }
    const std::size_t i0 = lo;
    result.i0 = i0;
    result.i1 = i0;
    if (Depth(i0) == d) {
        result.code = SampleBracket::Exact;
        return result;
    }
    if (i0 + 1 < n && Depth(i0) <= d && d <= Depth(i0 + 1)) {
        result.code = SampleBracket::Bracketed;
        result.i1 = i0 + 1;
        return result;
    }
    if (d < Depth(0) && Depth(0) - d <= 2.0f * step) {
        result.code = SampleBracket::Bracketed;
        result.i0 = result.i1 = 0;
    } else if (d > Depth(n - 1) && d - Depth(n - 1) <= 2.0f * step) {
        result.code = SampleBracket::Bracketed;
        result.i0 = result.i1 = n - 1;
    }
    return result;
}

bool CTrace::ShareDepthsIfSame(const CTrace& other)
{
    const CFloatArray& theirs = other.m_depths;
    if (m_depths.SharesStorageWith(theirs)) return true;
    if (m_depths.Size() != theirs.Size() || m_depths.Empty()) return false;
    if (std::memcmp(std::as_const(m_depths).Data(), theirs.Data(), theirs.Size() * sizeof(float)) != 0) return false;
    m_depths = theirs;
    return true;
}

} // namespace ba
