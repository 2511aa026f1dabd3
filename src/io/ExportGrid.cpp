#include "io/ExportGrid.h"

#include "io/ExportFileWriter.h"
#include "io/ExportReport.h"
#include "io/FixedText.h"
#include "model/LineTraceCursor.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace ba {
namespace {

std::string Quoted(std::string_view text) { return "\"" + std::string(text) + "\""; }

std::string TraceLabel(const CBoreAnalystDoc& doc, std::size_t i)
{
    return "trace " + std::to_string(i) + " " + Quoted(doc.Trace(i).Name());
}

std::string NumberText(float value)
{
    char text[64];
    std::snprintf(text, sizeof text, "%g", static_cast<double>(value));
    return text;
}

} // namespace

bool HasLineTrace(const CBoreAnalystDoc& doc)
{
    for (std::size_t i = 0; i < doc.TraceCount(); ++i) {
        if (dynamic_cast<const CLineTrace*>(&doc.Trace(i)) != nullptr) return true;
    }
    return false;
}

std::vector<const CLineTrace*> LineTracesOf(const CBoreAnalystDoc& doc)
{
    std::vector<const CLineTrace*> lines;
    for (std::size_t i = 0; i < doc.TraceCount(); ++i) {
        if (const auto* line = dynamic_cast<const CLineTrace*>(&doc.Trace(i))) lines.push_back(line);
    }
    return lines;
}

DocumentSpan DocumentDepthSpan(const CBoreAnalystDoc& doc, const std::filesystem::path& target)
{
    DocumentSpan result;
    for (std::size_t i = 0; i < doc.TraceCount(); ++i) {
        const CTrace& trace = doc.Trace(i);
        const std::size_t n = trace.SampleCount();
        if (n == 0) continue;
        for (const std::size_t sample : {std::size_t{0}, n - 1}) {
            if (!std::isfinite(trace.Depth(sample))) {
                result.span.reset();
                result.problem = "Error: cannot export to " + Quoted(target.string()) + ": " + TraceLabel(doc, i) +
                                 " has a depth that is not a finite number at sample " + std::to_string(sample) + ".";
                return result;
            }
        }
        const float a = trace.FirstDepth();
        const float b = trace.LastDepth();
        const DepthSpan own{std::min(a, b), std::max(a, b)};
        if (!result.span) {
            result.span = own;
        } else {
            result.span->shallowest = std::min(result.span->shallowest, own.shallowest);
            result.span->deepest = std::max(result.span->deepest, own.deepest);
        }
    }
    return result;
}

GridLayout LayOutRows(float from, float to, RowDirection direction, float step, const CBoreAnalystDoc& doc,
                      std::size_t stepTrace, const std::filesystem::path& target)
{
    GridLayout layout;
    if (!(std::isfinite(step) && step > 0.0f)) {
        layout.problem = "Error: cannot export to " + Quoted(target.string()) + ": the sampling step of " +
                         TraceLabel(doc, stepTrace) + " is " + NumberText(step) +
                         ", not a positive number; its depths do not ascend.";
        return layout;
    }
    DepthRows rows{from, step, direction, 0};
    const auto within = [&](std::size_t k) {
        const float depth = rows.At(k);
        return direction == RowDirection::Downward ? !(depth < to) : !(depth > to);
    };
    // Row depths are monotonic in k, so the rows that lie within the range are a leading
    // run; find its end by bisection rather than by walking the grid.
    if (!within(0)) return layout; // the range is empty
    if (within(kMaxExportRows)) {
        layout.problem = "Error: cannot export to " + Quoted(target.string()) + ": stepping from " + NumberText(from) +
                         " to " + NumberText(to) + " by the sampling step " + NumberText(step) + " of " +
                         TraceLabel(doc, stepTrace) + " gives more than " + std::to_string(kMaxExportRows) +
                         " rows.";
        return layout;
    }
    std::size_t inside = 0;              // within(inside) holds
    std::size_t outside = kMaxExportRows; // within(outside) does not
    while (outside - inside > 1) {
        const std::size_t mid = inside + (outside - inside) / 2;
        (within(mid) ? inside : outside) = mid;
    }
    rows.count = inside + 1;
    layout.rows = rows;
    return layout;
}

std::optional<GridExportPlan> PlanGridExport(const CBoreAnalystDoc& doc, RowDirection direction, StepTrace stepTrace,
                                             const std::filesystem::path& target, IMessageSink& sink)
{
    GridExportPlan plan;
    plan.lines = LineTracesOf(doc);
    if (plan.lines.empty()) {
        sink.Error(std::string(kNoLineTracesMessage));
        return std::nullopt;
    }
    const DocumentSpan span = DocumentDepthSpan(doc, target);
    if (!span.problem.empty()) {
        sink.Error(span.problem);
        return std::nullopt;
    }
    if (!span.span) return plan; // no trace holds a sample: no rows
    std::size_t stepIndex = 0;
    if (stepTrace == StepTrace::FirstLineTrace) {
        while (&doc.Trace(stepIndex) != plan.lines.front()) ++stepIndex;
    }
    const bool downward = direction == RowDirection::Downward;
    const float from = downward ? span.span->deepest : span.span->shallowest;
    const float to = downward ? span.span->shallowest : span.span->deepest;
    const GridLayout layout =
        LayOutRows(from, to, direction, doc.Trace(stepIndex).SamplingStep(), doc, stepIndex, target);
    if (!layout.problem.empty()) {
        sink.Error(layout.problem);
        return std::nullopt;
    }
    plan.span = span.span;
    plan.rows = layout.rows;
    return plan;
}

bool WriteGridFile(const std::filesystem::path& path, std::string_view header,
                   const std::vector<const CLineTrace*>& lines, const DepthRows& rows, GridRowFormat format,
                   IMessageSink& sink)
{
    try {
        CExportFileWriter file(path);
        std::string& out = file.Buffer();
        out.append(header);
        file.LineEnd();

        std::vector<CLineTraceCursor> cursors;
        cursors.reserve(lines.size());
        for (const CLineTrace* line : lines) cursors.emplace_back(*line);
        for (std::size_t k = 0; k < rows.count; ++k) {
            const float depth = rows.At(k);
            AppendFixed(out, depth, 14, format.depthPrecision);
            out.append("     ");
            for (CLineTraceCursor& cursor : cursors) {
                const float value = cursor.ValueAt(depth);
                if (IsNullSample(value)) AppendFixed(out, kNullValue, 14, 2);
                else AppendFixed(out, value, 14, format.valuePrecision);
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

std::string BlanksToUnderscores(std::string text)
{
    std::replace(text.begin(), text.end(), ' ', '_');
    return text;
}

} // namespace ba
