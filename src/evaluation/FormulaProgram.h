#pragma once
// A parsed formula compiled once into a flat list of instructions over registers, each
// register a block of kFormulaBlock doubles, so that a whole log is computed a block at a
// time with no interpretation of text or allocation per sample. Sub-formulas without a
// trace or DEPTH are computed once while compiling.
//
// Register layout: the traces' values (in the order of ParsedFormula::traceNames), then
// DEPTH when the formula uses it, then constants and working registers as the compiler
// needs them; a working register is reused once the value it held has been used.

#include "evaluation/FormulaOps.h"
#include "evaluation/FormulaParser.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <utility>
#include <vector>

namespace ba {

inline constexpr std::size_t kFormulaBlock = 1024;

class CFormulaProgram {
public:
    explicit CFormulaProgram(const ParsedFormula& parsed);

    std::size_t TraceCount() const { return m_traceCount; }
    bool UsesDepth() const { return m_usesDepth; }
    std::size_t DepthRegister() const { return m_traceCount; }
    std::size_t RegisterCount() const { return m_registerCount; }

    // Storage for one evaluation: every register, the constants already in place.
    std::vector<double> MakeRegisters() const;
    // Runs the instructions over one block (the input registers filled) and returns the
    // block that holds the result.
    const double* Run(std::span<double> registers) const;

private:
    struct Instruction {
        formula::Op op{};
        bool constantExponent = false; // Power with `exponent` in place of register b
        std::uint16_t target = 0;
        std::uint16_t a = 0;
        std::uint16_t b = 0;
        std::uint16_t c = 0;
        double exponent = 0.0;
    };
    struct Operand {
        bool constant = false;
        double value = 0.0;        // a constant's value
        std::uint16_t reg = 0;     // otherwise its register
    };

    Operand Compile(const FormulaNode& node, const ParsedFormula& parsed);
    std::uint16_t Materialise(const Operand& operand);
    std::uint16_t NewRegister();
    std::uint16_t TakeWorkRegister();
    bool IsWorkRegister(std::uint16_t reg) const;
    void Release(const Operand& operand);

    std::size_t m_traceCount = 0;
    bool m_usesDepth = false;
    std::vector<std::pair<std::uint16_t, double>> m_constants; // register, value
    std::vector<Instruction> m_instructions;
    std::vector<std::uint16_t> m_freeWork; // working registers free for reuse
    std::vector<bool> m_isWork;            // by register
    std::size_t m_registerCount = 0;
    std::uint16_t m_result = 0;
};

} // namespace ba
