#include "evaluation/FormulaProgram.h"

#include "numeric/InstructionSets.h"
#include "numeric/VectorPow.h"

#include <algorithm>
#include <array>
#include <bit>
#include <utility>

namespace ba {
namespace {

using formula::Op;

// Each kernel runs over a whole block; the fixed trip count and the unaliased target let
// the compiler use vector instructions for the arithmetic.
using Kernel = void (*)(const double* a, const double* b, const double* c, double* out);

template <Op kOp>
BA_ALSO_FOR_AVX2
void Kernel1(const double* __restrict a, const double*, const double*, double* __restrict out)
{
    for (std::size_t i = 0; i < kFormulaBlock; ++i) out[i] = formula::Apply1(kOp, a[i]);
}

template <Op kOp>
BA_ALSO_FOR_AVX2
void Kernel2(const double* __restrict a, const double* __restrict b, const double*, double* __restrict out)
{
    for (std::size_t i = 0; i < kFormulaBlock; ++i) out[i] = formula::Apply2(kOp, a[i], b[i]);
}

BA_ALSO_FOR_AVX2
void KernelIf(const double* __restrict c, const double* __restrict a, const double* __restrict b,
              double* __restrict out)
{
    for (std::size_t i = 0; i < kFormulaBlock; ++i) out[i] = formula::Choose(c[i], a[i], b[i]);
}

template <std::size_t... I>
constexpr std::array<Kernel, sizeof...(I)> KernelTable(std::index_sequence<I...>)
{
    return {[]() -> Kernel {
        constexpr Op op = static_cast<Op>(I);
        if constexpr (formula::Arity(op) == 1) return &Kernel1<op>;
        else if constexpr (formula::Arity(op) == 2) return &Kernel2<op>;
        else return &KernelIf;
    }()...};
}

constexpr auto kKernels = KernelTable(std::make_index_sequence<static_cast<std::size_t>(Op::If) + 1>());

// base^exponent over a block, with formula::Power's rules: the powers go through the vector
// routine a block at a time.
void PowerOfConstant(const double* __restrict base, double exponent, double* __restrict out)
{
    if (exponent == 2.0 || formula::IsNoValue(exponent)) {
        for (std::size_t i = 0; i < kFormulaBlock; ++i) out[i] = formula::Power(base[i], exponent);
        return;
    }
    numeric::PowArray(std::span<const double>(base, kFormulaBlock), exponent, std::span<double>(out, kFormulaBlock));
    for (std::size_t i = 0; i < kFormulaBlock; ++i) {
        out[i] = formula::IsNoValue(base[i]) ? formula::kNoValue : formula::Finite(out[i]);
    }
}

double Fold(Op op, const double* v)
{
    switch (formula::Arity(op)) {
    case 1: return formula::Apply1(op, v[0]);
    case 2: return formula::Apply2(op, v[0], v[1]);
    default: return formula::Choose(v[0], v[1], v[2]);
    }
}

} // namespace

CFormulaProgram::CFormulaProgram(const ParsedFormula& parsed)
    : m_traceCount(parsed.traceNames.size()), m_usesDepth(parsed.usesDepth),
      m_registerCount(m_traceCount + (m_usesDepth ? 1 : 0))
{
    m_isWork.assign(m_registerCount, false);
    const Operand result = Compile(parsed.root, parsed);
    m_result = Materialise(result);
}

std::uint16_t CFormulaProgram::NewRegister()
{
    m_isWork.push_back(false);
    return static_cast<std::uint16_t>(m_registerCount++);
}

bool CFormulaProgram::IsWorkRegister(std::uint16_t reg) const { return m_isWork[reg]; }

std::uint16_t CFormulaProgram::TakeWorkRegister()
{
    if (!m_freeWork.empty()) {
        const std::uint16_t reg = m_freeWork.back();
        m_freeWork.pop_back();
        return reg;
    }
    const std::uint16_t reg = NewRegister();
    m_isWork[reg] = true;
    return reg;
}

std::uint16_t CFormulaProgram::Materialise(const Operand& operand)
{
    if (!operand.constant) return operand.reg;
    // One register per distinct constant (NaN included, compared by its bits).
    const auto bits = std::bit_cast<std::uint64_t>(operand.value);
    for (const auto& [reg, value] : m_constants) {
        if (std::bit_cast<std::uint64_t>(value) == bits) return reg;
    }
    const std::uint16_t reg = NewRegister();
    m_constants.emplace_back(reg, operand.value);
    return reg;
}

void CFormulaProgram::Release(const Operand& operand)
{
    if (!operand.constant && IsWorkRegister(operand.reg)) m_freeWork.push_back(operand.reg);
}

CFormulaProgram::Operand CFormulaProgram::Compile(const FormulaNode& node, const ParsedFormula& parsed)
{
    switch (node.kind) {
    case FormulaNode::Kind::Number: return {true, node.number, 0};
    case FormulaNode::Kind::Depth: return {false, 0.0, static_cast<std::uint16_t>(DepthRegister())};
    case FormulaNode::Kind::Trace: {
        const auto at = std::find(parsed.traceNames.begin(), parsed.traceNames.end(), node.name);
        return {false, 0.0, static_cast<std::uint16_t>(at - parsed.traceNames.begin())};
    }
    case FormulaNode::Kind::Operation: break;
    }

    std::array<Operand, 3> operands{};
    const std::size_t count = node.operands.size();
    bool allConstant = true;
    for (std::size_t k = 0; k < count; ++k) {
        operands[k] = Compile(node.operands[k], parsed);
        allConstant = allConstant && operands[k].constant;
    }
    if (allConstant) {
        std::array<double, 3> values{};
        for (std::size_t k = 0; k < count; ++k) values[k] = operands[k].value;
        return {true, Fold(node.op, values.data()), 0};
    }
    // A known condition leaves only the branch it takes.
    if (node.op == Op::If && operands[0].constant && !formula::IsNoValue(operands[0].value)) {
        const bool taken = operands[0].value != 0.0;
        Release(operands[taken ? 2 : 1]);
        return operands[taken ? 1 : 2];
    }

    Instruction instruction;
    instruction.op = node.op;
    if (node.op == Op::Power && operands[1].constant) {
        instruction.constantExponent = true;
        instruction.exponent = operands[1].value;
        instruction.a = operands[0].reg;
    } else {
        std::array<std::uint16_t, 3> regs{};
        for (std::size_t k = 0; k < count; ++k) regs[k] = Materialise(operands[k]);
        instruction.a = regs[0];
        instruction.b = regs[1];
        instruction.c = regs[2];
    }
    // The target is taken before the operands are released, so it never is one of them.
    instruction.target = TakeWorkRegister();
    for (std::size_t k = 0; k < count; ++k) Release(operands[k]);
    m_instructions.push_back(instruction);
    return {false, 0.0, instruction.target};
}

std::vector<double> CFormulaProgram::MakeRegisters() const
{
    std::vector<double> registers(m_registerCount * kFormulaBlock, 0.0);
    for (const auto& [reg, value] : m_constants) {
        std::fill_n(registers.begin() + static_cast<std::ptrdiff_t>(reg * kFormulaBlock), kFormulaBlock, value);
    }
    return registers;
}

const double* CFormulaProgram::Run(std::span<double> registers) const
{
    double* base = registers.data();
    auto at = [base](std::uint16_t reg) { return base + static_cast<std::size_t>(reg) * kFormulaBlock; };
    for (const Instruction& step : m_instructions) {
        if (step.constantExponent) {
            PowerOfConstant(at(step.a), step.exponent, at(step.target));
            continue;
        }
        kKernels[static_cast<std::size_t>(step.op)](at(step.a), at(step.b), at(step.c), at(step.target));
    }
    return at(m_result);
}

} // namespace ba
