#include "cli/OptionParsers.h"

#include "cli/NumberText.h"
#include "model/LineTrace.h"

#include <string>
#include <string_view>
#include <vector>

namespace ba::cli {
namespace {

std::vector<std::string_view> SplitCommas(std::string_view text)
{
    std::vector<std::string_view> parts;
    for (;;) {
        const auto comma = text.find(',');
        parts.push_back(text.substr(0, comma));
        if (comma == std::string_view::npos) return parts;
        text.remove_prefix(comma + 1);
    }
}

// An empty result means the integer was read into `value`.
std::string ReadInt(std::string_view what, std::string_view text, std::int32_t low, std::int32_t high,
                    std::int32_t& value)
{
    std::int32_t parsed = 0;
    if (ParseInt(text, parsed) != NumberProblem::None) {
        return std::string(what) + " " + QuoteForMessage(text) + " is not a whole number";
    }
    if (parsed < low || parsed > high) {
        const std::string range = high == INT32_MAX ? std::to_string(low) + " or more"
                                                    : "in the range " + std::to_string(low) + " to " +
                                                          std::to_string(high);
        return std::string(what) + " " + std::to_string(parsed) + " is not " + range;
    }
    value = parsed;
    return {};
}

std::string ReadFloat(std::string_view what, std::string_view text, float& value)
{
    const NumberProblem problem = ParseFloat(text, value);
    if (problem == NumberProblem::None) return {};
    return std::string(what) + " " + QuoteForMessage(text) + " " + DescribeFloatProblem(problem);
}

} // namespace

CLI::Validator FloatInto(float& target)
{
    return CLI::Validator(
        [&target](std::string& text) -> std::string {
            const NumberProblem problem = ParseFloat(text, target);
            return problem == NumberProblem::None ? std::string{}
                                                  : QuoteForMessage(text) + " " + DescribeFloatProblem(problem);
        },
        "");
}

CLI::Validator PenInto(PenSpec& target)
{
    return CLI::Validator(
        [&target](std::string& text) -> std::string {
            const auto parts = SplitCommas(text);
            if (parts.size() != 3) return "expected W,S,C (width, style, colour index), got " + QuoteForMessage(text);
            PenSpec pen;
            std::string problem = ReadInt("pen width", parts[0], 0, INT32_MAX, pen.width);
            if (problem.empty()) problem = ReadInt("pen style", parts[1], kPenSolid, kPenNull, pen.style);
            if (problem.empty()) {
                problem = ReadInt("colour index", parts[2], 0, kLineColourCount - 1, pen.colourIndex);
            }
            if (problem.empty()) target = pen;
            return problem;
        },
        "");
}

CLI::Validator ScaleInto(ScaleSpec& target)
{
    return CLI::Validator(
        [&target](std::string& text) -> std::string {
            const auto parts = SplitCommas(text);
            if (parts.size() != 2) return "expected L,R (left and right scale values), got " + QuoteForMessage(text);
            ScaleSpec scale;
            std::string problem = ReadFloat("left scale value", parts[0], scale.left);
            if (problem.empty()) problem = ReadFloat("right scale value", parts[1], scale.right);
            if (problem.empty() && scale.left == scale.right) {
                problem = "the left and right scale values must differ";
            }
            if (problem.empty()) target = scale;
            return problem;
        },
        "");
}

} // namespace ba::cli
