// filter DOC.bal TRACE --kind mean|triangle|median --window N [--name N] -o OUT.bal:
// smooths a line trace.

#include "cli/Command.h"
#include "cli/TraceUtilityCommand.h"
#include "utilities/FilterTrace.h"

#include <map>
#include <memory>
#include <string>

namespace ba::cli {
namespace {

constexpr const char* kFilterFooter =
    R"(Each sample of the line trace TRACE becomes, over the window of N samples centred on it
(N odd, 3 or more, at most the trace's sample count):
  mean      the mean of the window's values
  triangle  their mean weighted 1, 2, ..., (N+1)/2, ..., 2, 1 towards the centre
  median    their median (of an even number of values: the mean of the middle two)
A null (-9999.99) stays null and is left out of every window; near either end a window
holds only the samples that exist (the weights of the missing ones drop out). Without
--name the trace is replaced; with it, the filtered trace is added after the others as
N. On success one line gives the result's name, its sample count and how many values
changed.
)";

const std::map<std::string, FilterKind> kKinds = {
    {"mean", FilterKind::Mean}, {"triangle", FilterKind::Triangle}, {"median", FilterKind::Median}};

struct FilterOptions {
    UtilityArguments arguments;
    std::string kind;
    FilterRequest request;
};

} // namespace

Command AddFilterCommand(CLI::App& app)
{
    auto options = std::make_shared<FilterOptions>();
    CLI::App* sub = app.add_subcommand("filter", "Smooth a line trace with a moving mean, a triangular mean or a "
                                                 "running median and save the document to OUT.bal.");
    sub->footer(kFilterFooter);
    AddDocumentAndTrace(*sub, options->arguments);
    sub->add_option("--kind", options->kind, "the filter (see below)")
        ->required()
        ->type_name("mean|triangle|median")
        ->check(CLI::IsMember({"mean", "triangle", "median"}));
    sub->add_option("--window", options->request.window, "window length in samples, odd")->required()->type_name("N");
    AddNewNameOption(*sub, options->arguments);
    AddOutputOption(*sub, options->arguments);
    return {sub, [options](CommandContext& context) {
                FilterRequest& request = options->request;
                request.kind = kKinds.at(options->kind);
                request.newName = options->arguments.newName;
                RunTraceUtility(options->arguments, context,
                                [&](const CBoreAnalystDoc& doc, std::size_t index, IMessageSink& sink) {
                                    return MakeFilterChange(doc, index, request, sink);
                                });
            }};
}

} // namespace ba::cli
