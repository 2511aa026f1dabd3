// info DOC.bal: describes a whole document as JSON, every trace with its summary figures.

#include "cli/Command.h"
#include "cli/DocumentAccess.h"
#include "cli/JsonFormat.h"

#include <memory>

namespace ba::cli {
namespace {

Json TrackJson(const CTrack& track)
{
    Json json;
    json["name"] = track.Name();
    json["area"] = RectJson(track.Area());
    json["t"] = track.Settings();
    return json;
}

Json PenJson(const CLineTrace& line)
{
    Json json;
    json["width"] = line.PenWidth();
    json["style"] = line.PenStyle();
    json["colour_index"] = line.ColourIndex();
    json["colour"] = line.Colour();
    return json;
}

Json TraceJson(const CBoreAnalystDoc& doc, std::size_t index)
{
    const CTrace& trace = doc.Trace(index);
    Json json;
    json["index"] = index;
    json["kind"] = doc.TraceKindCode(index);
    json["class"] = trace.ClassName();
    json["name"] = trace.Name();
    json["units"] = trace.Units();
    json["track"] = trace.TrackIndex();
    json["scale_left"] = FloatJson(trace.ScaleLeft());
    json["scale_right"] = FloatJson(trace.ScaleRight());
    json["flags"] = trace.Flags();
    json["header_box"] = RectJson(trace.HeaderBox());
    json["view_parameter"] = FloatJson(trace.ViewParameter());
    json["vertical_scale"] = FloatJson(trace.VerticalScale());
    json["top_depth"] = FloatJson(trace.TopDepth());
    json["depth_unit"] = trace.DepthUnit();
    json["samples"] = trace.SampleCount();
    json["first_depth"] = FloatJson(trace.FirstDepth());
    json["last_depth"] = FloatJson(trace.LastDepth());
    json["step"] = FloatJson(trace.SamplingStep());
    if (const auto* line = dynamic_cast<const CLineTrace*>(&trace)) {
        const ValueRange range = line->MinMax();
        json["min"] = FloatJson(range.minimum);
        json["max"] = FloatJson(range.maximum);
        json["pen"] = PenJson(*line);
    }
    return json;
}

Json DocumentJson(const CBoreAnalystDoc& doc)
{
    Json json;
    json["signature"] = kDocumentSignature;
    json["plot_extent"] = Json::array({doc.PlotWidth(), doc.PlotHeight()});
    json["settings"] = doc.Settings();
    json["track_grid"] = doc.TrackGridValue();
    json["track_top"] = doc.TrackTop();
    json["vertical_scale"] = FloatJson(doc.VerticalScale());
    json["kinds"] = doc.EntryKinds();

    const CHeader& header = doc.Header();
    Json headerJson;
    headerJson["title"] = header.Title();
    headerJson["area"] = RectJson(header.Area());
    headerJson["h1"] = header.H1();
    headerJson["h2"] = header.H2();
    json["header"] = std::move(headerJson);

    Json tracks = Json::array();
    for (std::size_t i = 0; i < doc.TrackCount(); ++i) tracks.push_back(TrackJson(doc.Track(i)));
    json["tracks"] = std::move(tracks);

    Json traces = Json::array();
    for (std::size_t i = 0; i < doc.TraceCount(); ++i) traces.push_back(TraceJson(doc, i));
    json["traces"] = std::move(traces);
    return json;
}

} // namespace

Command AddInfoCommand(CLI::App& app)
{
    auto document = std::make_shared<std::string>();
    CLI::App* sub = app.add_subcommand(
        "info", "Describe a document as JSON: plot settings, entry kinds, header, tracks and every trace "
                "(depths and step in the trace's display unit).");
    sub->add_option("DOC.bal", *document, "document to describe")->required();
    return {sub, [document](CommandContext& context) {
                const auto doc = OpenOrFail(*document, context.sink);
                context.out << JsonText(DocumentJson(*doc));
            }};
}

} // namespace ba::cli
