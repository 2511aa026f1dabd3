// cut DOC.bal TRACE --top T --bottom B (--keep | --remove) [--name N] -o OUT.bal: keeps
// only a depth interval of a trace, or removes it.

#include "cli/Command.h"
#include "cli/TraceUtilityCommand.h"
#include "utilities/CutTrace.h"

#include <memory>
#include <string>

namespace ba::cli {
namespace {

constexpr const char* kCutFooter =
    R"(T and B are depths in TRACE's display unit (info shows its depth_unit), T not below B.
--keep keeps the samples from T to B (both included) and drops the rest; --remove drops
them and keeps the rest. Every kind of trace can be cut: image, sonic and spectrum traces
keep or lose their rows with their depths. An interval without samples, or a --remove of
every sample, stops the command with status 1 and nothing is written. Without --name the
trace is replaced; with it, the cut trace is added after the others as N. On success one
line gives the result's name, its sample count and how many samples were removed.
)";

struct CutOptions {
    UtilityArguments arguments;
    std::string topText;
    std::string bottomText;
    bool keep = false;
    bool remove = false;
    CutRequest request;
};

} // namespace

Command AddCutCommand(CLI::App& app)
{
    auto options = std::make_shared<CutOptions>();
    CLI::App* sub = app.add_subcommand("cut", "Keep only the samples of a trace from T to B, or remove them, and save "
                                              "the document to OUT.bal.");
    sub->footer(kCutFooter);
    AddDocumentAndTrace(*sub, options->arguments);
    AddIntervalOptions(*sub, options->topText, options->bottomText, options->request.interval);
    auto* mode = sub->add_option_group("mode", "what is kept (one of)");
    mode->add_flag("--keep", options->keep, "keep the interval, drop the rest");
    mode->add_flag("--remove", options->remove, "drop the interval, keep the rest");
    mode->require_option(1);
    AddNewNameOption(*sub, options->arguments);
    AddOutputOption(*sub, options->arguments);
    return {sub, [options](CommandContext& context) {
                CutRequest& request = options->request;
                request.mode = options->keep ? CutMode::Keep : CutMode::Remove;
                request.newName = options->arguments.newName;
                RunTraceUtility(options->arguments, context,
                                [&](const CBoreAnalystDoc& doc, std::size_t index, IMessageSink& sink) {
                                    return MakeCutChange(doc, index, request, sink);
                                });
            }};
}

} // namespace ba::cli
