// Measures the depth utilities on a 10,000,000-sample line trace, each run computing the
// change and applying it to the document (no file is read or written): depth shift by a
// constant and by tie points, and resampling by each method. Then, in a document of 20
// traces of 1,000,000 samples, the undo and redo of a depth shift of one trace, and the
// memory that shift holds for undo (one trace's old depths, never the document). Prints
// figures only: speed is judged by a reader, never asserted. A last row times writing
// as many new samples into a fresh trace, the floor under any row that makes them.
//
//   bench_depth_utilities [--runs N]
//
// --runs    timed runs of each row (default 7, at least 5); median, min and max are printed

#include "BenchCurves.h"
#include "BenchSupport.h"
#include "BenchTiming.h"

#include "base/MessageSink.h"
#include "model/BoreAnalystDoc.h"
#include "model/DocumentChange.h"
#include "model/LineTrace.h"
#include "utilities/DepthShift.h"
#include "utilities/Resample.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

constexpr ba::bench::Program kProgram{.name = "bench_depth_utilities",
                                      .usage = "[--runs N]",
                                      .defaultRuns = 7,
                                      .fewestRuns = 5};

constexpr std::size_t kSamples = 10'000'000;
constexpr double kFirstDepth = 100.0;
// Metres. 10,000,000 samples reach 1,000,100 m: as 32-bit floats, depths there are 1/16 m
// apart, so 0.1 m steps stay apart however they are shifted (0.01 m steps would not).
constexpr double kStep = 0.1;
constexpr double kTargetSeconds = 0.1;
constexpr double kHistoryTargetSeconds = 0.05;
constexpr std::size_t kHistoryTraces = 20;
constexpr std::size_t kHistorySamples = 1'000'000;

[[noreturn]] void Fail(const char* what)
{
    std::fprintf(stderr, "bench_depth_utilities: %s\n", what);
    std::exit(1);
}

using MakeChange = std::function<std::unique_ptr<ba::CDocumentChange>(const ba::CBoreAnalystDoc&, ba::IMessageSink&)>;

struct Row {
    const char* label;
    MakeChange make;
    std::size_t expectedSamples;
};

void TimeRow(const Row& row, const ba::CLineTrace& source, int runs, const ba::bench::TimingTable& table)
{
    // A fresh document for every run, built and dropped outside the clock: applying a
    // change drops the undone entries, whose freeing is no part of the operation.
    auto doc = std::make_unique<ba::CBoreAnalystDoc>();
    doc->AddTrace(source.Clone());
    const ba::bench::RunStats s = ba::bench::TimeRuns(
        runs,
        [&] {
            ba::CollectingMessageSink sink;
            auto change = row.make(*doc, sink);
            if (!change) {
                for (const auto& message : sink.messages) std::fprintf(stderr, "%s\n", message.text.c_str());
                return false;
            }
            doc->Apply(std::move(change));
            return true;
        },
        [&](bool applied) {
            if (!applied || doc->Trace(0).SampleCount() != row.expectedSamples) Fail("a run did not apply its change");
            doc = std::make_unique<ba::CBoreAnalystDoc>();
            doc->AddTrace(source.Clone());
        });
    table.PrintRow(row.label, s, 0, true);
}

