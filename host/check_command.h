#pragma once

#include "host/option_values.h"

namespace host
{

/// `signcheck check`: judges one order file and says what was decided, why, and what was recorded.
int RunCheck(const OptionValues& values);

} // namespace host
