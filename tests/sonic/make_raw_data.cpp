// make_raw_data: writes a Mount Sopris CLP sonic raw-data file (".rd") from stated
// formation properties and acquisition settings, for tests, the demo and the benchmark.
// See README.md here for what the files hold.

#include "sonic/RawDataSynth.h"

#include <CLI/CLI.hpp>

#include <cctype>
#include <cstdio>
#include <fstream>
#include <iostream>
#include <sstream>
#include <string>
#include <vector>

namespace {

std::vector<double> ParseOffsets(const std::string& text)
{
    std::vector<double> offsets;
    std::stringstream in(text);
    std::string item;
    while (std::getline(in, item, ',')) {
        std::size_t used = 0;
        const double v = std::stod(item, &used);
        if (used != item.size() || !(v > 0.0)) throw CLI::ValidationError("--offsets", "\"" + item + "\" is not a positive number");
        offsets.push_back(v);
    }
    if (offsets.empty() || offsets.size() > 255) throw CLI::ValidationError("--offsets", "give 1 to 255 offsets");
    return offsets;
}

} // namespace

int main(int argc, char** argv)
{
    ba::synth::SurveyPlan plan;
    std::string output;
    std::string offsets = "3,4,5";
    std::string offsetUnit = "ft";
    int receivers = 0;
    std::string slownessLog;
    double spacing = 1.0;
    int stacks = 1;
    int gainExponent = 5;
    int rate1 = 8, rate2 = 8, n1 = 256, n2 = 0, holdoff = 10;

    CLI::App app{"Writes a CLP sonic raw-data file of synthetic waveforms."};
    app.add_option("-o,--output", output, "the raw-data file to write")->required();
    app.add_option("--top", plan.top, "first record depth, m")->capture_default_str();
    app.add_option("--bottom", plan.bottom, "last record depth, m")->capture_default_str();
    app.add_option("--step", plan.step, "depth step, m")->capture_default_str()->check(CLI::PositiveNumber);
    app.add_flag("--descending", plan.descending, "record from the bottom up");
    app.add_option("--offsets", offsets, "transmitter-receiver offsets, comma-separated, one per receiver")
        ->capture_default_str();
    app.add_option("--receivers", receivers,
                   "this many receivers from the first of --offsets every --spacing (instead of the list)")
        ->check(CLI::Range(1, 255));
    app.add_option("--spacing", spacing, "receiver spacing for --receivers, in --offset-unit")
        ->capture_default_str()
        ->check(CLI::PositiveNumber);
    app.add_option("--offset-unit", offsetUnit, "unit of --offsets")->check(CLI::IsMember({"ft", "m"}))->capture_default_str();
    app.add_option("--dtc", plan.formation.compressionalSlowness, "compressional slowness, us/ft")->capture_default_str();
    app.add_option("--dts", plan.formation.shearSlowness, "shear slowness, us/ft")->capture_default_str();
    app.add_option("--dtst", plan.formation.stoneleySlowness, "Stoneley slowness, us/ft")->capture_default_str();
    app.add_option("--fluid", plan.formation.fluidSlowness,
                   "borehole fluid slowness, us/ft; no shear arrival where --dts is not faster")
        ->capture_default_str()
        ->check(CLI::PositiveNumber);
    app.add_option("--slowness-log", slownessLog,
                   "CSV of depth_m,dtc,dts,dtst (us/ft) by increasing depth: each station takes the nearest line's "
                   "slownesses instead of --dtc, --dts and --dtst (lines starting with # or a letter are skipped)");
    app.add_option("--noise", plan.formation.noise, "noise standard deviation, counts")->capture_default_str()->check(CLI::NonNegativeNumber);
    app.add_option("--amplitude", plan.formation.amplitude, "scales every arrival")->capture_default_str();
    app.add_option("--gain", gainExponent, "gain exponent g (gain 2^g; 5 is AGC)")->capture_default_str()->check(CLI::Range(0, 15));
    app.add_option("--rate1", rate1, "sample interval 1, us")->capture_default_str()->check(CLI::Range(1, 8191));
    app.add_option("--rate2", rate2, "sample interval 2, us")->capture_default_str()->check(CLI::Range(1, 8191));
    app.add_option("--n1", n1, "samples at rate 1")->capture_default_str()->check(CLI::Range(0, 32000));
    app.add_option("--n2", n2, "samples at rate 2")->capture_default_str()->check(CLI::Range(0, 32000));
    app.add_option("--holdoff", holdoff, "delay to the first sample, 10 us units")->capture_default_str()->check(CLI::Range(0, 65535));
    app.add_option("--stacks", stacks, "TX num stacks")->capture_default_str()->check(CLI::Range(1, 16));
    app.add_option("--tx-frequency", plan.txFrequency, "TX frequency byte, kHz")->capture_default_str();
    app.add_option("--stack-interval", plan.stackInterval, "TX stack interval byte, ms")->capture_default_str();
    app.add_flag("--dipole", plan.block.dipole, "mark the receivers as dipole");
    app.add_option("--time-step-ms", plan.timeStepMilliseconds,
                   "write a time-digitising control record first, with this step in ms");
    app.add_flag("--fws", plan.fwsUpgrade, "write TX frequency byte 0: a CLP probe with the FWS upgrade");
    app.add_flag("--other-records", plan.otherRecords, "put two records without waveforms after every station");
    app.add_option("--seed", plan.seed, "noise seed")->capture_default_str();
    CLI11_PARSE(app, argc, argv);

    try {
        plan.offsetsFeet = ParseOffsets(offsets);
        if (receivers > 0) {
            const double nearest = plan.offsetsFeet.front();
            plan.offsetsFeet.clear();
            for (int r = 0; r < receivers; ++r) plan.offsetsFeet.push_back(nearest + r * spacing);
        }
        if (!slownessLog.empty()) {
            std::ifstream in(slownessLog);
            if (!in) {
                std::cerr << "Error: cannot read \"" << slownessLog << "\".\n";
                return 1;
            }
            std::string line;
            for (std::size_t number = 1; std::getline(in, line); ++number) {
                if (line.empty() || line[0] == '#' || std::isalpha(static_cast<unsigned char>(line[0]))) continue;
                ba::synth::SurveyPlan::LoggedSlowness e{};
                char c1 = 0, c2 = 0, c3 = 0;
                std::istringstream fields(line);
                if (!(fields >> e.depth >> c1 >> e.compressional >> c2 >> e.shear >> c3 >> e.stoneley) || c1 != ',' ||
                    c2 != ',' || c3 != ',' || (!plan.slownessLog.empty() && e.depth <= plan.slownessLog.back().depth)) {
                    std::cerr << "Error: \"" << slownessLog << "\" line " << number
                              << ": expected depth_m,dtc,dts,dtst at a depth below the line before.\n";
                    return 2;
                }
                plan.slownessLog.push_back(e);
            }
        }
        if (plan.formation.stoneleySlowness < plan.formation.fluidSlowness) {
            std::cerr << "Error: the Stoneley slowness " << plan.formation.stoneleySlowness
                      << " us/ft is faster than the fluid's " << plan.formation.fluidSlowness
                      << " us/ft; a Stoneley wave is never faster than the borehole fluid.\n";
            return 2;
        }
        if (offsetUnit == "m") {
            for (double& o : plan.offsetsFeet) o /= 0.3048;
        }
        plan.block.txNumStacks = static_cast<std::uint8_t>(stacks);
        plan.block.gainExponent = static_cast<std::uint8_t>(gainExponent);
        plan.block.sampleRate1 = static_cast<std::uint16_t>(rate1);
        plan.block.sampleRate2 = static_cast<std::uint16_t>(rate2);
        plan.block.n1 = static_cast<std::uint16_t>(n1);
        plan.block.n2 = static_cast<std::uint16_t>(n2);
        plan.block.holdoff = static_cast<std::uint16_t>(holdoff);
        const std::size_t recordBytes = 15 + plan.offsetsFeet.size() * (12 + 2 * std::size_t(n1 + n2));
        if (recordBytes > 0xFFFF) {
            std::cerr << "Error: a record of " << plan.offsetsFeet.size() << " receivers of " << n1 + n2
                      << " samples would be " << recordBytes << " bytes; a record holds at most 65535.\n";
            return 2;
        }

        std::ofstream out(output, std::ios::binary | std::ios::trunc);
        if (!out) {
            std::cerr << "Error: cannot write \"" << output << "\".\n";
            return 1;
        }
        std::uint64_t bytes = 0;
        ba::synth::WriteSurvey(plan, [&](std::span<const std::uint8_t> piece) {
            out.write(reinterpret_cast<const char*>(piece.data()), static_cast<std::streamsize>(piece.size()));
            bytes += piece.size();
        });
        out.close();
        if (!out) {
            std::cerr << "Error: writing \"" << output << "\" failed.\n";
            return 1;
        }
        std::cout << "wrote " << output << ": " << plan.Stations() << " stations, " << plan.offsetsFeet.size()
                  << " receivers, " << bytes << " bytes\n";
    } catch (const std::exception& e) {
        std::cerr << "Error: " << e.what() << "\n";
        return 1;
    }
    return 0;
}
