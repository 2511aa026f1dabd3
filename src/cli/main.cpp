// boreanalyst-cli: creates, describes and edits BoreAnalyst documents from the command
// line. Results go to standard output; every message, the core's included, goes to
// standard error.

#include "cli/Command.h"
#include "cli/StderrMessageSink.h"

#include <CLI/CLI.hpp>

#include <exception>
#include <iostream>
#include <new>
#include <string>
#include <vector>

namespace {

constexpr const char* kMainFooter = R"(Run "boreanalyst-cli COMMAND --help" for the arguments of one command.
Floats in JSON output are written in the shortest form that reads back to the same
32-bit float (the null value is -9999.99).
Exit status: 0 success; 1 the operation failed (a file cannot be read or written or is
not a document, a trace is not found, a samples file has bad lines); 2 the command line
is wrong.
)";

std::string UsageMessage(const CLI::App*, const CLI::Error& e)
{
    return std::string("Error: ") + e.what() + "\nRun \"boreanalyst-cli --help\" for usage.\n";
}

// CLI11 reports a misspelt command as a missing one; naming it helps more. Only --help and
// --version precede a command, so a first argument without a dash must name one.
bool ReportUnknownCommand(const CLI::App& app, int argc, char** argv)
{
    if (argc < 2 || argv[1][0] == '-') return false;
    const std::string given = argv[1];
    std::string names;
    for (const CLI::App* sub : app.get_subcommands({})) {
        if (sub->get_name() == given) return false;
        names += (names.empty() ? "" : ", ") + sub->get_name();
    }
    std::cerr << "Error: unknown command \"" << given << "\"; the commands are " << names
              << ".\nRun \"boreanalyst-cli --help\" for usage.\n";
    return true;
}

int Run(const ba::cli::Command& command, ba::cli::CommandContext& context)
{
    try {
        command.run(context);
    } catch (const ba::cli::CommandFailure& failure) {
        if (*failure.what() != '\0') context.sink.Error(failure.what());
        return failure.ExitCode();
    } catch (const std::bad_alloc&) {
        context.sink.Error("Error: out of memory.");
        return ba::cli::kExitFailure;
    } catch (const std::exception& e) {
        // Anything the commands do not expect still ends as a message, never as an abort.
        context.sink.Error(std::string("Error: ") + e.what() + ".");
        return ba::cli::kExitFailure;
    }
    context.out.flush();
    if (!context.out) {
        context.sink.Error("Error: cannot write to standard output.");
        return ba::cli::kExitFailure;
    }
    return ba::cli::kExitSuccess;
}

} // namespace

int main(int argc, char** argv)
{
    CLI::App app{"Creates, describes and edits BoreAnalyst documents (.bal).", "boreanalyst-cli"};
    app.set_version_flag("--version", "boreanalyst-cli " BA_VERSION);
    app.require_subcommand(1);
    app.footer(kMainFooter);
    app.failure_message(UsageMessage);

    const std::vector<ba::cli::Command> commands = {
        ba::cli::AddNewCommand(app),      ba::cli::AddInfoCommand(app),     ba::cli::AddDumpCommand(app),
        ba::cli::AddValueAtCommand(app),  ba::cli::AddAddTraceCommand(app), ba::cli::AddRemoveTraceCommand(app),
        ba::cli::AddSetTraceCommand(app),
        ba::cli::AddImportLasCommand(app), ba::cli::AddImportRawDataCommand(app), ba::cli::AddSemblanceCommand(app),
        ba::cli::AddStcMapCommand(app),
        ba::cli::AddExportLasCommand(app), ba::cli::AddExportTextCommand(app), ba::cli::AddExportWellCadCommand(app),
        ba::cli::AddClassifyUnitsCommand(app), ba::cli::AddConvertUnitsCommand(app),
#ifdef BA_CLI_HAS_PLOT
        ba::cli::AddPlotCommand(app),
#endif
        ba::cli::AddCopyBlockCommand(app), ba::cli::AddPasteBlockCommand(app),
        ba::cli::AddExportImageCommand(app), ba::cli::AddSettingsCommand(app),
        ba::cli::AddSpectrumCommand(app),
        ba::cli::AddRepositoryCommand(app),
        ba::cli::AddMechanicalCommand(app),
        ba::cli::AddEquationCommand(app),
        ba::cli::AddFormulaCommand(app),
        ba::cli::AddCreateCommand(app), ba::cli::AddEditCommand(app), ba::cli::AddFilterCommand(app),
        ba::cli::AddDespikeCommand(app), ba::cli::AddClipCommand(app), ba::cli::AddCutCommand(app),
        ba::cli::AddDepthShiftCommand(app), ba::cli::AddResampleCommand(app), ba::cli::AddSpliceCommand(app),
    };

    if (ReportUnknownCommand(app, argc, argv)) return ba::cli::kExitUsage;
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& e) {
        // Prints the help or version text for --help and --version, the error otherwise.
        if (app.exit(e) != 0) return ba::cli::kExitUsage;
        std::cout.flush();
        if (!std::cout) {
            std::cerr << "Error: cannot write to standard output.\n";
            return ba::cli::kExitFailure;
        }
        return ba::cli::kExitSuccess;
    }

    ba::cli::StderrMessageSink sink(std::cerr);
    ba::cli::CommandContext context{sink, std::cout};
    for (const auto& command : commands) {
        if (*command.parser) return Run(command, context);
    }
    // require_subcommand(1) makes the parser refuse a command line without one.
    return ba::cli::kExitUsage;
}
