// Platforms without OLE automation: no outside program can be driven, so every creation
// fails and the caller reports that the program is not available.

#include "io/Automation.h"

namespace ba {
namespace {

class CUnavailableAutomationFactory final : public IAutomationFactory {
public:
    AutomationObjectPtr Create(std::string_view) override { return nullptr; }
};

} // namespace

std::unique_ptr<IAutomationFactory> MakePlatformAutomationFactory()
{
    return std::make_unique<CUnavailableAutomationFactory>();
}

} // namespace ba
