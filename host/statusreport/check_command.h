#pragma once

#include "host/option_values.h"

namespace statusreport
{

/// signcheck report check: whether a status report is valid, and what it says.
int RunCheck(const host::OptionValues& values);

} // namespace statusreport
