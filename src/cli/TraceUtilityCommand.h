#pragma once
// What the commands of the trace utilities that change one trace (edit, filter, despike,
// clip, cut) share: their DOC.bal, TRACE, --name and -o arguments, and the run that builds
// the utility's change, applies it, saves the document and prints one line about the
// result. Depth options are read as doubles (DoubleInto), so a step such as 0.1 divides a
// range as exactly as the core can use it.

#include "cli/Command.h"
#include "model/BoreAnalystDoc.h"
#include "model/DocumentChange.h"
#include "utilities/DepthInterval.h"

#include <CLI/CLI.hpp>

#include <cstddef>
#include <functional>
#include <memory>
#include <string>

namespace ba::cli {

// One decimal number read to double precision; infinities and NaN are refused.
CLI::Validator DoubleInto(double& target);

struct UtilityArguments {
    std::string document;
    std::string trace;
    std::string newName; // empty: the result replaces the trace
    std::string output;
};

// DOC.bal and TRACE.
void AddDocumentAndTrace(CLI::App& sub, UtilityArguments& arguments);
// --name N: add the result as a new trace named N.
void AddNewNameOption(CLI::App& sub, UtilityArguments& arguments);
// -o OUT.bal.
void AddOutputOption(CLI::App& sub, UtilityArguments& arguments);

// The required --top T and --bottom B of an interval, read in double precision into
// `interval`; the option texts are kept in `topText` and `bottomText`.
void AddIntervalOptions(CLI::App& sub, std::string& topText, std::string& bottomText, DepthInterval& interval);

using MakeTraceChange =
    std::function<std::unique_ptr<CDocumentChange>(const CBoreAnalystDoc& doc, std::size_t traceIndex,
                                                    IMessageSink& sink)>;

// Opens DOC.bal, finds TRACE and asks `make` for the change; a refusal (null) ends the
// command with status 1 and nothing written. Otherwise applies the change, saves to
// OUT.bal and prints "NAME: N samples, K changed" (values that differ from the trace's,
// nulls included) or "NAME: N samples, K removed".
void RunTraceUtility(const UtilityArguments& arguments, CommandContext& context, const MakeTraceChange& make);

} // namespace ba::cli
