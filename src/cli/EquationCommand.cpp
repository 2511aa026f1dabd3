// equation DOC.bal --equation N --logs A[,B[,C]] [--coef c1,...,c5] [--fit DEPTH:VALUE,...
// --solve i,j] [--model NAME] [--save-model NAME --description TEXT] --name OUT -o OUT.bal:
// derives a log with one of the common-logs equations, as the common-logs dialog does.

#include "cli/Command.h"
#include "cli/DocumentAccess.h"
#include "cli/NumberText.h"
#include "evaluation/CommonLogs.h"
#include "model/BoreAnalystDoc.h"
#include "model/LineTrace.h"
#include "repository/RepositoryDatabase.h"

#include <memory>
#include <optional>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

namespace ba::cli {
namespace {

std::string EquationListText()
{
    std::ostringstream text;
    text << "N is the number of the equation:\n";
    for (int e = 0; e < kEquationCount; ++e) {
        const EquationDefinition& d = EquationAt(e);
        text << "  " << e << "  " << d.listText << "  (logs:";
        for (std::size_t s = 0; s < d.logCount; ++s) text << ' ' << d.logLabels[s];
        text << "; coefficients:";
        for (std::size_t s = 0; s < d.coefficientCount; ++s) text << ' ' << d.coefficientLabels[s];
        text << ")\n";
    }
    text << R"(A, B and C name line traces exactly (the first line trace of that name), in the order of
the equation's log labels; the result has one sample per sample of A, computed from the
samples of the logs with the same index; a null input gives a null output.
--coef gives coefficients 1 to 5 in label order (fewer may be given; the rest are 0).
--model loads a model saved in the repository (BARepository.mdb beside the program, or the
file BA_REPOSITORY names); --equation and --coef then change what it loaded.
--fit gives ground truth: the value the derived log should have at a depth (in the
document's depth unit), one pair per coefficient named in --solve (numbers 1 to 5); the
solved coefficients are printed and used. --save-model stores the equation and the
coefficients (after any fit) under a new name.
Refusals use the dialog's own messages: nothing is written and the status is 1.
)";
    return text.str();
}

// Splits at commas; an empty text gives no items.
std::vector<std::string_view> CommaItems(std::string_view text)
{
    std::vector<std::string_view> items;
    if (text.empty()) return items;
    while (true) {
        const auto comma = text.find(',');
        items.push_back(text.substr(0, comma));
        if (comma == std::string_view::npos) return items;
        text.remove_prefix(comma + 1);
    }
}

CLI::Validator LogsInto(std::array<std::string, kEquationLogSlots>& target)
{
    return CLI::Validator(
        [&target](std::string& text) -> std::string {
            const auto items = CommaItems(text);
            if (items.empty() || items.size() > kEquationLogSlots) return "give one to three trace names";
            target = {};
            for (std::size_t i = 0; i < items.size(); ++i) {
                if (items[i].empty()) return "a trace name is empty";
                target[i] = std::string(items[i]);
            }
            return {};
        },
        "A[,B[,C]]");
}

CLI::Validator CoefficientsInto(std::optional<EquationCoefficients>& target)
{
    return CLI::Validator(
        [&target](std::string& text) -> std::string {
            const auto items = CommaItems(text);
            if (items.empty() || items.size() > kEquationCoefficientSlots) return "give one to five numbers";
            EquationCoefficients c{};
            for (std::size_t i = 0; i < items.size(); ++i) {
                const NumberProblem problem = ParseFloat(items[i], c[i]);
                if (problem != NumberProblem::None) {
                    return QuoteForMessage(items[i]) + " " + DescribeFloatProblem(problem);
                }
            }
            target = c;
            return {};
        },
        "c1,...,c5");
}

CLI::Validator GroundTruthInto(std::vector<GroundTruthEntry>& target)
{
    return CLI::Validator(
        [&target](std::string& text) -> std::string {
            target.clear();
            for (const std::string_view item : CommaItems(text)) {
                const auto colon = item.find(':');
                if (colon == std::string_view::npos) return QuoteForMessage(item) + " is not DEPTH:VALUE";
                GroundTruthEntry entry;
                for (const auto& [part, value] : {std::pair{item.substr(0, colon), &entry.depth},
                                                  std::pair{item.substr(colon + 1), &entry.value}}) {
                    const NumberProblem problem = ParseFloat(part, *value);
                    if (problem != NumberProblem::None) {
                        return QuoteForMessage(part) + " " + DescribeFloatProblem(problem);
                    }
                }
                target.push_back(entry);
            }
            if (target.empty()) return "give at least one DEPTH:VALUE pair";
            return {};
        },
        "DEPTH:VALUE,...");
}

CLI::Validator SolveInto(CoefficientMask& target)
{
    return CLI::Validator(
        [&target](std::string& text) -> std::string {
            target = {};
            for (const std::string_view item : CommaItems(text)) {
                std::int32_t slot = 0;
                if (ParseInt(item, slot) != NumberProblem::None || slot < 1 ||
                    slot > static_cast<std::int32_t>(kEquationCoefficientSlots)) {
                    return QuoteForMessage(item) + " is not a coefficient number 1 to 5";
                }
                target[static_cast<std::size_t>(slot - 1)] = true;
            }
            return {};
        },
        "i,j,...");
}

struct EquationOptions {
    std::string document;
    std::string output;
    std::optional<int> equation;
    std::optional<EquationCoefficients> coefficients;
    std::string logsText, coefText, fitText, solveText;
    std::optional<std::string> model;     // given, even empty: load it
    std::optional<std::string> saveModel; // given, even empty: save under it
    std::string description;
    CCommonLogs dialog;
};

std::unique_ptr<RepositoryDatabase> OpenRepositoryOrFail(IMessageSink& sink)
{
    auto database = RepositoryDatabase::Open(DefaultRepositoryPath(), sink);
    if (!database) throw CommandFailure(kExitFailure, {});
    return database;
}

void RunEquation(EquationOptions& options, CommandContext& context)
{
    CCommonLogs& dialog = options.dialog;
    const auto doc = OpenOrFail(options.document, context.sink);
    std::unique_ptr<RepositoryDatabase> database;
    std::optional<CEquationModelsRepository> models;
    if (options.model || options.saveModel) {
        database = OpenRepositoryOrFail(context.sink);
        models.emplace(*database);
        if (!models->Open()) throw CommandFailure(kExitFailure, {});
    }
    if (options.model && !dialog.OnLoadModel(*models, *options.model, context.sink)) {
        throw CommandFailure(kExitFailure, {});
    }
    if (options.equation) dialog.equation = *options.equation;
    if (options.coefficients) dialog.coefficients = *options.coefficients;

    if (!dialog.groundTruth.empty() || std::find(dialog.calculate.begin(), dialog.calculate.end(), true) !=
                                           dialog.calculate.end()) {
        if (!dialog.OnCalculate(*doc, context.sink)) throw CommandFailure(kExitFailure, {});
        const std::size_t used = EquationAt(dialog.equation).coefficientCount;
        for (std::size_t slot = 0; slot < used; ++slot) {
            if (!dialog.calculate[slot]) continue;
            context.out << "Fitted " << CoefficientSlotLabel(dialog.equation, slot) << " (coefficient " << slot + 1
                        << "): " << ShortestText(dialog.coefficients[slot]) << '\n';
        }
        dialog.calculate = {}; // solved once; OK uses the values found
    }
    if (options.saveModel) {
        dialog.modelName = *options.saveModel;
        dialog.modelDescription = options.description;
        if (!dialog.OnSaveModel(*models, context.sink)) throw CommandFailure(kExitFailure, {});
        context.out << "Saved model \"" << dialog.modelName << "\"\n";
    }
    const CLineTrace* trace = dialog.OnOk(*doc, context.sink);
    if (trace == nullptr) throw CommandFailure(kExitFailure, {});
    SaveOrFail(*doc, options.output, context.sink);
    context.out << trace->Name() << " (" << trace->Units() << "): " << trace->SampleCount() << " samples\n";
}

} // namespace

Command AddEquationCommand(CLI::App& app)
{
    auto options = std::make_shared<EquationOptions>();
    CLI::App* sub = app.add_subcommand("equation", "Derive a log with one of the common-logs equations (porosity, "
                                                   "shale volume, permeability, ...) and save the document to OUT.bal.");
    sub->footer(EquationListText());
    sub->add_option("DOC.bal", options->document, "document to read")->required();
    sub->add_option("--equation", options->equation, "equation number (N, see below)")
        ->check(CLI::Range(0, kEquationCount - 1));
    sub->add_option("--logs", options->logsText, "input line traces in label order")
        ->check(LogsInto(options->dialog.logs));
    sub->add_option("--coef", options->coefText, "coefficients in label order")
        ->check(CoefficientsInto(options->coefficients));
    CLI::Option* fit = sub->add_option("--fit", options->fitText, "ground truth: depth and derived value pairs")
                           ->check(GroundTruthInto(options->dialog.groundTruth));
    CLI::Option* solve = sub->add_option("--solve", options->solveText, "coefficients (1-5) to compute from the ground truth")
                             ->check(SolveInto(options->dialog.calculate));
    // Ground truth without coefficients to solve for (or the reverse) would be ignored.
    fit->needs(solve);
    solve->needs(fit);
    sub->add_option("--model", options->model, "saved model to start from");
    CLI::Option* save =
        sub->add_option("--save-model", options->saveModel, "save the equation and coefficients under this name");
    sub->add_option("--description", options->description, "description of the saved model")->needs(save);
    sub->add_option("--name", options->dialog.outputName, "name of the new trace")->required();
    sub->add_option("-o,--output", options->output, "document to write; may be DOC.bal itself (saves are atomic)")
        ->required();
    return {sub, [options](CommandContext& context) { RunEquation(*options, context); }};
}

} // namespace ba::cli
