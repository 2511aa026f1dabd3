// Measures the slowness-time coherence of sonic stations: 4 receivers of 1,000 samples at
// 10 µs, offsets 3, 4, 5 and 6 ft, the grid 40 to 300 µs/ft every 1 µs/ft, a 200 µs window.
// Prints the time of one station's map and the stations per second over a run of stations
// on one thread and on every core (net of making the waveforms).
//
//   bench_semblance [--runs N] [--stations N]

#include "BenchSupport.h"
#include "BenchTiming.h"

#include "numeric/ParallelParts.h"
#include "sonic/Semblance.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstdio>
#include <numbers>
#include <random>
#include <thread>
#include <vector>

namespace {

constexpr ba::bench::Program kProgram{.name = "bench_semblance",
                                      .usage = "[--runs N] [--stations N]",
                                      .defaultRuns = 5,
                                      .fewestRuns = 3};

constexpr std::size_t kReceivers = 4;
constexpr std::size_t kSamples = 1000;
constexpr double kSampleInterval = 10.0;
constexpr double kWindow = 200.0;
const std::vector<double> kOffsets = {3.0, 4.0, 5.0, 6.0};

// Compressional, shear and Stoneley Ricker arrivals with noise; the slownesses drift with
// the station so that no two are alike.
std::vector<std::vector<float>> MakeStation(std::size_t station, std::mt19937& rng)
{
    std::normal_distribution<double> noise(0.0, 0.05);
    const double drift = std::sin(static_cast<double>(station) * 0.01) * 10.0;
    const double modes[3][3] = {{60.0 + drift, 15000.0, 1.0}, {110.0 + drift, 10000.0, 2.0}, {220.0, 3000.0, 3.0}};
    std::vector<std::vector<float>> traces(kReceivers, std::vector<float>(kSamples));
    for (std::size_t r = 0; r < kReceivers; ++r) {
        for (std::size_t i = 0; i < kSamples; ++i) {
            const double t = static_cast<double>(i) * kSampleInterval;
            double v = noise(rng);
            for (const auto& m : modes) {
                const double u = std::numbers::pi * m[1] * 1e-6 * (t - kOffsets[r] * m[0] - 1e6 / m[1]);
                v += m[2] * (1.0 - 2.0 * u * u) * std::exp(-u * u);
            }
            traces[r][i] = static_cast<float>(v);
        }
    }
    return traces;
}

ba::ReceiverWaveforms View(const std::vector<std::vector<float>>& traces)
{
    ba::ReceiverWaveforms s;
    for (const auto& t : traces) s.traces.emplace_back(t);
    s.offsets = kOffsets;
    s.sampleInterval = kSampleInterval;
    return s;
}

[[noreturn]] void Fail(const char* what)
{
    std::fprintf(stderr, "bench_semblance: %s\n", what);
    std::exit(1);
}

} // namespace

int main(int argc, char** argv)
{
    std::size_t stations = 2000;
    ba::bench::CommonOptions options;
    ba::bench::ParseOptions(kProgram, argc, argv, options, [&](const std::string& option, const std::string& value) {
        if (option != "--stations") return false;
        stations = static_cast<std::size_t>(ba::bench::ParseWholeNumber(kProgram, option, value, 10, 1'000'000));
        return true;
    });
    const ba::SlownessGrid grid{40.0, 300.0, 1.0};
    std::mt19937 rng(1);
    std::vector<std::vector<std::vector<float>>> data;
    data.reserve(stations);
    for (std::size_t s = 0; s < stations; ++s) data.push_back(MakeStation(s, rng));
    const unsigned cores = std::max(1u, std::thread::hardware_concurrency());
    std::printf("bench_semblance: %zu receivers x %zu samples at %.0f us, %zu slownesses, %.0f us window; %d runs\n",
                kReceivers, kSamples, kSampleInterval, grid.Count(), kWindow, options.runs);

    const ba::bench::RunStats one = ba::bench::TimeRuns(
        options.runs, [&] { return ba::ComputeCoherenceMap(View(data[0]), grid, kWindow); },
        [&](const ba::CoherenceMap& map) {
            if (map.rho.empty()) Fail("no map");
        });
    std::printf("  one station's coherence map          median %.2f ms (min %.2f, max %.2f)   target < 50 ms: %s\n",
                one.median * 1e3, one.minimum * 1e3, one.maximum * 1e3, one.median < 0.05 ? "met" : "MISSED");

    for (const unsigned threads : {1u, cores}) {
        const ba::bench::RunStats all = ba::bench::TimeRuns(
            options.runs,
            [&] {
                std::vector<float> best(stations);
                ba::numeric::ForEachChunk(stations, 16, threads, [&](std::size_t, std::size_t begin, std::size_t end) {
                    for (std::size_t s = begin; s < end; ++s) {
                        const ba::CoherenceMap map = ba::ComputeCoherenceMap(View(data[s]), grid, kWindow);
                        best[s] = *std::max_element(map.rho.begin(), map.rho.end());
                    }
                });
                return best;
            },
            [&](const std::vector<float>& best) {
                if (best.back() < 0.5f) Fail("no coherent arrival found");
            });
        const double rate = static_cast<double>(stations) / all.median;
        std::printf("  %zu stations on %u thread%s            median %.3f s: %.0f stations/s   target >= 1000/s: %s\n",
                    stations, threads, threads == 1 ? " " : "s", all.median, rate, rate >= 1000.0 ? "met" : "MISSED");
    }
    return 0;
}
