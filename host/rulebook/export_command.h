#pragma once

#include "host/option_values.h"

namespace rulebook
{

/// signcheck rules export: prints the rule tables as a rule file. Returns the exit status.
int RunExport(const host::OptionValues& values);

} // namespace rulebook
