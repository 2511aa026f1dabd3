#pragma once
// Writes Mount Sopris CLP raw-data records, and synthesises the waveforms a sonic tool
// would record in a formation of given slownesses. Shared by the tests, the test-file
// generator (make_raw_data), the benchmark and the fuzzer's seeds.
//
// Record layout written here: 2-byte length (whole record), 4-byte float depth, 2-byte
// type; a sonic data record (type 1) then has byte 8 = 32, byte 9 TX frequency (kHz),
// byte 10 stack interval (ms), bytes 11-12 zero, byte 13 the receiver count, byte 14
// zero, and from byte 15 one block per receiver: stacks-1 in the high nibble, rate 1 x 8,
// rate 2 x 8, n1, n2 (16-bit each), dipole flag and gain exponent nibbles, the samples
// (12 bits in 2 bytes) and the holdoff (10 us units).

#include <algorithm>
#include <bit>
#include <cmath>
#include <numbers>
#include <cstdint>
#include <random>
#include <span>
#include <stdexcept>
#include <vector>

namespace ba::synth {

struct ClpBlock {
    std::uint8_t txNumStacks = 1;  // 1..16
    std::uint16_t sampleRate1 = 8; // us
    std::uint16_t sampleRate2 = 8; // us
    std::uint16_t n1 = 0;
    std::uint16_t n2 = 0;
    bool dipole = false;
    std::uint8_t gainExponent = 0; // 0..15
    std::uint16_t holdoff = 10;    // 10 us units
    std::vector<std::uint16_t> samples; // n1 + n2 values 0..4095
};

inline void PutWord(std::vector<std::uint8_t>& out, std::uint16_t value)
{
    out.push_back(static_cast<std::uint8_t>(value & 0xFF));
    out.push_back(static_cast<std::uint8_t>(value >> 8));
}

inline void PutRecordHeader(std::vector<std::uint8_t>& out, float depth, std::uint16_t type)
{
    PutWord(out, 0); // length, patched by FinishRecord
    const auto bits = std::bit_cast<std::uint32_t>(depth);
    PutWord(out, static_cast<std::uint16_t>(bits & 0xFFFF));
    PutWord(out, static_cast<std::uint16_t>(bits >> 16));
    PutWord(out, type);
}

inline void FinishRecord(std::vector<std::uint8_t>& out, std::size_t start)
{
    const std::size_t length = out.size() - start;
    if (length > 0xFFFF) throw std::length_error("a raw-data record holds at most 65535 bytes");
    out[start] = static_cast<std::uint8_t>(length & 0xFF);
    out[start + 1] = static_cast<std::uint8_t>(length >> 8);
}

// A sonic waveform data record.
inline void AppendSonicRecord(std::vector<std::uint8_t>& out, float depth, std::uint8_t txFrequency,
                              std::uint8_t stackInterval, std::span<const ClpBlock> blocks)
{
    const std::size_t start = out.size();
    PutRecordHeader(out, depth, 1);
    out.push_back(32);
    out.push_back(txFrequency);
    out.push_back(stackInterval);
    out.push_back(0);
    out.push_back(0);
    out.push_back(static_cast<std::uint8_t>(blocks.size()));
    out.push_back(0);
    for (const ClpBlock& b : blocks) {
        if (b.samples.size() != std::size_t{b.n1} + b.n2) throw std::invalid_argument("samples must number n1 + n2");
        out.push_back(static_cast<std::uint8_t>((b.txNumStacks - 1) << 4));
        PutWord(out, static_cast<std::uint16_t>(b.sampleRate1 * 8));
        PutWord(out, static_cast<std::uint16_t>(b.sampleRate2 * 8));
        PutWord(out, b.n1);
        PutWord(out, b.n2);
        out.push_back(static_cast<std::uint8_t>((b.dipole ? 0x10 : 0) | (b.gainExponent & 0x0F)));
        for (const std::uint16_t s : b.samples) PutWord(out, s);
        PutWord(out, b.holdoff);
    }
    FinishRecord(out, start);
}

// The control record that marks a time-digitised recording with its step in milliseconds.
inline void AppendTimeDigitisingRecord(std::vector<std::uint8_t>& out, std::uint32_t stepMilliseconds)
{
    const std::size_t start = out.size();
    PutRecordHeader(out, 0.0f, 8);
    const std::uint8_t body[] = {1, 0, 0, 0, 3, 0, 0, 0};
    out.insert(out.end(), std::begin(body), std::end(body));
    PutWord(out, static_cast<std::uint16_t>(stepMilliseconds & 0xFFFF));
    PutWord(out, static_cast<std::uint16_t>(stepMilliseconds >> 16));
    FinishRecord(out, start);
}

// Any other record: a data record of another block id, or a record of another type.
inline void AppendOtherRecord(std::vector<std::uint8_t>& out, float depth, std::uint16_t type,
                              std::span<const std::uint8_t> body)
{
    const std::size_t start = out.size();
    PutRecordHeader(out, depth, type);
    out.insert(out.end(), body.begin(), body.end());
    FinishRecord(out, start);
}

// --- waveform synthesis -----------------------------------------------------------------

struct Formation {
    double compressionalSlowness = 60.0; // us/ft
    double shearSlowness = 110.0;
    double stoneleySlowness = 220.0;
    // The borehole fluid, us/ft: a formation whose shear is not faster than the fluid sends
    // no refracted shear arrival to the receivers.
    double fluidSlowness = 189.0;
    double noise = 4.0;           // standard deviation, counts
    double amplitude = 1.0;       // scales every arrival (stands in for the gain)
};

// A Ricker wavelet of peak frequency f (Hz) at time t (s) from its centre.
inline double Ricker(double t, double f)
{
    const double a = std::numbers::pi * f * t;
    return (1.0 - 2.0 * a * a) * std::exp(-a * a);
}

// The waveform a receiver `offsetFeet` from the transmitter records: compressional, shear
// (where the formation's shear is faster than the fluid) and (late, strong, low-frequency) Stoneley arrivals at offset x slowness, around the
// zero line 2047, clamped to 0..4095. Times are measured from the shot, so the first
// sample lies at holdoff x 10 us; samples follow at rate 1 for n1, then at rate 2 for n2.
inline std::vector<std::uint16_t> SynthesiseWaveform(const Formation& f, double offsetFeet, const ClpBlock& block,
                                                     std::mt19937& rng)
{
    struct Arrival {
        double slowness, amplitude, frequency;
    };
    const Arrival arrivals[] = {
        {f.compressionalSlowness, 300.0, 20000.0},
        {f.shearSlowness, 700.0, 12000.0},
        {f.stoneleySlowness, 1500.0, 4000.0},
    };
    std::normal_distribution<double> noise(0.0, f.noise);
    std::vector<std::uint16_t> out;
    out.reserve(std::size_t{block.n1} + block.n2);
    const std::size_t count = std::size_t{block.n1} + block.n2;
    double t = block.holdoff * 10.0; // us
    for (std::size_t i = 0; i < count; ++i) {
        double v = 0.0;
        for (const Arrival& a : arrivals) {
            if (a.slowness == f.shearSlowness && f.shearSlowness >= f.fluidSlowness) continue;
            const double arrival = offsetFeet * a.slowness; // us
            v += a.amplitude * f.amplitude * Ricker((t - arrival) * 1e-6, a.frequency);
        }
        if (f.noise > 0.0) v += noise(rng);
        const double level = std::clamp(std::round(2047.0 + v), 0.0, 4095.0);
        out.push_back(static_cast<std::uint16_t>(level));
        t += i < block.n1 ? block.sampleRate1 : block.sampleRate2;
    }
    return out;
}

// --- whole surveys ----------------------------------------------------------------------

// A logging run: one waveform record per station over a depth range, in the formation
// given, optionally time-digitised, marked as an FWS-upgraded probe, or interleaved with
// records that carry no waveforms.
struct SurveyPlan {
    double top = 100.0;    // record depths, metres
    double bottom = 110.0;
    double step = 0.1;
    bool descending = false;
    std::vector<double> offsetsFeet{3.0, 4.0, 5.0}; // one per receiver
    Formation formation;
    ClpBlock block;        // rates, counts, gain, holdoff and stacks of every receiver
    std::uint8_t txFrequency = 15;
    std::uint8_t stackInterval = 50;
    bool fwsUpgrade = false;             // TX frequency byte 0: the upgraded probe
    std::uint32_t timeStepMilliseconds = 0; // non-zero: a time-digitised recording
    bool otherRecords = false;           // a data record of another block and a record of another type per station
    // Slownesses that change with depth: each station takes the compressional, shear and
    // Stoneley slowness of the entry nearest its depth (entries by increasing depth, m).
    struct LoggedSlowness {
        double depth, compressional, shear, stoneley;
    };
    std::vector<LoggedSlowness> slownessLog;
    std::uint32_t seed = 1;

