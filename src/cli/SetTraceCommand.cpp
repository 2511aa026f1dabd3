// set-trace DOC.bal TRACE [--name N] [--units U] [--scale L,R] [--track T] [--pen W,S,C]
// [--hide | --show] -o OUT.bal: the trace property sheet from the command line.

#include "cli/Command.h"
#include "cli/DocumentAccess.h"
#include "cli/OptionParsers.h"
#include "model/TraceProperties.h"

#include <memory>

namespace ba::cli {
namespace {

struct SetTraceOptions {
    std::string document;
    std::string trace;
    std::string output;
    TracePropertyEdit edit;
    std::string name;
    std::string units;
    std::int32_t track = 0;
    PenSpec pen;
    ScaleSpec scale;
    std::string penText;
    std::string scaleText;
    bool hide = false;
    bool show = false;
};

void RunSetTrace(SetTraceOptions& options, CLI::App& sub, CommandContext& context)
{
    const auto doc = OpenOrFail(options.document, context.sink);
    CTrace& trace = doc->Trace(ResolveTrace(*doc, options.trace, options.document));
    TracePropertyEdit& edit = options.edit;
    if (sub.count("--name") > 0) edit.name = options.name;
    if (sub.count("--units") > 0) edit.units = options.units;
    if (sub.count("--track") > 0) edit.trackIndex = options.track;
    if (sub.count("--scale") > 0) {
        edit.scaleLeft = options.scale.left;
        edit.scaleRight = options.scale.right;
    }
    if (sub.count("--pen") > 0) {
        edit.penWidth = options.pen.width;
        edit.penStyle = options.pen.style;
        edit.colourIndex = options.pen.colourIndex;
    }
    if (options.hide) edit.hidden = true;
    if (options.show) edit.hidden = false;
    if (!ApplyTraceProperties(*doc, trace, edit, context.sink)) throw CommandFailure(kExitFailure, "");
    SaveOrFail(*doc, options.output, context.sink);
}

} // namespace

Command AddSetTraceCommand(CLI::App& app)
{
    auto options = std::make_shared<SetTraceOptions>();
    CLI::App* sub = app.add_subcommand(
        "set-trace", "Change a trace's name, units, scale, track, pen or visibility and save to OUT.bal.");
    sub->add_option("DOC.bal", options->document, "document to read")->required();
    sub->add_option("TRACE", options->trace, kTraceArgumentHelp)->required();
    sub->add_option("--name", options->name, "new trace name");
    sub->add_option("--units", options->units, "new unit label");
    sub->add_option("--scale", options->scaleText, "L,R: values at the left and right edges of the track")
        ->check(ScaleInto(options->scale));
    sub->add_option("--track", options->track, "track index (0 left, 1 right, 2 right-left, 3 right-right)");
    sub->add_option("--pen", options->penText, "W,S,C: pen width, style and colour index (line traces)")
        ->check(PenInto(options->pen));
    auto* hide = sub->add_flag("--hide", options->hide, "hide the trace (it keeps its data and legend)");
    sub->add_flag("--show", options->show, "show a hidden trace")->excludes(hide);
    sub->add_option("-o,--output", options->output, "document to write; may be DOC.bal itself (saves are atomic)")
        ->required();
    return {sub, [options, sub](CommandContext& context) { RunSetTrace(*options, *sub, context); }};
}

} // namespace ba::cli
