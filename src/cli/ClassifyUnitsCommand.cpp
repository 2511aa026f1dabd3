// classify-units LABEL...: the canonical unit and unit type of free-text unit labels.

#include "cli/Command.h"
#include "units/UnitVocabulary.h"

#include <memory>
#include <string>
#include <vector>

namespace ba::cli {
namespace {

constexpr const char* kClassifyFooter =
    R"(Output: one line per LABEL, in order: the canonical unit, a tab, the type name, for
example "ft/s<TAB>Velocity-Slowness"; "Unknown<TAB>Unknown" when the label names no
known unit.
A label matches when the whole of it, letter case aside, is an accepted spelling: blanks
are not trimmed, so " FEET" is Unknown. Quote labels with blanks ("DEG C"), and put --
before the labels when one of them begins with a dash.
)";

struct ClassifyUnitsOptions {
    std::vector<std::string> labels;
};

void RunClassifyUnits(const ClassifyUnitsOptions& options, CommandContext& context)
{
    for (const auto& label : options.labels) {
        const UnitClassification unit = ClassifyUnits(label);
        context.out << unit.canonical << '\t' << UnitTypeName(unit.type) << '\n';
    }
}

} // namespace

Command AddClassifyUnitsCommand(CLI::App& app)
{
    auto options = std::make_shared<ClassifyUnitsOptions>();
    CLI::App* sub = app.add_subcommand(
        "classify-units", "Print the canonical unit and the unit type of each unit LABEL, one line per label.");
    sub->footer(kClassifyFooter);
    sub->add_option("LABEL", options->labels, "unit label as a trace carries it (\"FEET/SECOND\", \"Deg C\")")
        ->required();
    return {sub, [options](CommandContext& context) { RunClassifyUnits(*options, context); }};
}

} // namespace ba::cli
