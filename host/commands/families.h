#pragma once

#include "host/command_table.h"

namespace host
{

// The commands of signcheck, a table and a file for each family. What --help, the manual pages,
// completion and the settings file know of a command stands there.

CommandFamily CheckingCommands();
CommandFamily OrderFileCommands();
CommandFamily AuthorityCommands();
CommandFamily RuleFileCommands();
CommandFamily LookingBackCommands();
CommandFamily UpkeepCommands();

} // namespace host
