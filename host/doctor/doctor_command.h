#pragma once

#include "host/option_values.h"

namespace doctor
{

/// `signcheck doctor`: looks at everything that a check needs, and names the remedy for what is
/// wrong.
int RunDoctor(const host::OptionValues& values);

} // namespace doctor
