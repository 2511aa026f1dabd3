// add-trace DOC.bal --name N --units U --samples FILE.csv -o OUT.bal: appends a line trace
// read from a "depth,value" file.

#include "cli/Command.h"
#include "cli/DocumentAccess.h"
#include "cli/OptionParsers.h"
#include "cli/SamplesCsv.h"
#include "cli/TextFields.h"
#include "base/FileIO.h"
#include "model/DocumentChanges.h"

#include <memory>
#include <string_view>

namespace ba::cli {
namespace {

constexpr const char* kSamplesFileHelp = R"(Samples file:
  One sample per line: DEPTH,VALUE, depth in stored units (metres, or minutes when
  --depth-unit is a time unit). Spaces around the fields, CRLF line ends and a UTF-8
  byte-order mark are accepted. Blank lines and lines starting with '#' are skipped. The
  first remaining line is skipped as a header when neither field is a number
  ("depth,value"). Numbers are decimal ("12.5", "-3", "1e3") and are read to the nearest
  32-bit float; -9999.99 marks a null (missing) sample. Depths must increase strictly from
  line to line. Every bad line is reported as FILE:LINE: reason, and then nothing is
  written.
Depth units: 0 feet, 1 metres, 2 seconds, 3 minutes, 4 hours, 5 days.
Pen styles: 0 solid, 1 dash, 2 dot, 3 dash-dot, 4 dash-dot-dot, 5 none.
Colours: 0 black, 1 red, 2 green, 3 blue, 4 magenta, 5 cyan, 6 yellow.
)";

struct AddTraceOptions {
    std::string document;
    std::string name;
    std::string units;
    std::int32_t track = 0;
    std::int32_t depthUnit = kDepthMetres;
    PenSpec pen;
    ScaleSpec scale;
    std::string penText;   // parsed into pen
    std::string scaleText; // parsed into scale
    std::string samples;
    std::string output;
};

SamplesCsv ReadSamplesOrFail(const std::string& path, IMessageSink& sink)
{
    std::vector<std::uint8_t> bytes;
    try {
        bytes = ReadWholeFile(path);
    } catch (const FileError& e) {
        throw CommandFailure(kExitFailure, "Error: cannot read \"" + path + "\": " + e.what() + ".");
    }
    SamplesCsv csv =
        ParseSamplesCsv(std::string_view(reinterpret_cast<const char*>(bytes.data()), bytes.size()), path);
    for (const auto& problem : csv.problems) sink.Error(problem);
    if (csv.badLineCount > 0) {
        std::string summary = "Error: \"" + path + "\" has " + std::to_string(csv.badLineCount) +
                              (csv.badLineCount == 1 ? " bad line" : " bad lines");
        if (csv.badLineCount > csv.problems.size()) {
            summary += " (the first " + std::to_string(csv.problems.size()) + " are listed)";
        }
        throw CommandFailure(kExitFailure, summary + "; nothing was written.");
    }
    if (csv.depths.empty()) {
        throw CommandFailure(kExitFailure, "Error: \"" + path + "\" holds no samples; nothing was written.");
    }
    return csv;
}

void RunAddTrace(const AddTraceOptions& options, CommandContext& context)
{
    const auto doc = OpenOrFail(options.document, context.sink);
    if (doc->TrackAt(options.track) == nullptr) {
        const std::string tracks = doc->TrackCount() == 0
                                       ? "no tracks"
                                       : "tracks 0 to " + std::to_string(doc->TrackCount() - 1);
        throw CommandFailure(kExitUsage,
                             "Error: --track " + std::to_string(options.track) + ": the document has " + tracks + ".");
    }
    const SamplesCsv csv = ReadSamplesOrFail(options.samples, context.sink);

    auto trace = std::make_unique<CLineTrace>(options.pen.width, options.pen.style, options.pen.colourIndex,
                                              options.scale.left, options.scale.right, options.name, options.units);
    trace->SetTrackIndex(options.track);
    trace->SetDepthUnit(options.depthUnit);
    trace->StoredDepths().Assign(csv.depths);
    trace->Values().Assign(csv.values);
    std::vector<std::unique_ptr<CTrace>> traces;
    traces.push_back(std::move(trace));
    doc->Apply(MakeAddTracesChange("Add " + options.name, std::move(traces)));
    SaveOrFail(*doc, options.output, context.sink);
}

} // namespace

Command AddAddTraceCommand(CLI::App& app)
{
    auto options = std::make_shared<AddTraceOptions>();
    CLI::App* sub = app.add_subcommand("add-trace", "Append a line trace read from a DEPTH,VALUE file and save "
                                                    "the document to OUT.bal.");
    sub->footer(kSamplesFileHelp);
    sub->add_option("DOC.bal", options->document, "document to read")->required();
    sub->add_option("--name", options->name, "trace name (at most 25 characters)")
        ->required()
        ->check(TraceTextValidator(false));
    sub->add_option("--units", options->units, "value units (at most 25 characters)")
        ->required()
        ->check(TraceTextValidator(true));
    sub->add_option("--track", options->track, "plot track index")->capture_default_str();
    sub->add_option("--depth-unit", options->depthUnit, "display depth unit code (see below)")
        ->capture_default_str()
        ->check(CLI::Range(kDepthFeet, kTimeDays));
    sub->add_option("--pen", options->penText, "pen width, style and colour index (default 1,0,0)")
        ->type_name("W,S,C")
        ->check(PenInto(options->pen));
    sub->add_option("--scale", options->scaleText, "values at the left and right track edges (default 0,100)")
        ->type_name("L,R")
        ->check(ScaleInto(options->scale));
    sub->add_option("--samples", options->samples, "DEPTH,VALUE file (see below)")->required();
    sub->add_option("-o,--output", options->output, "document to write; may be DOC.bal itself (saves are atomic)")
        ->required();
    return {sub, [options](CommandContext& context) { RunAddTrace(*options, context); }};
}

} // namespace ba::cli
