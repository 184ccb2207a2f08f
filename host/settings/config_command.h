#pragma once

#include "host/option_values.h"

namespace host
{

/// Shows every setting, where it comes from and what it hides. Passwords are never shown. Returns
/// the exit status; raises Refusal.
int RunConfig(const OptionValues& values);

} // namespace host
