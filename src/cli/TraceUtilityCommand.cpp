#include "cli/TraceUtilityCommand.h"

#include "cli/DocumentAccess.h"
#include "cli/NumberText.h"
#include "cli/TextFields.h"
#include "model/LineTrace.h"

#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <span>
#include <string_view>
#include <system_error>
#include <vector>

namespace ba::cli {
namespace {

NumberProblem ParseDouble(std::string_view text, double& value)
{
    if (text.empty()) return NumberProblem::Empty;
    if (text.size() > 1 && text[0] == '+' && text[1] != '-' && text[1] != '+') text.remove_prefix(1);
    double parsed = 0.0;
    const auto [end, ec] = std::from_chars(text.data(), text.data() + text.size(), parsed);
    if (ec == std::errc::result_out_of_range) return NumberProblem::OutOfRange;
    if (ec != std::errc{} || end != text.data() + text.size()) return NumberProblem::NotANumber;
    if (!std::isfinite(parsed)) return NumberProblem::NotFinite;
    value = parsed;
    return NumberProblem::None;
}

// The values of a line trace, to count afterwards how many the utility changed.
std::vector<float> ValuesOf(const CTrace& trace)
{
    const auto* line = dynamic_cast<const CLineTrace*>(&trace);
    if (line == nullptr) return {};
    const std::span<const float> values = line->Values().Items();
    return {values.begin(), values.end()};
}

std::size_t CountChanged(std::span<const float> before, const CTrace& after)
{
    const auto* line = dynamic_cast<const CLineTrace*>(&after);
    if (line == nullptr) return 0;
    const std::span<const float> values = line->Values().Items();
    std::size_t changed = 0;
    for (std::size_t i = 0; i < values.size() && i < before.size(); ++i) {
        // Bit for bit, so that a null that stays null is not counted.
        changed += std::bit_cast<std::uint32_t>(values[i]) != std::bit_cast<std::uint32_t>(before[i]) ? 1 : 0;
    }
    return changed;
}

} // namespace

CLI::Validator DoubleInto(double& target)
{
    return CLI::Validator(
        [&target](std::string& text) -> std::string {
            const NumberProblem problem = ParseDouble(text, target);
            if (problem == NumberProblem::None) return {};
            if (problem == NumberProblem::OutOfRange) return QuoteForMessage(text) + " is out of range";
            return QuoteForMessage(text) + " " + DescribeFloatProblem(problem);
        },
        "");
}

void AddDocumentAndTrace(CLI::App& sub, UtilityArguments& arguments)
{
    sub.add_option("DOC.bal", arguments.document, "document to read")->required();
    sub.add_option("TRACE", arguments.trace, kTraceArgumentHelp)->required();
}

void AddNewNameOption(CLI::App& sub, UtilityArguments& arguments)
{
    sub.add_option("--name", arguments.newName, "add the result as a new trace named N instead of replacing TRACE")
        ->type_name("N")
        ->check(TraceTextValidator(false));
}

void AddOutputOption(CLI::App& sub, UtilityArguments& arguments)
{
    sub.add_option("-o,--output", arguments.output, "document to write; may be DOC.bal itself (saves are atomic)")
        ->required();
}

void AddIntervalOptions(CLI::App& sub, std::string& topText, std::string& bottomText, DepthInterval& interval)
{
    sub.add_option("--top", topText, "top of the interval")->required()->type_name("T")->check(DoubleInto(interval.top));
    sub.add_option("--bottom", bottomText, "bottom of the interval")
        ->required()
        ->type_name("B")
        ->check(DoubleInto(interval.bottom));
}

void RunTraceUtility(const UtilityArguments& arguments, CommandContext& context, const MakeTraceChange& make)
{
    const auto doc = OpenOrFail(arguments.document, context.sink);
    const std::size_t index = ResolveTrace(*doc, arguments.trace, arguments.document);
    const std::size_t countBefore = doc->Trace(index).SampleCount();
    const std::vector<float> valuesBefore = ValuesOf(doc->Trace(index));
    auto change = make(*doc, index, context.sink);
    if (!change) throw CommandFailure(kExitFailure, {});
    doc->Apply(std::move(change));
    SaveOrFail(*doc, arguments.output, context.sink);

    const CTrace& result = arguments.newName.empty() ? doc->Trace(index) : doc->Trace(doc->TraceCount() - 1);
    const std::size_t count = result.SampleCount();
    context.out << result.Name() << ": " << count << (count == 1 ? " sample, " : " samples, ");
    if (count == countBefore) context.out << CountChanged(valuesBefore, result) << " changed\n";
    else context.out << countBefore - count << " removed\n";
}

} // namespace ba::cli
