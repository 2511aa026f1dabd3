#include "app/LicenceCheck.h"

namespace ba {

const ILicenceCheck& DefaultLicenceCheck()
{
    static const LicensedInstallation licensed;
    return licensed;
}

} // namespace ba
