#pragma once
// The trace classes a document file may hold: kind code, archive class name and how to
// make an empty object to load into.

#include "model/Trace.h"

#include <cstdint>
#include <memory>
#include <string_view>

namespace ba {

struct TraceClassInfo {
    std::uint32_t kind;
    std::string_view className;
    std::unique_ptr<CTrace> (*create)(); // an empty object of the class, to load into
};

// The class of a kind code 0..3, or null for any other code.
const TraceClassInfo* TraceClassForKind(std::uint32_t kind);
// The class of an archive class name, or null when no trace class has that name.
const TraceClassInfo* TraceClassForName(std::string_view className);

} // namespace ba
