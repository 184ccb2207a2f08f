#pragma once

#include "host/option_values.h"

namespace host
{

/// signcheck replay: which past orders changed rules would decide otherwise. Returns the exit
/// status: 0 when there is none.
int RunReplay(const OptionValues& values);

} // namespace host
