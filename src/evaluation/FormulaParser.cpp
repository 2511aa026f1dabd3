#include "evaluation/FormulaParser.h"

#include <algorithm>
#include <charconv>
#include <numbers>
#include <utility>

namespace ba {
namespace {

using formula::Op;

constexpr std::string_view kExpectedValue = "a value (a number, a trace name, a function or \"(\")";

bool IsAsciiLetter(char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); }
bool IsDigit(char c) { return c >= '0' && c <= '9'; }
// Bytes of characters beyond ASCII (UTF-8) may appear in bare names too.
bool IsNameStart(char c) { return IsAsciiLetter(c) || c == '_' || static_cast<unsigned char>(c) >= 0x80; }
bool IsNamePart(char c) { return IsNameStart(c) || IsDigit(c) || c == '.' || c == ':'; }
bool IsBlank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }

bool SameWord(std::string_view text, std::string_view upperWord)
{
    return text.size() == upperWord.size() &&
           std::equal(text.begin(), text.end(), upperWord.begin(), [](char a, char b) {
               return (a >= 'a' && a <= 'z' ? static_cast<char>(a - 'a' + 'A') : a) == b;
           });
}

const formula::FunctionInfo* FindFunction(std::string_view name)
{
    for (const auto& f : formula::kFunctions) {
        if (SameWord(name, f.name)) return &f;
    }
    return nullptr;
}

struct Token {
    enum class Kind { Number, Name, BracketName, Symbol, End, Unknown };
    Kind kind = Kind::End;
    std::string_view text; // as written, brackets included
    std::size_t offset = 0;
    double value = 0.0;
    std::string bracketName; // a bracketed name, "]]" read as "]"
};

bool IsReservedWord(std::string_view name)
{
    for (const std::string_view word : {"AND", "OR", "NOT", "PI", "DEPTH"}) {
        if (SameWord(name, word)) return true;
    }
    return FindFunction(name) != nullptr;
}

// Thrown inside the parser only; ParseFormula turns it into the message.
struct SyntaxProblem {
    std::string message;
};

class CFormulaParser {
public:
    explicit CFormulaParser(std::string_view text) : m_text(text) { Advance(); }

    ParsedFormula Parse()
    {
        ParsedFormula parsed;
        parsed.root = ParseOr();
        if (m_token.kind != Token::Kind::End) Expected("an operator or the end of the formula");
        parsed.traceNames = std::move(m_traceNames);
        parsed.usesDepth = m_usesDepth;
        return parsed;
    }

private:
    // --- tokens

    std::size_t Column(std::size_t offset) const
    {
        // Characters, not bytes: continuation bytes of UTF-8 do not start a column.
        return 1 + static_cast<std::size_t>(std::count_if(m_text.begin(), m_text.begin() + offset, [](char c) {
                   return (static_cast<unsigned char>(c) & 0xC0) != 0x80;
               }));
    }

    void Advance()
    {
        std::size_t i = m_next;
        while (i < m_text.size() && IsBlank(m_text[i])) ++i;
        Token t;
        t.offset = i;
        if (i == m_text.size()) {
            t.kind = Token::Kind::End;
        } else if (IsDigit(m_text[i]) || (m_text[i] == '.' && i + 1 < m_text.size() && IsDigit(m_text[i + 1]))) {
            i = ReadNumber(t);
        } else if (IsNameStart(m_text[i])) {
            std::size_t end = i + 1;
            while (end < m_text.size() && IsNamePart(m_text[end])) ++end;
            t.kind = Token::Kind::Name;
            t.text = m_text.substr(i, end - i);
            i = end;
        } else if (m_text[i] == '[') {
            std::size_t close = i + 1;
            for (;; ++close) {
                if (close == m_text.size()) {
                    m_token = {Token::Kind::End, {}, m_text.size(), 0.0, {}};
                    Expected("\"]\"");
                }
                if (m_text[close] != ']') {
                    t.bracketName += m_text[close];
                } else if (close + 1 < m_text.size() && m_text[close + 1] == ']') {
                    t.bracketName += ']';
                    ++close;
                } else {
                    break;
                }
            }
            if (close == i + 1) {
                m_token = {Token::Kind::Symbol, m_text.substr(close, 1), close, 0.0, {}};
                Expected("a trace name");
            }
            t.kind = Token::Kind::BracketName;
            t.text = m_text.substr(i, close + 1 - i);
            i = close + 1;
        } else {
            static constexpr std::string_view kTwoCharacter[] = {"<=", ">=", "==", "<>", "!="};
            const std::string_view rest = m_text.substr(i);
            const auto two = std::find_if(std::begin(kTwoCharacter), std::end(kTwoCharacter),
                                          [&](std::string_view s) { return rest.starts_with(s); });
            const bool symbol = std::string_view("+-*/^(),<>=").find(m_text[i]) != std::string_view::npos;
            t.kind = two != std::end(kTwoCharacter) || symbol ? Token::Kind::Symbol : Token::Kind::Unknown;
            const std::size_t length = two != std::end(kTwoCharacter) ? 2 : 1;
            t.text = rest.substr(0, length);
            i += length;
        }
        m_token = t;
        m_next = i;
    }

