// splice DOC.bal A B --overlap first|second|average --name N -o OUT.bal: joins two line
// traces of one quantity into a new trace over the depths of both.

#include "cli/Command.h"
#include "cli/DocumentAccess.h"
#include "cli/NumberText.h"
#include "cli/TextFields.h"
#include "cli/TraceUtilityCommand.h"
#include "utilities/Splice.h"
#include "utilities/TraceDepths.h"

#include <map>
#include <memory>
#include <string>

namespace ba::cli {
namespace {

constexpr const char* kSpliceFooter =
    R"(A and B are line traces of one quantity. The new trace N has the samples of both: outside
the interval where their depths overlap each keeps its own samples; inside it --overlap
takes A's samples (first), B's (second), or the mean of both at every depth of either
(average; a trace between two of its samples is read on the straight line between them,
and a null is left out of the mean). B's values are converted into A's unit when their
labels name different units of one type (see classify-units and convert-units; a note on
standard error says so); units of different types, or with no conversion between them,
stop the command with status 1. N takes A's scale, pen, track and depth unit and is added
after the other traces. On success one line gives N, its sample count and depth range.
)";

const std::map<std::string, SpliceOverlap> kOverlaps = {
    {"first", SpliceOverlap::First}, {"second", SpliceOverlap::Second}, {"average", SpliceOverlap::Average}};

struct SpliceOptions {
    UtilityArguments arguments; // TRACE is A
    std::string second;
    std::string overlap;
};

void RunSplice(const SpliceOptions& options, CommandContext& context)
{
    const UtilityArguments& arguments = options.arguments;
    const auto doc = OpenOrFail(arguments.document, context.sink);
    const std::size_t a = ResolveTrace(*doc, arguments.trace, arguments.document);
    const std::size_t b = ResolveTrace(*doc, options.second, arguments.document);
    auto change = SpliceTraces(*doc, a, b, kOverlaps.at(options.overlap), arguments.newName, context.sink);
    if (!change) throw CommandFailure(kExitFailure, {});
    doc->Apply(std::move(change));
    SaveOrFail(*doc, arguments.output, context.sink);
    const CTrace& spliced = doc->Trace(doc->TraceCount() - 1);
    context.out << spliced.Name() << ": " << spliced.SampleCount() << " samples, "
                << ShortestText(spliced.FirstDepth()) << ".." << ShortestText(spliced.LastDepth()) << " "
                << DepthUnitSymbol(spliced.DepthUnit()) << '\n';
}

} // namespace

Command AddSpliceCommand(CLI::App& app)
{
    auto options = std::make_shared<SpliceOptions>();
    CLI::App* sub = app.add_subcommand("splice", "Splice two line traces into a new trace N and save the document to "
                                                 "OUT.bal.");
    sub->footer(kSpliceFooter);
    sub->add_option("DOC.bal", options->arguments.document, "document to read")->required();
    sub->add_option("A", options->arguments.trace, std::string(kTraceArgumentHelp) + "; the first trace")
        ->required();
    sub->add_option("B", options->second, std::string(kTraceArgumentHelp) + "; the second trace")->required();
    sub->add_option("--overlap", options->overlap, "what the overlap takes (see below)")
        ->required()
        ->type_name("first|second|average")
        ->check(CLI::IsMember({"first", "second", "average"}));
    sub->add_option("--name", options->arguments.newName, "name of the new trace")
        ->required()
        ->type_name("N")
        ->check(TraceTextValidator(false));
    AddOutputOption(*sub, options->arguments);
    return {sub, [options](CommandContext& context) { RunSplice(*options, context); }};
}

} // namespace ba::cli
