#include "io/AutomationRecorder.h"

#include "io/WellCadDispatchIds.h"

#include <charconv>
#include <cmath>
#include <cstdio>

namespace ba {

struct CRecordingAutomationFactory::State {
    CallObserver observer;
    SimulatedWellCad answers;
    std::size_t logCount = 0;
};

namespace {

class CRecordedObject final : public IAutomationObject {
public:
    CRecordedObject(std::shared_ptr<CRecordingAutomationFactory::State> state, std::string name)
        : m_state(std::move(state)), m_name(std::move(name))
    {
    }

    const std::string& Name() const { return m_name; }

    AutomationValue PropertyGet(DispatchId id) override
    {
        AutomationValue result;
        if (m_name == "borehole") {
            const SimulatedWellCad& answers = m_state->answers;
            switch (id) {
            case wellcad::kGetBoreholeSettings: result = NewObject("settings"); break;
            case wellcad::kGetVersionMajor: result = answers.versionMajor; break;
            case wellcad::kGetVersionBuild: result = answers.versionBuild; break;
            case wellcad::kGetVersionMinor: result = answers.versionMinor; break;
            default: break;
            }
        }
        Record(CallKind::Get, id, {}, result);
        return result;
    }

    void PropertyPut(DispatchId id, const AutomationValue& value) override
    {
        Record(CallKind::Put, id, {value}, {});
    }

    AutomationValue Method(DispatchId id, std::span<const AutomationValue> args) override
    {
        AutomationValue result;
        if (m_name == "borehole") {
            if (id == wellcad::kInsertNewLog) result = NewObject("log " + std::to_string(m_state->logCount++));
            if (id == wellcad::kSaveAs) result = true;
        }
        Record(CallKind::Method, id, std::vector<AutomationValue>(args.begin(), args.end()), result);
        return result;
    }

private:
    AutomationObjectPtr NewObject(std::string name) const
    {
        return std::make_shared<CRecordedObject>(m_state, std::move(name));
    }

    void Record(CallKind kind, DispatchId id, std::vector<AutomationValue> args, const AutomationValue& result) const
    {
        if (m_state->observer) m_state->observer(RecordedCall{kind, m_name, id, std::move(args), result});
    }

    std::shared_ptr<CRecordingAutomationFactory::State> m_state;
    std::string m_name;
};

void AppendJsonString(std::string& out, std::string_view text)
{
    out.push_back('"');
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (c == '"' || c == '\\') {
            out.push_back('\\');
            out.push_back(c);
        } else if (byte < 0x20) {
            char escaped[8];
            std::snprintf(escaped, sizeof escaped, "\\u%04x", byte);
            out.append(escaped);
        } else {
            out.push_back(c);
        }
    }
    out.push_back('"');
}

void AppendFloat(std::string& out, float value)
{
    if (!std::isfinite(value)) {
        // JSON has no numbers for these.
        AppendJsonString(out, std::isnan(value) ? "NaN" : (value > 0 ? "Infinity" : "-Infinity"));
        return;
    }
    char text[32];
    const auto result = std::to_chars(text, text + sizeof text, value);
    out.append(text, result.ptr);
}

void AppendValue(std::string& out, const AutomationValue& value)
{
    out.append("{\"");
    out.append(AutomationTypeName(value));
    out.append("\": ");
    if (const auto* v16 = std::get_if<std::int16_t>(&value)) out.append(std::to_string(*v16));
    else if (const auto* v32 = std::get_if<std::int32_t>(&value)) out.append(std::to_string(*v32));
    else if (const auto* f = std::get_if<float>(&value)) AppendFloat(out, *f);
    else if (const auto* b = std::get_if<bool>(&value)) out.append(*b ? "true" : "false");
    else if (const auto* s = std::get_if<std::string>(&value)) AppendJsonString(out, *s);
    else if (std::holds_alternative<AutomationObjectPtr>(value)) AppendJsonString(out, RecordedObjectName(value));
    else out.append("null");
    out.push_back('}');
}

std::string_view KindName(CallKind kind)
{
    switch (kind) {
    case CallKind::Create: return "create";
    case CallKind::Get: return "get";
    case CallKind::Put: return "put";
    case CallKind::Method: return "method";
    }
    return "?";
}

} // namespace

CRecordingAutomationFactory::CRecordingAutomationFactory(CallObserver observer, SimulatedWellCad answers)
    : m_state(std::make_shared<State>(State{std::move(observer), answers, 0}))
{
}

CRecordingAutomationFactory::~CRecordingAutomationFactory() = default;

AutomationObjectPtr CRecordingAutomationFactory::Create(std::string_view progId)
{
    AutomationObjectPtr created;
    if (m_state->answers.installed && progId == wellcad::kBoreholeProgId) {
        created = std::make_shared<CRecordedObject>(m_state, "borehole");
    }
    if (m_state->observer) {
        const AutomationValue result = created ? AutomationValue(created) : AutomationValue{};
        m_state->observer(RecordedCall{CallKind::Create, std::string(progId), 0, {}, result});
    }
    return created;
}

std::string RecordedObjectName(const AutomationValue& value)
{
    const auto* object = std::get_if<AutomationObjectPtr>(&value);
    const auto* recorded = object != nullptr ? dynamic_cast<const CRecordedObject*>(object->get()) : nullptr;
    return recorded != nullptr ? recorded->Name() : "?";
}

std::string RecordedCallJson(const RecordedCall& call)
{
    std::string out = "{";
    if (call.kind == CallKind::Create) {
        out.append("\"create\": ");
        AppendJsonString(out, call.object);
    } else {
        out.append("\"object\": ");
        AppendJsonString(out, call.object);
        out.append(", \"dispid\": " + std::to_string(call.dispid) + ", \"kind\": \"");
        out.append(KindName(call.kind));
        out.append("\", \"args\": [");
        for (std::size_t i = 0; i < call.args.size(); ++i) {
            if (i > 0) out.append(", ");
            AppendValue(out, call.args[i]);
        }
        out.push_back(']');
    }
    if (call.kind == CallKind::Create || !std::holds_alternative<std::monostate>(call.result)) {
        out.append(", \"result\": ");
        AppendValue(out, call.result);
    }
    out.push_back('}');
    return out;
}

std::string StatusJson(std::string_view text)
{
    std::string out = "{\"status\": ";
    AppendJsonString(out, text);
    out.push_back('}');
    return out;
}

} // namespace ba
