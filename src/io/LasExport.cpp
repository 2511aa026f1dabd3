#include "io/LasExport.h"

#include "io/ExportGrid.h"
#include "io/FixedText.h"
#include "base/Cp1252.h"

#include <string_view>
#include <vector>

namespace ba {
namespace {

// The file's text is ANSI (Windows-1252), as every other text the program writes; upper
// case is the C library's in the "C" locale, ASCII letters only.
std::string AnsiUpper(std::string_view utf8)
{
    std::string text = Utf8ToCp1252(utf8);
    for (char& c : text) {
        if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
    }
    return text;
}

std::string PaddedTo(std::string text, std::size_t width)
{
    if (text.size() < width) text.append(width - text.size(), ' ');
    return text;
}

std::string FixedField(float value, int width, int precision)
{
    std::string text;
    AppendFixed(text, value, width, precision);
    return text;
}

void AppendLine(std::string& out, std::string_view line)
{
    out.append(line);
    out.push_back('\n');
}

std::string LasHeader(const CBoreAnalystDoc& doc, const std::vector<const CLineTrace*>& lines, bool metres, float strt,
                      float stop, float step)
{
    std::string out;
    AppendLine(out, "~V");
    AppendLine(out, "VERS .               2.0 :   CWLS log ASCII Standard -VERSION 2.0");
    AppendLine(out, "WRAP.                NO  :   One line per depth step");
    AppendLine(out, "~W");
    // Both range lines say START DEPTH, and only the feet header writes the step negated:
    // programs that read these files expect exactly this.
    if (metres) {
        AppendLine(out, "STRT.M             " + FixedField(strt, 8, 3) + "          :START DEPTH");
        AppendLine(out, "STOP.M             " + FixedField(stop, 8, 3) + "          :START DEPTH");
        AppendLine(out, "STEP.M             " + FixedField(step, 8, 3) + "          :STEP");
    } else {
        AppendLine(out, "STRT.FT            " + FixedField(strt, 8, 3) + "          :START DEPTH");
        AppendLine(out, "STOP.FT            " + FixedField(stop, 8, 3) + "          :START DEPTH");
        AppendLine(out, "STEP.FT            " + FixedField(-step, 8, 3) + "          :STEP");
    }
    AppendLine(out, "NULL.            -9999.99            :NULL VALUE");
    AppendLine(out, "COMP.     ANY COMPANY INC.           :COMPANY");
    AppendLine(out, "WELL.     " + PaddedTo(AnsiUpper(doc.DocumentTitle()), 27) + ":WELL");
    AppendLine(out, "FLD .     WILDCAT                    :FIELD");
    AppendLine(out, "LOC .     12-34-12-34W5              :LOCATION");
    AppendLine(out, "PROV.     COLORADO                   :PROVINCE");
    AppendLine(out, "SRVC.     ANY LOGGING COMPANY INC.   :SERVICE COMPANY");
    AppendLine(out, "DATE.     01-JAN-00                  :LOG DATE");
    AppendLine(out, "UWI .     1234567890                 :UNIQUE WELL ID");
    AppendLine(out, "~C");
    AppendLine(out, metres ? "DEPT.M                   : DEPTH" : "DEPT.FT                  : DEPTH");
    for (const CLineTrace* line : lines) {
        AppendLine(out, BlanksToUnderscores(AnsiUpper(line->Name())) + "." +
                            PaddedTo(BlanksToUnderscores(AnsiUpper(line->Units())), 10) + "          : " +
                            Utf8ToCp1252(line->Name()));
    }
    AppendLine(out, "~A");
    return out;
}

} // namespace

bool ExportLas(const CBoreAnalystDoc& doc, const std::filesystem::path& path, IMessageSink& sink)
{
    // The document's first trace, of whatever kind, decides the unit and the step. A
    // document whose traces hold no samples gets the header and no data.
    const auto plan = PlanGridExport(doc, RowDirection::Downward, StepTrace::FirstTrace, path, sink);
    if (!plan) return false;
    const CTrace& first = doc.Trace(0);
    const bool metres = first.DepthUnit() == kDepthMetres;
    const float strt = plan->span ? plan->span->deepest : 0.0f;
    const float stop = plan->span ? plan->span->shallowest : 0.0f;
    const std::string header = LasHeader(doc, plan->lines, metres, strt, stop, first.SamplingStep());
    return WriteGridFile(path, header, plan->lines, plan->rows, {.depthPrecision = 3, .valuePrecision = 4}, sink);
}

} // namespace ba
