// Measures summing a 1024-channel spectrum around a sample of a synthetic spectral gamma
// log over 10, 100 and 1000 spectra, as the spectrum view does on every step of a drag
// along the log. Prints figures only: speed is judged by a reader, never asserted.
//
//   bench_spectrum_sum [--runs N]
//
// --runs    timed runs of every summing (default 201, at least 5); median, min and max are printed

#include "BenchSupport.h"
#include "BenchTiming.h"

#include "spectral/SpectrumSumming.h"
#include "spectral/SpectrumSynth.h"

#include <cstdio>
#include <cstdlib>

namespace {

constexpr ba::bench::Program kProgram{.name = "bench_spectrum_sum",
                                      .usage = "[--runs N]",
                                      .defaultRuns = 201,
                                      .fewestRuns = 5};

constexpr double kTargetMilliseconds = 5.0; // one drag step must leave time to draw
constexpr std::size_t kSpectra = 2000;

} // namespace

int main(int argc, char** argv)
{
    const auto options = ba::bench::ParseOptions(kProgram, argc, argv);
    ba::synth::LogOptions logOptions;
    logOptions.spectra = kSpectra;
    const auto trace = ba::synth::MakeSpectralLog("SPECTRAL", logOptions);
    std::printf("bench_spectrum_sum: %zu spectra of %zu channels, 1 s live time each; %d runs per row\n",
                trace->RowCount(), trace->RowSampleCount(0), options.runs);
    std::printf("  %-34s %11s %11s %11s   target < %g ms\n", "summing", "median ms", "min ms", "max ms",
                kTargetMilliseconds);

    struct Row {
        const char* label;
        std::size_t centre;
        std::size_t spectra;
    };
    const Row rows[] = {
        {"10 spectra, middle of the log", kSpectra / 2, 10},
        {"100 spectra, middle of the log", kSpectra / 2, 100},
        {"1000 spectra, middle of the log", kSpectra / 2, 1000},
        {"1000 spectra, at the last sample", kSpectra - 1, 1000},
    };
    ba::SummedSpectrum out; // reused, as the view reuses it while dragging
    for (const Row& row : rows) {
        const ba::SummingTarget target{.byDepth = false, .timeSum = static_cast<double>(row.spectra)};
        const ba::bench::RunStats s = ba::bench::TimeRuns(
            options.runs,
            [&] {
                ba::SumSpectraAround(*trace, row.centre, target, out);
                return out.spectraSummed;
            },
            [&](std::size_t summed) {
                if (summed != row.spectra) {
                    std::fprintf(stderr, "bench_spectrum_sum: summed %zu spectra instead of %zu\n", summed,
                                 row.spectra);
                    std::exit(1);
                }
            });
        std::printf("  %-34s %11.4f %11.4f %11.4f   %s\n", row.label, s.median * 1e3, s.minimum * 1e3,
                    s.maximum * 1e3, s.median * 1e3 < kTargetMilliseconds ? "met" : "MISSED");
    }
    return 0;
}
