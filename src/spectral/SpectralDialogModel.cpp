#include "spectral/SpectralDialogModel.h"

#include <charconv>
#include <cmath>
#include <type_traits>
#include <variant>

namespace ba {
namespace {

using SettingField = std::variant<bool*, int*, double*, std::string*>;

struct NamedField {
    std::string name;
    SettingField field;
};

// Every remembered setting with its value name; the one place that ties names to fields.
std::vector<NamedField> Fields(SpectralDialogSettings& s)
{
    std::vector<NamedField> fields = {
        {"LogPlot", &s.logPlot},
        {"PlottingScale", &s.plottingScale},
        {"Decades", &s.decades},
        {"DepthSum", &s.depthSum},
        {"TimeSum", &s.timeSum},
        {"SumDepth", &s.sumDepth},
        {"Automatic", &s.automatic},
        {"FirstBinOne", &s.first.binOne},
        {"FirstBinTwo", &s.first.binTwo},
        {"FirstEnergyOne", &s.first.energyOne},
        {"FirstEnergyTwo", &s.first.energyTwo},
        {"FirstTimeTemp", &s.first.x},
        {"SecondBinOne", &s.second.binOne},
        {"SecondBinTwo", &s.second.binTwo},
        {"SecondEnergyOne", &s.second.energyOne},
        {"SecondEnergyTwo", &s.second.energyTwo},
        {"SecondTimeTemp", &s.second.x},
        {"TimeTempCal", &s.timeTempCal},
    };
    for (std::size_t w = 0; w < s.windowNames.size(); ++w) {
        fields.push_back({"Win" + std::to_string(w + 1) + "Name", &s.windowNames[w]});
    }
    fields.push_back({"ProcessingMode", &s.processingMode});
    fields.push_back({"WinModelName", &s.windowModelName});
    fields.push_back({"BasisModelName", &s.basisModelName});
    fields.push_back({"BasisCutoff", &s.basisCutoff});
    return fields;
}

bool IsCalibrationName(const std::string& name)
{
    return name.starts_with("First") || name.starts_with("Second");
}

std::string SettingPath(const std::string& name) { return std::string(kSpectralDialogKey) + name; }

std::string_view SkipLeadingBlanks(std::string_view text)
{
    while (!text.empty() && (text.front() == ' ' || text.front() == '\t')) text.remove_prefix(1);
    return text;
}

// Parses `text` into `*field`; false (field untouched) when it cannot be read as the type.
bool ReadInto(const SettingField& field, const std::string& text)
{
    return std::visit(
        [&](auto* target) {
            using T = std::remove_pointer_t<decltype(target)>;
            if constexpr (std::is_same_v<T, std::string>) {
                *target = text;
                return true;
            } else if constexpr (std::is_same_v<T, double>) {
                const auto value = ParseSettingNumber(text);
                if (value) *target = *value;
                return value.has_value();
            } else if constexpr (std::is_same_v<T, bool>) {
                const auto value = ParseSettingInteger(text); // flags are stored as 1 or 0
                if (value) *target = *value != 0;
                return value.has_value();
            } else {
                const auto value = ParseSettingInteger(text);
                if (value) *target = *value;
                return value.has_value();
            }
        },
        field);
}

std::string TextOf(const SettingField& field)
{
    return std::visit(
        [](auto* source) -> std::string {
            using T = std::remove_pointer_t<decltype(source)>;
            if constexpr (std::is_same_v<T, std::string>) return *source;
            else if constexpr (std::is_same_v<T, double>) return SettingText(*source);
            else if constexpr (std::is_same_v<T, bool>) return *source ? "1" : "0";
            else return std::to_string(*source);
        },
        field);
}

} // namespace

std::vector<std::string> SpectralSettingNames()
{
    SpectralDialogSettings scratch;
    std::vector<std::string> names;
    for (const auto& f : Fields(scratch)) names.push_back(f.name);
    return names;
}

std::string SettingText(double value)
{
    char buffer[32];
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, value);
    return std::string(buffer, result.ptr);
}

