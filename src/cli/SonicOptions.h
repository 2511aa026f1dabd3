#pragma once
// What the sonic processing commands share on their command lines: comma lists of numbers
// and of receivers (sonic traces by name or "#index"), and length units.

#include "base/MessageSink.h"
#include "model/BoreAnalystDoc.h"
#include "sonic/SonicVelocity.h"

#include <CLI/CLI.hpp>

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace ba::cli {

std::vector<std::string> SplitCommas(std::string_view text);

// A comma list of decimal numbers; a usage failure names the option.
std::vector<double> Numbers(const std::string& text, const char* option);

// The document indices of a comma list of trace references; a failure names the document.
std::vector<std::size_t> ResolveReceivers(const CBoreAnalystDoc& doc, const std::string& list, const std::string& docPath);

// "ft" or "m"; "us/ft" or "us/m".
LengthUnit LengthUnitOf(const std::string& text);
LengthUnit SlownessLengthUnitOf(const std::string& text);

// The options of the commands that compute slowness-time coherence (semblance, stc-map):
// the receivers, their offsets, the slowness grid, the window, the threshold, the output
// unit and the band-pass.
struct CoherenceOptions {
    std::string receivers;
    std::string offsets;
    std::string offsetUnits = "ft";
    std::string slowness;
    double window = 120.0;
    std::string windowText;
    double threshold = kDefaultCoherenceThreshold;
    std::string thresholdText;
    std::string units = "us/ft";
    std::string bandpass;

    void AddTo(CLI::App& command);
    // The settings, checked against the document (a failure is reported and thrown).
    SonicVelocitySettings Settings(const CBoreAnalystDoc& doc, const std::string& docPath, IMessageSink& sink) const;
};

} // namespace ba::cli
