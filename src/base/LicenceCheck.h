#pragma once
// The installation's licence check, asked before saving. A default installation is
// licensed; tests and restricted installations supply a check that refuses.

#include "base/MessageSink.h"

#include <string_view>

namespace ba {

inline constexpr std::string_view kUnlicensedSaveMessage = "Error: Unlicesed installation.  Saving disabled.";

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

// The save commands ask this before writing a document: false, with the licence message
// reported to `sink`, when the installation may not save.
bool SavingAllowed(const ILicenceCheck& licence, IMessageSink& sink);

} // namespace ba
