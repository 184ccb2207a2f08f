#pragma once

#include "host/option_values.h"

namespace rulebook
{

/// signcheck rules diff: shows what a rule file would change in the database. Returns the exit
/// status.
int RunDiff(const host::OptionValues& values);

} // namespace rulebook
