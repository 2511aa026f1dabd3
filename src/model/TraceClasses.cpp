#include "model/TraceClasses.h"

#include "model/ImageTrace.h"
#include "model/LineTrace.h"
#include "model/SonicTrace.h"
#include "model/SpectralTrace.h"

#include <array>

namespace ba {
namespace {

template <typename T>
std::unique_ptr<CTrace> MakeTrace()
{
    return std::make_unique<T>();
}

constexpr std::array<TraceClassInfo, 4> kTraceClasses = {{
    {0, CLineTrace::kClassName, &MakeTrace<CLineTrace>},
    {1, CImageTrace::kClassName, &MakeTrace<CImageTrace>},
    {2, CSonicTrace::kClassName, &MakeTrace<CSonicTrace>},
    {3, CSpectralTrace::kClassName, &MakeTrace<CSpectralTrace>},
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
