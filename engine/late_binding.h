#pragma once

#include "port/dispatch.h"

namespace engine
{

// What the two interfaces offer to late-bound callers: operations by name, reserved ones left out.

const port::DispatchInterface& RunOperations();
const port::DispatchInterface& WorkOperations();

} // namespace engine
