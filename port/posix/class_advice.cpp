#include "port/class_advice.h"

#include "port/posix/com_registry.h"
#include "port/posix/native_text.h"

namespace port
{

const char* AdviceToRegister()
{
    return "Install the engine's module and its class registry, signutils-com.ini, beside the "
           "library, and see whether SIGNUTILS_COM_REGISTRY or SIGNUTILS_CONFIG names another";
}

const char* NameOfClassRegistry()
{
    return "the class registry, signutils-com.ini,";
}

std::string ModuleNamedForClass(REFCLSID clsid)
{
    return FromNative(ModuleOfClass(clsid));
}

} // namespace port
