#pragma once

#include "host/option_values.h"

#include <string>

namespace host
{

/// The hand-off store that --hand-off names, else the library's own; Windows-1252. Raises Refusal
/// for a folder that was named and is not there.
std::string HandOffStoreFrom(const OptionValues& values);

} // namespace host
