#pragma once
// Command-line checks of the texts a document stores. A document holds Windows-1252 text,
// and a trace's name and units are fixed 25-byte fields, so a text that would come back
// changed ('?' for a character the code page lacks, or cut short) is refused up front
// instead of being altered silently on save.

#include <CLI/CLI.hpp>

#include <cstddef>

namespace ba::cli {

inline constexpr std::size_t kTraceTextBytes = 25;

// For the header title: any length, Windows-1252 characters only.
CLI::Validator DocumentTextValidator();
// For a trace name or units: Windows-1252 characters only, at most 25 bytes, and for a
// name not empty.
CLI::Validator TraceTextValidator(bool mayBeEmpty);

} // namespace ba::cli
