#pragma once

#include "port/com.h"

namespace port
{

/// Registers a class of the calling module for the whole machine, as an in-process server that any
/// kind of apartment may call on its own thread. `codeInModule` is any function of the module.
HRESULT RegisterClassOfModule(REFCLSID clsid, const wchar_t* description, const void* codeInModule);

/// Takes the class off again. S_OK also when it was not registered.
HRESULT UnregisterClassOfModule(REFCLSID clsid);

} // namespace port
