#pragma once
// What every subcommand shares: how it is registered with the command line, where its
// output and messages go, and how it stops with an exit status.

#include "base/MessageSink.h"

#include <CLI/CLI.hpp>

#include <functional>
#include <ostream>
#include <stdexcept>
#include <string>

namespace ba::cli {

// Exit statuses; the main help text explains them to the user.
inline constexpr int kExitSuccess = 0;
inline constexpr int kExitFailure = 1; // the operation failed or the core stopped it
inline constexpr int kExitUsage = 2;   // the command line is wrong

struct CommandContext {
    IMessageSink& sink; // every message for the user, the core's included
    std::ostream& out;  // the command's result
};

// Stops a command. An empty message means the reason was already reported (the core
// reports its own failures to the sink).
class CommandFailure : public std::runtime_error {
public:
    CommandFailure(int exitCode, const std::string& message) : std::runtime_error(message), m_exitCode(exitCode) {}
    int ExitCode() const { return m_exitCode; }

private:
    int m_exitCode;
};

// A registered subcommand: its parser, and what runs once it has parsed.
struct Command {
    CLI::App* parser = nullptr;
    std::function<void(CommandContext&)> run;
};

Command AddNewCommand(CLI::App& app);
Command AddInfoCommand(CLI::App& app);
Command AddDumpCommand(CLI::App& app);
Command AddValueAtCommand(CLI::App& app);
Command AddAddTraceCommand(CLI::App& app);
Command AddRemoveTraceCommand(CLI::App& app);
Command AddSetTraceCommand(CLI::App& app);
Command AddImportLasCommand(CLI::App& app);
Command AddImportRawDataCommand(CLI::App& app);
Command AddSemblanceCommand(CLI::App& app);
Command AddStcMapCommand(CLI::App& app);
Command AddExportLasCommand(CLI::App& app);
Command AddExportTextCommand(CLI::App& app);
Command AddExportWellCadCommand(CLI::App& app);
Command AddClassifyUnitsCommand(CLI::App& app);
Command AddConvertUnitsCommand(CLI::App& app);
// Exists in builds with the GUI (BA_CLI_HAS_PLOT).
Command AddPlotCommand(CLI::App& app);
Command AddCopyBlockCommand(CLI::App& app);
Command AddPasteBlockCommand(CLI::App& app);
Command AddExportImageCommand(CLI::App& app);
Command AddSettingsCommand(CLI::App& app);
Command AddSpectrumCommand(CLI::App& app);
Command AddRepositoryCommand(CLI::App& app);
Command AddMechanicalCommand(CLI::App& app);
Command AddEquationCommand(CLI::App& app);
Command AddFormulaCommand(CLI::App& app);
Command AddCreateCommand(CLI::App& app);
Command AddEditCommand(CLI::App& app);
Command AddFilterCommand(CLI::App& app);
Command AddDespikeCommand(CLI::App& app);
Command AddClipCommand(CLI::App& app);
Command AddCutCommand(CLI::App& app);
Command AddDepthShiftCommand(CLI::App& app);
Command AddResampleCommand(CLI::App& app);
Command AddSpliceCommand(CLI::App& app);

} // namespace ba::cli
