#pragma once

#include "host/command_table.h"
#include "host/option_values.h"

#include <string>
#include <vector>

namespace host
{

/// What the command line asks for. `command` is null when `helpText` is to be printed instead.
struct CommandLine
{
    const CommandSpec* command = nullptr;
    OptionValues values;
    std::string helpText;
};

/// Reads the arguments (UTF-8, without the program's name). Raises UsageRefusal.
CommandLine ReadCommandLine(const std::vector<std::string>& arguments);

/// Whether the arguments ask for JSON; for refusals before they could be read.
bool AsksForJson(const std::vector<std::string>& arguments);

} // namespace host
