#include "model/TraceClasses.h"

#include "model/LineTrace.h"

#include <array>

namespace ba {
namespace {

std::unique_ptr<CTrace> MakeLineTrace() { return std::make_unique<CLineTrace>(); }

// Image, sonic and spectrum traces are recognised so that a document holding them is
// refused by name rather than misread.
constexpr std::array<TraceClassInfo, 4> kTraceClasses = {{
    {0, "CLineTrace", &MakeLineTrace},
    {1, "CImageTrace", nullptr},
    {2, "CSonicTrace", nullptr},
    {3, "CSpectralTrace", nullptr},
}};

} // namespace

const TraceClassInfo* TraceClassForKind(std::uint32_t kind)
{
    return kind < kTraceClasses.size() ? &kTraceClasses[kind] : nullptr;
}

const TraceClassInfo* TraceClassForName(std::string_view className)
{
    for (const auto& info : kTraceClasses) {
        if (info.className == className) return &info;
    }
    return nullptr;
}

} // namespace ba
