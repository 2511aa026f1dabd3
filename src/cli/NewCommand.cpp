// new OUT.bal [--title TEXT]: writes an empty document.

#include "cli/Command.h"
#include "cli/DocumentAccess.h"
#include "cli/TextFields.h"

#include <memory>

namespace ba::cli {
namespace {

struct NewOptions {
    std::string output;
    std::string title;
};

void RunNew(const NewOptions& options, CommandContext& context)
{
    CBoreAnalystDoc doc;
    doc.Header().SetTitle(options.title);
    SaveOrFail(doc, options.output, context.sink);
}

} // namespace

Command AddNewCommand(CLI::App& app)
{
    auto options = std::make_shared<NewOptions>();
    CLI::App* sub = app.add_subcommand("new", "Write an empty document (replacing OUT.bal if it exists).");
    sub->add_option("OUT.bal", options->output, "document to write")->required();
    sub->add_option("--title", options->title, "plot header title (default: empty)")
        ->check(DocumentTextValidator());
    return {sub, [options](CommandContext& context) { RunNew(*options, context); }};
}

} // namespace ba::cli
