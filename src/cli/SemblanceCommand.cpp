// semblance DOC.bal --receivers A,B,... --offsets O1,O2,... [...] -o OUT.bal: slowness logs
// from the waveforms of sonic receivers by slowness-time coherence.

#include "cli/Command.h"
#include "cli/DocumentAccess.h"
#include "cli/SonicOptions.h"
#include "sonic/BackgroundProcess.h"
#include "sonic/SonicVelocity.h"

#include <algorithm>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace ba::cli {
namespace {

constexpr const char* kSemblanceFooter = R"(For each station the coherence of the receivers' waveforms (Kimball and Marzetta) is
computed over the slowness grid and every window start; its peaks at or above the
threshold are labelled compressional (the earliest coherent arrival faster than the
borehole fluid, 189 us/ft), shear (later, at least 1.41 times the compressional slowness,
faster than the fluid, before the Stoneley) and Stoneley (later, at or beyond the fluid
slowness), keeping each mode near its slowness at the station before. Nine line traces are
added: DTC, DTS, DTST (slowness, in --units), COHC, COHS, COHST (coherence 0..1) and TTC,
TTS, TTST (the window start on the first receiver, us); a mode not found is null there.
Receivers are sonic traces recorded together, nearest first, with increasing offsets.
Stations are computed on --threads threads (all cores by default); the results do not
depend on the thread count. Output: one line per mode with the stations where it was found.
)";

struct SemblanceOptions {
    std::string document;
    CoherenceOptions coherence;
    unsigned threads = 0;
    std::string output;
};

void RunSemblance(const SemblanceOptions& options, CommandContext& context)
{
    const auto doc = OpenOrFail(options.document, context.sink);
    const SonicVelocitySettings settings = options.coherence.Settings(*doc, options.document, context.sink);
    CSonicVelocityProcess job(*doc, settings);
    const unsigned threads = options.threads != 0 ? options.threads : std::max(1u, std::thread::hardware_concurrency());
    RunWithoutPanel(job, threads);
    SaveOrFail(*doc, options.output, context.sink);

    const std::vector<ModePicks>& picks = job.Picks();
    const auto found = [&](std::optional<CoherencePeak> ModePicks::*mode) {
        return std::count_if(picks.begin(), picks.end(), [&](const ModePicks& p) { return (p.*mode).has_value(); });
    };
    context.out << "DTC: found at " << found(&ModePicks::compressional) << " of " << picks.size() << " stations\n"
                << "DTS: found at " << found(&ModePicks::shear) << " of " << picks.size() << " stations\n"
                << "DTST: found at " << found(&ModePicks::stoneley) << " of " << picks.size() << " stations\n";
}

} // namespace

Command AddSemblanceCommand(CLI::App& app)
{
    auto options = std::make_shared<SemblanceOptions>();
    CLI::App* sub = app.add_subcommand("semblance", "Compute compressional, shear and Stoneley slowness logs from "
                                                    "sonic waveforms and save the document to OUT.bal.");
    sub->footer(kSemblanceFooter);
    sub->add_option("DOC", options->document, "the document (.bal)")->required();
    options->coherence.AddTo(*sub);
    sub->add_option("--threads", options->threads, "threads computing stations (default: every core)")
        ->check(CLI::Range(1u, 256u));
    sub->add_option("-o,--output", options->output, "the document to write (.bal)")->required();
    return {sub, [options](CommandContext& context) { RunSemblance(*options, context); }};
}

} // namespace ba::cli
