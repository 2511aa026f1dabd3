// Measures the common-logs equations: deriving a log over 10,000,000 samples (the formula
// over whole logs, and the dialog's whole OK with its new trace), and fitting two
// coefficients to ground truth with the Newton solver from its start grid. Prints figures
// only: speed is judged by a reader, never asserted.
//
//   bench_equation [--runs N]
//
// --runs    timed runs of each row (default 7, at least 5); median, min and max are printed;
//           each fit row is timed over 25 times as many runs

#include "BenchSupport.h"
#include "BenchTiming.h"

#include "base/MessageSink.h"
#include "evaluation/CommonLogs.h"
#include "model/BoreAnalystDoc.h"
#include "model/LineTrace.h"
#include "numeric/VectorPow.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace {

constexpr ba::bench::Program kProgram{.name = "bench_equation",
                                      .usage = "[--runs N]",
                                      .defaultRuns = 7,
                                      .fewestRuns = 5};

constexpr std::size_t kSamples = 10'000'000;
constexpr double kTargetSamplesPerSecond = 50e6;
constexpr double kFitTargetSeconds = 0.010;
constexpr int kFitRunsPerRun = 25;

// A smooth synthetic log, one null in 1000 samples.
std::vector<float> MakeValues(std::size_t n, double base, double swing)
{
    std::vector<float> values(n);
    for (std::size_t i = 0; i < n; ++i) {
        const double smooth = base + swing * std::sin(static_cast<double>(i) * 1e-3);
        values[i] = i % 1000 == 999 ? ba::kNullValue : static_cast<float>(smooth);
    }
    return values;
}

std::unique_ptr<ba::CLineTrace> MakeLog(const std::string& name, const std::vector<float>& values)
{
    auto trace = std::make_unique<ba::CLineTrace>(1, ba::kPenSolid, 0, 0.0f, 100.0f, name, "");
    trace->StoredDepths().Reserve(values.size());
    trace->Values().Reserve(values.size());
    for (std::size_t i = 0; i < values.size(); ++i) trace->AppendSample(100.0f + static_cast<float>(i) * 0.1f, values[i]);
    return trace;
}

void PrintHeading(const char* title, const char* target)
{
    std::printf("\n  %-56s %9s %9s %9s %12s   %s\n", title, "median s", "min s", "max s", "Msamples/s", target);
}

void PrintRate(const char* label, const ba::bench::RunStats& s, std::size_t samples)
{
    const double rate = static_cast<double>(samples) / s.median;
    std::printf("  %-56s %9.4f %9.4f %9.4f %12.1f   %s\n", label, s.median, s.minimum, s.maximum, rate / 1e6,
                rate >= kTargetSamplesPerSecond ? "met" : "MISSED");
}

void Fail(const char* what)
{
    std::fprintf(stderr, "bench_equation: %s\n", what);
    std::exit(1);
}

struct FormulaRow {
    const char* label;
    int equation;
    ba::EquationCoefficients coefficients;
    const std::vector<float>* l1;
    const std::vector<float>* l2;
};

// Typical ground truth for two unknowns: the values the true coefficients give at two
// depths, as a user would read them off core data.
struct FitRow {
    const char* label;
    int equation;
    std::vector<ba::GroundTruthSample> points;
    float expected1;
    float expected2;
};

} // namespace

