#include "cli/SonicOptions.h"

#include "cli/Command.h"
#include "cli/DocumentAccess.h"
#include "cli/TraceUtilityCommand.h"

namespace ba::cli {

std::vector<std::string> SplitCommas(std::string_view text)
{
    std::vector<std::string> parts;
    while (true) {
        const auto comma = text.find(',');
        parts.emplace_back(text.substr(0, comma));
        if (comma == std::string_view::npos) return parts;
        text.remove_prefix(comma + 1);
    }
}

std::vector<double> Numbers(const std::string& text, const char* option)
{
    std::vector<double> numbers;
    for (std::string part : SplitCommas(text)) {
        double value = 0.0;
        if (!DoubleInto(value)(part).empty()) {
            throw CommandFailure(kExitUsage, "Error: " + std::string(option) + ": \"" + part + "\" is not a number.");
        }
        numbers.push_back(value);
    }
    return numbers;
}

std::vector<std::size_t> ResolveReceivers(const CBoreAnalystDoc& doc, const std::string& list, const std::string& docPath)
{
    std::vector<std::size_t> indices;
    for (const std::string& ref : SplitCommas(list)) indices.push_back(ResolveTrace(doc, ref, docPath));
    return indices;
}

LengthUnit LengthUnitOf(const std::string& text) { return text == "m" ? LengthUnit::Metres : LengthUnit::Feet; }

LengthUnit SlownessLengthUnitOf(const std::string& text) { return text == "us/m" ? LengthUnit::Metres : LengthUnit::Feet; }

void CoherenceOptions::AddTo(CLI::App& sub)
{
    sub.add_option("--receivers", receivers, "the receivers' sonic traces, nearest first")->type_name("A,B,...")->required();
    sub.add_option("--offsets", offsets, "transmitter to receiver distances, one per receiver")
        ->type_name("O1,O2,...")
        ->required();
    sub.add_option("--offset-units", offsetUnits, "unit of --offsets (default ft)")->check(CLI::IsMember({"ft", "m"}));
    sub.add_option("--slowness", slowness, "the slowness grid in --units (default 40,300,1 us/ft or 130,990,3 us/m)")
        ->type_name("MIN,MAX,STEP");
    sub.add_option("--window", windowText, "the coherence window, us (default 120)")
        ->type_name("US")
        ->check(DoubleInto(window));
    sub.add_option("--threshold", thresholdText, "the coherence a peak must reach (default 0.7)")
        ->type_name("C")
        ->check(DoubleInto(threshold));
    sub.add_option("--units", units, "slowness unit of the output (default us/ft)")->check(CLI::IsMember({"us/ft", "us/m"}));
    sub.add_option("--bandpass", bandpass,
                   "band-pass each waveform first, zero phase (Butterworth, order 4), corners in Hz")
        ->type_name("LO,HI");
}

SonicVelocitySettings CoherenceOptions::Settings(const CBoreAnalystDoc& doc, const std::string& docPath,
                                                 IMessageSink& sink) const
{
    SonicVelocitySettings settings;
    settings.receivers = ResolveReceivers(doc, receivers, docPath);
    settings.offsets = Numbers(offsets, "--offsets");
    settings.offsetUnit = LengthUnitOf(offsetUnits);
    settings.outputUnit = SlownessLengthUnitOf(units);
    if (settings.outputUnit == LengthUnit::Metres) settings.grid = {130.0, 990.0, 3.0};
    if (!slowness.empty()) {
        const std::vector<double> grid = Numbers(slowness, "--slowness");
        if (grid.size() != 3) throw CommandFailure(kExitUsage, "Error: --slowness takes MIN,MAX,STEP.");
        settings.grid = {grid[0], grid[1], grid[2]};
    }
    settings.windowMicroseconds = window;
    settings.threshold = static_cast<float>(threshold);
    if (!bandpass.empty()) {
        const std::vector<double> corners = Numbers(bandpass, "--bandpass");
        if (corners.size() != 2) throw CommandFailure(kExitUsage, "Error: --bandpass takes LO,HI in Hz.");
        settings.bandpass = BandPass{corners[0], corners[1], 4};
    }
    if (!CheckSonicVelocitySettings(doc, settings, sink)) throw CommandFailure(kExitFailure, {});
    return settings;
}

} // namespace ba::cli
