#pragma once

#include "host/command_table.h"
#include "host/option_values.h"

#include <string>

namespace host
{

/// Adds what the settings file holds for the command and nothing else gave. Keys are the options'
/// names without dashes; they stand at the top of the file, for every command that has them, or in
/// a table named after one command, which goes before. The whole file is checked, also what other
/// commands use. Raises UsageRefusal with file, line, field and remedy.
void AddFromConfigFile(const OptionValue& path, const CommandSpec& command, OptionValues& values);

/// The same for a text; `name` stands in messages.
void AddFromConfigText(const std::string& toml, const std::string& name, const CommandSpec& command,
                       OptionValues& values);

} // namespace host
