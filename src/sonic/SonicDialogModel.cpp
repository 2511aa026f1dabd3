#include "sonic/SonicDialogModel.h"

#include "model/SonicTrace.h"

#include <sstream>

namespace ba {
namespace {

// Every remembered setting with its value name; the one place that ties names to fields.
std::vector<NamedSetting> Fields(SonicDialogSettings& s)
{
    std::vector<NamedSetting> fields = {{"HPFreq", &s.highPassKilohertz}, {"LPFreq", &s.lowPassKilohertz}};
    for (std::size_t r = 0; r < s.offsets.size(); ++r) {
        fields.push_back({"Offset" + std::to_string(r + 1), &s.offsets[r]});
    }
    const std::vector<NamedSetting> rest = {
        {"WindowLength", &s.windowLength},
        {"SemblanceMultiplier", &s.semblanceMultiplier},
        {"MaxOffset", &s.maxOffset},
        {"MaxSlowness", &s.maxSlowness},
        {"AutoProcess", &s.autoProcess},
        {"NoAutoPick", &s.noAutoPick},
        {"Save", &s.save},
        {"Pick1", &s.pick[0]},
        {"Pick2", &s.pick[1]},
        {"Pick3", &s.pick[2]},
        {"NewTraces", &s.newTraces},
        {"ProbeUnits", &s.probeUnits},
        {"Units", &s.units},
        {"ProbeDiameter", &s.probeDiameter},
    };
    fields.insert(fields.end(), rest.begin(), rest.end());
    return fields;
}

std::string Number(double v)
{
    std::ostringstream out;
    out << v;
    return out.str();
}

} // namespace

std::vector<std::string> SonicSettingNames()
{
    SonicDialogSettings scratch;
    std::vector<std::string> names;
    for (const auto& f : Fields(scratch)) names.push_back(f.name);
    return names;
}

SettingsLoadReport LoadSonicSettings(ISettingsStore& store, SonicDialogSettings& settings)
{
    return LoadSettingFields(store, kSonicDialogKey, Fields(settings));
}

bool SaveSonicSettings(ISettingsStore& store, const SonicDialogSettings& settings)
{
    SonicDialogSettings copy = settings; // Fields() hands out writable pointers; saving only reads them
    return SaveSettingFields(store, kSonicDialogKey, Fields(copy));
}

double FastestSlowness(LengthUnit unit) { return unit == LengthUnit::Feet ? 40.0 : 130.0; }
double SlownessStep(LengthUnit unit) { return unit == LengthUnit::Feet ? 1.0 : 3.0; }

SettingsLoadReport CSonicDialogModel::Open()
{
    m_settings = SonicDialogSettings{};
    return LoadSonicSettings(m_store, m_settings);
}

bool CSonicDialogModel::SaveAsDefault(IMessageSink& sink)
{
    if (SaveSonicSettings(m_store, m_settings)) return true;
    sink.Warning("Warning: the sonic dialog settings could not be saved in " + m_store.Location(SettingsRoot::LocalMachine) +
                 "; they will not be remembered.");
    return false;
}

std::vector<std::size_t> CSonicDialogModel::SonicTraces(const CBoreAnalystDoc& doc)
{
    std::vector<std::size_t> sonic;
    for (std::size_t t = 0; t < doc.TraceCount(); ++t) {
        if (doc.Trace(t).Kind() == TraceKind::Sonic) sonic.push_back(t);
    }
    return sonic;
}

void CSonicDialogModel::ChooseFirstReceivers(const CBoreAnalystDoc& doc)
{
    const std::vector<std::size_t> sonic = SonicTraces(doc);
    for (std::size_t r = 0; r < m_receivers.size(); ++r) {
        m_receivers[r] = r < sonic.size() ? std::optional<std::size_t>(sonic[r]) : std::nullopt;
    }
}

std::optional<SonicVelocitySettings> CSonicDialogModel::JobSettings(const CBoreAnalystDoc& doc, IMessageSink& sink) const
{
    const SonicDialogSettings& s = m_settings;
    SonicVelocitySettings job;
    job.offsetUnit = s.probeUnits == 1 ? LengthUnit::Metres : LengthUnit::Feet;
    job.outputUnit = s.units == 1 ? LengthUnit::Metres : LengthUnit::Feet;
    const char* probeUnit = job.offsetUnit == LengthUnit::Feet ? "ft" : "m";
    std::size_t chosen = 0;
    for (std::size_t r = 0; r < m_receivers.size(); ++r) {
        if (!m_receivers[r]) continue;
        ++chosen;
        if (s.offsets[r] > s.maxOffset) continue;
        job.receivers.push_back(*m_receivers[r]);
        job.offsets.push_back(s.offsets[r]);
    }
    if (chosen >= 2 && job.receivers.size() < 2) {
        const std::size_t within = job.receivers.size();
        sink.Error("Error: of the " + std::to_string(chosen) + " receivers chosen, " + std::to_string(within) +
                   (within == 1 ? " is" : " are") + " within the largest offset of " + Number(s.maxOffset) + " " +
                   probeUnit + "; sonic velocities need two or more.");
        return std::nullopt;
    }
    if (!(s.semblanceMultiplier > 0.0 && s.semblanceMultiplier <= 1.0)) {
        sink.Error("Error: the semblance multiplier " + Number(s.semblanceMultiplier) +
                   " must lie above 0 and at most 1 (the share of perfect coherence an arrival must reach).");
        return std::nullopt;
    }
    const bool anyMode = s.pick[0] || s.pick[1] || s.pick[2];
    if ((s.noAutoPick || !anyMode) && !s.save) {
        sink.Error("Error: nothing would be made: pick at least one mode, or keep the slowness-projection image.");
        return std::nullopt;
    }
    job.grid = {FastestSlowness(job.outputUnit), s.maxSlowness, SlownessStep(job.outputUnit)};
    job.windowMicroseconds = s.windowLength;
    job.threshold = static_cast<float>(s.semblanceMultiplier);
    job.modes = s.pick;
    job.labelModes = !s.noAutoPick && anyMode;
    job.projectionImage = s.save;
    job.replaceEarlier = !s.newTraces;
    if (s.autoProcess) job.bandpass = BandPass{s.highPassKilohertz * 1000.0, s.lowPassKilohertz * 1000.0, 4};
    if (!CheckSonicVelocitySettings(doc, job, sink)) return std::nullopt;
    return job;
}

} // namespace ba
