#pragma once
// Copying traces into a clipboard block and pasting a block into a document. The shell
// moves the bytes to and from the system clipboard and shows questions and messages; the
// rules (which traces, which axis, what is asked and reported) are here.
//
// Pasting into a document that already held traces checks each pasted trace's vertical
// axis against the document's (that of its first trace: codes 0 and 1 are depth, 2 and
// above time). Line traces of the other axis class can be re-indexed through the
// document's "Time" or "Depth" trace (ClipboardSync.h) when the user answers Yes; other
// kinds only get a warning. A trace of the document's axis class takes the document's
// depth-unit code and the first trace's vertical scale; its stored depths stay as they are,
// since they are always kept in metres (or minutes).

#include "base/MessageSink.h"
#include "model/BoreAnalystDoc.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace ba {

inline constexpr std::string_view kSyncWithTimeQuestion =
    "Warning: Vertical axis units in existing document are not the same as trace on clipboard.  Would you like "
    "to synchronize data with the \"Time\" trace in current document?";
inline constexpr std::string_view kSyncWithDepthQuestion =
    "Warning: Vertical axis in existing document are not the same as trace on clipboard.  Would you like to "
    "synchronize data with the \"Depth\" trace in current document?";
inline constexpr std::string_view kImageAxisMismatchWarning =
    "Warning: Depth units in existing document are not the same as trace on clipboard.";

// Asks the user a question with Yes and No buttons (the desktop app shows a warning box
// with the exclamation icon); true means Yes.
class IYesNoQuestion {
public:
    virtual ~IYesNoQuestion() = default;
    virtual bool AskYesNo(const std::string& text) = 0;
};

struct PasteResult {
    bool refused = false;           // the block is malformed: nothing was added, the document is unchanged
    std::size_t added = 0;          // traces added to the document
    std::size_t skipped = 0;        // entries of unknown kind codes, left out
    std::size_t synchronised = 0;   // traces re-indexed onto the document's axis
    std::size_t droppedSamples = 0; // samples lost by re-indexing
    bool freshDocument = false;     // the document held no traces before the paste
    // For a fresh document: the depth (display units, a multiple of 100) the log views
    // put at their top; a view's top position is the document's vertical scale times this
    // times 0.01.
    std::optional<double> topDepth;
};

// Builds the clipboard block of `traces`, in order, each entry with its kind code and the
// image its kind uses. A block too large for its int32 fields is refused with an error and
// none is built.
std::optional<std::vector<std::uint8_t>> CopyTraces(std::span<const CTrace* const> traces, IMessageSink& sink);

// Pastes `block` (none: the clipboard holds no data of the private format) into `doc`.
// `source` names where the block came from in messages ("the clipboard", a file name).
//
// A block is checked whole before anything is added: a malformed one is refused with a
// message naming the byte offset, and the document is left as it was. Entries of unknown
// kind codes are well framed but name no trace class: each is reported and left out, and
// the other entries are pasted. After a paste, and also when there was no data, the
// document is marked modified and its views updated.
PasteResult PasteTraces(CBoreAnalystDoc& doc, std::optional<std::span<const std::uint8_t>> block,
                        std::string_view source, IYesNoQuestion& question, IMessageSink& sink);

// The vertical-axis rules for one trace of kind `kind` just added to a document that held
// traces before (a line trace must be a CLineTrace). A re-indexed trace and the samples
// re-indexing dropped are counted in `result`.
void ApplyPastedAxis(const CBoreAnalystDoc& doc, CTrace& pasted, std::uint32_t kind, IYesNoQuestion& question,
                     IMessageSink& sink, PasteResult& result);

// The view's top depth after a paste into a fresh document: the shallowest first depth of
// all traces (9999.9 when there are none), truncated to a whole number and lowered to a
// multiple of 100.
double FreshDocumentTopDepth(const CBoreAnalystDoc& doc);

} // namespace ba
