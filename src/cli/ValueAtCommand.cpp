// value-at DOC.bal TRACE DEPTH: the value a line trace has at a display depth.

#include "cli/Command.h"
#include "cli/DocumentAccess.h"
#include "cli/NumberText.h"
#include "cli/OptionParsers.h"

#include <memory>

namespace ba::cli {
namespace {

struct ValueAtOptions {
    std::string document;
    std::string trace;
    std::string depthText;
    float depth = 0.0f; // read from depthText while the command line is parsed
};

void RunValueAt(const ValueAtOptions& options, CommandContext& context)
{
    const auto doc = OpenOrFail(options.document, context.sink);
    const std::size_t index = ResolveTrace(*doc, options.trace, options.document);
    const CLineTrace& line = RequireLineTrace(doc->Trace(index), options.trace, options.document);
    context.out << ShortestText(line.ValueAt(options.depth)) << '\n';
}

} // namespace

Command AddValueAtCommand(CLI::App& app)
{
    auto options = std::make_shared<ValueAtOptions>();
    CLI::App* sub = app.add_subcommand(
        "value-at", "Print a line trace's value at DEPTH: the sample there, the interpolation between the two "
                    "samples around it, or the null value -9999.99 when a neighbour is null or DEPTH is not "
                    "covered.");
    sub->add_option("DOC.bal", options->document, "document to read")->required();
    sub->add_option("TRACE", options->trace, kTraceArgumentHelp)->required();
    sub->add_option("DEPTH", options->depthText, "depth in the trace's display unit")
        ->required()
        ->type_name("NUMBER")
        ->check(FloatInto(options->depth));
    return {sub, [options](CommandContext& context) { RunValueAt(*options, context); }};
}

} // namespace ba::cli
