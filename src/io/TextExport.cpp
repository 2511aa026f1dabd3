#include "io/TextExport.h"

#include "io/ExportFileWriter.h"
#include "io/ExportGrid.h"
#include "io/ExportReport.h"
#include "io/FixedText.h"
#include "io/LineTraceCursor.h"
#include "model/Cp1252.h"

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
    const std::vector<const CLineTrace*> lines = LineTracesOf(doc);
    if (lines.empty()) {
        sink.Error(std::string(kNoLineTracesMessage));
        return false;
    }
    // Unlike the LAS export, the first line trace (not the first trace) decides the unit
    // label and the step.
    const CLineTrace& first = *lines.front();
    std::size_t firstIndex = 0;
    while (&doc.Trace(firstIndex) != &first) ++firstIndex;
    const float step = first.SamplingStep();

    const DocumentSpan span = DocumentDepthSpan(doc, path);
    if (!span.problem.empty()) {
        sink.Error(span.problem);
        return false;
    }
    DepthRows rows;
    if (span.span) {
        const GridLayout layout =
            LayOutRows(span.span->shallowest, span.span->deepest, RowDirection::Upward, step, doc, firstIndex, path);
        if (!layout.problem.empty()) {
            sink.Error(layout.problem);
            return false;
        }
        rows = layout.rows;
    }

    try {
        CExportFileWriter file(path);
        std::string& out = file.Buffer();
        out.append("\"Depth\"     ");
        for (const CLineTrace* line : lines) AppendQuotedField(out, line->Name());
        out.push_back('\n');
        // Any unit other than feet, a time unit included, is labelled metres.
        out.append(first.DepthUnit() == kDepthFeet ? "\"Feet\"     " : "\"Meters\"     ");
        for (const CLineTrace* line : lines) AppendQuotedField(out, line->Units());
        out.push_back('\n');
        file.LineEnd();

        std::vector<CLineTraceCursor> cursors;
        cursors.reserve(lines.size());
        for (const CLineTrace* line : lines) cursors.emplace_back(*line);
        for (std::size_t k = 0; k < rows.count; ++k) {
            const float depth = rows.At(k);
            AppendFixed(out, depth, 14, 6);
            out.append("     ");
            for (CLineTraceCursor& cursor : cursors) {
                const float value = cursor.ValueAt(depth);
                if (IsNullSample(value)) AppendFixed(out, kNullValue, 14, 2);
                else AppendFixed(out, value, 14, 6);
                out.append("     ");
            }
            out.push_back('\n');
            file.LineEnd();
        }
        file.Commit();
    } catch (const ExportFileError& error) {
        ReportExportFileError(error, sink);
        return false;
    }
    return true;
}

} // namespace ba
