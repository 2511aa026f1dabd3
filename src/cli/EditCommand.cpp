// edit DOC.bal TRACE --top T --bottom B (--set V | --null | --interpolate | --delete)
// -o OUT.bal: changes a trace over a depth interval.

#include "cli/Command.h"
#include "cli/OptionParsers.h"
#include "cli/TraceUtilityCommand.h"
#include "utilities/EditTrace.h"

#include <memory>
#include <string>

namespace ba::cli {
namespace {

constexpr const char* kEditFooter =
    R"(T and B are depths in TRACE's display unit (info shows its depth_unit), T not below B;
the samples from T to B, both included, are edited:
  --set V        each takes the value V
  --null         each becomes null (-9999.99)
  --interpolate  each takes the value on the straight line (in depth) between the
                 nearest non-null samples before T and after B
  --delete       they are removed; for image, sonic and spectrum traces with their rows
--set, --null and --interpolate need a line trace. An interval without samples, an
interpolation with no value on one side, or a delete of every sample stops the command
with status 1 and nothing is written. The trace is replaced; on success one line gives
its name, its sample count and how many values changed or samples were removed.
)";

struct EditOptions {
    UtilityArguments arguments;
    std::string topText;
    std::string bottomText;
    std::string setText;
    bool setNull = false;
    bool interpolate = false;
    bool remove = false;
    EditRequest request;
};

} // namespace

Command AddEditCommand(CLI::App& app)
{
    auto options = std::make_shared<EditOptions>();
    CLI::App* sub = app.add_subcommand("edit", "Set, null, interpolate or delete a trace's samples from T to B and "
                                               "save the document to OUT.bal.");
    sub->footer(kEditFooter);
    AddDocumentAndTrace(*sub, options->arguments);
    AddIntervalOptions(*sub, options->topText, options->bottomText, options->request.interval);
    auto* action = sub->add_option_group("action", "what happens to the samples (one of)");
    action->add_option("--set", options->setText, "set each value to V")
        ->type_name("V")
        ->check(FloatInto(options->request.value));
    action->add_flag("--null", options->setNull, "make each value null");
    action->add_flag("--interpolate", options->interpolate, "interpolate across the interval");
    action->add_flag("--delete", options->remove, "delete the samples");
    action->require_option(1);
    AddOutputOption(*sub, options->arguments);
    return {sub, [options](CommandContext& context) {
                EditRequest& request = options->request;
                // FloatInto refuses an empty text, so --set was given exactly when its text is not empty.
                request.action = !options->setText.empty() ? EditAction::SetValue
                                 : options->setNull        ? EditAction::SetNull
                                 : options->interpolate    ? EditAction::Interpolate
                                                           : EditAction::Delete;
                RunTraceUtility(options->arguments, context,
                                [&](const CBoreAnalystDoc& doc, std::size_t index, IMessageSink& sink) {
                                    return MakeEditChange(doc, index, request, sink);
                                });
            }};
}

} // namespace ba::cli
