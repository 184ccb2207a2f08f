#pragma once

#include "host/option_values.h"

namespace rulebook
{

/// signcheck rules apply: makes the database what a rule file says, in one transaction, after
/// showing the difference. Returns the exit status.
int RunApply(const host::OptionValues& values);

} // namespace rulebook