    std::size_t ReadNumber(Token& t)
    {
        std::size_t end = t.offset;
        while (end < m_text.size() && IsDigit(m_text[end])) ++end;
        if (end < m_text.size() && m_text[end] == '.') {
            ++end;
            while (end < m_text.size() && IsDigit(m_text[end])) ++end;
        }
        if (end < m_text.size() && (m_text[end] == 'e' || m_text[end] == 'E')) {
            std::size_t exponent = end + 1;
            if (exponent < m_text.size() && (m_text[exponent] == '+' || m_text[exponent] == '-')) ++exponent;
            if (exponent < m_text.size() && IsDigit(m_text[exponent])) {
                end = exponent;
                while (end < m_text.size() && IsDigit(m_text[end])) ++end;
            }
        }
        t.kind = Token::Kind::Number;
        t.text = m_text.substr(t.offset, end - t.offset);
        const auto [stop, error] = std::from_chars(t.text.data(), t.text.data() + t.text.size(), t.value);
        if (error != std::errc() || stop != t.text.data() + t.text.size()) {
            Fail("Error: The number \"" + std::string(t.text) + "\" at column " + std::to_string(Column(t.offset)) +
                 " is out of range.");
        }
        return end;
    }

    bool IsSymbol(std::string_view s) const { return m_token.kind == Token::Kind::Symbol && m_token.text == s; }
    bool IsWord(std::string_view upperWord) const
    {
        return m_token.kind == Token::Kind::Name && SameWord(m_token.text, upperWord);
    }
    bool NextIsOpenParenthesis() const
    {
        std::size_t i = m_next;
        while (i < m_text.size() && IsBlank(m_text[i])) ++i;
        return i < m_text.size() && m_text[i] == '(';
    }

    // --- messages

    [[noreturn]] static void Fail(std::string message) { throw SyntaxProblem{std::move(message)}; }

    [[noreturn]] void Expected(std::string_view what) const
    {
        std::string found = "\"" + std::string(m_token.text) + "\"";
        if (m_token.kind == Token::Kind::End) found = "the end of the formula";
        Fail("Error: Syntax error at column " + std::to_string(Column(m_token.offset)) + ": expected " +
             std::string(what) + ", found " + found + ".");
    }

    // Guards the recursion of nested parentheses, functions and prefix operators.
    class Nesting {
    public:
        explicit Nesting(CFormulaParser& parser) : m_parser(parser)
        {
            if (++m_parser.m_nesting > kMaxFormulaDepth) m_parser.TooDeep();
        }
        ~Nesting() { --m_parser.m_nesting; }
        Nesting(const Nesting&) = delete;
        Nesting& operator=(const Nesting&) = delete;

    private:
        CFormulaParser& m_parser;
    };

    [[noreturn]] void TooDeep() const
    {
        Fail("Error: The formula is nested too deeply at column " + std::to_string(Column(m_token.offset)) +
             " (at most " + std::to_string(kMaxFormulaDepth) + " levels).");
    }

    // --- tree

