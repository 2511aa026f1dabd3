#pragma once
// Reads the text of a formula into a tree. The language:
//   numbers            12, 0.62, .5, 1e-3
//   traces             a bare name (a letter or '_' first, then letters, digits, '_', '.'
//                      or ':'), or any name in square brackets: GR, RHOB, [GR Spectrum]
//   PI, DEPTH          the constant and the depth of the sample being computed
//   operators          in rising precedence: OR; AND; NOT (prefix); comparisons
//                      < <= > >= = == <> != (1 for true, 0 for false); + -; * /;
//                      unary - and +; ^ (right-associative and tighter than unary minus:
//                      -2^2 is -4, 2^3^2 is 512, 2^-1 is 0.5)
//   functions          SQRT EXP LN LOG10 ABS SIN COS TAN ASIN ACOS ATAN SINH COSH TANH,
//                      MIN and MAX of two or more values, IF(condition, then, else),
//                      AND and OR also as functions of two or more values
// Function names and the words PI, DEPTH, AND, OR and NOT are read regardless of case;
// trace names are matched exactly. A trace whose name is one of those words, or does not
// fit a bare name, is written in brackets ([Depth], [OR]); a "]" in a bracketed name is
// written twice ([a]]b] names "a]b").

#include "base/MessageSink.h"
#include "evaluation/FormulaOps.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ba {

struct FormulaNode {
    enum class Kind : std::uint8_t { Number, Trace, Depth, Operation };
    Kind kind = Kind::Number;
    double number = 0.0;      // Number
    std::string name;         // Trace
    formula::Op op{};         // Operation
    std::vector<FormulaNode> operands;
    std::size_t height = 1;   // nodes on the longest path down, for the nesting limit
};

struct ParsedFormula {
    FormulaNode root;
    // Every trace the formula names, once each, in the order they first appear.
    std::vector<std::string> traceNames;
    bool usesDepth = false;
};

// The deepest nesting of operations a formula may have, and its longest text in bytes.
inline constexpr std::size_t kMaxFormulaDepth = 256;
inline constexpr std::size_t kMaxFormulaLength = 10000;

// The tree of `text`, or nothing after one message to the sink: the column (counted in
// characters from 1) and what was expected there for a syntax error, the name for an
// unknown function, the count for a function given the wrong number of arguments.
std::optional<ParsedFormula> ParseFormula(std::string_view text, IMessageSink& sink);

// How a formula names the trace `traceName`: the bare name when it reads as that trace,
// otherwise the name in brackets.
std::string FormulaTraceReference(std::string_view traceName);

} // namespace ba
