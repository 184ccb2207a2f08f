#pragma once

#include <string>
#include <vector>

namespace testing_support
{

/// Sets an environment variable of this process for itself and its children; null removes it.
void SetVariable(const std::string& name, const char* value);

/// Runs a program and waits for its end. Arguments are UTF-8, passed as they stand; standard input
/// is empty; the outputs go into files. The exit status, -1 when there was none.
int RunProgram(const std::string& program, const std::vector<std::string>& arguments,
               const std::string& outputFile, const std::string& errorsFile);

/// Whether nobody but the owner may read, write or enter what the path names.
bool IsForOwnerOnly(const std::string& path);

/// The same path in a form with '/' that a database's driver understands too, where driver and
/// program belong to different systems.
std::string PathForDrivers(const std::string& path);

} // namespace testing_support