    FormulaNode Operation(Op op, std::vector<FormulaNode> operands)
    {
        FormulaNode node;
        node.kind = FormulaNode::Kind::Operation;
        node.op = op;
        std::size_t height = 0;
        for (const FormulaNode& operand : operands) height = std::max(height, operand.height);
        node.height = height + 1;
        node.operands = std::move(operands);
        // Long chains (1+1+1...) nest without recursion in the parser; they are held to
        // the same limit, since later passes walk the tree recursively.
        if (node.height > kMaxFormulaDepth) TooDeep();
        return node;
    }

    FormulaNode Binary(Op op, FormulaNode a, FormulaNode b)
    {
        std::vector<FormulaNode> operands;
        operands.reserve(2);
        operands.push_back(std::move(a));
        operands.push_back(std::move(b));
        return Operation(op, std::move(operands));
    }

    // --- grammar, loosest binding first

    FormulaNode ParseOr()
    {
        const Nesting nesting(*this);
        FormulaNode left = ParseAnd();
        while (IsWord("OR")) {
            Advance();
            left = Binary(Op::Or, std::move(left), ParseAnd());
        }
        return left;
    }

    FormulaNode ParseAnd()
    {
        FormulaNode left = ParseNot();
        while (IsWord("AND")) {
            Advance();
            left = Binary(Op::And, std::move(left), ParseNot());
        }
        return left;
    }

    FormulaNode ParseNot()
    {
        if (!IsWord("NOT")) return ParseComparison();
        const Nesting nesting(*this);
        Advance();
        std::vector<FormulaNode> operand;
        operand.push_back(ParseNot());
        return Operation(Op::Not, std::move(operand));
    }

    FormulaNode ParseComparison()
    {
        static constexpr std::pair<std::string_view, Op> kComparisons[] = {
            {"<", Op::Less},   {"<=", Op::LessEqual}, {">", Op::Greater},     {">=", Op::GreaterEqual},
            {"=", Op::Equal},  {"==", Op::Equal},     {"<>", Op::NotEqual},   {"!=", Op::NotEqual},
        };
        FormulaNode left = ParseAdditive();
        while (true) {
            const auto* found = std::find_if(std::begin(kComparisons), std::end(kComparisons),
                                             [&](const auto& c) { return IsSymbol(c.first); });
            if (found == std::end(kComparisons)) return left;
            Advance();
            left = Binary(found->second, std::move(left), ParseAdditive());
        }
    }

    FormulaNode ParseAdditive()
    {
        FormulaNode left = ParseTerm();
        while (IsSymbol("+") || IsSymbol("-")) {
            const Op op = IsSymbol("+") ? Op::Add : Op::Subtract;
            Advance();
            left = Binary(op, std::move(left), ParseTerm());
        }
        return left;
    }

    FormulaNode ParseTerm()
    {
        FormulaNode left = ParseUnary();
        while (IsSymbol("*") || IsSymbol("/")) {
            const Op op = IsSymbol("*") ? Op::Multiply : Op::Divide;
            Advance();
            left = Binary(op, std::move(left), ParseUnary());
        }
        return left;
    }

    FormulaNode ParseUnary()
    {
        if (!IsSymbol("-") && !IsSymbol("+")) return ParsePower();
        const Nesting nesting(*this);
        const bool negate = IsSymbol("-");
        Advance();
        FormulaNode operand = ParseUnary();
        if (!negate) return operand;
        std::vector<FormulaNode> operands;
        operands.push_back(std::move(operand));
        return Operation(Op::Negate, std::move(operands));
    }

    FormulaNode ParsePower()
    {
        FormulaNode base = ParsePrimary();
        if (!IsSymbol("^")) return base;
        const Nesting nesting(*this);
        Advance();
        // The exponent is a unary expression, so ^ groups to the right and takes a sign.
        return Binary(Op::Power, std::move(base), ParseUnary());
    }

    FormulaNode ParsePrimary()
    {
        const Token t = m_token;
        switch (t.kind) {
        case Token::Kind::Number: {
            Advance();
            FormulaNode node;
            node.number = t.value;
            return node;
        }
        case Token::Kind::BracketName: Advance(); return TraceNode(t.bracketName);
        case Token::Kind::Name: return ParseName();
        case Token::Kind::Symbol:
            if (t.text == "(") {
                Advance();
                FormulaNode inner = ParseOr();
                if (!IsSymbol(")")) Expected("an operator or \")\"");
                Advance();
                return inner;
            }
            break;
        default: break;
        }
        Expected(kExpectedValue);
    }

