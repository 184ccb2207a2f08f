#pragma once

#include <string>

namespace manual
{

// Completion of commands, options, choices, files and folders, for each shell the file that it
// loads.

std::string BashCompletion();
std::string ZshCompletion();
std::string FishCompletion();

} // namespace manual
