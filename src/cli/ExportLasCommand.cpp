// export-las DOC.bal OUT.las: every line trace of a document as a LAS 2.0 file.

#include "cli/Command.h"
#include "cli/DocumentAccess.h"
#include "io/LasExport.h"

#include <memory>

namespace ba::cli {
namespace {

struct ExportLasOptions {
    std::string document;
    std::string output;
};

void RunExportLas(const ExportLasOptions& options, CommandContext& context)
{
    const auto doc = OpenOrFail(options.document, context.sink);
    if (!ExportLas(*doc, options.output, context.sink)) throw CommandFailure(kExitFailure, {});
}

} // namespace

Command AddExportLasCommand(CLI::App& app)
{
    auto options = std::make_shared<ExportLasOptions>();
    CLI::App* sub = app.add_subcommand(
        "export-las", "Write every line trace of a document to a LAS 2.0 file, one curve per trace, on a common "
                      "depth grid from the deepest depth up to the shallowest, at the first trace's sampling "
                      "step; a value missing at a depth is written as -9999.99.");
    sub->add_option("DOC.bal", options->document, "document to read")->required();
    sub->add_option("OUT.las", options->output, "LAS file to write (replaced if it exists)")->required();
    return {sub, [options](CommandContext& context) { RunExportLas(*options, context); }};
}

} // namespace ba::cli
