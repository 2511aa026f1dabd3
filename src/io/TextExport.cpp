#include "io/TextExport.h"

#include "io/ExportGrid.h"
#include "base/Cp1252.h"

#include <string>
#include <vector>

namespace ba {
namespace {

void AppendQuotedField(std::string& out, const std::string& utf8)
{
    out.push_back('"');
    out.append(BlanksToUnderscores(Utf8ToCp1252(utf8)));
    out.append("\"     ");
}

} // namespace

bool ExportText(const CBoreAnalystDoc& doc, const std::filesystem::path& path, IMessageSink& sink)
{
    // Unlike the LAS export, the first line trace (not the first trace) decides the unit
    // label and the step.
    const auto plan = PlanGridExport(doc, RowDirection::Upward, StepTrace::FirstLineTrace, path, sink);
    if (!plan) return false;
    const CLineTrace& first = *plan->lines.front();

    std::string header = "\"Depth\"     ";
    for (const CLineTrace* line : plan->lines) AppendQuotedField(header, line->Name());
    header.push_back('\n');
    // Any unit other than feet, a time unit included, is labelled metres.
    header.append(first.DepthUnit() == kDepthFeet ? "\"Feet\"     " : "\"Meters\"     ");
    for (const CLineTrace* line : plan->lines) AppendQuotedField(header, line->Units());
    header.push_back('\n');
    return WriteGridFile(path, header, plan->lines, plan->rows, {.depthPrecision = 6, .valuePrecision = 6}, sink);
}

} // namespace ba
