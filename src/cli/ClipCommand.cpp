// clip DOC.bal TRACE --min A --max B [--null] [--name N] -o OUT.bal: holds a line trace's
// values within A..B.

#include "cli/Command.h"
#include "cli/OptionParsers.h"
#include "cli/TraceUtilityCommand.h"
#include "utilities/ClipTrace.h"

#include <memory>
#include <string>

namespace ba::cli {
namespace {

constexpr const char* kClipFooter =
    R"(Values of the line trace TRACE below A become A and values above B become B; with
--null both become null (-9999.99) instead. A must not be above B. Nulls stay null.
Without --name the trace is replaced; with it, the clipped trace is added after the
others as N. On success one line gives the result's name, its sample count and how many
values changed.
)";

struct ClipOptions {
    UtilityArguments arguments;
    std::string minText;
    std::string maxText;
    ClipRequest request;
};

} // namespace

Command AddClipCommand(CLI::App& app)
{
    auto options = std::make_shared<ClipOptions>();
    CLI::App* sub = app.add_subcommand("clip", "Hold a line trace's values within A..B, or null those outside, and "
                                               "save the document to OUT.bal.");
    sub->footer(kClipFooter);
    AddDocumentAndTrace(*sub, options->arguments);
    sub->add_option("--min", options->minText, "lowest value kept")
        ->required()
        ->type_name("A")
        ->check(FloatInto(options->request.minimum));
    sub->add_option("--max", options->maxText, "highest value kept")
        ->required()
        ->type_name("B")
        ->check(FloatInto(options->request.maximum));
    sub->add_flag("--null", options->request.toNull, "make values outside A..B null");
    AddNewNameOption(*sub, options->arguments);
    AddOutputOption(*sub, options->arguments);
    return {sub, [options](CommandContext& context) {
                ClipRequest& request = options->request;
                request.newName = options->arguments.newName;
                RunTraceUtility(options->arguments, context,
                                [&](const CBoreAnalystDoc& doc, std::size_t index, IMessageSink& sink) {
                                    return MakeClipChange(doc, index, request, sink);
                                });
            }};
}

} // namespace ba::cli
