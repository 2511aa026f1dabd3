// convert-units DOC.bal TRACE NEWUNIT -o OUT.bal: converts a line trace's values to another
// unit of its type and relabels it, as the unit conversion dialog does.

#include "cli/Command.h"
#include "cli/DocumentAccess.h"
#include "cli/NumberText.h"
#include "units/UnitConversion.h"

#include <memory>
#include <stdexcept>
#include <string>

namespace ba::cli {
namespace {

constexpr const char* kConvertFooterIntro =
    R"(TRACE's unit label is classified as classify-units does. NEWUNIT must be one of the
units offered for that type, spelled exactly as listed below (letter case included); any
other NEWUNIT selects nothing and the conversion stops with "Error: You must select the
new units." (status 1), as it does for a trace whose label names no known unit.
Every value, nulls included, is converted in double precision and rounded to a 32-bit
float; the label becomes NEWUNIT. On success one line describes the conversion applied.
Gallon flow labels classify as "g/min" or "g/s", which have no factors of their own: their
conversion applies factor 1, so the values stay and only the label changes.
Units offered, by type:
)";

constexpr UnitType kConvertibleTypes[] = {
    UnitType::Length, UnitType::VelocitySlowness, UnitType::ResistivityConductivity,
    UnitType::Flow,   UnitType::Transmissivity,   UnitType::Time,
    UnitType::Volume, UnitType::Temperature};

std::string ConvertFooter()
{
    std::string text = kConvertFooterIntro;
    for (const UnitType type : kConvertibleTypes) {
        text.append("  ").append(UnitTypeName(type)).append(": ");
        const auto units = OfferedUnits(type);
        for (std::size_t i = 0; i < units.size(); ++i) text.append(i == 0 ? "" : ", ").append(units[i]);
        text.append("\n");
    }
    return text;
}

// The rule ConvertValue applies, written out with the factor.
std::string DescribeConversion(UnitType type, ConversionFactor conversion)
{
    const std::string factor = ShortestText(conversion.factor);
    if (conversion.reciprocal) return "new = " + factor + " / old";
    if (type != UnitType::Temperature) return "new = old * " + factor;
    if (conversion.factor < 0.9f) return "new = (old - 32) * " + factor;
    if (conversion.factor > 1.1f) return "new = old * " + factor + " + 32";
    return "values unchanged";
}

struct ConvertUnitsOptions {
    std::string document;
    std::string trace;
    std::string newUnit;
    std::string output;
};

void RunConvertUnits(const ConvertUnitsOptions& options, CommandContext& context)
{
    const auto doc = OpenOrFail(options.document, context.sink);
    const std::size_t index = ResolveTrace(*doc, options.trace, options.document);
    RequireLineTrace(doc->Trace(index), options.trace, options.document);

    // The dialog lists line traces only; the trace's entry is its place among them.
    std::size_t position = 0;
    for (std::size_t i = 0; i < index; ++i) {
        if (dynamic_cast<const CLineTrace*>(&doc->Trace(i)) != nullptr) ++position;
    }
    CUnitConversion dialog;
    dialog.AddLineTracesOf(*doc);
    if (!dialog.SelectTrace(position)) throw std::logic_error("the conversion list lacks a line trace");
    // A unit that is not offered selects nothing; OK then reports that no unit is selected.
    dialog.SelectNewUnit(options.newUnit);
    const std::string fromUnit(dialog.CurrentUnit());
    if (!dialog.OnOk(*doc, context.sink)) throw CommandFailure(kExitFailure, {});
    SaveOrFail(*doc, options.output, context.sink);

    context.out << doc->Trace(index).Name() << ": " << fromUnit << " -> " << dialog.SelectedNewUnit() << " ("
                << UnitTypeName(dialog.CurrentType())
                << "): " << DescribeConversion(dialog.CurrentType(), dialog.Conversion()) << '\n';
}

} // namespace

Command AddConvertUnitsCommand(CLI::App& app)
{
    auto options = std::make_shared<ConvertUnitsOptions>();
    CLI::App* sub = app.add_subcommand("convert-units", "Convert a line trace's values to NEWUNIT, another unit of "
                                                        "the same type, relabel it and save the document to OUT.bal.");
    sub->footer(ConvertFooter());
    sub->add_option("DOC.bal", options->document, "document to read")->required();
    sub->add_option("TRACE", options->trace, std::string(kTraceArgumentHelp) + "; it must be a line trace")->required();
    sub->add_option("NEWUNIT", options->newUnit, "the unit to convert to (see below)")->required();
    sub->add_option("-o,--output", options->output, "document to write; may be DOC.bal itself (saves are atomic)")
        ->required();
    return {sub, [options](CommandContext& context) { RunConvertUnits(*options, context); }};
}

} // namespace ba::cli
