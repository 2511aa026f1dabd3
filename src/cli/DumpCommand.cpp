// dump DOC.bal TRACE: one trace's samples as JSON, depths as stored (metres or minutes).

#include "cli/Command.h"
#include "cli/DocumentAccess.h"
#include "cli/JsonFormat.h"

#include <memory>

namespace ba::cli {
namespace {

struct DumpOptions {
    std::string document;
    std::string trace;
};

void RunDump(const DumpOptions& options, CommandContext& context)
{
    const auto doc = OpenOrFail(options.document, context.sink);
    const std::size_t index = ResolveTrace(*doc, options.trace, options.document);
    const CLineTrace& line = RequireLineTrace(doc->Trace(index), options.trace, options.document);

    Json json;
    json["name"] = line.Name();
    json["kind"] = doc->TraceKindCode(index);
    json["depths"] = FloatArrayJson(line.StoredDepths().Items());
    json["values"] = FloatArrayJson(line.Values().Items());
    context.out << JsonText(json);
}

} // namespace

Command AddDumpCommand(CLI::App& app)
{
    auto options = std::make_shared<DumpOptions>();
    CLI::App* sub = app.add_subcommand(
        "dump", "Print one trace's samples as JSON: {name, kind, depths, values}, depths in stored units.");
    sub->add_option("DOC.bal", options->document, "document to read")->required();
    sub->add_option("TRACE", options->trace, kTraceArgumentHelp)->required();
    return {sub, [options](CommandContext& context) { RunDump(*options, context); }};
}

} // namespace ba::cli
