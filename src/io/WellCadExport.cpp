#include "io/WellCadExport.h"

#include "io/ExportGrid.h"
#include "io/WellCadDispatchIds.h"
#include "model/LineTrace.h"

#include <array>
#include <initializer_list>
#include <utility>
#include <vector>

namespace ba {
namespace {

using namespace wellcad;

// An automation object with the role it plays, so that a failed call says which object
// it was made on.
class CRoleObject {
public:
    CRoleObject(AutomationObjectPtr object, std::string role) : m_object(std::move(object)), m_role(std::move(role)) {}

    AutomationValue Get(DispatchId id, std::string_view what)
    {
        try {
            return m_object->PropertyGet(id);
        } catch (const AutomationError& e) {
            throw Failure(what, e.what());
        }
    }
    void Put(DispatchId id, const AutomationValue& value, std::string_view what)
    {
        try {
            m_object->PropertyPut(id, value);
        } catch (const AutomationError& e) {
            throw Failure(what, e.what());
        }
    }
    AutomationValue Call(DispatchId id, std::span<const AutomationValue> args, std::string_view what)
    {
        try {
            return m_object->Method(id, args);
        } catch (const AutomationError& e) {
            throw Failure(what, e.what());
        }
    }
    AutomationValue Call(DispatchId id, std::initializer_list<AutomationValue> args, std::string_view what)
    {
        return Call(id, std::span(args.begin(), args.size()), what);
    }

    // The answer of `what` as an integer; any other answer is an error.
    int Integer(const AutomationValue& answer, std::string_view what) const
    {
        if (const auto* v16 = std::get_if<std::int16_t>(&answer)) return *v16;
        if (const auto* v32 = std::get_if<std::int32_t>(&answer)) return *v32;
        throw Failure(what, "the answer is " + std::string(AutomationTypeName(answer)) + ", not an integer");
    }
    // The answer of `what` as an object; any other answer is an error.
    AutomationObjectPtr Object(const AutomationValue& answer, std::string_view what) const
    {
        const auto* object = std::get_if<AutomationObjectPtr>(&answer);
        if (object == nullptr || *object == nullptr) {
            throw Failure(what, "the answer is " + std::string(AutomationTypeName(answer)) + ", not an object");
        }
        return *object;
    }

private:
    AutomationError Failure(std::string_view what, const std::string& reason) const
    {
        return AutomationError(m_role + " " + std::string(what) + ": " + reason);
    }

