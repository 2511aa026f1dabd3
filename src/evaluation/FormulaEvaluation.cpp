#include "evaluation/FormulaEvaluation.h"

#include "evaluation/FormulaParser.h"
#include "evaluation/FormulaProgram.h"
#include "model/BoreAnalystDoc.h"
#include "model/DerivedLineTraces.h"
#include "model/LineTraceCursor.h"
#include "numeric/InstructionSets.h"
#include "numeric/ParallelParts.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>

namespace ba {
namespace {

constexpr std::size_t kIrregularAxisFlag = 2;
// Below this many samples a second thread costs more than it saves.
constexpr std::size_t kSamplesPerThread = 1u << 16;
// The share a thread takes at a time: small enough for the threads to finish together when
// one core is slowed by other work, large enough to cost nothing to hand out.
constexpr std::size_t kSamplesPerChunk = 1u << 16;

// Calls f(i) for i < m; a whole block has a fixed trip count, which lets the compiler use
// vector instructions for simple bodies.
template <class F>
BA_INLINE_IN_CLONES void ForBlock(std::size_t m, F&& f)
{
    if (m == kFormulaBlock) {
        for (std::size_t i = 0; i < kFormulaBlock; ++i) f(i);
    } else {
        for (std::size_t i = 0; i < m; ++i) f(i);
    }
}

struct BoundFormula {
    CFormulaProgram program;
    std::vector<const CLineTrace*> traces; // in the program's input order
};

std::optional<BoundFormula> Bind(const CBoreAnalystDoc& doc, std::string_view text, IMessageSink& sink)
{
    const std::optional<ParsedFormula> parsed = ParseFormula(text, sink);
    if (!parsed) return std::nullopt;
    std::vector<const CLineTrace*> traces;
    for (const std::string& name : parsed->traceNames) {
        const CLineTrace* trace = FindLineTrace(doc, name);
        if (trace == nullptr) {
            sink.Warning(NoLineTraceMessage(name));
            return std::nullopt;
        }
        traces.push_back(trace);
    }
    return BoundFormula{CFormulaProgram(*parsed), std::move(traces)};
}

const char* AxisWord(std::int32_t depthUnit) { return IsTimeAxisCode(depthUnit) ? "time" : "depth"; }

// A depth and a time have nothing in common to interpolate at.
bool CheckAxes(const std::vector<const CLineTrace*>& traces, std::int32_t outputUnit, IMessageSink& sink)
{
    for (const CLineTrace* trace : traces) {
        if (IsTimeAxisCode(trace->DepthUnit()) == IsTimeAxisCode(outputUnit)) continue;
        sink.Warning("Error: \"" + trace->Name() + "\" is indexed by " + AxisWord(trace->DepthUnit()) +
                     ", but the log being computed is indexed by " + AxisWord(outputUnit) + ".");
        return false;
    }
    return true;
}

std::string NumberText(float value)
{
    char buffer[32];
    const auto [end, error] = std::to_chars(buffer, buffer + sizeof buffer, value);
    return error == std::errc() ? std::string(buffer, end) : std::to_string(value);
}

std::string NullSamplesWarning(std::string_view name, std::size_t count, float depth)
{
    return "Warning: \"" + std::string(name) + "\" is null at " + std::to_string(count) +
           (count == 1 ? " sample" : " samples") +
           " where a function was outside its domain, a division was by zero or a result overflowed; the first is "
           "at depth " +
           NumberText(depth) + ".";
}

// How an input trace is read at the depths being computed.
enum class Reading {
    BySample, // the trace whose samples are being computed: its own values
    Shared,   // the same depths: ValueAt at its own samples, without a search
    Cursor,   // any other: a cursor walking along it
};

struct Input {
    const CLineTrace* trace = nullptr;
    Reading reading = Reading::Cursor;
    // The factor from a computed display depth to this trace's display depth, when its
    // depth unit differs.
    std::optional<double> depthScale;
};

struct Setup {
    const CFormulaProgram* program = nullptr;
    std::vector<Input> inputs;
    const CLineTrace* depthTrace = nullptr; // the depths are this trace's samples ...
    std::span<const float> depths;          // ... or these display depths
    std::size_t count = 0;
    // Inputs read as Shared on condition: that their stored depths are depthTrace's and
    // that its display depths ascend strictly (which each block checks before it is used).
    std::vector<std::size_t> conditionallyShared;
};

// Whether the display depths of samples first..first+m-1 of `trace` each lie below the next
// (the last of the block against the first of the next block).
BA_ALSO_FOR_AVX2 bool BlockAscends(const CLineTrace& trace, std::size_t first, std::size_t m)
{
    const float* stored = trace.StoredDepths().Data() + first;
    const std::size_t pairs = std::min(m, trace.SampleCount() - 1 - first);
    const double factor = DepthUnitFactor(trace.DepthUnit());
    const auto display = [factor](float depth) { return static_cast<float>(static_cast<double>(depth) * factor); };
    std::uint32_t ascending = 1;
    // Whole blocks have a fixed trip count, so that whole vectors are compared at a time; a
    // NaN fails either test.
    if (factor == 1.0 && pairs == kFormulaBlock) { // the display depths are the stored ones
        for (std::size_t i = 0; i < kFormulaBlock; ++i) ascending &= stored[i] < stored[i + 1] ? 1u : 0u;
    } else {
        for (std::size_t i = 0; i < pairs; ++i) ascending &= display(stored[i]) < display(stored[i + 1]) ? 1u : 0u;
    }
    return ascending != 0;
}

// Whether samples first..first+m-1 keep the conditions of setup.conditionallyShared: the
// display depths ascend, and every such input has the same stored depths.
bool BlockKeepsSharedDepths(const Setup& setup, std::size_t first, std::size_t m)
{
    if (!BlockAscends(*setup.depthTrace, first, m)) return false;
    const float* stored = setup.depthTrace->StoredDepths().Data();
    for (const std::size_t k : setup.conditionallyShared) {
        const CFloatArray& other = setup.inputs[k].trace->StoredDepths();
        if (other.SharesStorageWith(setup.depthTrace->StoredDepths())) continue;
        if (std::memcmp(other.Data() + first, stored + first, m * sizeof(float)) != 0) return false;
    }
    return true;
}

// The smallest and largest value that is not null, for the new trace's plot scale.
struct ValueSpan {
    float lo = std::numeric_limits<float>::infinity();
    float hi = -std::numeric_limits<float>::infinity();

