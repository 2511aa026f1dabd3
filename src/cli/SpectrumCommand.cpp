// spectrum DOC.bal TRACE --sample C (--time-sum T | --depth-sum D): the count-rate
// spectrum summed around one sample of a spectral gamma log, with its energy range and
// the acquisition values of the sample.

#include "cli/Command.h"
#include "cli/DocumentAccess.h"
#include "cli/JsonFormat.h"
#include "cli/NumberText.h"
#include "cli/OptionParsers.h"
#include "spectral/EnergyCalibration.h"
#include "spectral/SpectrumDisplay.h"
#include "spectral/SpectrumSumming.h"

#include <cmath>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace ba::cli {
namespace {

struct SpectrumOptions {
    std::string document;
    std::string trace;
    std::size_t sample = 0;
    std::string timeSumText;
    std::string depthSumText;
    float timeSum = 0.0f;  // read from timeSumText while the command line is parsed
    float depthSum = 0.0f; // read from depthSumText
    bool timeTempCal = false;
    std::string calibrationText;
    EnergyCoefficients coefficients; // read from calibrationText; the identity without it
};

std::string Quoted(std::string_view text) { return "\"" + std::string(text) + "\""; }

// "OFFSET_SLOPE,OFFSET_INTERCEPT,GAIN_SLOPE,GAIN_INTERCEPT": four decimal numbers.
CLI::Validator CoefficientsInto(EnergyCoefficients& target)
{
    return CLI::Validator(
        [&target](std::string& text) -> std::string {
            double* fields[] = {&target.offsetSlope, &target.offsetIntercept, &target.gainSlope,
                                &target.gainIntercept};
            std::string_view rest = text;
            for (std::size_t i = 0; i < 4; ++i) {
                const auto comma = rest.find(',');
                if ((i < 3) == (comma == std::string_view::npos)) {
                    return "expected OFFSET_SLOPE,OFFSET_INTERCEPT,GAIN_SLOPE,GAIN_INTERCEPT, got " +
                           QuoteForMessage(text);
                }
                const std::string_view part = rest.substr(0, comma);
                float value = 0.0f;
                const NumberProblem problem = ParseFloat(part, value);
                if (problem != NumberProblem::None) {
                    return "coefficient " + std::to_string(i + 1) + " " + QuoteForMessage(part) + " " +
                           DescribeFloatProblem(problem);
                }
                *fields[i] = static_cast<double>(value);
                if (comma != std::string_view::npos) rest.remove_prefix(comma + 1);
            }
            return {};
        },
        "");
}

const CSpectralTrace& RequireSpectralTrace(const CTrace& trace, std::string_view ref, const std::string& docPath)
{
    const auto* spectral = dynamic_cast<const CSpectralTrace*>(&trace);
    if (spectral == nullptr) {
        throw CommandFailure(kExitFailure, "Error: trace " + Quoted(ref) + " in " + Quoted(docPath) + " is a " +
                                               std::string(trace.ClassName()) + ", not a spectrum trace.");
    }
    return *spectral;
}

// A whole number of keV as a JSON integer (never "-0"); null if the scale is not finite.
Json EnergyJson(double keV)
{
    if (!std::isfinite(keV) || std::fabs(keV) > 9.0e15) return nullptr;
    return static_cast<long long>(keV);
}

void RunSpectrum(const SpectrumOptions& options, CommandContext& context)
{
    if (options.timeSumText.empty() && options.depthSumText.empty()) {
        throw CommandFailure(kExitUsage, "Error: one of --time-sum or --depth-sum is required.");
    }
    const bool byDepth = !options.depthSumText.empty();
    const float target = byDepth ? options.depthSum : options.timeSum;
    if (!(target > 0.0f)) {
        throw CommandFailure(kExitUsage, std::string("Error: ") + (byDepth ? "--depth-sum" : "--time-sum") +
                                             " must be greater than 0.");
    }
    const auto doc = OpenOrFail(options.document, context.sink);
    const std::size_t index = ResolveTrace(*doc, options.trace, options.document);
    const CSpectralTrace& trace = RequireSpectralTrace(doc->Trace(index), options.trace, options.document);
    const std::size_t count = trace.RowCount();
    if (options.sample >= count) {
        throw CommandFailure(kExitFailure, "Error: no sample " + std::to_string(options.sample) + " in trace " +
                                               Quoted(options.trace) + " of " + Quoted(options.document) + ": " +
                                               (count == 0 ? std::string("it has no spectra.")
                                                           : "its samples are 0 to " + std::to_string(count - 1) +
                                                                 "."));
    }
    if (trace.AcquisitionTimes().Size() != count || trace.TotalTimes().Size() != count ||
        trace.Temperatures().Size() != count || trace.HighVoltages().Size() != count) {
        throw CommandFailure(kExitFailure, "Error: trace " + Quoted(options.trace) + " of " +
                                               Quoted(options.document) +
                                               " has acquisition values for a different number of spectra than it "
                                               "has spectra.");
    }

    const SummingTarget summing{.byDepth = byDepth, .timeSum = options.timeSum, .depthSum = options.depthSum};
    const SummedSpectrum summed = SumSpectraAround(trace, options.sample, summing);
    if (summed.acquisitionTime <= 0.0) {
        context.sink.Warning("Warning: the spectra summed around sample " + std::to_string(options.sample) +
                             " of trace " + Quoted(options.trace) +
                             " have no acquisition time; their count rates are given as 0.");
    }
    const double x = options.timeTempCal ? trace.TotalTime(options.sample) : trace.Temperature(options.sample);
    const int channels = static_cast<int>(summed.ChannelCount());
    const EnergyRange range = ComputeEnergyRange(options.coefficients, channels, x);

    Json json;
    json["channels"] = channels;
    json["cps"] = FloatArrayJson(summed.cps);
    json["acquisition_time"] = FloatJson(static_cast<float>(summed.acquisitionTime));
    json["e0"] = EnergyJson(range.e0);
    json["e1"] = EnergyJson(range.e1);
    json["status"] = SpectrumStatusLine(trace, options.sample);
    context.out << JsonText(json);
}

} // namespace

