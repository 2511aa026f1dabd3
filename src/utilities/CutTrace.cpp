#include "utilities/CutTrace.h"

#include "utilities/ResultName.h"
#include "utilities/SampleSubset.h"
#include "utilities/TargetTrace.h"
#include "utilities/TraceDepths.h"

#include <cstdint>
#include <vector>

namespace ba {

std::unique_ptr<CTrace> CutSamples(const CBoreAnalystDoc& doc, std::size_t traceIndex, const DepthInterval& interval,
                                   CutMode mode, std::string_view verb, IMessageSink& sink)
{
    const CTrace* trace = FindTargetTrace(doc, traceIndex, verb, sink);
    if (trace == nullptr || !CheckDepthInterval(interval, trace->DepthUnit(), sink)) return nullptr;
    std::vector<std::uint8_t> keep;
    const std::size_t inside = MarkSamplesInside(*trace, interval, keep);
    if (inside == 0) {
        ReportNoSamplesInside(*trace, interval, sink);
        return nullptr;
    }
    if (mode == CutMode::Remove) {
        if (inside == trace->SampleCount()) {
            sink.Error("Error: Cannot " + std::string(verb) + " " + TraceLabel(*trace) + " from " +
                       DepthIntervalText(interval, trace->DepthUnit()) +
                       ": that is every sample it has; remove the trace instead.");
            return nullptr;
        }
        for (std::uint8_t& k : keep) k = k != 0 ? 0 : 1;
    }
    return CopyKeepingSamples(*trace, keep);
}

std::unique_ptr<CDocumentChange> MakeCutChange(const CBoreAnalystDoc& doc, std::size_t traceIndex,
                                               const CutRequest& request, IMessageSink& sink)
{
    if (!CheckResultName(doc, request.newName, sink)) return nullptr;
    auto result = CutSamples(doc, traceIndex, request.interval, request.mode, "cut", sink);
    if (!result) return nullptr;
    return MakeResultChange("Cut " + doc.Trace(traceIndex).Name(), traceIndex, std::move(result), request.newName);
}

} // namespace ba
