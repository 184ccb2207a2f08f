#pragma once

#include "host/option_values.h"

namespace host
{

/// signcheck pending: who can still complete a distributed order. Ends with 1 when nobody can.
int RunPending(const OptionValues& values);

} // namespace host
