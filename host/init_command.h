#pragma once

#include "host/option_values.h"

namespace host
{

/// `signcheck init`: creates the tables that are missing, and a sample bank when asked for.
int RunInit(const OptionValues& values);

} // namespace host
