#include "host/settings/setting_report.h"

#include "database/connection_string.h"
#include "database/secrets.h"
#include "host/output.h"
#include "host/settings/variables.h"
#include "host/text.h"

#include <algorithm>
#include <set>

namespace host
{

namespace
{

constexpr const char* kConnectionSetting = "db";

SettingReport ReportOf(const OptionSpec& option, const std::string& name,
                       std::vector<OptionValue> said)
{
    const std::string variable =
        MayComeFromEnvironment(option.name) ? VariableOf(option.name) : std::string();
    return {name, variable, std::move(said)};
}

bool IsInATableOf(const SettingsSources& sources, const CommandSpec& command,
                  const OptionSpec& option)
{
    const auto says = [&](const SettingsFile& file)
    {
        const auto table = file.content.tables.find(command.name);
        return table != file.content.tables.end() && table->second.Find(option.name) != nullptr;
    };
    return std::any_of(sources.Files().begin(), sources.Files().end(), says);
}

// Arguments stand on the command line, where they are seen.
bool IsSetting(const OptionSpec& option)
{
    return !option.positional;
}

std::vector<SettingReport> OfOneCommand(const SettingsSources& sources, const CommandSpec& command)
{
    std::vector<SettingReport> settings;
    for (const OptionSpec& option : command.options)
    {
        if (IsSetting(option))
        {
            settings.push_back(ReportOf(option, option.name, sources.AllOf(command, option)));
        }
    }
    return settings;
}

void AddSharedByAll(const SettingsSources& sources, std::vector<SettingReport>& settings)
{
    std::set<std::string> names;
    for (const CommandSpec& command : Commands())
    {
        for (const OptionSpec& option : command.options)
        {
            if (IsSetting(option) && names.insert(option.name).second)
            {
                settings.push_back(ReportOf(option, option.name, sources.AllOf(option)));
            }
        }
    }
}

void AddOfTables(const SettingsSources& sources, std::vector<SettingReport>& settings)
{
    for (const CommandSpec& command : Commands())
    {
        for (const OptionSpec& option : command.options)
        {
            if (IsInATableOf(sources, command, option))
            {
                settings.push_back(ReportOf(option, TableName(command) + "." + option.name,
                                            sources.AllOf(command, option)));
            }
        }
    }
}

bool IsConnection(const std::string& name)
{
    const std::string last = name.substr(name.find_last_of('.') + 1);
    return last == kConnectionSetting;
}

} // namespace

std::vector<SettingReport> ReportSettings(const SettingsSources& sources,
                                          const CommandSpec* command)
{
    if (command != nullptr)
    {
        return OfOneCommand(sources, *command);
    }
    std::vector<SettingReport> settings;
    AddSharedByAll(sources, settings);
    AddOfTables(sources, settings);
    return settings;
}

std::string ShownSetting(const std::string& name, const OptionValue& value)
{
    if (!IsConnection(name))
    {
        return Printable(WithoutPasswords(value.text));
    }
    const database::ConnectionString parts(value.text);
    return parts.Fault().empty() ? Printable(parts.Masked()) : std::string(database::kHidden);
}

} // namespace host
