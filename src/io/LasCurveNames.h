#pragma once
// Trace names and unit labels for the curves of a LAS file.
//
// A trace's name and unit label are 25-byte Windows-1252 fields, and traces are found by
// name, so: mnemonics are upper-cased (ASCII letters), a missing one becomes CURVEn (n its
// column in the data), a long one is cut to 25 characters, and mnemonics that repeat are
// all numbered, "GR:1", "GR:2", ... rather than dropped. Each change is reported.

#include "base/MessageSink.h"
#include "io/LasReader.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace ba {

inline constexpr std::size_t kTraceTextChars = 25;

struct LasTraceText {
    std::string name;
    std::string units;
};

std::vector<LasTraceText> MakeLasTraceTexts(const std::vector<LasCurve>& curves, std::string_view fileName,
                                            IMessageSink& sink);

// The first `maxChars` characters of UTF-8 text. Every character takes one byte in the
// Windows-1252 fields (one it cannot hold is written as '?').
std::string CutToCharacters(std::string_view utf8, std::size_t maxChars);

} // namespace ba
