#include "port/invalid_parameter.h"

#include <atomic>
#include <cstdlib>

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

_invalid_parameter_handler port::InstalledHandler()
{
    return g_handler.load();
}