    std::size_t Stations() const
    {
        if (step <= 0.0 || bottom < top) return 0;
        return static_cast<std::size_t>(std::floor((bottom - top) / step + 1e-9)) + 1;
    }
};

// Writes the survey record by record through `write` (called with pieces of the file, each
// a few records long). Each receiver's waveform is synthesised once; stations differ by
// their noise, which keeps large files quick to make.
template <typename Write>
void WriteSurvey(const SurveyPlan& plan, Write&& write)
{
    std::mt19937 rng(plan.seed);
    std::vector<ClpBlock> blocks;
    Formation quiet = plan.formation;
    quiet.noise = 0.0;
    for (const double offset : plan.offsetsFeet) {
        ClpBlock b = plan.block;
        b.samples = SynthesiseWaveform(quiet, offset, b, rng);
        blocks.push_back(std::move(b));
    }
    std::vector<ClpBlock> clean = blocks;
    // The formation at a depth: the plan's, or the nearest entry of its slowness log.
    const auto formationAt = [&plan](double depth) {
        Formation f = plan.formation;
        f.noise = 0.0;
        if (plan.slownessLog.empty()) return f;
        const auto& log = plan.slownessLog;
        auto it = std::lower_bound(log.begin(), log.end(), depth,
                                   [](const SurveyPlan::LoggedSlowness& e, double d) { return e.depth < d; });
        if (it == log.end() || (it != log.begin() && depth - std::prev(it)->depth < it->depth - depth)) --it;
        f.compressionalSlowness = it->compressional;
        f.shearSlowness = it->shear;
        f.stoneleySlowness = it->stoneley;
        return f;
    };
    std::vector<std::uint8_t> piece;
    if (plan.timeStepMilliseconds != 0) AppendTimeDigitisingRecord(piece, plan.timeStepMilliseconds);

    // Noise from a small linear congruential generator: a sum of two uniform draws, so
    // tens of millions of samples cost little.
    std::uint32_t state = plan.seed * 2654435761u + 1;
    const auto uniform = [&state] {
        state = state * 1664525u + 1013904223u;
        return static_cast<double>(state >> 8) / 16777216.0 - 0.5;
    };
    const double spread = plan.formation.noise * 2.45; // the sum of two uniforms of this width has that deviation
    const std::uint8_t otherBody[] = {5, 0, 0, 0, 0, 0, 0, 0};
    const std::size_t stations = plan.Stations();
    for (std::size_t i = 0; i < stations; ++i) {
        const double k = static_cast<double>(plan.descending ? stations - 1 - i : i);
        const auto depth = static_cast<float>(plan.top + k * plan.step);
        if (!plan.slownessLog.empty()) {
            const Formation here = formationAt(depth);
            for (std::size_t r = 0; r < blocks.size(); ++r) {
                clean[r].samples = SynthesiseWaveform(here, plan.offsetsFeet[r], clean[r], rng);
                if (plan.formation.noise <= 0.0) blocks[r].samples = clean[r].samples;
            }
        }
        for (std::size_t r = 0; r < blocks.size(); ++r) {
            if (plan.formation.noise <= 0.0) break;
            for (std::size_t j = 0; j < blocks[r].samples.size(); ++j) {
                const double v = clean[r].samples[j] + spread * (uniform() + uniform());
                blocks[r].samples[j] = static_cast<std::uint16_t>(std::clamp(std::round(v), 0.0, 4095.0));
            }
        }
        AppendSonicRecord(piece, depth, plan.fwsUpgrade ? 0 : plan.txFrequency, plan.stackInterval, blocks);
        if (plan.otherRecords) {
            AppendOtherRecord(piece, depth, 1, otherBody);
            AppendOtherRecord(piece, depth, 3, std::span<const std::uint8_t>(otherBody, 2));
        }
        if (piece.size() >= (std::size_t{1} << 20) || i + 1 == stations) {
            write(std::span<const std::uint8_t>(piece));
            piece.clear();
        }
    }
    if (!piece.empty()) write(std::span<const std::uint8_t>(piece));
}

} // namespace ba::synth
