// dump DOC.bal TRACE: one trace's samples as JSON, depths as stored (metres or minutes):
// the values of a line trace, the rows of an image trace, and the acquisition fields of a
// sonic or spectrum trace.

#include "cli/Command.h"
#include "cli/DocumentAccess.h"
#include "cli/JsonFormat.h"
#include "model/ImageTrace.h"
#include "model/LineTrace.h"
#include "model/SonicTrace.h"
#include "model/SpectralTrace.h"

#include <memory>

namespace ba::cli {
namespace {

struct DumpOptions {
    std::string document;
    std::string trace;
};

Json RowsJson(const CImageTrace& image)
{
    Json rows = Json::array();
    for (const ImageRow& row : image.Rows()) rows.push_back(row);
    return rows;
}

Json SonicJson(const CSonicTrace& sonic)
{
    const SonicAcquisition& a = sonic.Acquisition();
    Json json;
    json["tool_type"] = sonic.ToolType();
    json["tx_frequency"] = a.txFrequency;
    json["tx_mode"] = a.txMode;
    json["tx_num_stacks"] = a.txNumStacks;
    json["tx_stack_interval"] = a.txStackInterval;
    json["rx_mode"] = a.rxMode;
    json["rx_num_samples_1"] = a.rxNumSamples1;
    json["rx_num_samples_2"] = a.rxNumSamples2;
    json["rx_sample_rate_1"] = a.rxSampleRate1;
    json["rx_sample_rate_2"] = a.rxSampleRate2;
    json["rx_holdoff"] = a.rxHoldoff;
    json["rx_gain"] = a.rxGain;
    json["reserved"] = a.reserved;
    return json;
}

Json SpectralJson(const CSpectralTrace& spectral)
{
    Json json;
    json["text"] = spectral.Text();
    json["value"] = spectral.Value();
    json["acquisition_times"] = FloatArrayJson(spectral.AcquisitionTimes().Items());
    json["total_times"] = FloatArrayJson(spectral.TotalTimes().Items());
    json["temperatures"] = FloatArrayJson(spectral.Temperatures().Items());
    json["high_voltages"] = FloatArrayJson(spectral.HighVoltages().Items());
    return json;
}

void RunDump(const DumpOptions& options, CommandContext& context)
{
    const auto doc = OpenOrFail(options.document, context.sink);
    const std::size_t index = ResolveTrace(*doc, options.trace, options.document);
    const CTrace& trace = doc->Trace(index);

    Json json;
    json["name"] = trace.Name();
    json["kind"] = doc->TraceKindCode(index);
    json["depths"] = FloatArrayJson(trace.StoredDepths().Items());
    if (const auto* line = dynamic_cast<const CLineTrace*>(&trace)) {
        json["values"] = FloatArrayJson(line->Values().Items());
    }
    if (const auto* image = dynamic_cast<const CImageTrace*>(&trace)) json["rows"] = RowsJson(*image);
    if (const auto* sonic = dynamic_cast<const CSonicTrace*>(&trace)) json["sonic"] = SonicJson(*sonic);
    if (const auto* spectral = dynamic_cast<const CSpectralTrace*>(&trace)) {
        json["spectral"] = SpectralJson(*spectral);
    }
    context.out << JsonText(json);
}

} // namespace

Command AddDumpCommand(CLI::App& app)
{
    auto options = std::make_shared<DumpOptions>();
    CLI::App* sub = app.add_subcommand(
        "dump", "Print one trace's samples as JSON: {name, kind, depths, values} for a line trace, "
        "{name, kind, depths, rows} and the sonic or spectral fields for the image kinds; depths in stored units.");
    sub->add_option("DOC.bal", options->document, "document to read")->required();
    sub->add_option("TRACE", options->trace, kTraceArgumentHelp)->required();
    return {sub, [options](CommandContext& context) { RunDump(*options, context); }};
}

} // namespace ba::cli
