#pragma once

#include "host/option_values.h"

namespace host
{

/// `signcheck history`: shows the decisions recorded in HST_SIGNRULES, the newest first.
int RunHistory(const OptionValues& values);

} // namespace host
