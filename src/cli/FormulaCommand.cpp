// formula DOC.bal (--expr TEXT | --model NAME) --name N [--units U] [--save-model NAME
// --description TEXT] -o OUT.bal: computes a new line trace from a formula over the
// document's traces, as the formula-log dialog does.

#include "cli/Command.h"
#include "cli/DocumentAccess.h"
#include "cli/TextFields.h"
#include "evaluation/FormulaLogs.h"
#include "model/BoreAnalystDoc.h"
#include "model/LineTrace.h"
#include "repository/RepositoryDatabase.h"

#include <memory>
#include <optional>
#include <string>

namespace ba::cli {
namespace {

constexpr const char* kFormulaFooter = R"(TEXT is a formula over the document's line traces, for example
  SQRT(0.62/PHI^2.15*RW/RT)      (RT - [RT shallow]) / RT * 100      IF(GR > 75, 1, 0)
Traces: a bare name (a letter or _ first, then letters, digits, _ . :) or any name in
square brackets; names match exactly. Numbers, PI, and DEPTH (the depth of each sample).
Operators, loosest first: OR, AND, NOT, comparisons < <= > >= = <> (1 or 0), + -, * /,
unary -, ^ (right-associative, tighter than unary minus: -2^2 is -4). Functions (any
case): SQRT EXP LN LOG10 ABS SIN COS TAN ASIN ACOS ATAN SINH COSH TANH, MIN and MAX (two
or more values), IF(condition, then, else), AND and OR (two or more values).
The new trace N has the depths of the first trace the formula names; the other traces
are read at those depths (interpolated, null outside their range). A null input gives a
null sample; so does a function outside its domain, a division by zero or an overflow,
with one warning that counts them and gives the first depth.
--model loads a formula saved in the repository (BARepository.mdb beside the program, or
the file BA_REPOSITORY names); --save-model stores the formula and N under a new name once
the trace has been computed. Refusals (a syntax error, an unknown trace or function, a
model name taken) are reported on standard error: nothing is written and the status is 1.
On success one line gives the new trace, its units and its sample count.
)";

struct FormulaOptions {
    std::string document;
    std::string output;
    std::optional<std::string> expression;
    std::optional<std::string> model;
    std::optional<std::string> saveModel; // given, even empty: save under it
    std::string description;
    CFormulaLogs dialog;
};

std::unique_ptr<RepositoryDatabase> OpenRepositoryOrFail(IMessageSink& sink)
{
    auto database = RepositoryDatabase::Open(DefaultRepositoryPath(), sink);
    if (!database) throw CommandFailure(kExitFailure, {});
    return database;
}

void RunFormula(FormulaOptions& options, CommandContext& context)
{
    CFormulaLogs& dialog = options.dialog;
    const auto doc = OpenOrFail(options.document, context.sink);
    std::unique_ptr<RepositoryDatabase> database;
    std::optional<CFormulaLogRepository> models;
    if (options.model || options.saveModel) {
        database = OpenRepositoryOrFail(context.sink);
        models.emplace(*database);
        if (!models->Open()) throw CommandFailure(kExitFailure, {});
    }
    const std::string name = dialog.outputName; // --name wins over the model's log name
    if (options.model && !dialog.OnLoadModel(*models, *options.model, context.sink)) {
        throw CommandFailure(kExitFailure, {});
    }
    dialog.outputName = name;
    if (options.expression) dialog.formula = *options.expression;

    const CLineTrace* trace = dialog.OnOk(*doc, context.sink);
    if (trace == nullptr) throw CommandFailure(kExitFailure, {});
    if (options.saveModel) {
        dialog.modelName = *options.saveModel;
        dialog.modelDescription = options.description;
        if (!dialog.OnSaveModel(*models, context.sink)) throw CommandFailure(kExitFailure, {});
        context.out << "Saved model \"" << dialog.modelName << "\"\n";
    }
    SaveOrFail(*doc, options.output, context.sink);
    context.out << trace->Name() << " (" << trace->Units() << "): " << trace->SampleCount() << " samples\n";
}

} // namespace

Command AddFormulaCommand(CLI::App& app)
{
    auto options = std::make_shared<FormulaOptions>();
    CLI::App* sub = app.add_subcommand("formula", "Compute a new line trace from a formula over the document's "
                                                  "traces and save the document to OUT.bal.");
    sub->footer(kFormulaFooter);
    sub->add_option("DOC.bal", options->document, "document to read")->required();
    auto* source = sub->add_option_group("formula", "the formula (one of)");
    source->add_option("--expr", options->expression, "the formula")->type_name("TEXT");
    source->add_option("--model", options->model, "a formula saved in the repository")->type_name("NAME");
    source->require_option(1);
    sub->add_option("--name", options->dialog.outputName, "name of the new trace (at most 25 characters)")
        ->type_name("N")
        ->required()
        ->check(TraceTextValidator(false));
    sub->add_option("--units", options->dialog.outputUnits, "units of the new trace (at most 25 characters)")
        ->type_name("U")
        ->check(TraceTextValidator(true));
    CLI::Option* save = sub->add_option("--save-model", options->saveModel, "save the formula under this name")
                            ->type_name("NAME");
    sub->add_option("--description", options->description, "description of the saved model")
        ->type_name("TEXT")
        ->needs(save);
    sub->add_option("-o,--output", options->output, "document to write; may be DOC.bal itself (saves are atomic)")
        ->required();
    return {sub, [options](CommandContext& context) { RunFormula(*options, context); }};
}

} // namespace ba::cli
