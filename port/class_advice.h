#pragma once

// What a message tells an administrator about classes and where activation looks for them.

#include "port/com.h"
#include "port/export.h"

#include <string>

namespace port
{

/// What to do when the engine's classes are not registered; a sentence without its full stop.
SIGNUTILS_PORT_API const char* AdviceToRegister();
/// What says where a class's module lies; follows "where".
SIGNUTILS_PORT_API const char* NameOfClassRegistry();

/// The module that the class registry names for a class, Windows-1252; empty when it names none.
SIGNUTILS_PORT_API std::string ModuleNamedForClass(REFCLSID clsid);

} // namespace port
