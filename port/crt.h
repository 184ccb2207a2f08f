#pragma once

// The runtime's invalid-parameter handler. The runtimes do not agree on when they call it, so the
// checked copy of support/ calls it through port::RaiseInvalidParameter on both platforms.

#include "port/export.h"

#include <cstdint>

#if defined(_WIN32)
#include <stdlib.h>
#else

extern "C"
{
    /// Called with null texts and zeroes, as release runtimes do.
    typedef void (*_invalid_parameter_handler)(const wchar_t* expression, const wchar_t* function,
                                               const wchar_t* file, unsigned int line,
                                               std::uintptr_t reserved);

    /// Installs the process's handler (null: none) and returns the one before it. Without a handler
    /// an invalid parameter ends the process.
    SIGNUTILS_PORT_API _invalid_parameter_handler
    _set_invalid_parameter_handler(_invalid_parameter_handler handler);

    SIGNUTILS_PORT_API _invalid_parameter_handler _get_invalid_parameter_handler(); ///< or null
}

#endif

namespace port
{

/// Calls the installed handler, or ends the process when there is none.
SIGNUTILS_PORT_API void RaiseInvalidParameter();

} // namespace port
