// mechanical DOC.bal --vp A --vs B [--rho C] --outputs LIST -o OUT.bal: derives elastic
// rock properties from velocity and density traces and adds them as new line traces, as
// the mechanical properties dialog does.

#include "cli/Command.h"
#include "cli/DocumentAccess.h"
#include "sonic/MechanicalProperties.h"

#include <memory>
#include <string>
#include <string_view>

namespace ba::cli {
namespace {

constexpr const char* kMechanicalFooter =
    R"(LIST is a comma-separated list of: bulk ("Bulk Modulus"), lambda-mu ("Lambda" and
"Shear Modulus - Mu"), poisson ("Poisson's Ratio"), vp-vs ("Vp/Vs"), young ("Young's
Modulus") and ratios ("Mu/Lambda", "Rho/Lambda", "Rho/Mu").
A, B and C name line traces exactly (the first line trace of that name). bulk, lambda-mu
and young need all three; the others need --vp and --vs only, and a density not given
counts as 2.3 g/cc. The velocity traces' units must be velocity or slowness units (see
classify-units); density is taken in g/cc. A missing trace or a wrong unit is reported
with the dialog's own messages, nothing is written and the status is 1.
One value per sample of A, at A's depths; null (-9999.99) inputs give null outputs. The
new traces take the depth unit and depth scale of the document's first trace. On
success one line per new trace gives its name, unit and sample count.
)";

struct OutputWord {
    std::string_view word;
    bool MechanicalOutputs::*flag;
};

constexpr OutputWord kOutputWords[] = {
    {"bulk", &MechanicalOutputs::bulkModulus}, {"lambda-mu", &MechanicalOutputs::lambdaMu},
    {"poisson", &MechanicalOutputs::poissonRatio}, {"vp-vs", &MechanicalOutputs::vpVs},
    {"young", &MechanicalOutputs::youngModulus}, {"ratios", &MechanicalOutputs::ratios},
};

// The comma list of --outputs, read into `target` while the command line is parsed.
CLI::Validator OutputsInto(MechanicalOutputs& target)
{
    return CLI::Validator(
        [&target](std::string& text) -> std::string {
            target = {};
            std::string_view rest = text;
            while (true) {
                const auto comma = rest.find(',');
                const std::string_view word = rest.substr(0, comma);
                bool known = false;
                for (const OutputWord& w : kOutputWords) {
                    if (w.word == word) {
                        target.*w.flag = true;
                        known = true;
                    }
                }
                if (!known) {
                    return "\"" + std::string(word) +
                           "\" is not one of bulk, lambda-mu, poisson, vp-vs, young, ratios";
                }
                if (comma == std::string_view::npos) return {};
                rest.remove_prefix(comma + 1);
            }
        },
        "LIST");
}

struct MechanicalOptions {
    std::string document;
    std::string output;
    std::string outputsText;
    CMechanicalProperties dialog; // its output checks are read from outputsText
};

void RunMechanical(MechanicalOptions& options, CommandContext& context)
{
    const auto doc = OpenOrFail(options.document, context.sink);
    const std::size_t before = doc->TraceCount();
    if (!options.dialog.OnOk(*doc, context.sink)) throw CommandFailure(kExitFailure, {});
    SaveOrFail(*doc, options.output, context.sink);
    for (std::size_t i = before; i < doc->TraceCount(); ++i) {
        const CTrace& trace = doc->Trace(i);
        context.out << trace.Name() << " (" << trace.Units() << "): " << trace.SampleCount() << " samples\n";
    }
}

} // namespace

Command AddMechanicalCommand(CLI::App& app)
{
    auto options = std::make_shared<MechanicalOptions>();
    CLI::App* sub = app.add_subcommand("mechanical", "Derive elastic rock properties from velocity and density "
                                                     "traces as new line traces and save the document to OUT.bal.");
    sub->footer(kMechanicalFooter);
    sub->add_option("DOC.bal", options->document, "document to read")->required();
    sub->add_option("--vp", options->dialog.compressionalTrace, "compressional velocity trace (A)");
    sub->add_option("--vs", options->dialog.shearTrace, "shear velocity trace (B)");
    sub->add_option("--rho", options->dialog.densityTrace, "density trace in g/cc (C)");
    sub->add_option("--outputs", options->outputsText, "properties to derive (LIST, see below)")
        ->required()
        ->check(OutputsInto(options->dialog.outputs));
    sub->add_option("-o,--output", options->output, "document to write; may be DOC.bal itself (saves are atomic)")
        ->required();
    return {sub, [options](CommandContext& context) { RunMechanical(*options, context); }};
}

} // namespace ba::cli
