#include "cli/TextFields.h"

#include "base/Cp1252.h"

#include <string>

namespace ba::cli {
namespace {

bool SurvivesCodePage(const std::string& text) { return Cp1252ToUtf8(Utf8ToCp1252(text)) == text; }

const char* kCodePageProblem = "has characters that a document cannot hold (it stores Windows-1252 text)";

} // namespace

CLI::Validator DocumentTextValidator()
{
    return CLI::Validator(
        [](std::string& text) -> std::string {
            return SurvivesCodePage(text) ? std::string{} : "\"" + text + "\" " + kCodePageProblem;
        },
        "");
}

CLI::Validator TraceTextValidator(bool mayBeEmpty)
{
    return CLI::Validator(
        [mayBeEmpty](std::string& text) -> std::string {
            if (text.empty() && !mayBeEmpty) return "must not be empty";
            if (!SurvivesCodePage(text)) return "\"" + text + "\" " + kCodePageProblem;
            const std::size_t bytes = Utf8ToCp1252(text).size();
            if (bytes > kTraceTextBytes) {
                return "\"" + text + "\" is " + std::to_string(bytes) + " characters long; a document keeps at most " +
                       std::to_string(kTraceTextBytes);
            }
            return {};
        },
        "");
}

} // namespace ba::cli
