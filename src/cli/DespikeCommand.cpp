// despike DOC.bal TRACE --window N --k K [--name N] -o OUT.bal: replaces the spikes of a
// line trace by the running median.

#include "cli/Command.h"
#include "cli/OptionParsers.h"
#include "cli/TraceUtilityCommand.h"
#include "utilities/DespikeTrace.h"

#include <memory>
#include <string>

namespace ba::cli {
namespace {

constexpr const char* kDespikeFooter =
    R"(For each sample of the line trace TRACE, the window of N samples centred on it (N odd,
3 or more, at most the trace's sample count) gives a median M and a median absolute
deviation MAD (the median of the distances of the window's values from M, unscaled). A
sample farther than K x MAD from M (K greater than 0) becomes M; the others stay. Where
MAD is 0 every value other than M counts as a spike. A null (-9999.99) stays null and is
left out of every window; near either end a window holds only the samples that exist.
Without --name the trace is replaced; with it, the despiked trace is added after the
others as N. On success one line gives the result's name, its sample count and how many
values changed.
)";

struct DespikeOptions {
    UtilityArguments arguments;
    std::string kText;
    DespikeRequest request;
};

} // namespace

Command AddDespikeCommand(CLI::App& app)
{
    auto options = std::make_shared<DespikeOptions>();
    CLI::App* sub = app.add_subcommand("despike", "Replace the spikes of a line trace by its running median and save "
                                                  "the document to OUT.bal.");
    sub->footer(kDespikeFooter);
    AddDocumentAndTrace(*sub, options->arguments);
    sub->add_option("--window", options->request.window, "window length in samples, odd")->required()->type_name("N");
    sub->add_option("--k", options->kText, "spike threshold in MADs")
        ->required()
        ->type_name("K")
        ->check(FloatInto(options->request.k));
    AddNewNameOption(*sub, options->arguments);
    AddOutputOption(*sub, options->arguments);
    return {sub, [options](CommandContext& context) {
                DespikeRequest& request = options->request;
                request.newName = options->arguments.newName;
                RunTraceUtility(options->arguments, context,
                                [&](const CBoreAnalystDoc& doc, std::size_t index, IMessageSink& sink) {
                                    return MakeDespikeChange(doc, index, request, sink);
                                });
            }};
}

} // namespace ba::cli
