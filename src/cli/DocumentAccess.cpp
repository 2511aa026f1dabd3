#include "cli/DocumentAccess.h"

#include "cli/Command.h"
#include "cli/NumberText.h"

#include "base/LicenceCheck.h"

namespace ba::cli {
namespace {

std::string Quoted(std::string_view text) { return "\"" + std::string(text) + "\""; }

} // namespace

std::unique_ptr<CBoreAnalystDoc> OpenOrFail(const std::string& path, IMessageSink& sink)
{
    auto doc = OpenDocument(path, sink);
    if (!doc) throw CommandFailure(kExitFailure, {});
    return doc;
}

void SaveOrFail(CBoreAnalystDoc& doc, const std::string& path, IMessageSink& sink)
{
    if (!SavingAllowed(DefaultLicenceCheck(), sink) || doc.OnSaveDocument(path, sink) != SaveOutcome::Written) {
        throw CommandFailure(kExitFailure, {});
    }
}

std::size_t ResolveTrace(const CBoreAnalystDoc& doc, std::string_view ref, const std::string& docPath)
{
    const std::size_t count = doc.TraceCount();
    if (ref.size() > 1 && ref[0] == '#') {
        std::size_t index = 0;
        const NumberProblem problem = ParseIndex(ref.substr(1), index);
        if (problem == NumberProblem::None && index < count) return index;
        if (problem == NumberProblem::None || problem == NumberProblem::OutOfRange) {
            throw CommandFailure(kExitFailure, "Error: no trace " + std::string(ref) + " in " + Quoted(docPath) +
                                                   ": it holds " + std::to_string(count) +
                                                   (count == 1 ? " trace." : " traces."));
        }
        // "#abc" is not an index; it can only be a name.
    }
    const std::ptrdiff_t found = doc.FindTraceIndex(ref);
    if (found < 0) {
        throw CommandFailure(kExitFailure, "Error: no trace " + Quoted(ref) + " in " + Quoted(docPath) + ".");
    }
    return static_cast<std::size_t>(found);
}

const CLineTrace& RequireLineTrace(const CTrace& trace, std::string_view ref, const std::string& docPath)
{
    const auto* line = dynamic_cast<const CLineTrace*>(&trace);
    if (line == nullptr) {
        throw CommandFailure(kExitFailure, "Error: trace " + Quoted(ref) + " in " + Quoted(docPath) + " is a " +
                                               std::string(trace.ClassName()) + ", not a line trace.");
    }
    return *line;
}

} // namespace ba::cli
