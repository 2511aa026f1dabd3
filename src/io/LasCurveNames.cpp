#include "io/LasCurveNames.h"

#include "io/LasHeader.h"
#include "io/LasIssues.h"
#include "base/Cp1252.h"

#include <algorithm>
#include <map>
#include <set>

namespace ba {
namespace {

std::size_t CountCharacters(std::string_view utf8)
{
    return static_cast<std::size_t>(
        std::count_if(utf8.begin(), utf8.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; }));
}

// True when saving would turn some character into '?'.
bool LosesCharactersInCp1252(std::string_view utf8)
{
    const std::string ansi = Utf8ToCp1252(utf8);
    return std::count(ansi.begin(), ansi.end(), '?') > std::count(utf8.begin(), utf8.end(), '?');
}

std::string Place(std::string_view file, std::size_t line)
{
    return "\"" + std::string(file) + "\" line " + std::to_string(line) + ": ";
}

} // namespace

std::string CutToCharacters(std::string_view utf8, std::size_t maxChars)
{
    std::size_t chars = 0;
    for (std::size_t i = 0; i < utf8.size(); ++i) {
        if ((static_cast<unsigned char>(utf8[i]) & 0xC0) != 0x80) {
            if (chars == maxChars) return std::string(utf8.substr(0, i));
            ++chars;
        }
    }
    return std::string(utf8);
}

std::vector<LasTraceText> MakeLasTraceTexts(const std::vector<LasCurve>& curves, std::string_view fileName,
                                            IMessageSink& sink)
{
    LasMessageLimiter limited(sink);
    std::vector<LasTraceText> texts(curves.size());
    for (std::size_t i = 0; i < curves.size(); ++i) {
        const LasCurve& curve = curves[i];
        std::string name = AsciiUpper(curve.mnemonic);
        if (name.empty()) {
            name = "CURVE" + std::to_string(curve.column);
            limited.Report("curves without a mnemonic", Severity::Note,
                           "Note: " + Place(fileName, curve.line) + "the curve has no mnemonic; it was named " + name + ".");
        } else if (CountCharacters(name) > kTraceTextChars) {
            const std::string cut = CutToCharacters(name, kTraceTextChars);
            limited.Report("mnemonics cut to 25 characters", Severity::Note,
                           "Note: " + Place(fileName, curve.line) + "the mnemonic " + name + " is longer than the " +
                               std::to_string(kTraceTextChars) + " characters of a trace name; it was cut to " + cut + ".");
            name = cut;
        }
        texts[i].name = std::move(name);

        std::string units = curve.unit;
        if (CountCharacters(units) > kTraceTextChars) {
            const std::string cut = CutToCharacters(units, kTraceTextChars);
            limited.Report("unit labels cut to 25 characters", Severity::Note,
                           "Note: " + Place(fileName, curve.line) + "the unit \"" + units + "\" is longer than the " +
                               std::to_string(kTraceTextChars) + " characters of a unit label; it was cut to \"" + cut +
                               "\".");
            units = cut;
        }
        if (LosesCharactersInCp1252(texts[i].name) || LosesCharactersInCp1252(units)) {
            limited.Report("curves with characters outside Windows-1252", Severity::Note,
                           "Note: " + Place(fileName, curve.line) + "the curve " + texts[i].name + " (unit \"" + units +
                               "\") has characters that a document saves as '?', since it holds Windows-1252 text.");
        }
        texts[i].units = std::move(units);
    }

    // Number every member of a repeated name; the numbers skip names already in use.
    std::map<std::string, std::vector<std::size_t>> byName;
    for (std::size_t i = 0; i < texts.size(); ++i) byName[texts[i].name].push_back(i);
    std::set<std::string> taken;
    for (const auto& text : texts) taken.insert(text.name);
    for (const auto& [name, members] : byName) {
        if (members.size() < 2) continue;
        std::string lines;
        std::string renamed;
        std::size_t number = 0;
        for (const std::size_t i : members) {
            std::string candidate;
            do {
                const std::string suffix = ":" + std::to_string(++number);
                candidate = CutToCharacters(name, kTraceTextChars - suffix.size()) + suffix;
            } while (taken.count(candidate) != 0);
            taken.insert(candidate);
            texts[i].name = candidate;
            lines += (lines.empty() ? "" : ", ") + std::to_string(curves[i].line);
            renamed += (renamed.empty() ? "" : ", ") + candidate;
        }
        limited.Report("repeated mnemonics", Severity::Note,
                       "Note: \"" + std::string(fileName) + "\" lines " + lines + ": the mnemonic " + name + " appears " +
                           std::to_string(members.size()) + " times; the curves were named " + renamed + ".");
    }
    limited.Summarise(fileName);
    return texts;
}

} // namespace ba
