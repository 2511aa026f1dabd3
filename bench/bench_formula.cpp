// Measures formula logs over 10,000,000 samples: the whole computation of a new trace
// (parsing, reading the traces, computing, the trace's depths and values), for a formula
// of five arithmetic operations on two traces, for SQRT(0.62/PHI^2.15*RW/RT), and for a
// formula reading a trace at other depths than the first trace's. Prints figures only:
// speed is judged by a reader (bench/formula_vs_numpy.sh sets the first two beside numpy).
//
//   bench_formula [--runs N] [--samples N]
//
// --runs     timed runs of each row (default 7, at least 5); median, min and max are printed
// --samples  samples per trace (default 10,000,000)

#include "BenchSupport.h"
#include "BenchTiming.h"

#include "base/MessageSink.h"
#include "evaluation/FormulaEvaluation.h"
#include "model/BoreAnalystDoc.h"
#include "model/LineTrace.h"
#include "numeric/VectorPow.h"

#include <cmath>
#include <ctime>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

namespace {

constexpr ba::bench::Program kProgram{.name = "bench_formula",
                                      .usage = "[--runs N] [--samples N]",
                                      .defaultRuns = 7,
                                      .fewestRuns = 5};

constexpr double kTargetSamplesPerSecond = 50e6;

// A smooth synthetic log at 0.1 m from 100 m (or `offset` further down), one null in 1000.
std::unique_ptr<ba::CLineTrace> MakeLog(const std::string& name, std::size_t n, double base, double swing,
                                        float offset = 0.0f)
{
    auto trace = std::make_unique<ba::CLineTrace>(1, ba::kPenSolid, 0, 0.0f, 100.0f, name, "");
    trace->StoredDepths().Reserve(n);
    trace->Values().Reserve(n);
    for (std::size_t i = 0; i < n; ++i) {
        const double smooth = base + swing * std::sin(static_cast<double>(i) * 1e-3);
        trace->AppendSample(100.0f + offset + static_cast<float>(i) * 0.1f,
                            i % 1000 == 999 ? ba::kNullValue : static_cast<float>(smooth));
    }
    return trace;
}

[[noreturn]] void Fail(const std::string& what)
{
    std::fprintf(stderr, "bench_formula: %s\n", what.c_str());
    std::exit(1);
}

struct Row {
    const char* label;
    const char* formula;
    bool judged; // held against the 50 Msamples/s target
};

} // namespace

int main(int argc, char** argv)
{
    std::size_t samples = 10'000'000;
    ba::bench::CommonOptions options;
    ba::bench::ParseOptions(kProgram, argc, argv, options, [&](const std::string& option, const std::string& value) {
        if (option != "--samples") return false;
        samples = static_cast<std::size_t>(ba::bench::ParseWholeNumber(kProgram, option, value, 1000, 200'000'000));
        return true;
    });
    std::printf("bench_formula: %zu samples per trace; %d runs per row; powers %s\n", samples, options.runs,
                ba::numeric::VectorPowInUse() ? "4 at a time (AVX2)" : "one at a time");

    ba::CBoreAnalystDoc doc;
    // B shares A's depths, as the curves of one LAS file do; B_COPY holds its own copy of
    // them, as two traces with the same depths from different sources do.
    auto a = MakeLog("A", samples, 50.0, 20.0);
    auto b = MakeLog("B", samples, 20.0, 5.0);
    auto bCopy = MakeLog("B_COPY", samples, 20.0, 5.0);
    if (!b->ShareDepthsIfSame(*a)) Fail("A and B have different depths");
    doc.AddTrace(std::move(a));
    doc.AddTrace(std::move(b));
    doc.AddTrace(std::move(bCopy));
    doc.AddTrace(MakeLog("PHI", samples, 0.2, 0.1));
    doc.AddTrace(MakeLog("RW", samples, 0.05, 0.01));
    doc.AddTrace(MakeLog("RT", samples, 20.0, 15.0));
    doc.AddTrace(MakeLog("RT_SHIFTED", samples, 20.0, 15.0, 0.05f));

    const Row rows[] = {
        {"five operations, two traces: (A - B) / (A + B) * 100 + 1", "(A - B) / (A + B) * 100 + 1", false},
        {"the same, B with its own copy of A's depths", "(A - B_COPY) / (A + B_COPY) * 100 + 1", false},
        {"SQRT(0.62/PHI^2.15*RW/RT)", "SQRT(0.62/PHI^2.15*RW/RT)", true},
        {"the same, RT read at other depths (cursor)", "SQRT(0.62/PHI^2.15*RW/RT_SHIFTED)", true},
    };
    std::printf("\n  %-58s %9s %9s %9s %9s %12s   %s\n", "new trace from a formula", "median s", "min s", "max s",
                "cpu s", "Msamples/s", "target >= 50 Msamples/s");
    for (const Row& row : rows) {
        // The processor time of each run too (all threads), which a busy machine disturbs
        // less than the wall clock.
        std::vector<double> cpu;
        const ba::bench::RunStats s = ba::bench::TimeRuns(
            options.runs,
            [&] {
                ba::CollectingMessageSink sink;
                const std::clock_t start = std::clock();
                auto trace = ba::ComputeFormulaLog(doc, row.formula, "OUT", "", sink);
                cpu.push_back(static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC);
                return trace;
            },
            [&](const std::unique_ptr<ba::CLineTrace>& trace) {
                if (!trace || trace->SampleCount() != samples) Fail(std::string("no log from ") + row.formula);
                if (ba::IsNullSample(trace->Value(samples / 3))) Fail(std::string("a null value from ") + row.formula);
            });
        const double rate = static_cast<double>(samples) / s.median;
        std::printf("  %-58s %9.4f %9.4f %9.4f %9.4f %12.1f   %s\n", row.label, s.median, s.minimum, s.maximum,
                    ba::bench::Summarise(cpu).median, rate / 1e6,
                    row.judged ? (rate >= kTargetSamplesPerSecond ? "met" : "MISSED") : "-");
    }
    return 0;
}
