// Measures the value utilities on a 10,000,000-sample line trace, each run computing the
// change and applying it to the document (no file is read or written): moving mean and
// triangular mean, running median at three window lengths, despike, clip, an edit and a
// cut of half the trace; then the undo and redo of a filter and of a clip of that trace.
// Prints figures only: speed is judged by a reader, never asserted.
//
//   bench_trace_utilities [--runs N]
//
// --runs    timed runs of each row (default 5, at least 3); median, min and max are printed

#include "BenchCurves.h"
#include "BenchSupport.h"
#include "BenchTiming.h"

#include "base/MessageSink.h"
#include "model/BoreAnalystDoc.h"
#include "model/DocumentChange.h"
#include "model/LineTrace.h"
#include "utilities/ClipTrace.h"
#include "utilities/CutTrace.h"
#include "utilities/DespikeTrace.h"
#include "utilities/EditTrace.h"
#include "utilities/FilterTrace.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace {

constexpr ba::bench::Program kProgram{.name = "bench_trace_utilities",
                                      .usage = "[--runs N]",
                                      .defaultRuns = 5,
                                      .fewestRuns = 3};

constexpr std::size_t kSamples = 10'000'000;
constexpr double kFirstDepth = 100.0;
constexpr double kStep = 0.01;
constexpr double kMiddleDepth = kFirstDepth + kStep * kSamples / 2;

[[noreturn]] void Fail(const std::string& what)
{
    std::fprintf(stderr, "bench_trace_utilities: %s\n", what.c_str());
    std::exit(1);
}

using MakeChange = std::function<std::unique_ptr<ba::CDocumentChange>(const ba::CBoreAnalystDoc&, ba::IMessageSink&)>;

struct Row {
    const char* label;
    MakeChange make;
    bool judged;
};

std::unique_ptr<ba::CBoreAnalystDoc> DocumentWith(const ba::CLineTrace& source)
{
    auto doc = std::make_unique<ba::CBoreAnalystDoc>();
    doc->AddTrace(source.Clone());
    return doc;
}

void TimeRow(const Row& row, const ba::CLineTrace& source, int runs, const ba::bench::TimingTable& table)
{
    // A fresh document for every run, built and dropped outside the clock: applying a
    // change drops the undone entries, whose freeing is no part of the operation.
    auto doc = DocumentWith(source);
    const ba::bench::RunStats s = ba::bench::TimeRuns(
        runs,
        [&] {
            ba::CollectingMessageSink sink;
            auto change = row.make(*doc, sink);
            if (!change) Fail(std::string(row.label) + ": refused: " + sink.Texts().at(0));
            doc->Apply(std::move(change));
            return doc->History().Size();
        },
        [&](std::size_t entries) {
            if (entries != 1) Fail(std::string(row.label) + ": the change was not applied");
            doc = DocumentWith(source);
        });
    table.PrintRow(row.label, s, 0, row.judged);
}

// Undo and redo of one applied change, timed in turns.
void TimeHistory(const char* label, const MakeChange& make, const ba::CLineTrace& source, int runs,
                 const ba::bench::TimingTable& table)
{
    auto doc = DocumentWith(source);
    ba::CollectingMessageSink sink;
    doc->Apply(make(*doc, sink));
    using Clock = std::chrono::steady_clock;
    std::vector<double> undo;
    std::vector<double> redo;
    const float changedValue = static_cast<const ba::CLineTrace&>(doc->Trace(0)).Value(1);
    for (int r = 0; r < runs; ++r) {
        const auto t0 = Clock::now();
        doc->Undo();
        const auto t1 = Clock::now();
        doc->Redo();
        const auto t2 = Clock::now();
        undo.push_back(std::chrono::duration<double>(t1 - t0).count());
        redo.push_back(std::chrono::duration<double>(t2 - t1).count());
        if (static_cast<const ba::CLineTrace&>(doc->Trace(0)).Value(1) != changedValue) {
            Fail(std::string(label) + ": undo and redo did not give the changed trace back");
        }
    }
    table.PrintRow(std::string("undo ") + label, ba::bench::Summarise(undo), 0, true);
    table.PrintRow(std::string("redo ") + label, ba::bench::Summarise(redo), 0, true);
}

MakeChange Filter(ba::FilterKind kind, std::size_t window)
{
    return [kind, window](const ba::CBoreAnalystDoc& doc, ba::IMessageSink& sink) {
        return ba::MakeFilterChange(doc, 0, {kind, window, ""}, sink);
    };
}

MakeChange Clip()
{
    return [](const ba::CBoreAnalystDoc& doc, ba::IMessageSink& sink) {
        return ba::MakeClipChange(doc, 0, {60.0f, 90.0f, false, ""}, sink);
    };
}

void TimeUtilities(int runs)
{
    const auto source = ba::bench::MakeGammaRayTrace("GR", kSamples, kFirstDepth, kStep, 1);
    std::printf("bench_trace_utilities: one line trace of %zu samples (a null in 997); %d runs per row\n", kSamples,
                runs);
    const Row fast[] = {
        {"filter mean, window 11", Filter(ba::FilterKind::Mean, 11), true},
        {"filter mean, window 1001", Filter(ba::FilterKind::Mean, 1001), false},
        {"filter triangle, window 11", Filter(ba::FilterKind::Triangle, 11), false},
        {"clip to 60..90", Clip(), true},
        {"edit: set the lower half to 50",
         [](const ba::CBoreAnalystDoc& doc, ba::IMessageSink& sink) {
             return ba::MakeEditChange(doc, 0, {{kMiddleDepth, 1e9}, ba::EditAction::SetValue, 50.0f}, sink);
         },
         false},
        {"cut: keep the upper half",
         [](const ba::CBoreAnalystDoc& doc, ba::IMessageSink& sink) {
             return ba::MakeCutChange(doc, 0, {{0, kMiddleDepth}, ba::CutMode::Keep, ""}, sink);
         },
         false},
    };
    const ba::bench::TimingTable fastTable(44, 0.1);
    fastTable.PrintHeading("change computed and applied");
    for (const Row& row : fast) TimeRow(row, *source, runs, fastTable);

    const Row medians[] = {
        {"filter median, window 11", Filter(ba::FilterKind::Median, 11), true},
        {"filter median, window 101", Filter(ba::FilterKind::Median, 101), false},
        {"filter median, window 1001", Filter(ba::FilterKind::Median, 1001), false},
        {"despike, window 11, K 3",
         [](const ba::CBoreAnalystDoc& doc, ba::IMessageSink& sink) {
             return ba::MakeDespikeChange(doc, 0, {11, 3.0f, ""}, sink);
         },
         false},
    };
    const ba::bench::TimingTable medianTable(44, 1.0);
    std::printf("\n");
    medianTable.PrintHeading("change computed and applied");
    for (const Row& row : medians) TimeRow(row, *source, runs, medianTable);

    const ba::bench::TimingTable historyTable(44, 0.05);
    std::printf("\n");
    historyTable.PrintHeading("history step");
    TimeHistory("filter mean, window 11", Filter(ba::FilterKind::Mean, 11), *source, runs, historyTable);
    TimeHistory("clip to 60..90", Clip(), *source, runs, historyTable);
}

} // namespace

int main(int argc, char** argv)
{
    const auto options = ba::bench::ParseOptions(kProgram, argc, argv);
    return ba::bench::RunMeasurements(kProgram, [&] { TimeUtilities(options.runs); });
}