std::optional<double> ParseSettingNumber(std::string_view text)
{
    text = SkipLeadingBlanks(text);
    if (!text.empty() && text.front() == '+') text.remove_prefix(1);
    double value = 0.0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
    if (result.ec != std::errc() || result.ptr != text.data() + text.size() || !std::isfinite(value)) {
        return std::nullopt;
    }
    return value;
}

std::optional<int> ParseSettingInteger(std::string_view text)
{
    text = SkipLeadingBlanks(text);
    if (!text.empty() && text.front() == '+') text.remove_prefix(1);
    int value = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
    if (result.ec != std::errc() || result.ptr != text.data() + text.size()) return std::nullopt;
    return value;
}

SettingsLoadReport LoadSpectralSettings(ISettingsStore& store, SpectralDialogSettings& settings)
{
    SettingsLoadReport report;
    for (const auto& f : Fields(settings)) {
        const auto text = store.Read(SettingsRoot::LocalMachine, SettingPath(f.name));
        if (!text) report.missing.push_back(f.name);
        else if (!ReadInto(f.field, *text)) report.unreadable.push_back(f.name);
    }
    return report;
}

bool SaveSpectralSettings(ISettingsStore& store, const SpectralDialogSettings& settings)
{
    // Fields() hands out pointers for reading and writing alike; saving only reads them.
    SpectralDialogSettings copy = settings;
    bool allWritten = true;
    for (const auto& f : Fields(copy)) {
        if (!store.Write(SettingsRoot::LocalMachine, SettingPath(f.name), TextOf(f.field))) allWritten = false;
    }
    return allWritten;
}

SettingsLoadReport CSpectralDialogModel::Open(IMessageSink& sink)
{
    m_settings = SpectralDialogSettings{};
    m_coefficients = EnergyCoefficients{};
    SettingsLoadReport report = LoadSpectralSettings(m_store, m_settings);
    bool calibrationStored = true;
    for (const auto& name : report.missing) calibrationStored = calibrationStored && !IsCalibrationName(name);
    for (const auto& name : report.unreadable) calibrationStored = calibrationStored && !IsCalibrationName(name);
    if (calibrationStored) Calibrate(sink);
    return report;
}

bool CSpectralDialogModel::Calibrate(IMessageSink& sink)
{
    const auto derived = DeriveEnergyCoefficients(m_settings.first, m_settings.second, sink);
    if (!derived) return false;
    m_coefficients = *derived;
    return true;
}

SummingTarget CSpectralDialogModel::Target() const
{
    return SummingTarget{.byDepth = m_settings.sumDepth, .timeSum = m_settings.timeSum, .depthSum = m_settings.depthSum};
}

SpectrumScale CSpectralDialogModel::Scale() const
{
    return SpectrumScale{
        .logarithmic = m_settings.logPlot, .plottingScale = m_settings.plottingScale, .decades = m_settings.decades};
}

double CSpectralDialogModel::ReferenceX(const CSpectralTrace& trace, std::size_t sample) const
{
    return m_settings.timeTempCal ? trace.TotalTime(sample) : trace.Temperature(sample);
}

EnergyRange CSpectralDialogModel::EnergyRangeAt(const CSpectralTrace& trace, std::size_t sample) const
{
    const int channels = static_cast<int>(trace.Row(sample).size());
    return ComputeEnergyRange(m_coefficients, channels, ReferenceX(trace, sample));
}

bool CSpectralDialogModel::OnOk(IMessageSink& sink)
{
    if (!m_selectedTrace) {
        sink.Error("Error: you must select a spectrum trace.");
        return false;
    }
    if (m_settings.logPlot && !(m_settings.plottingScale >= 10.0)) {
        sink.Error("Error: plotting scale must be 10 or greater when plotting logarithmically.");
        return false;
    }
    if (!m_settings.logPlot && !(m_settings.plottingScale >= 0.01)) {
        sink.Error("Error: plotting scale must be 0.01 or greater when plotting linearly.");
        return false;
    }
    if (!SaveSpectralSettings(m_store, m_settings)) {
        sink.Warning("Warning: the spectral dialog settings could not be saved; they will not be remembered.");
    }
    return true;
}

} // namespace ba
