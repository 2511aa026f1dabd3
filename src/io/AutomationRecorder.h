#pragma once
// An automation backend that plays WellCAD's borehole object and records every call made
// on it and on the objects it hands out, in order. Tests read the calls; the command-line
// tool writes them to a file, one JSON object per line, so that an export can be checked
// where WellCAD is not installed.

#include "io/Automation.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace ba {

enum class CallKind { Create, Get, Put, Method };

struct RecordedCall {
    CallKind kind = CallKind::Get;
    std::string object; // "borehole", "settings", "log N" (N counts the logs from 0); the
                        // program identifier for a Create
    DispatchId dispid = 0;
    std::vector<AutomationValue> args; // a Put's value is its one argument
    AutomationValue result;            // empty for a Put
};

// What the simulated WellCAD answers.
struct SimulatedWellCad {
    bool installed = true; // false: creation fails as without WellCAD
    std::int16_t versionMajor = 3;
    std::int16_t versionBuild = 928;
    std::int16_t versionMinor = 0;
};

class CRecordingAutomationFactory final : public IAutomationFactory {
public:
    using CallObserver = std::function<void(const RecordedCall&)>;

    // `observer` sees each call once it has been answered.
    explicit CRecordingAutomationFactory(CallObserver observer, SimulatedWellCad answers = {});
    ~CRecordingAutomationFactory() override;
    CRecordingAutomationFactory(const CRecordingAutomationFactory&) = delete;
    CRecordingAutomationFactory& operator=(const CRecordingAutomationFactory&) = delete;

    // Only "WellCAD.Borehole" can be created, and only when WellCAD is "installed".
    AutomationObjectPtr Create(std::string_view progId) override;

    struct State;

private:
    std::shared_ptr<State> m_state;
};

// The role name of an object handed out by a recording factory, or "?" for any other.
std::string RecordedObjectName(const AutomationValue& value);

// One call as a line of JSON (without the line end):
//   {"object": "log 0", "dispid": 12, "kind": "put", "args": [{"int32": 255}]}
// with "result" added when the call answered something, and for a creation
//   {"create": "WellCAD.Borehole", "result": {"object": "borehole"}}.
// Each value is an object naming its type; floats are written in their shortest form.
std::string RecordedCallJson(const RecordedCall& call);

// A status text as a line of JSON: {"status": "..."}.
std::string StatusJson(std::string_view text);

} // namespace ba
