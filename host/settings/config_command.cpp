#include "host/settings/config_command.h"

#include "host/exit_status.h"
#include "host/output.h"
#include "host/refusal.h"
#include "host/settings/setting_report.h"
#include "host/suggestion.h"
#include "host/text.h"

#include <nlohmann/json.hpp>

#include <algorithm>

namespace host
{

namespace
{

// Named as on the command line or as a table of a settings file is.
const CommandSpec* CommandFrom(const OptionValues& values)
{
    const OptionValue* const given = values.Find("command");
    if (given == nullptr)
    {
        return nullptr;
    }
    std::string name = given->text;
    std::replace(name.begin(), name.end(), '.', ' ');
    const CommandSpec* const command = FindCommand(name);
    if (command == nullptr)
    {
        throw UsageRefusal(given->origin + ": signcheck has no command " + Quoted(given->text) +
                           "." + DidYouMean(name, CommandNames(), "") +
                           " Name one, those of two words in quotes; or none for all of them.");
    }
    return command;
}

} // namespace

int RunConfig(const OptionValues& values)
{
    const CommandSpec* const command = CommandFrom(values);
    const SettingsSources sources(values.Find(kConfigOption));
    const auto settings = ReportSettings(sources, command);
    if (values.IsOn("json"))
    {
        PrintJson(SettingsAsJson(settings, sources));
    }
    else
    {
        Print(SettingsAsText(settings, sources));
    }
    return kDone;
}

} // namespace host
