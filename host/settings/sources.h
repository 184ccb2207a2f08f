#pragma once

#include "host/command_table.h"
#include "host/config_file.h"
#include "host/option_values.h"

#include <string>
#include <vector>

namespace host
{

inline constexpr const char* kNamedRole = "named";

/// A settings file that is looked for.
struct SettingsFile
{
    std::string role; ///< kNamedRole, "user" or "machine"
    OptionValue path;
    bool isThere = false;
    ConfigFile content;
};

/// Where settings come from that the command line does not give: the environment, then the file
/// that --config names or else the user's, then the machine's.
class SettingsSources
{
public:
    /// Reads the files. `named` is what --config says; null when it is not given. Raises
    /// UsageRefusal for a named file that is not there and for what is wrong in any of them.
    explicit SettingsSources(const OptionValue* named);

    /// Adds what is not there yet. Where a stronger source settles something by one option, a
    /// weaker one does not settle it by another: amounts given on the command line go before a
    /// format in a file.
    void Complete(const CommandSpec& command, OptionValues& values) const;

    /// Everything that is said of one option, the strongest first: to a command, or to all.
    std::vector<OptionValue> AllOf(const CommandSpec& command, const OptionSpec& option) const;
    std::vector<OptionValue> AllOf(const OptionSpec& option) const;

    /// The strongest first.
    const std::vector<SettingsFile>& Files() const noexcept { return m_files; }

private:
    std::vector<SettingsFile> m_files;
};

} // namespace host
