// export-image DOC.bal TRACE OUT.dat: one image trace written as a table, a line per row
// with its depth and raw samples.

#include "cli/Command.h"
#include "cli/DocumentAccess.h"
#include "io/ImageExport.h"

#include <memory>
#include <string>

namespace ba::cli {
namespace {

struct ExportImageOptions {
    std::string document;
    std::string trace;
    std::string output;
};

void RunExportImage(const ExportImageOptions& options, CommandContext& context)
{
    const auto doc = OpenOrFail(options.document, context.sink);
    const std::size_t index = ResolveTrace(*doc, options.trace, options.document);
    // The named trace is the selection, as the desktop app's selected traces are.
    const CTrace* const selected[] = {&doc->Trace(index)};
    const CImageTrace* image = ImageTraceToExport(selected, context.sink);
    if (image == nullptr || !ExportImageAscii(*image, options.output, context.sink)) {
        throw CommandFailure(kExitFailure, {});
    }
}

} // namespace

Command AddExportImageCommand(CLI::App& app)
{
    auto options = std::make_shared<ExportImageOptions>();
    CLI::App* sub = app.add_subcommand(
        "export-image", "Write one image trace (sonic and spectrum traces included) to a text table: one line per "
                        "row, the row's depth in the trace's display unit, then its samples (0 to 65535).");
    sub->add_option("DOC.bal", options->document, "document to read")->required();
    sub->add_option("TRACE", options->trace, kTraceArgumentHelp)->required();
    sub->add_option("OUT.dat", options->output, "file to write (replaced if it exists)")->required();
    return {sub, [options](CommandContext& context) { RunExportImage(*options, context); }};
}

} // namespace ba::cli
