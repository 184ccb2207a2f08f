#pragma once

#include "host/option_values.h"

namespace host
{

/// signcheck map: who may release what under one contract. Returns the exit status.
int RunMap(const OptionValues& values);

} // namespace host
