// stc-map DOC.bal --receivers A,B,... --offsets O1,O2,... --depth D -o MAP.json|MAP.png: the
// slowness-time coherence of the station nearest a depth, as numbers or as a picture.

#include "cli/Command.h"
#include "cli/DocumentAccess.h"
#include "cli/JsonFormat.h"
#include "cli/SonicOptions.h"
#include "cli/TraceUtilityCommand.h"
#include "base/FileIO.h"
#include "sonic/SonicVelocity.h"
#ifdef BA_CLI_HAS_PLOT
#include "cli/GuiApplication.h"
#include "view/CoherenceMapPainter.h"
#endif

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <memory>
#include <sstream>
#include <string>

namespace ba::cli {
namespace {

constexpr const char* kStcMapFooter = R"(The coherence of the station nearest --depth (in the document's depth unit) over the
slowness grid (across) and every window start on the first receiver (down), with the
arrivals labelled as the semblance command labels them at a station on its own. A name
ending in .json gets {"depth", "depth_unit", "slowness_unit", "slowness": [...],
"time": [...] (us), "coherence": [[...], ...] (one row per time, one value per slowness,
4 decimals), "picks": {"compressional", "shear", "stoneley": {"slowness", "time",
"coherence"} or null}}; a name ending in .png gets the map drawn (slowness across, time
down, coherence as colour, the picks ringed).
)";

struct StcMapOptions {
    std::string document;
    CoherenceOptions coherence;
    double depth = 0.0;
    std::string depthText;
    int width = 800;
    int height = 900;
    std::string output;
};

std::string Number(double v)
{
    std::ostringstream out;
    out << v;
    return out.str();
}

Json PickJson(const std::optional<CoherencePeak>& pick)
{
    if (!pick) return nullptr;
    return Json{{"slowness", pick->slowness}, {"time", pick->time}, {"coherence", std::round(pick->rho * 1e4) / 1e4}};
}

Json MapJson(const CoherenceMap& map, const ModePicks& picks, double depth, const std::string& depthUnit,
             const std::string& slownessUnit)
{
    Json coherence = Json::array();
    for (std::size_t r = 0; r < map.time.size(); ++r) {
        Json row = Json::array();
        for (std::size_t c = 0; c < map.slowness.size(); ++c) row.push_back(std::round(map.At(r, c) * 1e4) / 1e4);
        coherence.push_back(std::move(row));
    }
    return Json{{"depth", FloatJson(static_cast<float>(depth))},
                {"depth_unit", depthUnit},
                {"slowness_unit", slownessUnit},
                {"slowness", map.slowness},
                {"time", map.time},
                {"coherence", std::move(coherence)},
                {"picks",
                 {{"compressional", PickJson(picks.compressional)},
                  {"shear", PickJson(picks.shear)},
                  {"stoneley", PickJson(picks.stoneley)}}}};
}

void RunStcMap(const StcMapOptions& options, CommandContext& context)
{
    const std::filesystem::path output(options.output);
    std::string extension = output.extension().string();
    std::transform(extension.begin(), extension.end(), extension.begin(), [](unsigned char c) { return std::tolower(c); });
    if (extension != ".json" && extension != ".png") {
        throw CommandFailure(kExitUsage, "Error: -o: \"" + options.output + "\" must end in .json or .png.");
    }
#ifndef BA_CLI_HAS_PLOT
    if (extension == ".png") {
        throw CommandFailure(kExitUsage, "Error: -o: this build has no Qt to draw \"" + options.output +
                                             "\"; write the map as .json.");
    }
#endif
    const auto doc = OpenOrFail(options.document, context.sink);
    const SonicVelocitySettings settings = options.coherence.Settings(*doc, options.document, context.sink);
    const CSonicVelocityProcess job(*doc, settings);
    const std::optional<std::size_t> station = job.StationNear(options.depth);
    const CTrace& first = doc->Trace(settings.receivers.front());
    const std::string depthUnit = first.DepthUnit() == kDepthMetres ? "m" : (first.DepthUnit() == kDepthFeet ? "ft" : "");
    if (!station) {
        throw CommandFailure(kExitFailure, "Error: no station of \"" + first.Name() + "\" lies at " +
                                               Number(options.depth) + (depthUnit.empty() ? "" : " " + depthUnit) +
                                               "; its stations run from " + Number(first.FirstDepth()) + " to " +
                                               Number(first.LastDepth()) + (depthUnit.empty() ? "" : " " + depthUnit) + ".");
    }
    const CoherenceMap map = job.StationMap(*station);
    const ModePicks picks = job.StationLabels(map);
    const double depth = job.StationDepth(*station);
    const std::string slownessUnit = SlownessUnitText(settings.outputUnit);

    if (extension == ".json") {
        const std::string text = JsonText(MapJson(map, picks, depth, depthUnit, slownessUnit));
        try {
            WriteFileAtomically(output, std::span(reinterpret_cast<const std::uint8_t*>(text.data()), text.size()));
        } catch (const FileError& e) {
            throw CommandFailure(kExitFailure, "Error: cannot write \"" + options.output + "\": " + e.what() + ".");
        }
    }
#ifdef BA_CLI_HAS_PLOT
    else {
        EnsureGuiApplication();
        CoherenceMapPicture picture{map, picks, QString::fromStdString(slownessUnit),
                                    QString::fromStdString("Station at " + Number(depth) + " " + depthUnit)};
        if (!WriteCoherenceMapPng(picture, QSize(options.width, options.height), output, context.sink)) {
            throw CommandFailure(kExitFailure, {});
        }
    }
#endif
    context.out << "Station at " << Number(depth) << (depthUnit.empty() ? "" : " " + depthUnit) << ": "
                << map.slowness.size() << " slownesses x " << map.time.size() << " times\n";
    const auto line = [&](const char* mode, const std::optional<CoherencePeak>& pick) {
        context.out << mode << ": ";
        if (pick) context.out << Number(pick->slowness) << " " << slownessUnit << " at " << Number(pick->time)
                              << " us, coherence " << Number(std::round(pick->rho * 1e3) / 1e3) << "\n";
        else context.out << "none\n";
    };
    line("compressional", picks.compressional);
    line("shear", picks.shear);
    line("Stoneley", picks.stoneley);
}

} // namespace

Command AddStcMapCommand(CLI::App& app)
{
    auto options = std::make_shared<StcMapOptions>();
    CLI::App* sub = app.add_subcommand("stc-map", "Write the slowness-time coherence of one station as JSON or as a "
                                                  "PNG picture.");
    sub->footer(kStcMapFooter);
    sub->add_option("DOC", options->document, "the document (.bal)")->required();
    options->coherence.AddTo(*sub);
    sub->add_option("--depth", options->depthText, "the station's depth, in the document's depth unit")
        ->type_name("D")
        ->check(DoubleInto(options->depth))
        ->required();
    sub->add_option("--width", options->width, "PNG width, pixels (default 800)")->check(CLI::Range(200, 8000));
    sub->add_option("--height", options->height, "PNG height, pixels (default 900)")->check(CLI::Range(200, 8000));
    sub->add_option("-o,--output", options->output, "the map to write (.json or .png)")->required();
    return {sub, [options](CommandContext& context) { RunStcMap(*options, context); }};
}

} // namespace ba::cli
