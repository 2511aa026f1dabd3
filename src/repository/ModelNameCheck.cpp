#include "repository/ModelNameCheck.h"

namespace ba {

bool AcceptNewName(std::string_view name, std::span<const std::string> storedNames, const NameRefusalTexts& texts,
                   IMessageSink& sink)
{
    if (name.empty()) {
        sink.Warning(std::string(texts.noName));
        return false;
    }
    bool taken = false;
    for (const std::string& stored : storedNames) {
        if (stored == name) taken = true;
    }
    if (taken) {
        sink.Warning(std::string(texts.nameTaken));
        return false;
    }
    return true;
}

bool AcceptCblAmplitudes(const CblModelRecord& record, IMessageSink& sink)
{
    if (record.unbondedAmplitude > record.bondedAmplitude) return true;
    sink.Warning("Error: Unbonded amplitude must be greater than bonded amplitude.");
    return false;
}

} // namespace ba
