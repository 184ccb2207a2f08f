#pragma once

#include "host/option_values.h"
#include "port/files.h"

#include <cstdint>
#include <optional>
#include <string>

namespace host
{

/// What an open file holds from a position on; nothing when it cannot be read.
std::optional<std::string> TextFrom(port::File& file, std::int64_t from);

/// The bytes of a file from a position on; nothing when it cannot be read. `path` is Windows-1252.
std::optional<std::string> FileText(const std::string& path, std::int64_t from = 0);

/// All bytes of the file that an option names. `what` names it in messages ("the settings file").
/// Raises UsageRefusal for a file that is not there, cannot be read or is larger than
/// `largestMiB`.
std::string ReadTextFile(const OptionValue& path, const std::string& what, std::int64_t largestMiB);

} // namespace host
