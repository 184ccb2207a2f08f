#pragma once

// What a message tells an administrator about classes that activation does not find.

#include "port/export.h"

namespace port
{

/// What to do when the engine's classes are not registered; a sentence without its full stop.
SIGNUTILS_PORT_API const char* AdviceToRegister();
/// What says where a class's module lies; follows "where".
SIGNUTILS_PORT_API const char* NameOfClassRegistry();

} // namespace port
