#pragma once

#include "host/option_values.h"

namespace host
{

/// `signcheck display`: shows the orders of one order file as CtlVEU.INI says. Returns the exit
/// status.
int RunDisplay(const OptionValues& values);

} // namespace host
