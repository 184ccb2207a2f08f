#pragma once

#include "port/com.h"

#include <string>

namespace port
{

/// The module of a class, in the platform's own form; empty when no registry names it.
///
/// A registry is a profile file: section [InprocServer32], a line "{class} = module" each. A module
/// without a full path lies beside the file. SIGNUTILS_COM_REGISTRY names the file; else it is
/// signutils-com.ini in the configuration folder (SIGNUTILS_CONFIG, else the machine's), and where
/// that one does not name the class, the one beside this library.
std::string ModuleOfClass(REFCLSID clsid);

/// "{01234567-89AB-CDEF-0123-456789ABCDEF}"
std::string ClassText(REFCLSID clsid);

} // namespace port
