#pragma once

#include "host/option_values.h"

#include <cstdint>
#include <string>

namespace host
{

/// All bytes of the file that an option names. `what` names it in messages ("the settings file").
/// Raises UsageRefusal for a file that is not there, cannot be read or is larger than
/// `largestMiB`.
std::string ReadTextFile(const OptionValue& path, const std::string& what, std::int64_t largestMiB);

} // namespace host
