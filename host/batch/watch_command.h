#pragma once

#include "host/option_values.h"

namespace batch
{

/// Judges the orders that come into a folder, each once, until it is told to end.
int RunWatch(const host::OptionValues& values);

} // namespace batch
