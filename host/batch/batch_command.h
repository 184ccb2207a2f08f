#pragma once

#include "host/option_values.h"

namespace batch
{

/// Judges the orders of a folder or a list, each once, also over interruptions.
int RunBatch(const host::OptionValues& values);

} // namespace batch
