#pragma once

#include "host/option_values.h"

namespace host
{

/// signcheck explain: the checks of a trace file, rule by rule. Returns the exit status.
int RunExplain(const OptionValues& values);

} // namespace host
