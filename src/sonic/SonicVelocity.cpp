#include "sonic/SonicVelocity.h"

#include "model/DerivedLineTraces.h"
#include "model/DocumentChanges.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <sstream>

namespace ba {
namespace {

constexpr double kFeetPerMetre = 3.28083989501;
constexpr std::size_t kMostReceivers = 5;

double ToUnit(double length, LengthUnit from, LengthUnit to)
{
    if (from == to) return length;
    return from == LengthUnit::Feet ? length / kFeetPerMetre : length * kFeetPerMetre;
}

std::string Number(double v)
{
    std::ostringstream out;
    out << v;
    return out.str();
}

std::string Quoted(const CTrace& trace) { return "\"" + trace.Name() + "\""; }

double SampleInterval(const CSonicTrace& t) { return t.Acquisition().rxSampleRate1; }
double StartTime(const CSonicTrace& t) { return 10.0 * t.Acquisition().rxHoldoff; }
std::size_t SamplesPerRow(const CSonicTrace& t) { return t.RowCount() > 0 ? t.Row(0).size() : 0; }

} // namespace

const char* SlownessUnitText(LengthUnit unit) { return unit == LengthUnit::Feet ? "us/ft" : "us/m"; }

bool CheckSonicVelocitySettings(const CBoreAnalystDoc& doc, const SonicVelocitySettings& settings, IMessageSink& sink)
{
    const std::size_t n = settings.receivers.size();
    if (n < 2 || n > kMostReceivers) {
        sink.Error("Error: sonic velocities need two to five receivers; " + std::to_string(n) +
                   (n == 1 ? " was chosen." : " were chosen."));
        return false;
    }
    std::vector<const CSonicTrace*> traces;
    for (const std::size_t index : settings.receivers) {
        const auto* sonic = index < doc.TraceCount() ? dynamic_cast<const CSonicTrace*>(&doc.Trace(index)) : nullptr;
        if (sonic == nullptr) {
            sink.Error("Error: receiver " + std::to_string(traces.size() + 1) + " is not a sonic trace of the document.");
            return false;
        }
        if (sonic->RowCount() == 0 || SamplesPerRow(*sonic) == 0 || sonic->Acquisition().rxSampleRate1 <= 0) {
            sink.Error("Error: " + Quoted(*sonic) + " holds no waveforms with a sample rate.");
            return false;
        }
        traces.push_back(sonic);
    }
    const CSonicTrace& first = *traces.front();
    for (const CSonicTrace* t : traces) {
        if (SampleInterval(*t) != SampleInterval(first) || StartTime(*t) != StartTime(first) ||
            SamplesPerRow(*t) != SamplesPerRow(first)) {
            sink.Error("Error: " + Quoted(*t) + " records " + std::to_string(SamplesPerRow(*t)) + " samples every " +
                       Number(SampleInterval(*t)) + " us from " + Number(StartTime(*t)) + " us, but " + Quoted(first) +
                       " " + std::to_string(SamplesPerRow(first)) + " every " + Number(SampleInterval(first)) +
                       " us from " + Number(StartTime(first)) + " us; the receivers must be sampled alike.");
            return false;
        }
        const bool sameStations =
            t->SampleCount() == first.SampleCount() && t->DepthUnit() == first.DepthUnit() &&
            std::memcmp(t->StoredDepths().Data(), first.StoredDepths().Data(), first.SampleCount() * sizeof(float)) == 0;
        if (!sameStations) {
            sink.Error("Error: " + Quoted(*t) + " has its waveforms at other stations than " + Quoted(first) +
                       "; the receivers must be recorded together.");
            return false;
        }
        for (std::size_t i = 0; i < t->RowCount(); ++i) {
            if (t->Row(i).size() != SamplesPerRow(first)) {
                sink.Error("Error: " + Quoted(*t) + " station " + std::to_string(i + 1) + " holds " +
                           std::to_string(t->Row(i).size()) + " samples where the others hold " +
                           std::to_string(SamplesPerRow(first)) + ".");
                return false;
            }
        }
    }
    const char* unit = settings.offsetUnit == LengthUnit::Feet ? "ft" : "m";
    if (settings.offsets.size() != n) {
        sink.Error("Error: " + std::to_string(settings.offsets.size()) + " offsets were given for " + std::to_string(n) +
                   " receivers.");
        return false;
    }
    for (std::size_t r = 1; r < n; ++r) {
        if (!(settings.offsets[r] > settings.offsets[r - 1])) {
            sink.Error("Error: the offsets must increase from the first receiver to the last; receiver " +
                       std::to_string(r + 1) + " is at " + Number(settings.offsets[r]) + " " + unit + ", receiver " +
                       std::to_string(r) + " at " + Number(settings.offsets[r - 1]) + " " + unit + ".");
            return false;
        }
    }
    const double record = SampleInterval(first) * static_cast<double>(SamplesPerRow(first));
    if (!(settings.windowMicroseconds > 0.0) || settings.windowMicroseconds > record) {
        sink.Error("Error: the window of " + Number(settings.windowMicroseconds) + " us must be longer than 0 and " +
                   "no longer than the record of " + Number(record) + " us.");
        return false;
    }
    if (settings.bandpass) {
        if (const auto problem = BandPassProblem(*settings.bandpass, SampleInterval(first))) {
            sink.Error(*problem);
            return false;
        }
    }
    if (settings.grid.Count() == 0) {
        const char* slowness = SlownessUnitText(settings.outputUnit);
        sink.Error("Error: the slownesses from " + Number(settings.grid.first) + " to " + Number(settings.grid.last) +
                   " " + slowness + " every " + Number(settings.grid.step) + " " + slowness + " are none.");
        return false;
    }
    return true;
}

CSonicVelocityProcess::CSonicVelocityProcess(CBoreAnalystDoc& doc, SonicVelocitySettings settings)
    : m_doc(doc), m_settings(std::move(settings))
{
    for (const std::size_t index : m_settings.receivers) m_traces.push_back(&dynamic_cast<const CSonicTrace&>(doc.Trace(index)));
    for (const double offset : m_settings.offsets) {
        m_offsetsInOutputUnit.push_back(ToUnit(offset, m_settings.offsetUnit, m_settings.outputUnit));
    }
    m_stations = m_traces.front()->RowCount();
    m_sampleInterval = SampleInterval(*m_traces.front());
    m_startTime = StartTime(*m_traces.front());
    m_peaks.resize(m_stations);
    if (m_settings.projectionImage) m_projection.resize(m_stations);
    if (m_settings.bandpass) m_filter.emplace(*m_settings.bandpass, m_sampleInterval);
}

CoherenceMap CSonicVelocityProcess::StationMap(std::size_t i) const
{
    // The waveforms about their zero line, as floats, one station at a time.
    std::vector<std::vector<float>> waveforms(m_traces.size());
    ReceiverWaveforms station;
    for (std::size_t r = 0; r < m_traces.size(); ++r) {
        const ImageRow& row = m_traces[r]->Row(i);
        waveforms[r].resize(row.size());
        for (std::size_t k = 0; k < row.size(); ++k) {
            waveforms[r][k] = static_cast<float>(static_cast<int>(row[k]) - static_cast<int>(kSonicZeroLine));
        }
        if (m_filter) m_filter->ApplyZeroPhase(waveforms[r]);
        station.traces.emplace_back(waveforms[r]);
    }
    station.offsets = m_offsetsInOutputUnit;
    station.sampleInterval = m_sampleInterval;
    station.startTime = m_startTime;
    return ComputeCoherenceMap(station, m_settings.grid, m_settings.windowMicroseconds);
}

ModeRules CSonicVelocityProcess::Rules() const
{
    ModeRules rules;
    rules.fluidSlowness = m_settings.outputUnit == LengthUnit::Feet ? m_settings.fluidSlownessPerFoot
                                                                     : m_settings.fluidSlownessPerFoot * kFeetPerMetre;
    return rules;
}

ModePicks CSonicVelocityProcess::StationLabels(const CoherenceMap& map) const
{
    const auto peaks = FindCoherencePeaks(map, m_settings.threshold, PeakSeparation{m_settings.windowMicroseconds, 0.1});
    return LabelModes(peaks, Rules(), nullptr);
}

std::optional<std::size_t> CSonicVelocityProcess::StationNear(double depth) const
{
    const CSonicTrace& first = *m_traces.front();
    if (m_stations == 0 || !std::isfinite(depth)) return std::nullopt;
    std::size_t nearest = 0;
    for (std::size_t i = 1; i < m_stations; ++i) {
        if (std::abs(first.Depth(i) - depth) < std::abs(first.Depth(nearest) - depth)) nearest = i;
    }
    const double top = std::min(first.FirstDepth(), first.LastDepth());
    const double bottom = std::max(first.FirstDepth(), first.LastDepth());
    const double half = 0.5 * std::abs(first.SamplingStep());
    if (depth < top - half || depth > bottom + half) return std::nullopt;
    return nearest;
}

double CSonicVelocityProcess::StationDepth(std::size_t i) const { return m_traces.front()->Depth(i); }

void CSonicVelocityProcess::ComputeStation(std::size_t i)
{
    const CoherenceMap map = StationMap(i);
    if (m_settings.labelModes) {
        m_peaks[i] = FindCoherencePeaks(map, m_settings.threshold, PeakSeparation{m_settings.windowMicroseconds, 0.1});
    }
    if (m_settings.projectionImage) {
        ImageRow& row = m_projection[i];
        row.assign(map.slowness.size(), 0);
        const std::size_t rows = map.time.size();
        for (std::size_t c = 0; c < map.slowness.size(); ++c) {
            const auto column = std::span(map.rho).subspan(c * rows, rows);
            const float most = rows > 0 ? *std::max_element(column.begin(), column.end()) : 0.0f;
            row[c] = static_cast<std::uint16_t>(std::lround(std::clamp(most, 0.0f, 1.0f) * 4095.0f));
        }
    }
}

void CSonicVelocityProcess::Finish(std::size_t stations)
{
    const ModeRules rules = Rules();
    m_picks.clear();
    for (std::size_t i = 0; i < stations; ++i) {
        m_picks.push_back(LabelModes(m_peaks[i], rules, m_picks.empty() ? nullptr : &m_picks.back()));
    }
    if (stations == 0) return;

    std::vector<std::unique_ptr<CTrace>> made;
    if (m_settings.labelModes) made = ModeLogs(stations);
    if (m_settings.projectionImage) made.push_back(ProjectionImage(stations));
    Deliver(std::move(made));
}

std::vector<std::unique_ptr<CTrace>> CSonicVelocityProcess::ModeLogs(std::size_t stations) const
{
    const CSonicTrace& first = *m_traces.front();
    const std::string slownessUnit = SlownessUnitText(m_settings.outputUnit);
    const auto grid = m_settings.grid;
    const double lastTime = m_startTime + m_sampleInterval * static_cast<double>(SamplesPerRow(first));
    struct Output {
        const char* name;
        std::string units;
        float left, right;
        std::optional<CoherencePeak> ModePicks::*mode;
        int quantity; // 0 slowness, 1 coherence, 2 time
        std::size_t modeIndex;
    };
    const Output outputs[] = {
        {"DTC", slownessUnit, static_cast<float>(grid.last), static_cast<float>(grid.first), &ModePicks::compressional, 0, 0},
        {"DTS", slownessUnit, static_cast<float>(grid.last), static_cast<float>(grid.first), &ModePicks::shear, 0, 1},
        {"DTST", slownessUnit, static_cast<float>(grid.last), static_cast<float>(grid.first), &ModePicks::stoneley, 0, 2},
        {"COHC", "", 0.0f, 1.0f, &ModePicks::compressional, 1, 0},
        {"COHS", "", 0.0f, 1.0f, &ModePicks::shear, 1, 1},
        {"COHST", "", 0.0f, 1.0f, &ModePicks::stoneley, 1, 2},
        {"TTC", "us", 0.0f, static_cast<float>(lastTime), &ModePicks::compressional, 2, 0},
        {"TTS", "us", 0.0f, static_cast<float>(lastTime), &ModePicks::shear, 2, 1},
        {"TTST", "us", 0.0f, static_cast<float>(lastTime), &ModePicks::stoneley, 2, 2},
    };
    std::vector<std::unique_ptr<CTrace>> made;
    for (const Output& o : outputs) {
        if (!m_settings.modes[o.modeIndex]) continue;
        auto trace = MakeDerivedLineTrace(m_doc, o.left, o.right, o.name, o.units);
        trace->SetDepthUnit(first.DepthUnit());
        trace->StoredDepths().Reserve(stations);
        trace->Values().Reserve(stations);
        for (std::size_t i = 0; i < stations; ++i) {
            const std::optional<CoherencePeak>& pick = m_picks[i].*o.mode;
            float value = kNullValue;
            if (pick) {
                value = static_cast<float>(o.quantity == 0 ? pick->slowness : (o.quantity == 1 ? pick->rho : pick->time));
            }
            trace->AppendSample(first.StoredDepth(i), value);
        }
        made.push_back(std::move(trace));
    }
    return made;
}

std::unique_ptr<CTrace> CSonicVelocityProcess::ProjectionImage(std::size_t stations) const
{
    const CSonicTrace& first = *m_traces.front();
    auto image = std::make_unique<CImageTrace>(kSlownessProjectionName, static_cast<float>(m_settings.grid.first),
                                               static_cast<float>(m_settings.grid.At(m_settings.grid.Count() - 1)),
                                               SlownessUnitText(m_settings.outputUnit));
    image->SetDepthUnit(first.DepthUnit());
    image->SetTrackIndex(first.TrackIndex());
    for (std::size_t i = 0; i < stations; ++i) image->AppendRow(first.StoredDepth(i), m_projection[i]);
    return image;
}

void CSonicVelocityProcess::Deliver(std::vector<std::unique_ptr<CTrace>> made)
{
    if (made.empty()) return;
    if (!m_settings.replaceEarlier) {
        m_doc.Apply(MakeAddTracesChange(JobName(), std::move(made)));
        return;
    }
    std::vector<std::unique_ptr<CDocumentChange>> parts;
    std::vector<std::unique_ptr<CTrace>> added;
    for (auto& trace : made) {
        std::optional<std::size_t> earlier;
        for (std::size_t t = 0; t < m_doc.TraceCount(); ++t) {
            if (m_doc.Trace(t).Name() == trace->Name() && m_doc.Trace(t).Kind() == trace->Kind()) earlier = t;
        }
        if (!earlier) {
            added.push_back(std::move(trace));
            continue;
        }
        // The earlier log's place and look stay; only its samples are new.
        const CTrace& old = m_doc.Trace(*earlier);
        trace->SetTrackIndex(old.TrackIndex());
        trace->SetFlags(old.Flags());
        trace->SetScale(old.ScaleLeft(), old.ScaleRight());
        if (auto* line = dynamic_cast<CLineTrace*>(trace.get())) {
            const auto& pen = dynamic_cast<const CLineTrace&>(old);
            line->ChangePen(pen.PenWidth(), pen.PenStyle(), pen.ColourIndex(), pen.Colour());
        }
        parts.push_back(MakeReplaceTraceChange(JobName(), *earlier, std::move(trace)));
    }
    if (!added.empty()) parts.push_back(MakeAddTracesChange(JobName(), std::move(added)));
    m_doc.Apply(parts.size() == 1 ? std::move(parts.front()) : MakeCompositeChange(JobName(), std::move(parts)));
}

} // namespace ba
