#pragma once

#include "port/com.h"

namespace port
{

/// The class object that the process itself registered for one of the contexts, with a reference
/// for the caller; null when there is none. One that serves a single caller is not found again.
IUnknown* RegisteredClassObject(REFCLSID clsid, DWORD context);

} // namespace port
