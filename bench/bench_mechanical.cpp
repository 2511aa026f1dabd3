// Measures deriving all nine mechanical properties over 1,000,000 stations, as the dialog's
// OK does: once with velocity and density traces sampled at the same depths (the usual
// case, which skips the per-station depth search) and once with a density trace sampled
// elsewhere, which is looked up station by station. Prints figures only: speed is judged
// by a reader, never asserted.
//
//   bench_mechanical [--runs N]
//
// --runs    timed runs of each row (default 7, at least 5); median, min and max are printed

#include "BenchSupport.h"
#include "BenchTiming.h"

#include "base/MessageSink.h"
#include "model/BoreAnalystDoc.h"
#include "model/LineTrace.h"
#include "sonic/MechanicalProperties.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>

namespace {

constexpr ba::bench::Program kProgram{.name = "bench_mechanical",
                                      .usage = "[--runs N]",
                                      .defaultRuns = 7,
                                      .fewestRuns = 5};

constexpr double kTargetSeconds = 0.2;
constexpr std::size_t kStations = 1'000'000;

// A smooth synthetic log at 0.1 m steps from 100 m (offset by `shift`), one null in 1000.
std::unique_ptr<ba::CLineTrace> MakeLog(const std::string& name, const std::string& units, double base,
                                        double swing, float shift)
{
    auto trace = std::make_unique<ba::CLineTrace>(1, ba::kPenSolid, 0, 0.0f, 100.0f, name, units);
    trace->StoredDepths().Reserve(kStations);
    trace->Values().Reserve(kStations);
    for (std::size_t i = 0; i < kStations; ++i) {
        const float depth = 100.0f + static_cast<float>(i) * 0.1f + shift;
        const double smooth = base + swing * std::sin(static_cast<double>(i) * 1e-3);
        const float value = i % 1000 == 999 ? ba::kNullValue : static_cast<float>(smooth);
        trace->AppendSample(depth, value);
    }
    return trace;
}

} // namespace

int main(int argc, char** argv)
{
    const auto options = ba::bench::ParseOptions(kProgram, argc, argv);
    std::printf("bench_mechanical: %zu stations, all nine outputs; %d runs per row\n", kStations, options.runs);
    const ba::bench::TimingTable table(46, kTargetSeconds);
    table.PrintHeading("derivation");

    struct Row {
        const char* label;
        float densityShift; // 0: the density shares the velocity traces' depths
        bool judged;
    };
    const Row rows[] = {
        {"shared depths", 0.0f, true},
        {"density at other depths (cursor along it)", 0.05f, false},
    };
    for (const Row& row : rows) {
        ba::CBoreAnalystDoc doc;
        doc.AddTrace(MakeLog("VP", "m/s", 5000.0, 800.0, 0.0f));
        doc.AddTrace(MakeLog("VS", "m/s", 2000.0, 300.0, 0.0f));
        doc.AddTrace(MakeLog("RHO", "g/cc", 2.3, 0.2, row.densityShift));
        ba::CMechanicalProperties dialog;
        dialog.compressionalTrace = "VP";
        dialog.shearTrace = "VS";
        dialog.densityTrace = "RHO";
        dialog.outputs = {.bulkModulus = true, .lambdaMu = true, .poissonRatio = true, .vpVs = true,
                          .youngModulus = true, .ratios = true};
        const ba::bench::RunStats s = ba::bench::TimeRuns(
            options.runs,
            [&] {
                ba::CollectingMessageSink sink;
                return dialog.OnOk(doc, sink);
            },
            [&](bool ran) {
                // Nine full outputs, then back to the three inputs for the next run.
                if (!ran || doc.TraceCount() != 12 || doc.Trace(11).SampleCount() != kStations) {
                    std::fprintf(stderr, "bench_mechanical: the run did not add nine full outputs\n");
                    std::exit(1);
                }
                doc.Undo(); // the nine outputs were one change
            });
        table.PrintRow(row.label, s, 0, row.judged);
    }
    return 0;
}
