#pragma once

#include "host/option_values.h"

namespace host
{

/// `signcheck amounts`: shows the amounts of one order file as a check takes them from it. Returns
/// the exit status.
int RunAmounts(const OptionValues& values);

} // namespace host
