#include "spectral/SpectralDialogModel.h"

namespace ba {
namespace {

// Every remembered setting with its value name; the one place that ties names to fields.
std::vector<NamedSetting> Fields(SpectralDialogSettings& s)
{
    std::vector<NamedSetting> fields = {
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

} // namespace

std::vector<std::string> SpectralSettingNames()
{
    SpectralDialogSettings scratch;
    std::vector<std::string> names;
    for (const auto& f : Fields(scratch)) names.push_back(f.name);
    return names;
}

SettingsLoadReport LoadSpectralSettings(ISettingsStore& store, SpectralDialogSettings& settings)
{
    return LoadSettingFields(store, kSpectralDialogKey, Fields(settings));
}

bool SaveSpectralSettings(ISettingsStore& store, const SpectralDialogSettings& settings)
{
    // Fields() hands out pointers for reading and writing alike; saving only reads them.
    SpectralDialogSettings copy = settings;
    return SaveSettingFields(store, kSpectralDialogKey, Fields(copy));
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
