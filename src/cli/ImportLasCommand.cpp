// import-las [DOC.bal] IN.las -o OUT.bal: adds the curves of a LAS file to a document (or
// to a new one) as line traces and saves it.

#include "cli/Command.h"
#include "cli/DocumentAccess.h"
#include "cli/JsonFormat.h"
#include "io/LasImport.h"

#include <memory>
#include <string>

namespace ba::cli {
namespace {

constexpr const char* kImportLasHelp = R"(What is read:
  LAS 1.2, 2.0 and 3.0 files, wrapped or not, with blank, tab or comma delimiters, in
  UTF-8, UTF-16 or Windows-1252. The first curve is the index (depth or time); every
  other curve becomes a line trace named by its mnemonic, placed alternately in the left
  and the right track. Depths are stored in metres, times in minutes. LAS 3.0 files give
  their log data (~Log_Data or ~ASCII), or their first data section when they have none.
  Every repair made to the file's contents is reported on standard error, and a file that
  cannot be imported writes nothing.
Output: a JSON summary of the import (the document's title afterwards, traces added,
samples per trace, the display unit code of the depths and the top depth of a log view).
Depth units: 0 feet, 1 metres, 2 seconds, 3 minutes, 4 hours, 5 days.
)";

struct ImportLasOptions {
    std::string first;  // IN.las, or DOC.bal when IN.las follows
    std::string second; // IN.las after DOC.bal
    std::string output;
};

void RunImportLas(const ImportLasOptions& options, CommandContext& context)
{
    const bool intoDocument = !options.second.empty();
    const std::string& lasPath = intoDocument ? options.second : options.first;
    std::unique_ptr<CBoreAnalystDoc> doc =
        intoDocument ? OpenOrFail(options.first, context.sink) : std::make_unique<CBoreAnalystDoc>();

    const LasImportResult result = ImportLas(*doc, lasPath, context.sink);
    if (!result.imported) throw CommandFailure(kExitFailure, {});

    Json summary;
    summary["file"] = lasPath;
    summary["title"] = doc->DocumentTitle();
    summary["traces_added"] = result.tracesAdded;
    summary["traces_in_document"] = doc->TraceCount();
    summary["samples_per_trace"] = result.samplesPerTrace;
    summary["data_lines"] = result.dataLines;
    summary["rows_read"] = result.rowsRead;
    summary["depth_unit"] = result.depthUnit;
    summary["view_top_depth"] = FloatJson(result.viewTopDepth);
    SaveOrFail(*doc, options.output, context.sink);
    context.out << JsonText(summary);
}

} // namespace

Command AddImportLasCommand(CLI::App& app)
{
    auto options = std::make_shared<ImportLasOptions>();
    CLI::App* sub = app.add_subcommand(
        "import-las", "Add the curves of a LAS file to DOC.bal (or to a new document) and save it to OUT.bal.");
    sub->footer(kImportLasHelp);
    sub->add_option("FILE", options->first, "the LAS file, or the document to add to when IN.las follows")
        ->required();
    sub->add_option("IN.las", options->second, "the LAS file, after the document FILE");
    sub->add_option("-o,--output", options->output, "document to write; may be DOC.bal itself (saves are atomic)")
        ->required();
    return {sub, [options](CommandContext& context) { RunImportLas(*options, context); }};
}

} // namespace ba::cli
