#pragma once

#include "host/option_values.h"

namespace rulebook
{

/// signcheck rules validate: lists every problem of a rule file. Returns the exit status.
int RunValidate(const host::OptionValues& values);

} // namespace rulebook
