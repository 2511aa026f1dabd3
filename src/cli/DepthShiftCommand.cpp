// depth-shift DOC.bal TRACE (--by D | --ties FROM:TO,...) [--name N] -o OUT.bal: moves a
// trace's depths by a constant or by tie points, in place or into a new trace.

#include "cli/Command.h"
#include "cli/DocumentAccess.h"
#include "cli/NumberText.h"
#include "cli/TraceUtilityCommand.h"
#include "utilities/DepthShift.h"
#include "utilities/TraceDepths.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace ba::cli {
namespace {

constexpr const char* kDepthShiftFooter =
    R"(Depths are in TRACE's display unit (info shows its depth_unit). --by D adds D to every
depth. --ties FROM:TO,... moves each depth FROM to TO: between two tie points the shift
changes linearly (the interval is stretched or squeezed), above the first and below the
last it is that tie point's own shift, so one tie point is a constant shift. Tie points
may come in any order, but no two may share a FROM, and a greater FROM must have a
greater TO. Every kind of trace can be shifted; values and image rows stay with their
depths. Without --name the trace is shifted in place; with it, a shifted copy named N is
added after the other traces. Depths that would not ascend strictly, or a name already
taken, stop the command with status 1 and nothing is written. On success one line gives
the trace, its sample count and its depth range before and after.
)";

struct DepthShiftOptions {
    UtilityArguments arguments;
    std::string byText;
    double by = 0.0;
    std::string tiesText;
    std::vector<DepthTie> ties;
};

// One number of a tie point, read as DoubleInto reads an option.
bool ReadTieDepth(std::string_view text, double& depth)
{
    std::string copy(text);
    return DoubleInto(depth)(copy).empty();
}

// "FROM:TO,FROM:TO,...", read into `target` while the command line is parsed.
CLI::Validator TiesInto(std::vector<DepthTie>& target)
{
    return CLI::Validator(
        [&target](std::string& text) -> std::string {
            target.clear();
            std::string_view rest = text;
            while (true) {
                const auto comma = rest.find(',');
                const std::string_view pair = rest.substr(0, comma);
                const auto colon = pair.find(':');
                DepthTie tie;
                if (colon == std::string_view::npos || !ReadTieDepth(pair.substr(0, colon), tie.from) ||
                    !ReadTieDepth(pair.substr(colon + 1), tie.to)) {
                    return "tie point " + QuoteForMessage(pair) + " is not FROM:TO (two decimal numbers)";
                }
                target.push_back(tie);
                if (comma == std::string_view::npos) return {};
                rest.remove_prefix(comma + 1);
            }
        },
        "");
}

std::string RangeText(const CTrace& trace)
{
    return ShortestText(trace.FirstDepth()) + ".." + ShortestText(trace.LastDepth()) + " " +
           std::string(DepthUnitSymbol(trace.DepthUnit()));
}

void RunDepthShift(const DepthShiftOptions& options, CommandContext& context)
{
    const UtilityArguments& arguments = options.arguments;
    const auto doc = OpenOrFail(arguments.document, context.sink);
    const std::size_t index = ResolveTrace(*doc, arguments.trace, arguments.document);
    const std::string before = RangeText(doc->Trace(index));
    auto change = options.tiesText.empty()
                      ? ShiftDepthsBy(*doc, index, options.by, arguments.newName, context.sink)
                      : ShiftDepthsByTies(*doc, index, options.ties, arguments.newName, context.sink);
    if (!change) throw CommandFailure(kExitFailure, {});
    doc->Apply(std::move(change));
    SaveOrFail(*doc, arguments.output, context.sink);
    const CTrace& shifted = arguments.newName.empty() ? doc->Trace(index) : doc->Trace(doc->TraceCount() - 1);
    context.out << shifted.Name() << ": " << shifted.SampleCount() << " samples, " << before << " -> "
                << RangeText(shifted) << '\n';
}

} // namespace

Command AddDepthShiftCommand(CLI::App& app)
{
    auto options = std::make_shared<DepthShiftOptions>();
    CLI::App* sub = app.add_subcommand("depth-shift", "Shift a trace's depths by a constant or by tie points and "
                                                      "save the document to OUT.bal.");
    sub->footer(kDepthShiftFooter);
    AddDocumentAndTrace(*sub, options->arguments);
    auto* shift = sub->add_option_group("shift", "how the depths move (one of)");
    shift->add_option("--by", options->byText, "the shift D added to every depth")
        ->type_name("D")
        ->check(DoubleInto(options->by));
    shift->add_option("--ties", options->tiesText, "tie points: the depth FROM moves to TO")
        ->type_name("FROM:TO,...")
        ->check(TiesInto(options->ties));
    shift->require_option(1);
    AddNewNameOption(*sub, options->arguments);
    AddOutputOption(*sub, options->arguments);
    return {sub, [options](CommandContext& context) { RunDepthShift(*options, context); }};
}

} // namespace ba::cli
