#pragma once

#include "host/option_values.h"

#include <string>

namespace host
{

/// Argument FILE. Raises UsageRefusal, which shows `example`, when it was not given.
const OptionValue& OrderFileArgument(const OptionValues& values, const std::string& example);

/// The path of a file that is there, in Windows-1252. `what` names it in messages ("the order
/// file"). Raises UsageRefusal for a missing file, a folder, or a path without a place in
/// Windows-1252.
std::string ExistingFilePath(const OptionValue& value, const std::string& what);

/// The folder of a path with its final separator; "." where the path names none.
std::string FolderOf(const std::string& path);

} // namespace host
