#include "port/crt.h"

#include <atomic>
#include <cstdlib>

#if !defined(_WIN32)

namespace
{

std::atomic<_invalid_parameter_handler> g_handler = nullptr;

} // namespace

_invalid_parameter_handler _set_invalid_parameter_handler(_invalid_parameter_handler handler)
{
    return g_handler.exchange(handler);
}

_invalid_parameter_handler _get_invalid_parameter_handler()
{
    return g_handler.load();
}

void port::RaiseInvalidParameter()
{
    if (const _invalid_parameter_handler handler = g_handler.load(); handler != nullptr)
    {
        handler(nullptr, nullptr, nullptr, 0, 0);
        return;
    }
    std::abort();
}

#endif