int main(int argc, char** argv)
{
    const auto options = ba::bench::ParseOptions(kProgram, argc, argv);
    std::printf("bench_equation: %zu samples per derived log; %d runs per row; powers %s\n", kSamples, options.runs,
                ba::numeric::VectorPowInUse() ? "4 or 8 at a time (AVX2)" : "one at a time");

    const std::vector<float> resistivity = MakeValues(kSamples, 20.0, 15.0);
    // The clay and resistive-fluid forms give a porosity in shaly, low-resistivity beds.
    const std::vector<float> shalyResistivity = MakeValues(kSamples, 3.0, 1.5);
    const std::vector<float> waterResistivity = MakeValues(kSamples, 0.05, 0.01);
    // Formation water resistivity as it is usually given: one value per zone of 500 m.
    std::vector<float> zonedWaterResistivity(kSamples);
    for (std::size_t i = 0; i < kSamples; ++i) zonedWaterResistivity[i] = 0.04f + 0.002f * static_cast<float>(i / 5000 % 10);
    const std::vector<float> shaleVolume = MakeValues(kSamples, 0.3, 0.2);
    const std::vector<float> velocity = MakeValues(kSamples, 4000.0, 1000.0);
    const std::vector<float> porosity = MakeValues(kSamples, 0.2, 0.1);
    std::vector<float> out(kSamples);

    PrintHeading("the formula over whole logs", "target >= 50 Msamples/s");
    const FormulaRow formulas[] = {
        {"0 linear (R)", 0, {2.0f, 1.0f}, &resistivity, nullptr},
        {"3 Archie (R, Rw)", 3, {1.0f, -2.0f}, &resistivity, &waterResistivity},
        {"4 Archie, resistive fluids (R, Rw)", 4, {1.0f, -2.0f, 0.05f}, &shalyResistivity, &waterResistivity},
        {"6 Archie, clay + resistive fluids (R, Rw, Vsh)", 6, {1.0f, -2.0f, 0.005f, 4.0f}, &shalyResistivity,
         &waterResistivity},
        {"6 the same, Rw by zone", 6, {1.0f, -2.0f, 0.005f, 4.0f}, &shalyResistivity, &zonedWaterResistivity},
        {"10 Raymer-Hunt (Vp)", 10, {1500.0f, 5500.0f}, &velocity, nullptr},
        {"14 Jorgensen permeability (PHI)", 14, {-2.0f}, &porosity, nullptr},
    };
    for (const FormulaRow& row : formulas) {
        const std::span<const float> l2 = row.l2 != nullptr ? std::span<const float>(*row.l2) : std::span<const float>();
        const ba::bench::RunStats s = ba::bench::TimeRuns(
            options.runs,
            [&] {
                ba::EvaluateEquation(row.equation, *row.l1, l2, shaleVolume, row.coefficients, out);
                return out[kSamples / 2];
            },
            [&](float) {
                // Inputs where a formula has no real value (NaN) would time the library's
                // slow path for special values, not the equation.
                const auto nan = std::count_if(out.begin(), out.end(), [](float v) { return std::isnan(v); });
                if (nan > static_cast<long>(kSamples / 100)) Fail("more than 1% of the derived values are NaN");
                if (ba::IsNullSample(out[kSamples / 3])) Fail("a derived value is missing");
            });
        PrintRate(row.label, s, kSamples);
    }

    PrintHeading("the dialog's OK: a new trace in the document", "target >= 50 Msamples/s");
    {
        ba::CBoreAnalystDoc doc;
        doc.AddTrace(MakeLog("R", resistivity));
        doc.AddTrace(MakeLog("RW", waterResistivity));
        ba::CCommonLogs dialog;
        dialog.equation = 3;
        dialog.logs = {"R", "RW", ""};
        dialog.coefficients = {1.0f, -2.0f};
        const ba::bench::RunStats s = ba::bench::TimeRuns(
            options.runs,
            [&] {
                ba::CollectingMessageSink sink;
                return dialog.OnOk(doc, sink);
            },
            [&](const ba::CLineTrace* trace) {
                if (trace == nullptr || trace->SampleCount() != kSamples) Fail("OK did not derive the whole log");
                doc.Undo(); // back to the inputs for the next run
            });
        PrintRate("3 Archie (R, Rw), OK", s, kSamples);
    }

    std::printf("\n  %-52s %9s %9s %9s   target < %g ms\n", "fit of two unknowns, from the start grid", "median ms",
                "min ms", "max ms", kFitTargetSeconds * 1e3);
    const std::vector<FitRow> fits = {
        // R = a·Rw·φ^m with a = 0.62, m = −2.15 (the program's sign of m).
        {"3 Archie: a, m", 3,
         {{{25.0f, 0.05f, 0.0f}, static_cast<float>(std::pow(25.0 / (0.62 * 0.05), 1.0 / -2.15))},
          {{4.0f, 0.05f, 0.0f}, static_cast<float>(std::pow(4.0 / (0.62 * 0.05), 1.0 / -2.15))}},
         0.62f, -2.15f},
        {"1 shale volume: GRsh, GRss", 1,
         {{{30.0f, 0.0f, 0.0f}, 0.1f}, {{110.0f, 0.0f, 0.0f}, 0.9f}}, 120.0f, 20.0f},
        // Vp = (1 − φ)²·Vma + φ·Vf, Vf = 1500, Vma = 5500 m/s.
        {"10 Raymer-Hunt in m/s: Vf, Vma", 10,
         {{{4605.0f, 0.0f, 0.0f}, 0.1f}, {{3145.0f, 0.0f, 0.0f}, 0.3f}}, 1500.0f, 5500.0f},
    };
    const ba::CoefficientMask firstTwo = {true, true, false, false, false};
    for (const FitRow& row : fits) {
        const ba::bench::RunStats s = ba::bench::TimeRuns(
            options.runs * kFitRunsPerRun,
            [&] {
                ba::CollectingMessageSink sink;
                return ba::FitCoefficients(row.equation, {}, firstTwo, row.points, sink);
            },
            [&](const std::optional<ba::EquationCoefficients>& c) {
                if (!c || std::fabs((*c)[0] - row.expected1) > 1e-3f * std::fabs(row.expected1) ||
                    std::fabs((*c)[1] - row.expected2) > 1e-3f * std::fabs(row.expected2)) {
                    Fail("a fit did not recover its coefficients");
                }
            });
        std::printf("  %-52s %9.4f %9.4f %9.4f   %s\n", row.label, s.median * 1e3, s.minimum * 1e3, s.maximum * 1e3,
                    s.median < kFitTargetSeconds ? "met" : "MISSED");
    }
    return 0;
}
