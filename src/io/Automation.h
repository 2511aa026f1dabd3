#pragma once
// A small automation interface: objects of an outside program (WellCAD) addressed by
// dispatch identifier, with property reads, property writes and method calls over a few
// value types. The Windows backend drives IDispatch::Invoke; elsewhere creating an object
// fails; tests and the command-line tool use a backend that records every call.

#include <cstdint>
#include <memory>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <variant>

namespace ba {

class IAutomationObject;
using AutomationObjectPtr = std::shared_ptr<IAutomationObject>;

// An argument or a result. std::monostate is "no value" (a method that returns nothing).
// Strings are UTF-8; a backend converts them to what its platform passes.
using AutomationValue =
    std::variant<std::monostate, std::int16_t, std::int32_t, float, bool, std::string, AutomationObjectPtr>;

using DispatchId = std::int32_t;

// "int16", "int32", "float", "bool", "string", "object" or "empty".
std::string_view AutomationTypeName(const AutomationValue& value);

// A call the outside program refused or could not carry out, or an answer of a type the
// caller cannot use.
class AutomationError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// One object of the outside program. Every call may throw AutomationError. Releasing the
// last reference releases the object in the outside program.
class IAutomationObject {
public:
    virtual ~IAutomationObject() = default;
    virtual AutomationValue PropertyGet(DispatchId id) = 0;
    virtual void PropertyPut(DispatchId id, const AutomationValue& value) = 0;
    // Arguments in the order the method declares them.
    virtual AutomationValue Method(DispatchId id, std::span<const AutomationValue> args) = 0;
};

class IAutomationFactory {
public:
    virtual ~IAutomationFactory() = default;
    // Creates the object registered under a program identifier ("WellCAD.Borehole"), or
    // returns null when it cannot be created (not installed, not licensed, no automation
    // on this platform).
    virtual AutomationObjectPtr Create(std::string_view progId) = 0;
};

// The backend of this platform: IDispatch on Windows; elsewhere a factory that can create
// nothing.
std::unique_ptr<IAutomationFactory> MakePlatformAutomationFactory();

} // namespace ba
