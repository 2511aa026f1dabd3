#pragma once
// The operations of the formula language and what each does to one value. Values are
// doubles; a NaN stands for "no value": a null input or a result outside a function's
// domain. Every operation keeps a NaN a NaN (even where the C library would not, as in
// pow(NaN, 0) = 1), and where a division, a power or a function gives an infinity — a
// division by zero, a logarithm of zero, an overflow — the result is a NaN too, so that it
// cannot disappear later in a finite result such as 1/(1/0) = 0. Sums, differences and
// products are left as they come: from values a float can hold they overflow only after a
// chain of huge powers, and an infinite result is caught where it is stored. The block
// kernels and constant folding both call these, so a constant sub-formula gives the value
// a sample would.

#include "numeric/VectorPow.h"

#include <cmath>
#include <cstdint>
#include <limits>
#include <string_view>

namespace ba::formula {

enum class Op : std::uint8_t {
    // one operand
    Negate,
    Not,
    Abs,
    Sqrt,
    Exp,
    Ln,
    Log10,
    Sin,
    Cos,
    Tan,
    Asin,
    Acos,
    Atan,
    Sinh,
    Cosh,
    Tanh,
    // two operands
    Add,
    Subtract,
    Multiply,
    Divide,
    Power,
    Min,
    Max,
    Less,
    LessEqual,
    Greater,
    GreaterEqual,
    Equal,
    NotEqual,
    And,
    Or,
    // three operands
    If,
};

inline constexpr double kNoValue = std::numeric_limits<double>::quiet_NaN();

// Operand count of an operation.
constexpr int Arity(Op op)
{
    if (op <= Op::Tanh) return 1;
    if (op <= Op::Or) return 2;
    return 3;
}

// A finite value as it is; an infinity or a NaN as no value.
inline double Finite(double r) { return r - r == 0.0 ? r : kNoValue; }
inline bool IsNoValue(double v) { return v != v; }
inline double Truth(bool b) { return b ? 1.0 : 0.0; }

inline double Apply1(Op op, double a)
{
    switch (op) {
    case Op::Negate: return -a;
    case Op::Not: return IsNoValue(a) ? kNoValue : Truth(a == 0.0);
    case Op::Abs: return std::fabs(a);
    case Op::Sqrt: return std::sqrt(a);
    case Op::Exp: return Finite(std::exp(a));
    case Op::Ln: return Finite(std::log(a));
    case Op::Log10: return Finite(std::log10(a));
    case Op::Sin: return std::sin(a);
    case Op::Cos: return std::cos(a);
    case Op::Tan: return Finite(std::tan(a));
    case Op::Asin: return std::asin(a);
    case Op::Acos: return std::acos(a);
    case Op::Atan: return std::atan(a);
    case Op::Sinh: return Finite(std::sinh(a));
    case Op::Cosh: return Finite(std::cosh(a));
    case Op::Tanh: return std::tanh(a);
    default: return kNoValue;
    }
}

// a^b; a square is a product, any other power goes through the project's vector pow so
// that a power computed alone equals the same power inside a block.
inline double Power(double a, double b)
{
    if (IsNoValue(a) || IsNoValue(b)) return kNoValue;
    if (b == 2.0) return Finite(a * a);
    return Finite(numeric::PowOne(a, b));
}

inline double Apply2(Op op, double a, double b)
{
    const bool either = IsNoValue(a) || IsNoValue(b);
    switch (op) {
    case Op::Add: return a + b;
    case Op::Subtract: return a - b;
    case Op::Multiply: return a * b;
    // A division by zero gives an infinity, or a NaN for 0/0: Finite turns either into no
    // value, so no test of the divisor is needed.
    case Op::Divide: return Finite(a / b);
    case Op::Power: return Power(a, b);
    case Op::Min: return either ? kNoValue : (b < a ? b : a);
    case Op::Max: return either ? kNoValue : (b > a ? b : a);
    case Op::Less: return either ? kNoValue : Truth(a < b);
    case Op::LessEqual: return either ? kNoValue : Truth(a <= b);
    case Op::Greater: return either ? kNoValue : Truth(a > b);
    case Op::GreaterEqual: return either ? kNoValue : Truth(a >= b);
    case Op::Equal: return either ? kNoValue : Truth(a == b);
    case Op::NotEqual: return either ? kNoValue : Truth(a != b);
    case Op::And: return either ? kNoValue : Truth(a != 0.0 && b != 0.0);
    case Op::Or: return either ? kNoValue : Truth(a != 0.0 || b != 0.0);
    default: return kNoValue;
    }
}

// IF(c, a, b) takes only the branch it chooses: what the other one holds does not matter.
inline double Choose(double c, double a, double b) { return IsNoValue(c) ? kNoValue : (c != 0.0 ? a : b); }

// A function of the language: its name (matched regardless of case), its operation and
// how many arguments it takes (MIN, MAX, AND and OR take two or more and are chained).
struct FunctionInfo {
    std::string_view name;
    Op op;
    int arguments;
    bool chained;
};

inline constexpr FunctionInfo kFunctions[] = {
    {"SQRT", Op::Sqrt, 1, false},   {"EXP", Op::Exp, 1, false},     {"LN", Op::Ln, 1, false},
    {"LOG10", Op::Log10, 1, false}, {"ABS", Op::Abs, 1, false},     {"SIN", Op::Sin, 1, false},
    {"COS", Op::Cos, 1, false},     {"TAN", Op::Tan, 1, false},     {"ASIN", Op::Asin, 1, false},
    {"ACOS", Op::Acos, 1, false},   {"ATAN", Op::Atan, 1, false},   {"SINH", Op::Sinh, 1, false},
    {"COSH", Op::Cosh, 1, false},   {"TANH", Op::Tanh, 1, false},   {"MIN", Op::Min, 2, true},
    {"MAX", Op::Max, 2, true},      {"IF", Op::If, 3, false},       {"AND", Op::And, 2, true},
    {"OR", Op::Or, 2, true},
};

} // namespace ba::formula
