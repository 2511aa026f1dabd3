// export-wellcad DOC.bal OUT.wcl [--record-automation CALLS.jsonl]: the line traces of a
// document as a WellCAD borehole, built and saved by WellCAD through automation. With
// --record-automation a stand-in for WellCAD answers instead, and every call made on it
// is written to a file.

#include "cli/Command.h"
#include "cli/DocumentAccess.h"
#include "io/AutomationRecorder.h"
#include "io/ExportFileWriter.h"
#include "io/WellCadExport.h"

#include <filesystem>
#include <memory>
#include <optional>

namespace ba::cli {
namespace {

constexpr const char* kRecordingHelp = R"(Recording:
  --record-automation answers as WellCAD 3.0 build 928 (minor 0) would and writes, one JSON
  object per line and in order: {"create": PROGID, "result": ...} for the creation of the
  borehole object, {"status": TEXT} for each status text, and
  {"object": "borehole" | "settings" | "log N", "dispid": N, "kind": "get" | "put" | "method",
  "args": [...], "result": ...} for each call, with logs counted from 0, every value written
  as {"TYPE": VALUE} (int16, int32, float, bool, string, object), and "result" only when the
  call answers something. No .wcl file is written then. The calls are recorded whether or
  not the export succeeds.
)";

struct ExportWellCadOptions {
    std::string document;
    std::string output;
    std::string recording;
};

// WellCAD runs as a process of its own, with its own working folder, so it is given the
// full path.
std::string FullPathText(const std::string& path)
{
    const std::u8string text = std::filesystem::absolute(path).u8string();
    return std::string(text.begin(), text.end());
}

[[noreturn]] void RecordingFailure(const ExportFileError& error)
{
    throw CommandFailure(kExitFailure, std::string("Error: cannot record the automation calls: ") + error.what() + ".");
}

void RunRecorded(const CBoreAnalystDoc& doc, const ExportWellCadOptions& options, CommandContext& context)
{
    std::optional<CExportFileWriter> calls;
    try {
        calls.emplace(options.recording);
    } catch (const ExportFileError& error) {
        RecordingFailure(error);
    }
    const auto writeLine = [&](const std::string& json) {
        calls->Buffer().append(json);
        calls->Buffer().push_back('\n');
        calls->LineEnd();
    };
    CRecordingAutomationFactory factory([&](const RecordedCall& call) { writeLine(RecordedCallJson(call)); });
    bool exported = false;
    try {
        exported = ExportWellCad(doc, FullPathText(options.output), factory, context.sink,
                                 [&](const std::string& status) { writeLine(StatusJson(status)); });
        calls->Commit();
    } catch (const ExportFileError& error) {
        RecordingFailure(error);
    }
    if (!exported) throw CommandFailure(kExitFailure, {});
}

void RunExportWellCad(const ExportWellCadOptions& options, CommandContext& context)
{
    const auto doc = OpenOrFail(options.document, context.sink);
    if (!options.recording.empty()) {
        RunRecorded(*doc, options, context);
        return;
    }
    const auto factory = MakePlatformAutomationFactory();
    if (!ExportWellCad(*doc, FullPathText(options.output), *factory, context.sink, {})) {
        throw CommandFailure(kExitFailure, {});
    }
}

} // namespace

Command AddExportWellCadCommand(CLI::App& app)
{
    auto options = std::make_shared<ExportWellCadOptions>();
    CLI::App* sub = app.add_subcommand(
        "export-wellcad", "Export the line traces of a document to a WellCAD log file by driving an installed "
                          "WellCAD (3.0 build 928 or later) through automation. Only Windows has automation; "
                          "elsewhere the export reports that WellCAD is not installed.");
    sub->add_option("DOC.bal", options->document, "document to read")->required();
    sub->add_option("OUT.wcl", options->output, "WellCAD file for WellCAD to save")->required();
    sub->add_option("--record-automation", options->recording,
                    "answer in place of WellCAD and write every automation call to this file")
        ->type_name("CALLS.jsonl");
    sub->footer(kRecordingHelp);
    return {sub, [options](CommandContext& context) { RunExportWellCad(*options, context); }};
}

} // namespace ba::cli
