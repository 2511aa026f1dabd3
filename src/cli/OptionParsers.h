#pragma once
// Command-line values that CLI11 cannot read the way documents need them: floats read with
// std::from_chars, and the comma lists of add-trace. Each validator parses its text into
// `target` while the command line is parsed, so a bad value is a usage error reported
// with the option's name. The targets belong to the subcommand's options, which live as
// long as the parser.

#include <CLI/CLI.hpp>

#include <cstdint>

namespace ba::cli {

struct PenSpec {
    std::int32_t width = 1;
    std::int32_t style = 0;
    std::int32_t colourIndex = 0;
};

struct ScaleSpec {
    float left = 0.0f;
    float right = 100.0f;
};

// One decimal float.
CLI::Validator FloatInto(float& target);
// "W,S,C": pen width (0 or more), style 0..5 and colour index 0..6.
CLI::Validator PenInto(PenSpec& target);
// "L,R": the values at the left and right edges of the track; they must differ.
CLI::Validator ScaleInto(ScaleSpec& target);

} // namespace ba::cli
