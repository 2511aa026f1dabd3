// plot DOC.bal -o OUT.png|OUT.pdf: renders the log plot the window shows, without a
// window: a PNG image, or a vector PDF page of the same size.

#include "cli/Command.h"
#include "cli/DocumentAccess.h"
#include "cli/GuiApplication.h"
#include "cli/OptionParsers.h"
#include "view/LogPlotRenderer.h"
#include "view/PlotFileExport.h"
#include "view/PlotText.h"

#include <cmath>
#include <filesystem>
#include <limits>
#include <memory>
#include <optional>
#include <string>

namespace ba::cli {
namespace {

constexpr int kSmallestSide = 16;
constexpr int kLargestSide = 20000;

struct PlotOptions {
    std::string document;
    std::string output;
    std::string topText;
    float top = 0.0f;
    std::string scaleText;
    float scale = 0.0f;
    int width = 850;
    int height = 1100;
};

std::string Quoted(const std::string& text) { return "\"" + text + "\""; }

// The plot starts at the document's smallest depth rounded down to a multiple of 100.
float DefaultTop(const CBoreAnalystDoc& doc)
{
    float smallest = std::numeric_limits<float>::infinity();
    for (std::size_t i = 0; i < doc.TraceCount(); ++i) {
        const CTrace& trace = doc.Trace(i);
        if (trace.SampleCount() != 0) smallest = std::min(smallest, trace.FirstDepth());
    }
    if (!std::isfinite(smallest)) return 0.0f;
    return static_cast<float>(std::floor(smallest / 100.0) * 100.0);
}

void RunPlot(const PlotOptions& options, CommandContext& context)
{
    if (!options.scaleText.empty() && !(std::isfinite(options.scale) && options.scale > 0.0f))
        throw CommandFailure(kExitUsage, "Error: --scale: " + Quoted(options.scaleText) +
                                             " is not a vertical scale; it must be greater than 0.");
    const std::filesystem::path output(options.output);
    const std::optional<PlotFileFormat> format = PlotFileFormatOf(output, context.sink);
    if (!format) throw CommandFailure(kExitUsage, "");
    const auto doc = OpenOrFail(options.document, context.sink);

    PlotFilePage page;
    page.pixelSize = QSize(options.width, options.height);
    page.topDepth = options.topText.empty() ? DefaultTop(*doc) : options.top;
    page.verticalScale = options.scaleText.empty() ? doc->VerticalScale() : options.scale;
    if (!(std::isfinite(page.verticalScale) && page.verticalScale > 0.0f)) {
        throw CommandFailure(kExitFailure, "Error: the vertical scale of " + Quoted(options.document) + " is " +
                                               LegendNumberText(page.verticalScale) +
                                               ", which cannot be plotted; give one with --scale.");
    }

    EnsureGuiApplication();
    if (!WritePlotFile(*doc, page, output, *format, context.sink)) throw CommandFailure(kExitFailure, "");

    const float bottom = CLogPlotRenderer().BottomDepth(*doc, ScreenViewport(page));
    const std::string unit = DepthUnitCaption(DocumentDepthUnit(*doc));
    context.out << "Wrote " << Quoted(options.output) << ": " << options.width << " x " << options.height
                << " px, depths " << DepthLabelText(page.topDepth, 0.01) << " to " << DepthLabelText(bottom, 0.01)
                << (unit.empty() ? "" : " " + unit) << " at " << LegendNumberText(page.verticalScale)
                << (unit.empty() ? "" : " " + unit) << "/cm.\n";
}

} // namespace

Command AddPlotCommand(CLI::App& app)
{
    auto options = std::make_shared<PlotOptions>();
    CLI::App* sub = app.add_subcommand(
        "plot", "Render the log plot (header, depth column, tracks and line traces) to a PNG image or a PDF page.");
    sub->add_option("DOC.bal", options->document, "document to plot")->required();
    sub->add_option("-o,--output", options->output, "the plot file; its name ends in .png or .pdf")->required();
    sub->add_option("--top", options->topText,
                    "depth at the top of the tracks, in the document's depth unit (default: the smallest depth "
                    "rounded down to a multiple of 100)")
        ->type_name("DEPTH")
        ->check(FloatInto(options->top));
    sub->add_option("--scale", options->scaleText,
                    "depth units per centimetre of plot (default: the document's vertical scale)")
        ->type_name("SCALE")
        ->check(FloatInto(options->scale));
    sub->add_option("--width", options->width, "width in pixels (default 850)")
        ->check(CLI::Range(kSmallestSide, kLargestSide));
    sub->add_option("--height", options->height, "height in pixels (default 1100)")
        ->check(CLI::Range(kSmallestSide, kLargestSide));
    return {sub, [options](CommandContext& context) { RunPlot(*options, context); }};
}

} // namespace ba::cli
