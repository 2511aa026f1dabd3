// export-text DOC.bal OUT.txt: every line trace of a document as columns of a text table.

#include "cli/Command.h"
#include "cli/DocumentAccess.h"
#include "io/TextExport.h"

#include <memory>

namespace ba::cli {
namespace {

struct ExportTextOptions {
    std::string document;
    std::string output;
};

void RunExportText(const ExportTextOptions& options, CommandContext& context)
{
    const auto doc = OpenOrFail(options.document, context.sink);
    if (!ExportText(*doc, options.output, context.sink)) throw CommandFailure(kExitFailure, {});
}

} // namespace

Command AddExportTextCommand(CLI::App& app)
{
    auto options = std::make_shared<ExportTextOptions>();
    CLI::App* sub = app.add_subcommand(
        "export-text", "Write every line trace of a document to a text table: a line of quoted names, a line of "
                       "quoted units, then one row per depth from the shallowest depth down to the deepest, at "
                       "the first line trace's sampling step; a value missing at a depth is written as "
                       "-9999.99.");
    sub->add_option("DOC.bal", options->document, "document to read")->required();
    sub->add_option("OUT.txt", options->output, "text file to write (replaced if it exists)")->required();
    return {sub, [options](CommandContext& context) { RunExportText(*options, context); }};
}

} // namespace ba::cli