void TimeUtilities(int runs)
{
    const auto source = ba::bench::MakeGammaRayTrace("GR", kSamples, kFirstDepth, kStep, 1);
    const float last = source->LastDepth();
    std::printf("bench_depth_utilities: one line trace of %zu samples, %g m to %g m; %d runs per row\n", kSamples,
                kFirstDepth, static_cast<double>(last), runs);
    const ba::bench::TimingTable table(52, kTargetSeconds);
    table.PrintHeading("change computed and applied");
    const std::vector<ba::DepthTie> ties = {{1000, 1000}, {500000, 500010}, {900000, 900005}};
    auto resample = [](ba::ResampleRequest request) {
        return [request](const ba::CBoreAnalystDoc& doc, ba::IMessageSink& sink) {
            return ba::ResampleTrace(doc, 0, request, sink);
        };
    };
    const Row rows[] = {
        {"depth shift by 2.5 m",
         [](const ba::CBoreAnalystDoc& doc, ba::IMessageSink& sink) { return ba::ShiftDepthsBy(doc, 0, 2.5f, "", sink); },
         kSamples},
        {"depth shift by 3 tie points",
         [&ties](const ba::CBoreAnalystDoc& doc, ba::IMessageSink& sink) {
             return ba::ShiftDepthsByTies(doc, 0, ties, "", sink);
         },
         kSamples},
        // The same number of samples, half a step down: every value a line between two.
        {"resample linear, same step, offset half a step",
         resample({.step = kStep, .method = ba::ResampleMethod::Linear, .top = kFirstDepth + kStep / 2}),
         kSamples - 1},
        {"resample nearest, same step, offset half a step",
         resample({.step = kStep, .method = ba::ResampleMethod::Nearest, .top = kFirstDepth + kStep / 2}),
         kSamples - 1},
        {"resample average, 1 m blocks (automatic)", resample({.step = 10 * kStep}), kSamples / 10},
    };
    for (const Row& row : rows) TimeRow(row, *source, runs, table);

    // The floor under every row that makes 10,000,000 new samples: fresh memory written
    // once, which on a loaded machine costs more than the work done in it.
    const ba::bench::RunStats floor = ba::bench::TimeRuns(
        runs,
        [] {
            auto trace = std::make_unique<ba::CLineTrace>();
            trace->StoredDepths().Reserve(kSamples);
            trace->Values().Reserve(kSamples);
            for (std::size_t i = 0; i < kSamples; ++i) trace->AppendSample(static_cast<float>(i), 1.0f);
            return trace;
        },
        [](const std::unique_ptr<ba::CLineTrace>& trace) {
            if (trace->SampleCount() != kSamples) Fail("the floor run made too few samples");
        });
    table.PrintRow("(floor: a new trace of as many samples, written once)", floor, 0, false);
}

void TimeHistory(int runs)
{
    std::printf("\n  document of %zu line traces of %zu samples; trace 7 shifted by 2.5 m\n", kHistoryTraces,
                kHistorySamples);
    ba::CBoreAnalystDoc doc;
    for (std::size_t t = 0; t < kHistoryTraces; ++t) {
        doc.AddTrace(ba::bench::MakeGammaRayTrace("GR" + std::to_string(t), kHistorySamples, kFirstDepth, kStep, t));
    }
    ba::CollectingMessageSink sink;
    auto change = ba::ShiftDepthsBy(doc, 7, 2.5f, "", sink);
    if (!change) Fail("the depth shift was refused");

    // What the shift keeps for undo, the old depths of one trace: run in a child process so
    // that its peak memory is measured from the full document. The new depths are what
    // grows; the old ones move from the trace into the change.
    const double oneTrace = static_cast<double>(kHistorySamples) * sizeof(float);
    ba::bench::MeasurePeakMemory(kProgram, "one trace's depths", oneTrace, [&] {
        auto shift = ba::ShiftDepthsBy(doc, 7, 2.5f, "", sink);
        if (!shift) throw std::runtime_error("the depth shift was refused");
        doc.Apply(std::move(shift));
    });

    doc.Apply(std::move(change));
    using Clock = std::chrono::steady_clock;
    std::vector<double> undo;
    std::vector<double> redo;
    const float shiftedFirst = doc.Trace(7).FirstDepth();
    for (int r = 0; r < runs; ++r) {
        const auto t0 = Clock::now();
        doc.Undo();
        const auto t1 = Clock::now();
        doc.Redo();
        const auto t2 = Clock::now();
        undo.push_back(std::chrono::duration<double>(t1 - t0).count());
        redo.push_back(std::chrono::duration<double>(t2 - t1).count());
        if (doc.Trace(7).FirstDepth() != shiftedFirst) Fail("undo and redo did not give the shifted trace back");
    }
    const ba::bench::TimingTable table(52, kHistoryTargetSeconds);
    table.PrintHeading("history step");
    table.PrintRow("undo depth shift", ba::bench::Summarise(undo), 0, true);
    table.PrintRow("redo depth shift", ba::bench::Summarise(redo), 0, true);
}

} // namespace

int main(int argc, char** argv)
{
    const auto options = ba::bench::ParseOptions(kProgram, argc, argv);
    return ba::bench::RunMeasurements(kProgram, [&] {
        TimeUtilities(options.runs);
        TimeHistory(options.runs);
    });
}
