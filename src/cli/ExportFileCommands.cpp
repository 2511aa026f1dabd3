// export-las DOC.bal OUT.las and export-text DOC.bal OUT.txt: every line trace of a
// document written to a file, as a LAS 2.0 file or as columns of a text table. The two
// differ only in the export they run.

#include "cli/Command.h"
#include "cli/DocumentAccess.h"
#include "io/LasExport.h"
#include "io/TextExport.h"

#include <filesystem>
#include <memory>
#include <string>

namespace ba::cli {
namespace {

using FileExport = bool (*)(const CBoreAnalystDoc& doc, const std::filesystem::path& path, IMessageSink& sink);

struct FileExportCommand {
    const char* name;
    const char* description;
    const char* outputName; // "OUT.las"
    const char* outputHelp;
    FileExport exportTo;
};

struct FileExportOptions {
    std::string document;
    std::string output;
};

void RunFileExport(FileExport exportTo, const FileExportOptions& options, CommandContext& context)
{
    const auto doc = OpenOrFail(options.document, context.sink);
    if (!exportTo(*doc, options.output, context.sink)) throw CommandFailure(kExitFailure, {});
}

Command AddFileExportCommand(CLI::App& app, const FileExportCommand& command)
{
    auto options = std::make_shared<FileExportOptions>();
    CLI::App* sub = app.add_subcommand(command.name, command.description);
    sub->add_option("DOC.bal", options->document, "document to read")->required();
    sub->add_option(command.outputName, options->output, command.outputHelp)->required();
    const FileExport exportTo = command.exportTo;
    return {sub, [options, exportTo](CommandContext& context) { RunFileExport(exportTo, *options, context); }};
}

} // namespace

Command AddExportLasCommand(CLI::App& app)
{
    return AddFileExportCommand(
        app, {"export-las",
              "Write every line trace of a document to a LAS 2.0 file, one curve per trace, on a common depth grid "
              "from the deepest depth up to the shallowest, at the first trace's sampling step; a value missing at "
              "a depth is written as -9999.99.",
              "OUT.las", "LAS file to write (replaced if it exists)", ExportLas});
}

Command AddExportTextCommand(CLI::App& app)
{
    return AddFileExportCommand(
        app, {"export-text",
              "Write every line trace of a document to a text table: a line of quoted names, a line of quoted "
              "units, then one row per depth from the shallowest depth down to the deepest, at the first line "
              "trace's sampling step; a value missing at a depth is written as -9999.99.",
              "OUT.txt", "text file to write (replaced if it exists)", ExportText});
}

} // namespace ba::cli