Command AddSpectrumCommand(CLI::App& app)
{
    auto options = std::make_shared<SpectrumOptions>();
    CLI::App* sub = app.add_subcommand(
        "spectrum",
        "Print the count-rate spectrum of a spectral gamma trace summed around sample C (neighbours taken "
        "alternately after and before it, mirrored at the ends of the log) until --time-sum seconds of live time "
        "or --depth-sum of depth have been gathered, with the energy range of its channels (keV) and the "
        "acquisition values of the sample.");
    sub->add_option("DOC.bal", options->document, "document to read")->required();
    sub->add_option("TRACE", options->trace, kTraceArgumentHelp)->required();
    sub->add_option("--sample", options->sample, "index of the spectrum to sum around, from 0")
        ->required()
        ->type_name("C");
    auto* time = sub->add_option("--time-sum", options->timeSumText, "seconds of live time to gather")
                     ->type_name("T")
                     ->check(FloatInto(options->timeSum));
    auto* depth = sub->add_option("--depth-sum", options->depthSumText,
                                  "depth span to gather, in the trace's display unit (each spectrum adds its "
                                  "sample spacing, at least 0.001)")
                      ->type_name("D")
                      ->check(FloatInto(options->depthSum));
    time->excludes(depth);
    sub->add_flag("--time-temp-cal", options->timeTempCal,
                  "the energy scale follows the sample's total time instead of its temperature");
    sub->add_option("--calibration", options->calibrationText,
                    "energy-scale coefficients: keV at channel 0 = OFFSET_SLOPE*X + OFFSET_INTERCEPT, keV per "
                    "channel = GAIN_SLOPE*X + GAIN_INTERCEPT, X the temperature or total time (default 1,0,1,0)")
        ->type_name("OFFSET_SLOPE,OFFSET_INTERCEPT,GAIN_SLOPE,GAIN_INTERCEPT")
        ->check(CoefficientsInto(options->coefficients));
    return {sub, [options](CommandContext& context) { RunSpectrum(*options, context); }};
}

} // namespace ba::cli
