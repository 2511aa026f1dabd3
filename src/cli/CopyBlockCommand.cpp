// copy-block DOC.bal TRACE... -o BLOCK.bin: the clipboard block of some traces, as a file.

#include "cli/Command.h"
#include "cli/DocumentAccess.h"
#include "base/FileIO.h"
#include "model/TraceClipboard.h"

#include <memory>
#include <vector>

namespace ba::cli {
namespace {

constexpr const char* kCopyBlockFooter = R"(
The file holds exactly the bytes the desktop application puts on the clipboard under
the format "BoreAnalystTraceData". Only line traces can be copied in this version.
)";

struct CopyBlockOptions {
    std::string document;
    std::vector<std::string> traces;
    std::string output;
};

void RunCopyBlock(const CopyBlockOptions& options, CommandContext& context)
{
    const auto doc = OpenOrFail(options.document, context.sink);
    std::vector<const CTrace*> traces;
    traces.reserve(options.traces.size());
    for (const auto& ref : options.traces) traces.push_back(&doc->Trace(ResolveTrace(*doc, ref, options.document)));

    const auto block = CopyTraces(traces, context.sink);
    if (!block) throw CommandFailure(kExitFailure, {});
    try {
        WriteFileAtomically(options.output, *block);
    } catch (const FileError& e) {
        throw CommandFailure(kExitFailure, "Error: cannot write \"" + options.output + "\": " + e.what() + ".");
    }
}

} // namespace

Command AddCopyBlockCommand(CLI::App& app)
{
    auto options = std::make_shared<CopyBlockOptions>();
    CLI::App* sub = app.add_subcommand("copy-block", "Write the clipboard block of one or more traces to BLOCK.bin.");
    sub->add_option("DOC.bal", options->document, "document to read")->required();
    sub->add_option("TRACE", options->traces, std::string(kTraceArgumentHelp) + "; several are copied in order")
        ->required();
    sub->add_option("-o,--output", options->output, "block file to write (saves are atomic)")->required();
    sub->footer(kCopyBlockFooter);
    return {sub, [options](CommandContext& context) { RunCopyBlock(*options, context); }};
}

} // namespace ba::cli
