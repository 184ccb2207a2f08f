#pragma once

#include "port/crt.h"

namespace port
{

/// The handler that the host installed, null when there is none.
_invalid_parameter_handler InstalledHandler();

} // namespace port
