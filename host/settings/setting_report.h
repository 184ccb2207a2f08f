#pragma once

#include "host/command_table.h"
#include "host/settings/sources.h"

#include <nlohmann/json_fwd.hpp>

#include <string>
#include <vector>

namespace host
{

/// One setting with everything that is said of it, the strongest first; empty when nothing is.
struct SettingReport
{
    std::string name;     ///< as in a settings file: "limit", "history.limit"
    std::string variable; ///< empty when it cannot come from the environment
    std::vector<OptionValue> said;
};

/// The settings of one command, or with null those of all: what holds for every command, then what
/// a file says to single ones.
std::vector<SettingReport> ReportSettings(const SettingsSources& sources,
                                          const CommandSpec* command);

/// The value as it may be shown: passwords are masked, and a connection string that cannot be taken
/// apart is hidden as a whole.
std::string ShownSetting(const std::string& name, const OptionValue& value);

std::string SettingsAsText(const std::vector<SettingReport>& settings,
                           const SettingsSources& sources);
nlohmann::ordered_json SettingsAsJson(const std::vector<SettingReport>& settings,
                                      const SettingsSources& sources);

} // namespace host
