#pragma once

#include "host/option_values.h"

namespace host
{

/// signcheck lint: what the authors of rules may not have meant, with an order that shows it. Ends
/// with 1 when there are findings.
int RunLint(const OptionValues& values);

} // namespace host