    // Eight running extremes side by side, so that whole vectors are compared at a time.
    BA_INLINE_IN_CLONES void Include(const float* values, std::size_t m)
    {
        constexpr std::size_t kLanes = 8;
        std::array<float, kLanes> lanesLo;
        std::array<float, kLanes> lanesHi;
        lanesLo.fill(lo);
        lanesHi.fill(hi);
        std::size_t i = 0;
        for (; i + kLanes <= m; i += kLanes) {
            for (std::size_t j = 0; j < kLanes; ++j) {
                const float v = values[i + j];
                const bool null = IsNullSample(v);
                const float forLo = null ? std::numeric_limits<float>::infinity() : v;
                const float forHi = null ? -std::numeric_limits<float>::infinity() : v;
                lanesLo[j] = forLo < lanesLo[j] ? forLo : lanesLo[j];
                lanesHi[j] = forHi > lanesHi[j] ? forHi : lanesHi[j];
            }
        }
        for (; i < m; ++i) {
            if (IsNullSample(values[i])) continue;
            lanesLo[0] = std::min(lanesLo[0], values[i]);
            lanesHi[0] = std::max(lanesHi[0], values[i]);
        }
        for (std::size_t j = 0; j < kLanes; ++j) {
            lo = std::min(lo, lanesLo[j]);
            hi = std::max(hi, lanesHi[j]);
        }
    }
    void Include(const ValueSpan& other)
    {
        lo = std::min(lo, other.lo);
        hi = std::max(hi, other.hi);
    }
};

// What a computation reports besides the values: the samples made null by a problem (not
// by a null input), and the span of the values.
struct Outcome {
    std::size_t problems = 0;
    std::size_t firstProblem = std::numeric_limits<std::size_t>::max();
    ValueSpan span;

