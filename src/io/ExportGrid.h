#pragma once
// What the LAS and text exports share: the line traces they write, the document's depth
// range, the rows of the common depth grid the values are sampled on, and the writing of
// those rows to the file.
//
// Row k lies at from -/+ k * step, computed afresh for each row in double precision and
// rounded to a float (the depth type of the traces), rather than by adding the step up
// row after row: the depths do not drift over a long log, and the number of rows is
// known, and bounded, before anything is written.

#include "base/MessageSink.h"
#include "model/BoreAnalystDoc.h"
#include "model/LineTrace.h"

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ba {

inline constexpr std::string_view kNoLineTracesMessage = "Error: No line traces present to export.";

// More rows than this are refused: a grid that fine can only come from a damaged step or
// depth, and would otherwise write for hours.
inline constexpr std::size_t kMaxExportRows = 100'000'000;

bool HasLineTrace(const CBoreAnalystDoc& doc);
// The line traces in document order.
std::vector<const CLineTrace*> LineTracesOf(const CBoreAnalystDoc& doc);

struct DepthSpan {
    float shallowest = 0.0f;
    float deepest = 0.0f;
};

// The shallowest and deepest display depth over the first and last samples of every trace
// (of any kind) that holds samples; traces without samples take no part. The span is
// empty when no trace holds a sample. A non-finite end depth makes `problem` say which
// trace and sample it is, naming `target`.
struct DocumentSpan {
    std::optional<DepthSpan> span;
    std::string problem;
};
DocumentSpan DocumentDepthSpan(const CBoreAnalystDoc& doc, const std::filesystem::path& target);

enum class RowDirection { Downward, Upward };

struct DepthRows {
    float from = 0.0f;
    float step = 0.0f;
    RowDirection direction = RowDirection::Downward;
    std::size_t count = 0;

    // The depth of row k: from minus (downward) or plus (upward) k steps.
    float At(std::size_t k) const
    {
        const double offset = static_cast<double>(k) * static_cast<double>(step);
        return static_cast<float>(direction == RowDirection::Downward ? from - offset : from + offset);
    }
};

// The rows from `from` stepping by `step` towards `to` while a row's depth is not beyond
// `to` (below it going down, above it going up). `step` is the sampling step of trace
// `stepTrace` of `doc`; a step that is not a finite positive number, or more rows than
// kMaxExportRows, leave `problem` set (naming `target` and the trace) and no rows.
struct GridLayout {
    DepthRows rows;
    std::string problem;
};
GridLayout LayOutRows(float from, float to, RowDirection direction, float step, const CBoreAnalystDoc& doc,
                      std::size_t stepTrace, const std::filesystem::path& target);

// Whose sampling step the rows are laid out by: the document's first trace, of whatever
// kind, or its first line trace.
enum class StepTrace { FirstTrace, FirstLineTrace };

// What an export of `doc` to `target` writes: the line traces, and the rows of the
// document's whole depth span walked by the sampling step of `stepTrace`, from the deepest
// depth (Downward) or from the shallowest (Upward). A document whose traces hold no samples
// has no span and no rows. A document without line traces (kNoLineTracesMessage), or with
// a span or step that cannot be walked (as DocumentDepthSpan and LayOutRows word it), is
// reported to `sink` and gives no plan.
struct GridExportPlan {
    std::vector<const CLineTrace*> lines;
    std::optional<DepthSpan> span;
    DepthRows rows;
};
std::optional<GridExportPlan> PlanGridExport(const CBoreAnalystDoc& doc, RowDirection direction, StepTrace stepTrace,
                                             const std::filesystem::path& target, IMessageSink& sink);

// How the rows are written: the depth, then the value of each line trace, every field
// right-aligned in 14 characters and followed by five blanks. A null value is written as
// the null value with two decimals, whatever `valuePrecision` says.
struct GridRowFormat {
    int depthPrecision = 0;
    int valuePrecision = 0;
};

// Writes `header` and then a row for each depth of `rows`, with the values `lines` have
// there, to `path` through a CExportFileWriter (so atomically). A file that cannot be
// created or written is reported to `sink` and gives false.
bool WriteGridFile(const std::filesystem::path& path, std::string_view header,
                   const std::vector<const CLineTrace*>& lines, const DepthRows& rows, GridRowFormat format,
                   IMessageSink& sink);

// `text` with every blank replaced by an underscore.
std::string BlanksToUnderscores(std::string text);

} // namespace ba
