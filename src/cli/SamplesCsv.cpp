#include "cli/SamplesCsv.h"

#include "cli/NumberText.h"

#include <algorithm>
#include <optional>

namespace ba::cli {
namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

std::string_view Trimmed(std::string_view text)
{
    const auto first = text.find_first_not_of(" \t");
    if (first == std::string_view::npos) return {};
    const auto last = text.find_last_not_of(" \t");
    return text.substr(first, last - first + 1);
}

struct Fields {
    std::string_view depth;
    std::string_view value;
};

class Parser {
public:
    explicit Parser(std::string_view source) : m_source(source) {}

    void ParseLine(std::string_view line, std::size_t lineNumber, SamplesCsv& out)
    {
        line = Trimmed(line);
        if (line.empty() || line.front() == '#') return;

        const std::size_t fieldCount = 1 + static_cast<std::size_t>(std::count(line.begin(), line.end(), ','));
        if (fieldCount != 2) {
            Problem(out, lineNumber,
                    "expected 2 fields \"depth,value\" but found " + std::to_string(fieldCount));
            return;
        }
        const auto comma = line.find(',');
        const Fields fields{Trimmed(line.substr(0, comma)), Trimmed(line.substr(comma + 1))};

        float depth = 0.0f;
        float value = 0.0f;
        const NumberProblem depthProblem = ParseFloat(fields.depth, depth);
        const NumberProblem valueProblem = ParseFloat(fields.value, value);
        if (!m_sawDataLine && IsHeaderProblem(depthProblem) && IsHeaderProblem(valueProblem)) {
            m_sawDataLine = true; // only the first line may be a header
            return;
        }
        m_sawDataLine = true;
        if (depthProblem != NumberProblem::None) {
            Problem(out, lineNumber, FieldProblem("depth", fields.depth, depthProblem));
            return;
        }
        if (valueProblem != NumberProblem::None) {
            Problem(out, lineNumber, FieldProblem("value", fields.value, valueProblem));
            return;
        }
        if (m_previous && !(depth > m_previous->depth)) {
            std::string what = "depth " + std::string(fields.depth) + " is not greater than the depth " +
                               m_previous->text + " on line " + std::to_string(m_previous->line);
            if (depth == m_previous->depth && fields.depth != m_previous->text) {
                what += " (both read as the same 32-bit float)";
            }
            Problem(out, lineNumber, what + "; depths must increase strictly");
            return;
        }
        m_previous = PreviousDepth{depth, std::string(fields.depth), lineNumber};
        out.depths.push_back(depth);
        out.values.push_back(value);
    }

private:
    struct PreviousDepth {
        float depth;
        std::string text;
        std::size_t line;
    };

    // A header field is a word such as "depth": a field that is no number at all.
    static bool IsHeaderProblem(NumberProblem p) { return p == NumberProblem::NotANumber; }

    static std::string FieldProblem(std::string_view field, std::string_view text, NumberProblem problem)
    {
        if (problem == NumberProblem::Empty) return "the " + std::string(field) + " field is empty";
        return std::string(field) + " " + QuoteForMessage(text) + " " + DescribeFloatProblem(problem);
    }

    void Problem(SamplesCsv& out, std::size_t lineNumber, const std::string& what) const
    {
        ++out.badLineCount;
        if (out.problems.size() < kMaxListedProblems) {
            out.problems.push_back(std::string(m_source) + ":" + std::to_string(lineNumber) + ": " + what);
        }
    }

    std::string_view m_source;
    bool m_sawDataLine = false;
    std::optional<PreviousDepth> m_previous;
};

} // namespace

SamplesCsv ParseSamplesCsv(std::string_view text, std::string_view source)
{
    SamplesCsv out;
    if (text.starts_with(kByteOrderMark)) text.remove_prefix(kByteOrderMark.size());

    // Reserving once keeps a long file to one allocation per column. There is at most one
    // sample per line, and a sample line takes at least 4 bytes ("1,2\n"), so the
    // reservation never exceeds what the text can fill.
    const auto lineCount = static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n')) + 1;
    const std::size_t capacity = std::min(lineCount, text.size() / 4 + 1);
    out.depths.reserve(capacity);
    out.values.reserve(capacity);

    Parser parser(source);
    std::size_t lineNumber = 0;
    while (!text.empty()) {
        ++lineNumber;
        const auto end = text.find('\n');
        std::string_view line = text.substr(0, end);
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
        if (line.ends_with('\r')) line.remove_suffix(1);
        parser.ParseLine(line, lineNumber, out);
    }
    return out;
}

} // namespace ba::cli