    void Include(const Outcome& other)
    {
        problems += other.problems;
        firstProblem = std::min(firstProblem, other.firstProblem);
        span.Include(other.span);
    }
};

// What one thread needs of its own, made before the threads start so that they never
// allocate.
struct PartState {
    std::vector<double> registers;
    std::vector<float> values; // a block per input
    std::vector<std::optional<CLineTraceCursor>> cursors;
    std::vector<std::uint32_t> flags; // a block: where some input is null
    std::vector<const float*> blockValues; // each input's values in the block
    Outcome outcome;
};

// ValueAt's interpolation between samples k - 1 and k of `trace`, at the depth of sample k:
// the same expression with the same types, so the same float.
float InterpolateAtSample(const CLineTrace& trace, std::size_t k, double factor)
{
    const float v0 = trace.Value(k - 1);
    const float v1 = trace.Value(k);
    if (IsNullSample(v0) || IsNullSample(v1)) return kNullValue;
    const float d = static_cast<float>(static_cast<double>(trace.StoredDepth(k)) * factor);
    const double d0 = static_cast<float>(static_cast<double>(trace.StoredDepth(k - 1)) * factor);
    const double d1 = d;
    if (d1 == d0) return v0;
    return static_cast<float>(v0 + (d - d0) * (static_cast<double>(v1) - v0) / (d1 - d0));
}

// Whether that interpolation is known to give v1 itself. With x the depth step and
// y = v1 - v0 it computes v0 + (x·y)/x in double: the roundings of y, of the product, of
// the quotient and of the sum leave it within |y|·2^-51 + |v1|·2^-53 of v1. When v1 is a
// normal float and |v0| <= 2^20·|v1| (so |y| <= (2^20 + 1)·|v1|), that is below |v1|·2^-30,
// and the rounding to float gives back v1, whose neighbours lie at least |v1|·2^-24 away.
// Written with & so that whole vectors are tested at a time.
BA_INLINE_IN_CLONES bool InterpolationGivesV1(float v0, float v1)
{
    const float a1 = std::fabs(v1);
    return (a1 >= std::numeric_limits<float>::min()) & (a1 <= std::numeric_limits<float>::max()) &
           (std::fabs(v0) <= 1048576.0f * a1);
}

// CLineTrace::ValueAt at the trace's own samples first..first+m-1, for a trace sharing the
// depths being computed. ValueAt's search lands on the sample itself on an irregular axis
// and at sample 0; otherwise on the pair ending at the sample, which gives v1 (tested as
// above) or is computed with ValueAt's expression.
BA_ALSO_FOR_AVX2 void ReadShared(const CLineTrace& trace, std::size_t first, std::size_t m, float* __restrict out)
{
    if (trace.IrregularAxis()) {
        for (std::size_t i = 0; i < m; ++i) out[i] = trace.Value(first + i);
        return;
    }
    const double factor = DepthUnitFactor(trace.DepthUnit());
    if (first > 0 && m == kFormulaBlock && first + m <= trace.Values().Size()) {
        const float* __restrict v = trace.Values().Data() + first - 1; // v[i], v[i + 1]: samples k - 1, k
        // Separate passes, each simple enough for whole vectors at a time.
        for (std::size_t i = 0; i < kFormulaBlock; ++i) {
            out[i] = IsNullSample(v[i]) | IsNullSample(v[i + 1]) ? kNullValue : v[i + 1];
        }
        std::uint32_t any = 0;
        for (std::size_t i = 0; i < kFormulaBlock; ++i) {
            any |= IsNullSample(out[i]) | InterpolationGivesV1(v[i], v[i + 1]) ? 0u : 1u;
        }
        if (any == 0) return;
        for (std::size_t i = 0; i < kFormulaBlock; ++i) {
            if (!IsNullSample(out[i]) && !InterpolationGivesV1(v[i], v[i + 1])) {
                out[i] = InterpolateAtSample(trace, first + i, factor);
            }
        }
        return;
    }
    for (std::size_t i = 0; i < m; ++i) {
        const std::size_t k = first + i;
        out[i] = k == 0 ? trace.Value(0) : InterpolateAtSample(trace, k, factor);
    }
}

BA_INLINE_IN_CLONES bool FitsFloat(double v) { return std::fabs(v) <= static_cast<double>(std::numeric_limits<float>::max()); }

// Stores a block of results as floats, null where a result has no value or does not fit a
// float.
BA_INLINE_IN_CLONES void StoreBlock(const double* __restrict result, float* __restrict target)
{
    for (std::size_t i = 0; i < kFormulaBlock; ++i) {
        target[i] = FitsFloat(result[i]) ? static_cast<float>(result[i]) : kNullValue;
    }
}

// Counts the samples of a block whose result has no value although every input has one:
// those that a function's domain, a division by zero or an overflow made null. `stored`
// is the block as stored (null where the result has no value), `inputNull` flags the
// samples where some input is null. The first pass compares floats with 32-bit flags, so
// whole vectors are tested at a time; the second confirms each candidate, since a result
// may also be the null value itself.
BA_INLINE_IN_CLONES void CountProblems(Outcome& outcome, const float* __restrict stored, const std::uint32_t* __restrict inputNull,
                   const double* result, std::size_t first, std::size_t m)
{
    std::uint32_t any = 0;
    ForBlock(m, [&](std::size_t i) { any |= (IsNullSample(stored[i]) ? 1u : 0u) & ~inputNull[i]; });
    if (any == 0) return;
    for (std::size_t i = 0; i < m; ++i) {
        if (inputNull[i] != 0 || FitsFloat(result[i])) continue;
        ++outcome.problems;
        outcome.firstProblem = std::min(outcome.firstProblem, first + i);
    }
}

// Computes samples begin..end-1 into `out`. Stops early, setting `failed`, when a block
// breaks the conditions of conditionallyShared, or when another thread found one that did.
BA_ALSO_FOR_AVX2 void EvaluatePart(const Setup& setup, PartState& state, std::size_t begin, std::size_t end, float* out,
                                   std::atomic<bool>& failed)
{
    const CFormulaProgram& program = *setup.program;
    const std::size_t inputCount = setup.inputs.size();
    const double factor = setup.depthTrace != nullptr ? DepthUnitFactor(setup.depthTrace->DepthUnit()) : 1.0;
    // The depths are needed for DEPTH and for the traces read with a cursor.
    const bool needDepths = program.UsesDepth() || std::any_of(setup.inputs.begin(), setup.inputs.end(), [](const Input& in) {
                                return in.reading == Reading::Cursor;
                            });
    std::array<float, kFormulaBlock> depths{};
    std::array<float, kFormulaBlock> converted{};
    std::array<float, kFormulaBlock> results{};
    std::vector<const float*>& blockValues = state.blockValues;

    for (std::size_t first = begin; first < end; first += kFormulaBlock) {
        const std::size_t m = std::min(kFormulaBlock, end - first);
        if (!setup.conditionallyShared.empty() && !BlockKeepsSharedDepths(setup, first, m)) {
            failed.store(true, std::memory_order_relaxed);
        }
        if (failed.load(std::memory_order_relaxed)) return;
        if (needDepths && setup.depthTrace != nullptr) {
            const float* stored = setup.depthTrace->StoredDepths().Data() + first;
            ForBlock(m, [&](std::size_t i) { depths[i] = static_cast<float>(static_cast<double>(stored[i]) * factor); });
        } else if (needDepths) {
            std::copy_n(setup.depths.begin() + static_cast<std::ptrdiff_t>(first), m, depths.begin());
        }

        if (inputCount == 0) std::fill(state.flags.begin(), state.flags.end(), 0u);
        for (std::size_t k = 0; k < inputCount; ++k) {
            const Input& input = setup.inputs[k];
            float* values = state.values.data() + k * kFormulaBlock;
            blockValues[k] = values;
            switch (input.reading) {
            case Reading::BySample: {
                // A damaged document may hold fewer values than depths; the rest read as null.
                const std::size_t stored = input.trace->Values().Size();
                const float* data = input.trace->Values().Data();
                if (m == kFormulaBlock && first + m <= stored) {
                    blockValues[k] = data + first; // read in place
                } else {
                    for (std::size_t i = 0; i < m; ++i) values[i] = first + i < stored ? data[first + i] : kNullValue;
                }
                break;
            }
            case Reading::Shared:
                ReadShared(*input.trace, first, m, values);
                break;
            case Reading::Cursor: {
                const float* at = depths.data();
                if (input.depthScale) {
                    for (std::size_t i = 0; i < m; ++i) {
                        converted[i] = static_cast<float>(static_cast<double>(depths[i]) * *input.depthScale);
                    }
                    at = converted.data();
                }
                CLineTraceCursor& cursor = *state.cursors[k];
                for (std::size_t i = 0; i < m; ++i) values[i] = cursor.ValueAt(at[i]);
                break;
            }
            }
            // Two passes of one lane width each, so that whole vectors go at a time. The
            // first input sets the flags, the others add to them.
            const float* __restrict v = blockValues[k];
            double* __restrict reg = state.registers.data() + k * kFormulaBlock;
            std::uint32_t* __restrict inputNull = state.flags.data();
            // Tested once widened (exactly), so that the test and the choice are both of
            // double width.
            constexpr double kNullWidened = kNullValue;
            for (std::size_t i = 0; i < kFormulaBlock; ++i) {
                const double value = v[i];
                reg[i] = value == kNullWidened ? formula::kNoValue : value;
            }
            const std::uint32_t keep = k == 0 ? 0u : ~0u;
            for (std::size_t i = 0; i < kFormulaBlock; ++i) {
                inputNull[i] = (inputNull[i] & keep) | (IsNullSample(v[i]) ? 1u : 0u);
            }
        }
        if (program.UsesDepth()) {
            double* reg = state.registers.data() + program.DepthRegister() * kFormulaBlock;
            for (std::size_t i = 0; i < kFormulaBlock; ++i) reg[i] = depths[i];
        }

        const double* result = program.Run(state.registers);
        // A whole block is written in place, the last one through a buffer.
        float* target = m == kFormulaBlock ? out + first : results.data();
        StoreBlock(result, target);
        state.outcome.span.Include(target, m);
        if (target == results.data()) std::copy_n(results.begin(), m, out + first);
        CountProblems(state.outcome, target, state.flags.data(), result, first, m);
    }
}

// Computes every sample into `out`, the work split over the machine's cores; nothing when
// the conditions of setup.conditionallyShared do not hold.
std::optional<Outcome> Evaluate(const Setup& setup, std::span<float> out)
{
    const std::size_t n = setup.count;
    const std::size_t parts = numeric::PartCount(n, kSamplesPerThread);
    std::vector<PartState> states(parts);
    for (PartState& state : states) {
        state.registers = setup.program->MakeRegisters();
        state.values.assign(setup.inputs.size() * kFormulaBlock, 0.0f);
        state.flags.assign(kFormulaBlock, 0);
        state.blockValues.resize(setup.inputs.size());
        state.cursors.resize(setup.inputs.size());
        for (std::size_t k = 0; k < setup.inputs.size(); ++k) {
            if (setup.inputs[k].reading == Reading::Cursor) state.cursors[k].emplace(*setup.inputs[k].trace);
        }
    }
    std::atomic<bool> failed = false;
    numeric::ForEachChunk(n, kSamplesPerChunk, parts, [&](std::size_t worker, std::size_t begin, std::size_t end) {
        EvaluatePart(setup, states[worker], begin, end, out.data(), failed);
    });
    if (failed) return std::nullopt;
    Outcome outcome;
    for (const PartState& state : states) outcome.Include(state.outcome);
    return outcome;
}

// Which of the inputs read as Shared on condition keep the condition over the whole trace;
// asked only when some does not.
std::vector<bool> KeepSharedDepths(const Setup& setup)
{
    std::vector<bool> keeps(setup.conditionallyShared.size(), false);
    const std::size_t n = setup.count;
    for (std::size_t first = 0; first < n; first += kFormulaBlock) {
        if (!BlockAscends(*setup.depthTrace, first, std::min(kFormulaBlock, n - first))) return keeps;
    }
    const float* stored = setup.depthTrace->StoredDepths().Data();
    for (std::size_t c = 0; c < keeps.size(); ++c) {
        const float* other = setup.inputs[setup.conditionallyShared[c]].trace->StoredDepths().Data();
        keeps[c] = std::memcmp(other, stored, n * sizeof(float)) == 0;
    }
    return keeps;
}

// A plot scale that shows the whole curve: its smallest and largest values.
void ScaleToValues(CLineTrace& trace, const ValueSpan& span)
{
    if (span.lo > span.hi) trace.SetScale(0.0f, 1.0f); // no value at all
    else if (span.lo == span.hi) trace.SetScale(span.lo - 0.5f, span.hi + 0.5f);
    else trace.SetScale(span.lo, span.hi);
}

} // namespace

std::unique_ptr<CLineTrace> ComputeFormulaLog(const CBoreAnalystDoc& doc, std::string_view formula,
                                              std::string name, std::string units, IMessageSink& sink)
{
    const std::optional<BoundFormula> bound = Bind(doc, formula, sink);
    if (!bound) return nullptr;
    if (bound->traces.empty()) {
        sink.Warning(std::string(kFormulaNamesNoTraceMessage));
        return nullptr;
    }
    const CLineTrace& first = *bound->traces.front();
    if (!CheckAxes(bound->traces, first.DepthUnit(), sink)) return nullptr;

    Setup setup;
    setup.program = &bound->program;
    setup.depthTrace = &first;
    setup.count = first.SampleCount();
    for (const CLineTrace* trace : bound->traces) {
        Input input{trace, Reading::Cursor, std::nullopt};
        if (trace == &first) {
            input.reading = Reading::BySample;
        } else if (trace->DepthUnit() != first.DepthUnit()) {
            input.depthScale = DepthUnitFactor(trace->DepthUnit()) / DepthUnitFactor(first.DepthUnit());
        } else if (trace->SampleCount() == setup.count && setup.count >= 3) {
            // A trace read at the first one's depths is usually one sampled with it. (Fewer
            // than three samples are searched differently by ValueAt.)
            input.reading = Reading::Shared;
            setup.conditionallyShared.push_back(setup.inputs.size());
        }
        setup.inputs.push_back(input);
    }

    auto trace = MakeDerivedLineTrace(doc, 0.0f, 1.0f, std::move(name), std::move(units));
    trace->SetDepthUnit(first.DepthUnit());
    trace->SetFlag(kIrregularAxisFlag, first.IrregularAxis());
    trace->StoredDepths() = first.StoredDepths(); // shared until either trace changes them
    // Every value is written by the threads that compute them, so the array is neither
    // zeroed nor touched here.
    trace->Values().SetSizeForOverwrite(setup.count);
    const std::span<float> values(trace->Values().Data(), setup.count);
    std::optional<Outcome> outcome = Evaluate(setup, values);
    if (!outcome) {
        // Some trace does not share the depths after all: read those that do not with a
        // cursor, and compute again.
        const std::vector<bool> keeps = KeepSharedDepths(setup);
        for (std::size_t c = 0; c < keeps.size(); ++c) {
            if (!keeps[c]) setup.inputs[setup.conditionallyShared[c]].reading = Reading::Cursor;
        }
        setup.conditionallyShared.clear();
        outcome = Evaluate(setup, values);
    }
    if (outcome->problems > 0) {
        sink.Warning(NullSamplesWarning(trace->Name(), outcome->problems, first.Depth(outcome->firstProblem)));
    }
    ScaleToValues(*trace, outcome->span);
    return trace;
}

std::optional<std::vector<float>> EvaluateFormulaAtDepths(const CBoreAnalystDoc& doc, std::string_view formula,
                                                          std::span<const float> depths, std::int32_t depthUnit,
                                                          std::string_view outputName, IMessageSink& sink)
{
    const std::optional<BoundFormula> bound = Bind(doc, formula, sink);
    if (!bound || !CheckAxes(bound->traces, depthUnit, sink)) return std::nullopt;
    Setup setup;
    setup.program = &bound->program;
    setup.depths = depths;
    setup.count = depths.size();
    for (const CLineTrace* trace : bound->traces) {
        Input input{trace, Reading::Cursor, std::nullopt};
        if (trace->DepthUnit() != depthUnit) {
            input.depthScale = DepthUnitFactor(trace->DepthUnit()) / DepthUnitFactor(depthUnit);
        }
        setup.inputs.push_back(input);
    }
    std::vector<float> values(depths.size());
    const Outcome outcome = *Evaluate(setup, values); // no condition to fail
    if (outcome.problems > 0) {
        sink.Warning(NullSamplesWarning(outputName, outcome.problems, depths[outcome.firstProblem]));
    }
    return values;
}

} // namespace ba
