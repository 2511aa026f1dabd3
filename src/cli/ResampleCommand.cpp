// resample DOC.bal TRACE --step S [--method linear|average|nearest] [--top T --bottom B]
// [--name N] -o OUT.bal: puts a line trace's samples onto a regular step.

#include "cli/Command.h"
#include "cli/DocumentAccess.h"
#include "cli/NumberText.h"
#include "cli/TraceUtilityCommand.h"
#include "utilities/Resample.h"
#include "utilities/TraceDepths.h"

#include <map>
#include <memory>
#include <string>

namespace ba::cli {
namespace {

constexpr const char* kResampleFooter =
    R"(Depths and S are in TRACE's display unit (info shows its depth_unit). The new samples lie
at T, T + S, T + 2S, ... up to B; without --top and --bottom, T and B are the trace's first
and last depths. Methods:
  linear   the straight line between the two samples around each new depth
  average  the mean of the samples within half a step above and below each new depth
  nearest  the value of the nearest sample (the upper one of two as near), for
           discrete logs: codes, flags, zone numbers
Without --method, linear is used when S is no longer than the trace's mean sample spacing
and average when it is longer. Nothing is extrapolated: new depths above the first
sample or below the last are null (-9999.99), and a null never enters a value (a line
from a null is null, an average leaves nulls out). Only line traces can be resampled.
Without --name the trace is replaced; with it, the resampled trace is added after the
others as N. On success one line gives the trace, the sample counts before and after,
the step, the range and the method.
)";

const std::map<std::string, ResampleMethod> kMethods = {
    {"linear", ResampleMethod::Linear}, {"average", ResampleMethod::Average}, {"nearest", ResampleMethod::Nearest}};

const char* MethodWord(ResampleMethod method)
{
    switch (method) {
    case ResampleMethod::Average: return "average";
    case ResampleMethod::Nearest: return "nearest";
    case ResampleMethod::Automatic:
    case ResampleMethod::Linear: return "linear";
    }
    return "linear";
}

struct ResampleOptions {
    UtilityArguments arguments;
    std::string method;
    std::string stepText;
    std::string topText;
    std::string bottomText;
    double top = 0.0;
    double bottom = 0.0;
    ResampleRequest request;
};

void RunResample(ResampleOptions& options, CommandContext& context)
{
    const UtilityArguments& arguments = options.arguments;
    const auto doc = OpenOrFail(arguments.document, context.sink);
    const std::size_t index = ResolveTrace(*doc, arguments.trace, arguments.document);
    ResampleRequest& request = options.request;
    request.newName = arguments.newName;
    if (!options.method.empty()) request.method = kMethods.at(options.method);
    if (!options.topText.empty()) request.top = options.top;
    if (!options.bottomText.empty()) request.bottom = options.bottom;
    const CTrace& source = doc->Trace(index);
    const std::size_t before = source.SampleCount();
    ResampleMethod method = request.method;
    if (method == ResampleMethod::Automatic) {
        if (const auto* line = dynamic_cast<const CLineTrace*>(&source)) {
            method = AutomaticResampleMethod(*line, request.step);
        }
    }
    auto change = ResampleTrace(*doc, index, request, context.sink);
    if (!change) throw CommandFailure(kExitFailure, {});
    doc->Apply(std::move(change));
    SaveOrFail(*doc, arguments.output, context.sink);
    const CTrace& resampled = request.newName.empty() ? doc->Trace(index) : doc->Trace(doc->TraceCount() - 1);
    const std::string unit(DepthUnitSymbol(resampled.DepthUnit()));
    context.out << resampled.Name() << ": " << before << " -> " << resampled.SampleCount() << " samples every "
                << ShortestText(static_cast<float>(request.step)) << " " << unit << ", " << ShortestText(resampled.FirstDepth()) << ".."
                << ShortestText(resampled.LastDepth()) << " " << unit << " (" << MethodWord(method) << ")\n";
}

} // namespace

Command AddResampleCommand(CLI::App& app)
{
    auto options = std::make_shared<ResampleOptions>();
    CLI::App* sub = app.add_subcommand("resample", "Resample a line trace at a regular step and save the document "
                                                   "to OUT.bal.");
    sub->footer(kResampleFooter);
    AddDocumentAndTrace(*sub, options->arguments);
    sub->add_option("--step", options->stepText, "the new sample spacing")
        ->required()
        ->type_name("S")
        ->check(DoubleInto(options->request.step));
    sub->add_option("--method", options->method, "how the new values are found (see below)")
        ->type_name("linear|average|nearest")
        ->check(CLI::IsMember({"linear", "average", "nearest"}));
    auto* top = sub->add_option("--top", options->topText, "first new depth")
                    ->type_name("T")
                    ->check(DoubleInto(options->top));
    auto* bottom = sub->add_option("--bottom", options->bottomText, "last new depth at most")
                       ->type_name("B")
                       ->check(DoubleInto(options->bottom));
    top->needs(bottom);
    bottom->needs(top);
    AddNewNameOption(*sub, options->arguments);
    AddOutputOption(*sub, options->arguments);
    return {sub, [options](CommandContext& context) { RunResample(*options, context); }};
}

} // namespace ba::cli
