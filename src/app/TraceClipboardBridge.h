#pragma once
// Moves clipboard blocks of traces between the core and Qt's clipboard. The block is
// written under the bare format name, which every Qt version on Windows registers as
// exactly that native clipboard format, so other running instances see it. On reading,
// Windows may report the same native format under Qt's wrapped name, so both are accepted.

#include "model/BoreAnalystDoc.h"

#include <QByteArray>

#include <cstdint>
#include <optional>
#include <span>

class QMimeData;

namespace ba {

// The bare name is the document's kTraceClipboardFormat.
inline constexpr char kWrappedTraceClipboardFormat[] =
    "application/x-qt-windows-mime;value=\"BoreAnalystTraceData\"";

// True when `data` holds a trace block under either name.
bool HasTraceBlock(const QMimeData* data);

// The trace block in `data` (the bare name first); none when there is no block.
std::optional<QByteArray> ReadTraceBlock(const QMimeData* data);

// New clipboard contents holding `block` under the bare name; the caller hands it to the
// clipboard, which takes ownership.
QMimeData* MakeTraceMimeData(std::span<const std::uint8_t> block);

} // namespace ba
