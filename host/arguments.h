#pragma once

#include <string>
#include <vector>

namespace host
{

// What the platform hands to a program, as UTF-8. Everything else in this room sees UTF-8 only, so
// a platform with wide arguments is dealt with here alone.

/// The arguments without the program's name, byte for byte; they may be malformed UTF-8.
std::vector<std::string> ProgramArguments(int count, char** values);

/// An environment variable, empty when it is not set; it may be malformed UTF-8.
std::string EnvironmentVariable(const char* name);

} // namespace host
