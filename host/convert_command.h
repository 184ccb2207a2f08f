#pragma once

#include "host/option_values.h"

namespace host
{

/// `signcheck convert`: converts one order file and tells what came of it, leaving the work files
/// with --keep alone. Returns the exit status.
int RunConvert(const OptionValues& values);

} // namespace host
