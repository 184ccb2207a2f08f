#include "port/invalid_parameter.h"

#include "port/kernel.h"

namespace port
{

namespace
{

// The runtime is part of each module, so the host's handler may lie in the library (its import
// library gives the call to hosts of the same compiler) or in the runtime that most hosts share.
constexpr const wchar_t* kModulesWithHandlers[] = {L"signutils.dll", L"ucrtbase.dll"};

_invalid_parameter_handler HandlerOf(const wchar_t* moduleName)
{
    using Getter = _invalid_parameter_handler(__cdecl*)();
    const HMODULE module = GetModuleHandleW(moduleName);
    if (module == nullptr)
    {
        return nullptr;
    }
    const FARPROC address = GetProcAddress(module, "_get_invalid_parameter_handler");
    const auto getter = reinterpret_cast<Getter>(reinterpret_cast<void*>(address));
    return getter == nullptr ? nullptr : getter();
}

/// What the runtime itself installs where a program starts, which does nothing: no host's.
const _invalid_parameter_handler g_runtimesOwn = _get_invalid_parameter_handler();

} // namespace

_invalid_parameter_handler InstalledHandler()
{
    _invalid_parameter_handler handler = _get_invalid_parameter_handler();
    handler = handler == g_runtimesOwn ? nullptr : handler;
    for (const wchar_t* const module : kModulesWithHandlers)
    {
        handler = handler == nullptr ? HandlerOf(module) : handler;
    }
    return handler;
}

} // namespace port
