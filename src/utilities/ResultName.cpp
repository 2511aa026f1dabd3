#include "utilities/ResultName.h"

#include <string>

namespace ba {

bool CheckResultName(const CBoreAnalystDoc& doc, std::string_view newName, IMessageSink& sink)
{
    if (newName.empty() || doc.FindTrace(newName) == nullptr) return true;
    sink.Error("Error: A trace named \"" + std::string(newName) +
               "\" already exists; choose another name for the new trace.");
    return false;
}

} // namespace ba
