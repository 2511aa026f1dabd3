// settings get PATH and settings set PATH VALUE: the values processing dialogs remember,
// read and written as the dialogs do, by full path.

#include "settings/SettingsStore.h"
#include "cli/Command.h"

#include <memory>
#include <string>

namespace ba::cli {
namespace {

struct SettingsOptions {
    std::string path;
    std::string value;
    bool user = false;
    CLI::App* get = nullptr;
    CLI::App* set = nullptr;
};

void RunSettings(const SettingsOptions& options, CommandContext& context)
{
    const SettingsRoot root = options.user ? SettingsRoot::CurrentUser : SettingsRoot::LocalMachine;
    const auto store = MakeDefaultSettingsStore();
    if (*options.get) {
        const auto text = store->Read(root, options.path);
        // A setting that is not there is the ordinary answer of a query: no message.
        if (!text) throw CommandFailure(kExitFailure, {});
        context.out << *text << '\n';
        return;
    }
    if (!store->Write(root, options.path, options.value)) {
        throw CommandFailure(kExitFailure, "Error: cannot write setting \"" + options.path + "\" to \"" +
                                               store->Location(root) +
                                               "\": it cannot be written or does not hold settings.");
    }
}

void AddPathArguments(CLI::App& sub, SettingsOptions& options)
{
    sub.add_option("PATH", options.path, "key path, a backslash and the value name")->required();
    sub.add_flag("--user", options.user, "the current user's settings instead of the machine's");
}

} // namespace

Command AddSettingsCommand(CLI::App& app)
{
    auto options = std::make_shared<SettingsOptions>();
    CLI::App* sub = app.add_subcommand(
        "settings",
        "Read or write a setting that processing dialogs remember, addressed by its full path, e.g. "
        "\"SOFTWARE\\Quartzline Geodata\\BoreAnalyst\\SonicDialog\\WindowLength\". On Windows settings are "
        "kept in the registry; elsewhere in the file named by BA_SETTINGS_FILE, or settings.json beside the "
        "program.");
    sub->require_subcommand(1);
    options->get = sub->add_subcommand(
        "get", "Print the setting's text (trailing blanks removed); exit status 1, nothing printed, when there "
               "is none or it is longer than 250 bytes.");
    AddPathArguments(*options->get, *options);
    options->set = sub->add_subcommand("set", "Store the text as the setting, creating its key.");
    AddPathArguments(*options->set, *options);
    options->set->add_option("VALUE", options->value, "text to store")->required();
    return {sub, [options](CommandContext& context) { RunSettings(*options, context); }};
}

} // namespace ba::cli
