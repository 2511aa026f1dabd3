#pragma once
// What the LAS and text exports share: the line traces they write, the document's depth
// range, and the rows of the common depth grid the values are sampled on.
//
// Row k lies at from -/+ k * step, computed afresh for each row in double precision and
// rounded to a float (the depth type of the traces), rather than by adding the step up
// row after row: the depths do not drift over a long log, and the number of rows is
// known, and bounded, before anything is written.

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

// `text` with every blank replaced by an underscore.
std::string BlanksToUnderscores(std::string text);

} // namespace ba
