#pragma once
// The installation's licence check, asked before saving. A default installation is
// licensed; tests and restricted installations supply a check that refuses.

namespace ba {

class ILicenceCheck {
public:
    virtual ~ILicenceCheck() = default;
    virtual bool IsLicensed() const = 0;
};

class LicensedInstallation final : public ILicenceCheck {
public:
    bool IsLicensed() const override { return true; }
};

class UnlicensedInstallation final : public ILicenceCheck {
public:
    bool IsLicensed() const override { return false; }
};

// The check used when a caller does not name one: a licensed installation.
const ILicenceCheck& DefaultLicenceCheck();

} // namespace ba
