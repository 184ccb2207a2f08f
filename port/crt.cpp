#include "port/crt.h"

#include "port/invalid_parameter.h"

#include <cstdlib>

void port::RaiseInvalidParameter()
{
    if (const _invalid_parameter_handler handler = InstalledHandler(); handler != nullptr)
    {
        handler(nullptr, nullptr, nullptr, 0, 0);
        return;
    }
    std::abort();
}
