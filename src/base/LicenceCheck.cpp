#include "base/LicenceCheck.h"

#include <string>

namespace ba {

const ILicenceCheck& DefaultLicenceCheck()
{
    static const LicensedInstallation licensed;
    return licensed;
}

bool SavingAllowed(const ILicenceCheck& licence, IMessageSink& sink)
{
    if (licence.IsLicensed()) return true;
    sink.Error(std::string(kUnlicensedSaveMessage));
    return false;
}

} // namespace ba
