#pragma once

#include "host/command_table.h"

#include <vector>

namespace batch
{

/// The options of signcheck batch: those of check that make sense for many orders, and its own.
std::vector<host::OptionSpec> BatchOptions(const std::vector<host::OptionSpec>& ofCheck);
/// Those of signcheck watch.
std::vector<host::OptionSpec> WatchOptions(const std::vector<host::OptionSpec>& ofCheck);

} // namespace batch
