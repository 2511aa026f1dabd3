// paste-block DOC.bal BLOCK.bin [--answer yes|no] -o OUT.bal: pastes a clipboard block
// into a document, answering the synchronisation questions from the command line.

#include "cli/Command.h"
#include "cli/DocumentAccess.h"
#include "cli/JsonFormat.h"
#include "base/FileIO.h"
#include "model/TraceClipboard.h"

#include <memory>

namespace ba::cli {
namespace {

constexpr const char* kPasteBlockFooter = R"(
BLOCK.bin holds a clipboard block as copy-block writes it. A trace whose vertical axis
(depth or time) differs from the document's raises a question; it is printed to standard
error followed by the answer --answer gives (default: no). Yes re-indexes the trace
through the document's "Time" (or "Depth") trace. A malformed block is refused and
nothing is written. Standard output gives what was pasted as JSON; "top_depth" is the
depth at the top of the log views, set only when the document held no traces before.
)";

struct PasteBlockOptions {
    std::string document;
    std::string block;
    std::string answer = "no";
    std::string output;
};

// Answers every question the same way and shows both on standard error.
class FixedAnswer final : public IYesNoQuestion {
public:
    FixedAnswer(bool yes, IMessageSink& sink) : m_yes(yes), m_sink(sink) {}
    bool AskYesNo(const std::string& text) override
    {
        m_sink.Warning(text);
        m_sink.Info(m_yes ? "Answer: Yes" : "Answer: No");
        return m_yes;
    }

private:
    bool m_yes;
    IMessageSink& m_sink;
};

void RunPasteBlock(const PasteBlockOptions& options, CommandContext& context)
{
    const auto doc = OpenOrFail(options.document, context.sink);
    std::vector<std::uint8_t> bytes;
    try {
        bytes = ReadWholeFile(options.block);
    } catch (const FileError& e) {
        throw CommandFailure(kExitFailure, "Error: cannot read \"" + options.block + "\": " + e.what() + ".");
    }

    FixedAnswer answer(options.answer == "yes", context.sink);
    const PasteResult result =
        PasteTraces(*doc, std::span<const std::uint8_t>(bytes), "\"" + options.block + "\"", answer, context.sink);
    if (result.refused) throw CommandFailure(kExitFailure, {});
    SaveOrFail(*doc, options.output, context.sink);

    Json json;
    json["added"] = result.added;
    json["left_out"] = result.skipped;
    json["synchronised"] = result.synchronised;
    json["dropped_samples"] = result.droppedSamples;
    json["top_depth"] = result.topDepth ? Json(*result.topDepth) : Json(nullptr);
    context.out << JsonText(json);
}

} // namespace

Command AddPasteBlockCommand(CLI::App& app)
{
    auto options = std::make_shared<PasteBlockOptions>();
    CLI::App* sub =
        app.add_subcommand("paste-block", "Paste the traces of a clipboard block file and save to OUT.bal.");
    sub->add_option("DOC.bal", options->document, "document to paste into")->required();
    sub->add_option("BLOCK.bin", options->block, "clipboard block file")->required();
    sub->add_option("--answer", options->answer, "answer to every axis question: yes or no (default: no)")
        ->check(CLI::IsMember({"yes", "no"}));
    sub->add_option("-o,--output", options->output, "document to write; may be DOC.bal itself (saves are atomic)")
        ->required();
    sub->footer(kPasteBlockFooter);
    return {sub, [options](CommandContext& context) { RunPasteBlock(*options, context); }};
}

} // namespace ba::cli