    FormulaNode ParseName()
    {
        const Token t = m_token;
        if (NextIsOpenParenthesis()) return ParseCall();
        if (SameWord(t.text, "AND") || SameWord(t.text, "OR") || SameWord(t.text, "NOT")) Expected(kExpectedValue);
        if (const formula::FunctionInfo* f = FindFunction(t.text)) {
            Advance();
            Expected("\"(\" after " + std::string(f->name));
        }
        Advance();
        if (SameWord(t.text, "PI")) {
            FormulaNode node;
            node.number = std::numbers::pi;
            return node;
        }
        if (SameWord(t.text, "DEPTH")) {
            m_usesDepth = true;
            FormulaNode node;
            node.kind = FormulaNode::Kind::Depth;
            return node;
        }
        return TraceNode(t.text);
    }

    FormulaNode ParseCall()
    {
        const Token name = m_token;
        const formula::FunctionInfo* f = FindFunction(name.text);
        if (f == nullptr) {
            Fail("Error: Unknown function \"" + std::string(name.text) + "\" at column " +
                 std::to_string(Column(name.offset)) + ".");
        }
        Advance(); // the name
        Advance(); // "("
        std::vector<FormulaNode> arguments;
        arguments.push_back(ParseOr());
        while (IsSymbol(",")) {
            Advance();
            arguments.push_back(ParseOr());
        }
        if (!IsSymbol(")")) Expected("an operator, \",\" or \")\"");
        Advance();
        const bool countOk = f->chained ? arguments.size() >= static_cast<std::size_t>(f->arguments)
                                        : arguments.size() == static_cast<std::size_t>(f->arguments);
        if (!countOk) {
            const std::string wanted = std::to_string(f->arguments) + (f->chained ? " or more" : "") +
                                       (f->arguments == 1 ? " argument" : " arguments");
            Fail("Error: " + std::string(f->name) + " at column " + std::to_string(Column(name.offset)) + " takes " +
                 wanted + ", not " + std::to_string(arguments.size()) + ".");
        }
        if (!f->chained) return Operation(f->op, std::move(arguments));
        // MIN(a, b, c) is MIN(MIN(a, b), c).
        FormulaNode chain = std::move(arguments[0]);
        for (std::size_t i = 1; i < arguments.size(); ++i) chain = Binary(f->op, std::move(chain), std::move(arguments[i]));
        return chain;
    }

    FormulaNode TraceNode(std::string_view name)
    {
        if (std::find(m_traceNames.begin(), m_traceNames.end(), name) == m_traceNames.end()) {
            m_traceNames.emplace_back(name);
        }
        FormulaNode node;
        node.kind = FormulaNode::Kind::Trace;
        node.name = std::string(name);
        return node;
    }

    std::string_view m_text;
    std::size_t m_next = 0; // where the token after m_token begins
    Token m_token;
    std::size_t m_nesting = 0;
    std::vector<std::string> m_traceNames;
    bool m_usesDepth = false;
};

} // namespace

std::string FormulaTraceReference(std::string_view traceName)
{
    const bool bare = !traceName.empty() && IsNameStart(traceName.front()) &&
                      std::all_of(traceName.begin(), traceName.end(), IsNamePart) && !IsReservedWord(traceName);
    if (bare) return std::string(traceName);
    std::string reference = "[";
    for (const char c : traceName) reference += c == ']' ? std::string("]]") : std::string(1, c);
    return reference + "]";
}

std::optional<ParsedFormula> ParseFormula(std::string_view text, IMessageSink& sink)
{
    if (std::all_of(text.begin(), text.end(), IsBlank)) {
        sink.Warning("Error: No formula specified.");
        return std::nullopt;
    }
    if (text.size() > kMaxFormulaLength) {
        sink.Warning("Error: The formula is longer than " + std::to_string(kMaxFormulaLength) + " characters.");
        return std::nullopt;
    }
    try {
        CFormulaParser parser(text);
        return parser.Parse();
    } catch (const SyntaxProblem& problem) {
        sink.Warning(problem.message);
        return std::nullopt;
    }
}

} // namespace ba
