#pragma once

#include "host/command_table.h"
#include "host/option_values.h"

#include <map>
#include <string>
#include <vector>

namespace host
{

/// What a settings file says. Keys are the options' names without dashes; they stand at the top of
/// the file, for every command that has them, or in a table named after one command, which goes
/// before.
struct ConfigFile
{
    OptionValues top;
    std::map<std::string, OptionValues> tables; ///< by the command's name

    /// What the file says of an option to a command, that of the command's own table first.
    std::vector<OptionValue> AllOf(const CommandSpec& command, const std::string& option) const;
};

/// Reads and checks the whole file, also what other commands use. Raises UsageRefusal with file,
/// line, field and remedy, and for a connection string that others could read or change.
ConfigFile ReadConfigFile(const OptionValue& path);

/// The same for a text; `name` stands in messages.
ConfigFile ReadConfigText(const std::string& toml, const std::string& name);

} // namespace host
