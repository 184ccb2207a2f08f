#pragma once

#include "host/option_values.h"

namespace host
{

/// `signcheck reports`: shows the status reports in the hand-off store, the newest first.
int RunReports(const OptionValues& values);

} // namespace host
