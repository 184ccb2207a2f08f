#pragma once

#include "host/option_values.h"

namespace host
{

/// signcheck simulate: what would be decided about an order that nobody has made. Returns the exit
/// status of a check, the gravest where several order types are asked about.
int RunSimulate(const OptionValues& values);

} // namespace host
