// import-rd [DOC.bal] IN.rd -o OUT.bal: adds the sonic waveforms of a Mount Sopris logger
// raw-data file to a document (or to a new one) and saves it.

#include "cli/Command.h"
#include "cli/DocumentAccess.h"
#include "cli/JsonFormat.h"
#include "model/SonicTrace.h"
#include "sonic/RawDataImportProcess.h"

#include <memory>
#include <utility>
#include <string>

namespace ba::cli {
namespace {

constexpr const char* kImportRawDataHelp = R"(What is read:
  The sonic waveform records of a Mount Sopris CLP probe (data records of block 32) and
  the control record of a time-digitised recording; every other record is passed over.
  Each receiver becomes a sonic trace "RX 1", "RX 2", ... in microseconds ("us"), added
  after the document's traces. Depths are the record depth less 0.578 m; a time-digitised
  recording counts stations in steps of its time step, in minutes. A station within the
  depths already read is dropped.
A damaged or truncated file: the stations read before the damaged record are kept and
the document is saved, the fault is reported on standard error and the status is 1.
A file that cannot be opened writes nothing.
Output: a JSON summary (records read, waveform records, traces added with their rows,
stations kept and dropped, whether the file was read to its end).
)";

struct ImportRawDataOptions {
    std::string first;  // IN.rd, or DOC.bal when IN.rd follows
    std::string second; // IN.rd after DOC.bal
    std::string output;
};

void RunImportRawData(const ImportRawDataOptions& options, CommandContext& context)
{
    const bool intoDocument = !options.second.empty();
    const std::string& rdPath = intoDocument ? options.second : options.first;
    std::unique_ptr<CBoreAnalystDoc> doc =
        intoDocument ? OpenOrFail(options.first, context.sink) : std::make_unique<CBoreAnalystDoc>();

    const std::size_t firstNew = doc->TraceCount();
    auto source = OpenRawDataFile(rdPath, context.sink);
    if (!source) throw CommandFailure(kExitFailure, {});
    CRawDataImportProcess job(*doc, std::move(source), rdPath, context.sink);
    RunWithoutPanel(job);
    const RawDataImportResult& result = job.Result();

    Json summary;
    summary["file"] = rdPath;
    summary["complete"] = result.complete;
    summary["records"] = result.records;
    summary["waveform_records"] = result.waveformRecords;
    summary["time_digitised"] = result.timeDigitised;
    summary["stations_kept"] = result.stationsKept;
    summary["stations_dropped"] = result.stationsDropped;
    Json traces = Json::array();
    for (std::size_t i = firstNew; i < doc->TraceCount(); ++i) {
        const auto& sonic = dynamic_cast<const CSonicTrace&>(doc->Trace(i));
        Json t;
        t["name"] = sonic.Name();
        t["tool_type"] = sonic.ToolType();
        t["rows"] = sonic.RowCount();
        t["words_per_row"] = sonic.RowCount() > 0 ? sonic.Row(sonic.RowCount() - 1).size() : 0;
        t["scale"] = Json::array({FloatJson(sonic.ScaleLeft()), FloatJson(sonic.ScaleRight())});
        if (sonic.SampleCount() > 0) {
            t["first_depth"] = FloatJson(sonic.FirstDepth());
            t["last_depth"] = FloatJson(sonic.LastDepth());
        }
        t["depth_unit"] = sonic.DepthUnit();
        traces.push_back(std::move(t));
    }
    summary["traces_added"] = std::move(traces);
    summary["traces_in_document"] = doc->TraceCount();
    SaveOrFail(*doc, options.output, context.sink);
    context.out << JsonText(summary);
    if (!result.complete) throw CommandFailure(kExitFailure, {});
}

} // namespace

Command AddImportRawDataCommand(CLI::App& app)
{
    auto options = std::make_shared<ImportRawDataOptions>();
    CLI::App* sub = app.add_subcommand("import-rd", "Add the sonic waveforms of a Mount Sopris raw-data file to "
                                                    "DOC.bal (or to a new document) and save it to OUT.bal.");
    sub->footer(kImportRawDataHelp);
    sub->add_option("FILE", options->first, "the raw-data file, or the document to add to when IN.rd follows")
        ->required();
    sub->add_option("IN.rd", options->second, "the raw-data file, after the document FILE");
    sub->add_option("-o,--output", options->output, "document to write; may be DOC.bal itself (saves are atomic)")
        ->required();
    return {sub, [options](CommandContext& context) { RunImportRawData(*options, context); }};
}

} // namespace ba::cli
