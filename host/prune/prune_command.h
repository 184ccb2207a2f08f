#pragma once

#include "host/option_values.h"

namespace prune
{

/// signcheck prune: archives history rows, audit events, status reports and delivered spool lines
/// from before a day, then removes them.
int RunPrune(const host::OptionValues& values);

} // namespace prune