    AutomationObjectPtr m_object;
    std::string m_role;
};

// Where a log column sits across the page, by the trace's track: the left track, the
// whole right track, or its left or right half.
std::pair<float, float> PagePosition(std::int32_t trackIndex)
{
    switch (trackIndex) {
    case 0: return {0.0f, 0.3f};
    case 1: return {0.4f, 1.0f};
    case 2: return {0.4f, 0.7f};
    default: return {0.7f, 1.0f};
    }
}

void ShowStatus(const StatusTextSink& status, const std::string& text)
{
    if (status) status(text);
}

std::string WritingStatus(std::size_t trace, std::size_t traceCount, std::size_t sample, std::size_t sampleCount)
{
    return "WellCAD Automation: Writing trace " + std::to_string(trace) + " of " + std::to_string(traceCount) +
           "; line " + std::to_string(sample) + " of " + std::to_string(sampleCount) +
           " to WellCAD file...please wait.";
}

void AddLog(CRoleObject& borehole, const CLineTrace& line, std::size_t position, std::size_t traceCount,
            std::size_t logNumber, const StatusTextSink& status)
{
    CRoleObject log(borehole.Object(borehole.Call(kInsertNewLog, {kWellLogKind}, "InsertNewLog"), "InsertNewLog"),
                    "log " + std::to_string(logNumber));
    log.Put(kLogName, line.Name() + "(" + line.Units() + ")", "SetName");
    log.Put(kLogScaleLeft, line.ScaleLeft(), "SetScaleLeft");
    log.Put(kLogScaleRight, line.ScaleRight(), "SetScaleRight");
    const auto [left, right] = PagePosition(line.TrackIndex());
    log.Call(kLogSetPosition, {left, right}, "SetPosition");
    // Outside the colour table the column keeps WellCAD's own colour.
    if (line.ColourIndex() >= 0 && line.ColourIndex() < kLineColourCount) {
        log.Put(kLogPenColor, static_cast<std::int32_t>(LineColourFromIndex(line.ColourIndex())), "SetPenColor");
    }
    // WellCAD's pen is three times as fine as the plot's; the width travels as a 16-bit
    // integer and wraps as such.
    log.Put(kLogPenWidth, static_cast<std::int16_t>(3 * static_cast<std::int64_t>(line.PenWidth())), "SetPenWidth");
    log.Put(kLogPenStyle, line.PenStyle() != kPenSolid, "SetPenStyle");
    log.Put(kLogBottomDepth, line.LastDepth(), "SetBottomDepth");
    log.Put(kLogStep, line.SamplingStep(), "SetStep");

    const std::size_t samples = line.SampleCount();
    std::array<AutomationValue, 2> args{std::int32_t{0}, 0.0f};
    for (std::size_t i = 0; i < samples; ++i) {
        if (i % 100 == 0) ShowStatus(status, WritingStatus(position + 1, traceCount, i, samples));
        args[1] = line.Value(i);
        log.Call(kLogAddValue, args, "AddValue");
    }
}

void Export(const CBoreAnalystDoc& doc, const std::string& path, CRoleObject& borehole, const StatusTextSink& status)
{
    const std::size_t traceCount = doc.TraceCount();
    std::size_t logNumber = 0;
    for (std::size_t t = 0; t < traceCount; ++t) {
        const CTrace& trace = doc.Trace(t);
        // The first trace sets the depth unit whatever its kind, even when it is not
        // exported itself.
        if (t == 0) {
            CRoleObject settings(
                borehole.Object(borehole.Get(kGetBoreholeSettings, "GetBoreholeSettings"), "GetBoreholeSettings"),
                "settings");
            const auto unit = static_cast<std::int16_t>(trace.DepthUnit() == kDepthMetres ? 0 : 1);
            settings.Put(kSettingsDepthUnit, unit, "SetDepthUnit");
            settings.Call(kSettingsDepthAxisPosition, {0.3f, 0.4f}, "SetDepthAxisPosition");
        }
        if (const auto* line = dynamic_cast<const CLineTrace*>(&trace)) {
            AddLog(borehole, *line, t, traceCount, logNumber++, status);
        }
    }
    // What SaveAs answers says nothing reliable about the file; it is not looked at.
    borehole.Call(kSaveAs, {path}, "SaveAs");
}

} // namespace

bool ExportWellCad(const CBoreAnalystDoc& doc, const std::string& path, IAutomationFactory& factory,
                   IMessageSink& sink, const StatusTextSink& status)
{
    if (!HasLineTrace(doc)) {
        sink.Error(std::string(kNoLineTracesMessage));
        return false;
    }
    ShowStatus(status, std::string(kWellCadInitialisingStatus));
    try {
        AutomationObjectPtr created = factory.Create(kBoreholeProgId);
        if (created == nullptr) {
            sink.Error(std::string(kWellCadUnavailableMessage));
            return false;
        }
        CRoleObject borehole(std::move(created), "borehole");
        const int major = borehole.Integer(borehole.Get(kGetVersionMajor, "GetVersionMajor"), "GetVersionMajor");
        const int build = borehole.Integer(borehole.Get(kGetVersionBuild, "GetVersionBuild"), "GetVersionBuild");
        borehole.Get(kGetVersionMinor, "GetVersionMinor"); // read as WellCAD expects, not needed
        // The message asks for build 928, yet only a negative build is refused: that is the
        // check this export has always made, kept so that no installation it accepted is
        // refused now.
        if (major < 3 || build < 0) {
            sink.Error(std::string(kWellCadTooOldMessage));
            return false;
        }
        Export(doc, path, borehole, status);
    } catch (const AutomationError& e) {
        sink.Error("Error: WellCAD automation failed while exporting to \"" + path + "\": " + e.what() + ".");
        return false;
    }
    return true;
}

} // namespace ba
