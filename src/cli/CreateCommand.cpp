// create DOC.bal --name N --units U --top T --bottom B --step S
// (--constant V | --ramp V0,V1 | --expr F) -o OUT.bal: adds a new line trace.

#include "cli/Command.h"
#include "cli/DocumentAccess.h"
#include "cli/NumberText.h"
#include "cli/OptionParsers.h"
#include "cli/TextFields.h"
#include "cli/TraceUtilityCommand.h"
#include "utilities/CreateTrace.h"
#include "utilities/TraceDepths.h"

#include <memory>
#include <string>
#include <string_view>

namespace ba::cli {
namespace {

constexpr const char* kCreateFooter =
    R"(The new line trace N has samples at T, T + S, T + 2S, ... down to B (T not below B, S
greater than 0; a last sample within a millionth of S of B counts as at B), at most
100000000 of them. T, B and S are in the depth unit of the document's first trace, which
the new trace takes too (metres in a document without traces). Its values:
  --constant V   V at every sample
  --ramp V0,V1   V0 at T rising (or falling) linearly, sample by sample, to V1 at the
                 last sample
  --expr F       the formula F (as the formula command reads it) at each sample's depth;
                 DEPTH is that depth, and the traces F names are read at it
The trace's plot scale spans its values. A name already taken stops the command with
status 1 and nothing is written. On success one line gives the name, the sample count
and the first and last depths.
)";

struct CreateOptions {
    std::string document;
    std::string output;
    std::string topText;
    std::string bottomText;
    std::string stepText;
    std::string constantText;
    std::string rampText;
    std::string formula;
    CreateRequest request;
};

// "V0,V1", read into `start` and `end` while the command line is parsed.
CLI::Validator RampInto(float& start, float& end)
{
    return CLI::Validator(
        [&start, &end](std::string& text) -> std::string {
            const auto comma = text.find(',');
            if (comma == std::string::npos || ParseFloat(std::string_view(text).substr(0, comma), start) !=
                                                  NumberProblem::None ||
                ParseFloat(std::string_view(text).substr(comma + 1), end) != NumberProblem::None) {
                return "expected V0,V1 (two decimal numbers), got " + QuoteForMessage(text);
            }
            return {};
        },
        "");
}

void RunCreate(CreateOptions& options, CommandContext& context)
{
    CreateRequest& request = options.request;
    request.source = !options.constantText.empty() ? CreateSource::Constant
                     : !options.rampText.empty()   ? CreateSource::Ramp
                                                   : CreateSource::Formula;
    request.formula = options.formula;
    const auto doc = OpenOrFail(options.document, context.sink);
    auto change = MakeCreateChange(*doc, request, context.sink);
    if (!change) throw CommandFailure(kExitFailure, {});
    doc->Apply(std::move(change));
    SaveOrFail(*doc, options.output, context.sink);
    const CTrace& created = doc->Trace(doc->TraceCount() - 1);
    context.out << created.Name() << ": " << created.SampleCount() << (created.SampleCount() == 1 ? " sample, " : " samples, ")
                << DepthText(created.FirstDepth(), created.DepthUnit()) << " to "
                << DepthText(created.LastDepth(), created.DepthUnit()) << '\n';
}

} // namespace

Command AddCreateCommand(CLI::App& app)
{
    auto options = std::make_shared<CreateOptions>();
    CLI::App* sub = app.add_subcommand("create", "Add a new line trace of a constant, a ramp or a formula from T to "
                                                 "B at S and save the document to OUT.bal.");
    sub->footer(kCreateFooter);
    sub->add_option("DOC.bal", options->document, "document to read")->required();
    sub->add_option("--name", options->request.name, "name of the new trace (at most 25 characters)")
        ->required()
        ->type_name("N")
        ->check(TraceTextValidator(false));
    sub->add_option("--units", options->request.units, "value units (at most 25 characters)")
        ->required()
        ->type_name("U")
        ->check(TraceTextValidator(true));
    sub->add_option("--top", options->topText, "first depth")
        ->required()
        ->type_name("T")
        ->check(DoubleInto(options->request.interval.top));
    sub->add_option("--bottom", options->bottomText, "last depth at most")
        ->required()
        ->type_name("B")
        ->check(DoubleInto(options->request.interval.bottom));
    sub->add_option("--step", options->stepText, "sample spacing")
        ->required()
        ->type_name("S")
        ->check(DoubleInto(options->request.step));
    auto* values = sub->add_option_group("values", "what the samples hold (one of)");
    values->add_option("--constant", options->constantText, "the value V at every sample")
        ->type_name("V")
        ->check(FloatInto(options->request.constant));
    values->add_option("--ramp", options->rampText, "a ramp from V0 to V1")
        ->type_name("V0,V1")
        ->check(RampInto(options->request.rampStart, options->request.rampEnd));
    values->add_option("--expr", options->formula, "a formula of the depth and the document's traces")
        ->type_name("F");
    values->require_option(1);
    sub->add_option("-o,--output", options->output, "document to write; may be DOC.bal itself (saves are atomic)")
        ->required();
    return {sub, [options](CommandContext& context) { RunCreate(*options, context); }};
}

} // namespace ba::cli
