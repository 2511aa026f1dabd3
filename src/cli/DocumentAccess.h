#pragma once
// Opening, saving and addressing the parts of a document on behalf of a subcommand. Every
// failure ends the command with a CommandFailure; the core reports its own failures to
// the sink, so those carry no message of their own.

#include "model/BoreAnalystDoc.h"
#include "model/LineTrace.h"

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

namespace ba::cli {

std::unique_ptr<CBoreAnalystDoc> OpenOrFail(const std::string& path, IMessageSink& sink);

// Saves the document to `path` when the licence check allows it; anything but a completed
// write is a failure.
void SaveOrFail(CBoreAnalystDoc& doc, const std::string& path, IMessageSink& sink);

// The trace index that `ref` names: "#N" is trace index N (from 0); anything else is a
// trace name, and the first trace of that name is meant.
std::size_t ResolveTrace(const CBoreAnalystDoc& doc, std::string_view ref, const std::string& docPath);

// The trace as a line trace, or a failure naming what it is instead.
const CLineTrace& RequireLineTrace(const CTrace& trace, std::string_view ref, const std::string& docPath);

// Help text describing TRACE arguments.
inline constexpr const char* kTraceArgumentHelp =
    "trace name (the first trace of that name), or #N for trace index N counted from 0";

} // namespace ba::cli
