#pragma once

#include "host/command_table.h"

#include <vector>

namespace host
{

/// How a command can end, by rising exit status.
std::vector<Ending> EndingsOf(const CommandSpec& command);

/// The exit statuses of signcheck over all commands.
std::vector<Ending> EveryEnding();

} // namespace host
