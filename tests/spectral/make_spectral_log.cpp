// Adds a synthetic spectral gamma log to a document, creating the document when it does
// not exist yet. For the demo and the benchmarks.
//
//   make_spectral_log DOC.bal [--name NAME] [--spectra N] [--channels N] [--top METRES]
//                     [--step METRES] [--live-time SECONDS] [--seed N]

#include "spectral/SpectrumSynth.h"

#include "base/MessageSink.h"
#include "model/BoreAnalystDoc.h"

#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>

namespace {

constexpr const char* kUsage =
    "usage: make_spectral_log DOC.bal [--name NAME] [--spectra N] [--channels N] [--top METRES] [--step METRES]\n"
    "                         [--live-time SECONDS] [--seed N]\n";

[[noreturn]] void Fail(const std::string& what, int status)
{
    std::fprintf(stderr, "make_spectral_log: %s\n", what.c_str());
    if (status == 2) std::fputs(kUsage, stderr);
    std::exit(status);
}

double Number(const std::string& option, const std::string& text, double minimum, double maximum)
{
    double value = 0.0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
    if (result.ec != std::errc() || result.ptr != text.data() + text.size() || !(value >= minimum && value <= maximum)) {
        Fail(option + " needs a number from " + std::to_string(minimum) + " to " + std::to_string(maximum) +
                 ", not \"" + text + "\"",
             2);
    }
    return value;
}

class StderrSink final : public ba::IMessageSink {
public:
    void Report(const ba::Message& message) override { std::fprintf(stderr, "%s\n", message.text.c_str()); }
};

} // namespace

int main(int argc, char** argv)
{
    if (argc < 2 || argv[1][0] == '-') Fail("the document is required", 2);
    const std::filesystem::path path = argv[1];
    std::string name = "SPECTRAL";
    ba::synth::LogOptions options;
    for (int i = 2; i < argc; i += 2) {
        const std::string option = argv[i];
        if (i + 1 >= argc) Fail("missing value after " + option, 2);
        const std::string value = argv[i + 1];
        if (option == "--name") name = value;
        else if (option == "--spectra") options.spectra = static_cast<std::size_t>(Number(option, value, 1, 1e6));
        else if (option == "--channels") options.detector.channels = static_cast<int>(Number(option, value, 1, 16384));
        else if (option == "--top") options.topDepth = Number(option, value, -1e5, 1e5);
        else if (option == "--step") options.step = Number(option, value, 0.001, 100);
        else if (option == "--live-time") options.liveTime = Number(option, value, 0.01, 3600);
        else if (option == "--seed") options.seed = static_cast<unsigned long long>(Number(option, value, 0, 1e15));
        else Fail("unknown option " + option, 2);
    }
    if (name.empty() || name.size() > 25) Fail("--name must have 1 to 25 characters", 2);
    // 1024 channels keep 3 keV per channel; other counts cover the same 0 to 3 MeV.
    options.detector.keVPerChannelAt20C = 3072.0 / options.detector.channels;

    StderrSink sink;
    std::unique_ptr<ba::CBoreAnalystDoc> doc;
    if (std::filesystem::exists(path)) {
        doc = ba::OpenDocument(path, sink);
        if (!doc) return 1;
        if (doc->FindTrace(name) != nullptr) Fail("\"" + path.string() + "\" already has a trace named " + name, 1);
    } else {
        doc = std::make_unique<ba::CBoreAnalystDoc>();
    }
    doc->AddTrace(ba::synth::MakeSpectralLog(name, options));
    if (doc->OnSaveDocument(path, sink) != ba::SaveOutcome::Written) return 1;
    std::printf("%s: added %s, %zu spectra of %d channels from %g m every %g m\n", path.string().c_str(), name.c_str(),
                options.spectra, options.detector.channels, options.topDepth, options.step);
    return 0;
}
