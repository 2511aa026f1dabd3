// remove-trace DOC.bal TRACE -o OUT.bal: the document without one trace.

#include "cli/Command.h"
#include "cli/DocumentAccess.h"

#include "model/DocumentChanges.h"

#include <memory>

namespace ba::cli {
namespace {

struct RemoveTraceOptions {
    std::string document;
    std::string trace;
    std::string output;
};

void RunRemoveTrace(const RemoveTraceOptions& options, CommandContext& context)
{
    const auto doc = OpenOrFail(options.document, context.sink);
    const std::size_t index = ResolveTrace(*doc, options.trace, options.document);
    doc->Apply(MakeRemoveTracesChange("Delete " + doc->Trace(index).Name(), {index}));
    SaveOrFail(*doc, options.output, context.sink);
}

} // namespace

Command AddRemoveTraceCommand(CLI::App& app)
{
    auto options = std::make_shared<RemoveTraceOptions>();
    CLI::App* sub = app.add_subcommand("remove-trace", "Remove one trace and save the document to OUT.bal.");
    sub->add_option("DOC.bal", options->document, "document to read")->required();
    sub->add_option("TRACE", options->trace, kTraceArgumentHelp)->required();
    sub->add_option("-o,--output", options->output, "document to write; may be DOC.bal itself (saves are atomic)")
        ->required();
    return {sub, [options](CommandContext& context) { RunRemoveTrace(*options, context); }};
}

} // namespace ba::cli
